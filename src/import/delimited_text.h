#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace merlane {

/// What stands between the fields of a row. Several blanks in a row are one.
enum class Delimiter { Comma, Semicolon, Tab, Blanks };

/// What each is called, in that order.
const std::vector<std::string>& DelimiterNames();

/// A row of a delimited text, its fields without quotes and the blanks around them, and the line on which it begins.
struct TextRow {
  int line = 0;
  std::vector<std::string> fields;
};

/// Divides a text into its rows, one after the other: a field in double quotes may hold delimiters, line ends and, in
/// pairs, double quotes. Empty lines are no rows.
class DelimitedRows {
 public:
  DelimitedRows(std::string_view text, Delimiter delimiter) : rest_(text), delimiter_(delimiter) {}

  /// Reads the next row into `row`; false behind the last one. RuntimeFailure when a quote is never closed.
  bool Next(TextRow& row);
  /// What has not been read yet.
  std::string_view Rest() const { return rest_; }

 private:
  bool AtDelimiter() const;
  bool AtLineEnd() const;
  std::string Field();
  std::string QuotedField();
  void SkipBlanks();
  void SkipLineEnd();

  std::string_view rest_;
  const Delimiter delimiter_;
  int line_ = 1;
};

/// The delimiter by which the first lines of a text have the same number of fields, and most of them.
Delimiter ProposedDelimiter(std::string_view text);

}  // namespace merlane
