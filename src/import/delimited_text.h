#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace merlane {

/// What stands between the fields of a row. Several blanks in a row are one.
enum class Delimiter { Comma, Semicolon, Tab, Blanks };

/// What each is called, in that order.
const std::vector<std::string>& DelimiterNames();

/// A row of a delimited text, its fields without quotes and the blanks around them, and the line on which it begins.
struct TextRow {
  int line = 0;
  bool overLines = false;  // a field in quotes goes on in another line
  std::vector<std::string> fields;
  /// What a spreadsheet shows of numbers where that is more, such as "007", by column: of worksheets alone.
  std::vector<std::pair<std::size_t, std::string>> shown;

  /// What is shown of a field that the row has.
  const std::string& Shown(std::size_t column) const;
};

/// Divides a text into its rows, one after the other: a field in double quotes may hold delimiters, line ends and, in
/// pairs, double quotes; one with more behind its closing quote keeps its quotes. Empty lines, and those of empty
/// fields alone, are no rows, nor is a first line such as "sep=;", by which a spreadsheet is told the delimiter.
class DelimitedRows {
 public:
  DelimitedRows(std::string_view text, Delimiter delimiter);

  /// Reads the next row into `row`; false behind the last one. RuntimeFailure when a quote is never closed.
  bool Next(TextRow& row);
  /// What has not been read yet.
  std::string_view Rest() const { return rest_; }

 private:
  bool NextLine(TextRow& row);
  void AddField(TextRow& row);
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

/// The first rows of a text, at most `count`.
std::vector<TextRow> RowsAtStart(std::string_view text, Delimiter delimiter, std::size_t count);

/// How many fields most rows have; 0 without rows.
std::size_t UsualFields(const std::vector<TextRow>& rows);

/// The delimiter by which nearly all of the first rows of a text have the same number of fields.
Delimiter ProposedDelimiter(std::string_view text);

}  // namespace merlane
