#include "data/workbook_conversion.h"

#include <fmt/format.h>

#include "base/number_text.h"
#include "base/runtime_failure.h"
#include "base/text.h"
#include "data/record_layout.h"

namespace merlane {
namespace {

constexpr std::size_t LeastColumns = record::FieldsBeforeCovariates;

/// How the cells of a column are written.
struct Field {
  int rightmost;
  const char* pattern;  // empty: as it is
  int width;
};

Field FieldOf(std::size_t column) {
  if (column == 0) return {8, "0000", record::Width};
  if (column == 1) return {8, "", record::Width};
  if (column < LeastColumns) return {8, "0", record::Width};
  return {20, "0.0000E+00", record::CovariateWidth};
}

/// A cell as text; a number with the 15 significant digits that a spreadsheet keeps.
std::string CellText(const WorkbookCell& cell) {
  if (const double* number = std::get_if<double>(&cell)) return *number == 0 ? "0" : fmt::format("{:.15g}", *number);
  if (const std::string* text = std::get_if<std::string>(&cell)) return *text;
  return "";
}

// Columns are bytes, and a character of a workbook may have several: where a text is cut, none is cut in half.
bool BeginsCharacter(char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }

std::string_view LastColumns(std::string_view text, int columns) {
  text = Rightmost(text, columns);
  while (!text.empty() && !BeginsCharacter(text.front())) text.remove_prefix(1);
  return text;
}

std::string_view FirstColumns(std::string_view text, int columns) {
  auto end = static_cast<std::size_t>(columns);
  if (text.size() <= end) return text;
  while (end > 0 && !BeginsCharacter(text[end])) --end;
  return text.substr(0, end);
}

std::string FieldText(const WorkbookCell& cell, const Field& field) {
  const std::string whole = CellText(cell);
  const std::string_view cut = LastColumns(whole, field.rightmost);
  if (*field.pattern != '\0' && IsNumber(cut)) return RightSet(Format(StrictNumber(cut), field.pattern), field.width);
  return RightSet(FirstColumns(cut, field.width), field.width);
}

}  // namespace

std::string BroodDataText(const Worksheet& sheet) {
  std::string text;
  for (const auto& row : sheet.rows) {
    if (row.size() < LeastColumns)
      throw RuntimeFailure(
          fmt::format("worksheet {} has {} columns, at least {} are needed", sheet.name, row.size(), LeastColumns));
    for (std::size_t column = 0; column < row.size(); ++column) {
      if (column > 0) text += ',';
      text += FieldText(row[column], FieldOf(column));
    }
    text += "\r\n";
  }
  return text;
}

}  // namespace merlane
