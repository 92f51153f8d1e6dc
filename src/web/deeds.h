#pragma once

#include <string>
#include <vector>

#include "forms/desk.h"

namespace merlane {

/// Brings to the desk what a person did on the page: the deed, the form, mostly the control, and what goes with it, as
/// the page words it (src/web/page/windows.js). What does not fit, since the form has changed meanwhile, is passed
/// over.
void Do(Desk& desk, const std::vector<std::string>& words);

}  // namespace merlane
