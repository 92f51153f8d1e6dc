#include "data/workbook_conversion.h"

#include <fmt/format.h>

#include <algorithm>

#include "base/number_text.h"
#include "base/runtime_failure.h"
#include "base/text.h"
#include "base/utf8.h"
#include "data/data_line.h"
#include "data/record_layout.h"

namespace merlane {
namespace {

constexpr std::size_t LeastColumns = record::FieldsBeforeCovariates, CodeColumn = 1;

/// How the cells of a column are written.
struct Field {
  int rightmost;
  const char* pattern;  // empty: as it is
  int width;
};

Field FieldOf(std::size_t column) {
  if (column == 0) return {record::Width, "0000", record::Width};
  if (column == CodeColumn) return {record::Width, "", record::Width};
  if (column < LeastColumns) return {record::Width, "0", record::Width};
  return {20, "0.0000E+00", record::CovariateWidth};
}

/// A cell as text on one line; a number with the 15 significant digits that a spreadsheet keeps.
std::string CellText(const WorkbookCell& cell) {
  if (const double* number = std::get_if<double>(&cell)) return *number == 0 ? "0" : fmt::format("{:.15g}", *number);
  if (std::holds_alternative<std::monostate>(cell)) return "";
  std::string text = std::get<std::string>(cell);
  std::ranges::replace_if(
      text, [](char c) { return c == '\r' || c == '\n'; }, ' ');
  return text;
}

/// What is written for a cell, before its field is filled up with blanks.
std::string Written(const std::string& whole, const Field& field) {
  const std::string_view last = LastCharacters(whole, field.rightmost);
  if (*field.pattern != '\0')
    // The last digits of a long number would be another number.
    for (const std::string_view text : {std::string_view(whole), last})
      if (IsNumber(text)) return Format(StrictNumber(text), field.pattern);
  return std::string(FirstCharacters(last, field.width));
}

/// Whether what is written is the text of the cell, or the same number.
bool IsSame(const std::string& whole, const std::string& written) {
  return whole == written || (IsNumber(whole) && IsNumber(written) && StrictNumber(whole) == StrictNumber(written));
}

/// What a format shows of the number of a cell; null where that is the number.
const std::string* ShownAt(const Worksheet& sheet, std::size_t row, std::size_t column) {
  if (row >= sheet.shown.size()) return nullptr;
  const auto isOfColumn = [column](const auto& shown) { return shown.first == column; };
  const auto found = std::ranges::find_if(sheet.shown[row], isOfColumn);
  return found == sheet.shown[row].end() ? nullptr : &found->second;
}

}  // namespace

ConvertedSheet BroodDataText(const Worksheet& sheet) {
  ConvertedSheet result;
  for (std::size_t row = 0; row < sheet.rows.size(); ++row) {
    const auto& cells = sheet.rows[row];
    if (cells.size() < LeastColumns)
      throw RuntimeFailure(
          fmt::format("worksheet {} has {} columns, at least {} are needed", sheet.name, cells.size(), LeastColumns));
    for (std::size_t column = 0; column < cells.size(); ++column) {
      const Field field = FieldOf(column);
      const std::string whole = CellText(cells[column]);
      const std::string written = Written(whole, field);
      const int blanks = field.width - static_cast<int>(CharacterCount(written));
      const auto where = [&] {
        return fmt::format("row {}, column {} of worksheet {}: \"{}\"", row + 1, column + 1, sheet.name, Shown(whole));
      };
      if (blanks < 0) throw RuntimeFailure(fmt::format("{} has no room in {} columns", where(), field.width));
      if (const std::string* shown = ShownAt(sheet, row, column); shown != nullptr && column == CodeColumn)
        result.changes.push_back(
            fmt::format("{}, shown as \"{}\", written as \"{}\"", where(), Shown(*shown), written));
      else if (!IsSame(whole, written))
        result.changes.push_back(fmt::format("{}, written as \"{}\"", where(), written));
      if (column > 0) result.text += ',';
      result.text.append(static_cast<std::size_t>(blanks), ' ') += written;
    }
    result.text += "\r\n";
  }
  return result;
}

}  // namespace merlane
