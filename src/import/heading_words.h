#pragma once

#include <string_view>

#include "import/import_choices.h"

namespace merlane {

/// What a column seems to be by the words of its heading, such as "Nest no." or "Hatched on": a role when all words
/// belong to it and one of them names it, so that "Nest height" is none. Unused when there is no such role.
Role RoleByWords(std::string_view heading);

}  // namespace merlane
