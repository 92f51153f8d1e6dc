#pragma once

#include <string>

#include "platform/workbooks.h"

namespace merlane {

/// The text of a brood data file with fixed columns made from a worksheet whose columns stand in the order of that
/// format and whose first row holds the field identifiers. Cells are cut to their rightmost characters before they are
/// formatted; a covariate keeps five significant digits. RuntimeFailure when the sheet has fewer than six columns.
std::string BroodDataText(const Worksheet& sheet);

}  // namespace merlane
