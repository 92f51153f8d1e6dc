#pragma once

#include <string>

#include "layouts/layout.h"

namespace merlane {

/// A layout as JSON for the page, by the names that its style sheet has for kinds and looks of boxes.
std::string LayoutText(const Layout& layout);

}  // namespace merlane
