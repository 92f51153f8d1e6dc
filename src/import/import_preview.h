#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "import/import_choices.h"

namespace merlane {

/// The beginning of a text: its heading and the rows behind it up to that many.
std::string_view Beginning(std::string_view text, const ImportChoices& choices, int rowCount);

/// What stands in the columns first, in a few words each.
std::vector<std::string> FirstValues(std::string_view text, const ImportChoices& choices);

}  // namespace merlane
