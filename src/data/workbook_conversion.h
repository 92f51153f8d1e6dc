#pragma once

#include <string>
#include <vector>

#include "platform/workbooks.h"

namespace merlane {

/// A worksheet as the text of a brood data file.
struct ConvertedSheet {
  std::string text;
  /// What could not be written as it stands in its cell, with its place and what was written.
  std::vector<std::string> changes;
};

/// The text of a brood data file with fixed columns made from a worksheet whose columns stand in the order of that
/// format and whose first row holds the field identifiers. Texts are cut to their last characters; a covariate keeps
/// five significant digits. RuntimeFailure when the sheet has fewer than six columns or a number that has no room.
ConvertedSheet BroodDataText(const Worksheet& sheet);

}  // namespace merlane
