#pragma once

#include <string_view>

#include "import/import_choices.h"

namespace merlane {

/// What a file seems to be, by its bytes.
ImportChoices ProposedChoices(std::string_view bytes);

/// Proposes the decimal mark, the heading, the order of dates and the roles of a text anew, its delimiter and encoding
/// being as chosen. A column gets a role when its heading may mean that and what stands below fits; where several would
/// have a role that one can have, the surest.
void ProposeColumns(std::string_view text, ImportChoices& choices);

}  // namespace merlane
