#include "import/heading.h"

#include <fmt/format.h>

#include <algorithm>
#include <set>

namespace merlane {
namespace {

std::size_t Filled(const TextRow& row) {
  return row.fields.size() - static_cast<std::size_t>(std::ranges::count(row.fields, std::string()));
}

/// Whether rows with a field more than the heading begin with their names, as R writes them: no two are the same. A
/// field more at the end is empty where rows end with a delimiter.
bool HaveNames(const std::vector<TextRow>& rows, std::size_t named) {
  std::set<std::string> names;
  bool endsEmpty = true;
  for (const TextRow& row : rows) {
    if (row.fields.size() != named + 1 || !names.insert(row.fields.front()).second) return false;
    endsEmpty = endsEmpty && row.fields.back().empty();
  }
  return named > 0 && !rows.empty() && !endsEmpty;
}

}  // namespace

std::size_t TitleRows(const std::vector<TextRow>& rows) {
  std::vector<std::size_t> filled;
  for (const TextRow& row : rows) filled.push_back(Filled(row));
  std::ranges::sort(filled);
  std::size_t titles = 0;
  while (titles < rows.size() && 2 * Filled(rows[titles]) < filled[filled.size() / 2]) ++titles;
  return titles;
}

Heading HeadingOf(const std::vector<TextRow>& rows, const ImportChoices& choices) {
  Heading heading;
  if (choices.heading && !rows.empty()) {
    const std::size_t titles = std::min(TitleRows(rows), rows.size() - 1);
    heading.rows = titles + 1;
    heading.line = rows[titles].line;
    for (const std::string& field : rows[titles].fields) heading.names.push_back(OnOneLine(field));
  }
  const std::vector<TextRow> below(rows.begin() + static_cast<std::ptrdiff_t>(heading.rows), rows.end());
  heading.rowsHaveNames = choices.sheet.empty() && HaveNames(below, heading.names.size());
  if (heading.rowsHaveNames) heading.names.insert(heading.names.begin(), "");
  std::size_t columns = UsualFields(below);
  heading.fields = heading.rows > 0 ? heading.names.size() : columns;
  if (!choices.sheet.empty())  // whose rows end with the last cell that holds something
    for (const TextRow& row : below) columns = std::max(columns, row.fields.size());
  heading.names.resize(std::max(heading.names.size(), columns));
  return heading;
}

Heading HeadingOf(std::string_view text, const ImportChoices& choices) {
  const std::vector<TextRow> rows = RowsAtStart(text, choices.delimiter, RowsLookedAt);
  return HeadingOf(rows, choices);
}

DelimitedRows RowsBehindHeading(std::string_view text, const ImportChoices& choices) {
  DelimitedRows rows(text, choices.delimiter);
  TextRow row;
  for (std::size_t i = HeadingOf(text, choices).rows; i > 0; --i) rows.Next(row);
  return rows;
}

std::vector<std::string> ColumnNames(std::string_view text, const ImportChoices& choices) {
  std::vector<std::string> names = HeadingOf(text, choices).names;
  names.resize(std::max(names.size(), choices.roles.size()));
  for (std::size_t c = 0; c < names.size(); ++c)
    if (names[c].empty()) names[c] = fmt::format("Column {}", c + 1);
  return names;
}

}  // namespace merlane
