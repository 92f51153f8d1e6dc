#pragma once

#include <string>
#include <vector>

#include "platform/workbooks.h"

namespace merlane {

/// Worksheets as bytes, in which they pass from one process to another on the same machine.
std::string PackWorksheets(const std::vector<Worksheet>& sheets);

/// The worksheets that were packed. RuntimeFailure when the bytes end too early.
std::vector<Worksheet> UnpackWorksheets(std::string bytes);

}  // namespace merlane
