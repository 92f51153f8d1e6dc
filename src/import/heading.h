#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "import/import_choices.h"

namespace merlane {

/// The rows by which a file's heading and columns are judged.
inline constexpr std::size_t RowsLookedAt = 200;

/// What stands above the rows of a text.
struct Heading {
  std::size_t rows = 0;            // up to where the columns' names stand, titles above them included; 0: no heading
  int line = 0;                    // on which the names stand
  std::vector<std::string> names;  // of all columns, each on one line, empty where there is none
  bool rowsHaveNames = false;      // in front of the first column that the heading names
  std::size_t fields = 0;          // of its row, empty ones included; without a heading, of most rows
};
Heading HeadingOf(std::string_view text, const ImportChoices& choices);
/// The same of a text that begins with these rows.
Heading HeadingOf(const std::vector<TextRow>& rows, const ImportChoices& choices);

/// How many rows at the start are titles: of less than half of what other rows hold.
std::size_t TitleRows(const std::vector<TextRow>& rows);

/// The rows of a text without its heading and what stands above that.
DelimitedRows RowsBehindHeading(std::string_view text, const ImportChoices& choices);

/// The names of a text's columns: its heading, or their numbers.
std::vector<std::string> ColumnNames(std::string_view text, const ImportChoices& choices);

}  // namespace merlane
