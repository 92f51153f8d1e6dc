#include "import/import_preview.h"

#include <algorithm>

#include "data/data_line.h"
#include "import/heading.h"

namespace merlane {

std::string_view Beginning(std::string_view text, const ImportChoices& choices, int rowCount) {
  DelimitedRows rows = RowsBehindHeading(text, choices);
  TextRow row;
  for (int i = 0; i < rowCount; ++i)
    if (!rows.Next(row)) return text;
  return text.substr(0, text.size() - rows.Rest().size());
}

std::vector<std::string> FirstValues(std::string_view text, const ImportChoices& choices) {
  constexpr int MostRows = 100, ValuesShown = 4;
  std::vector<std::string> values(choices.roles.size());
  std::vector<int> shown(values.size());
  DelimitedRows rows = RowsBehindHeading(text, choices);
  TextRow row;
  for (int i = 0; i < MostRows && rows.Next(row); ++i)
    for (std::size_t c = 0; c < std::min(values.size(), row.fields.size()); ++c) {
      if (row.fields[c].empty() || ++shown[c] > ValuesShown) continue;
      const bool asShown =
          choices.roles[c] == Role::Code || choices.roles[c] == Role::CodePart || choices.roles[c] == Role::Unused;
      values[c] += (values[c].empty() ? "" : "  ") + Shown(asShown ? row.Shown(c) : row.fields[c]);
    }
  return values;
}

}  // namespace merlane
