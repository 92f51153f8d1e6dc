#pragma once

#include <optional>
#include <string>
#include <vector>

#include "control/run_state.h"

namespace merlane {

/// Takes the text of an algorithm file into the run, whose fuses and free parameters are made anew. A tolerance below a
/// millionth becomes an absolute one of a millionth. False, with the run's algorithm data perhaps half read, when the
/// text is not in order.
bool TakeSavedAlgorithm(const std::string& text, RunState& run);

/// The same with the run's algorithm file as it is on the disk at this moment; returns the text that was read. None
/// when the file is missing or not in order.
std::optional<std::string> ReadSavedAlgorithm(RunState& run);

/// Numbers of the parameters whose value or step in the run is not that of `saved`, the same run read from its file,
/// beyond the digits that files keep, and of those that another parameter moves there. Where sizes of steps do not
/// matter, all steps but 0 are the same.
enum class Steps { BySize, ByBeingFree };
std::vector<int> UnsavedParameters(const RunState& run, const RunState& saved, Steps steps = Steps::BySize);

}  // namespace merlane
