#pragma once

#include <string>
#include <string_view>

namespace merlane {

/// What a text data file holds, looked at before it is read: of lines that are divided as the format has it, how many,
/// their years and covariates; and how many are not, and how the first of those is divided.
struct FileOutline {
  /// So many lines are enough to tell another kind of file.
  static constexpr int MostMisdivided = 1000;

  int records = 0;
  int firstYear = 0, lastYear = 0;  // where there are records
  int covariates = 0;               // named in the header
  int misdivided = 0;               // as far as was looked
  std::string firstMisdivided;      // where and how, in words

  /// In a sentence or two.
  std::string InWords() const;
};

/// Looks through a text data file.
FileOutline OutlineOf(std::string_view bytes);
/// The same of a file, which is not held whole where it need not be; nothing of one that is no text in fixed columns or
/// cannot be read, which the reading tells.
FileOutline OutlineOfFile(const std::string& path);

}  // namespace merlane
