#pragma once

#include <string_view>

#include "import/visit_record.h"

namespace merlane {

/// Whether a word such as "egg", "incubation", "nestlings" or "Küken" is one of eggs or of young, in the languages of
/// the headings; Stage::Untold for any other.
Stage StageIn(std::string_view word);

}  // namespace merlane
