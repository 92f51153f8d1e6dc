#pragma once

#include "import/heading.h"

namespace merlane {

/// Refuses choices that lack a column that is needed, have two where one is possible, or more covariates than there is
/// room for: RuntimeFailure, which tells what was looked for and where the names of the columns were taken from.
void RequireColumns(const ImportChoices& choices, const Heading& heading);

}  // namespace merlane
