#pragma once

#include "control/run_state.h"

namespace merlane {

/// A function call notes in the descriptions of parameters which are to be estimated. Those that are free now and were
/// not `before`, or the reverse, or are held at another value, get their description `plain` again: what was noted of
/// them does not hold. All have the same number of parameters.
void TakeBackNotes(AlgorithmData& algorithm, const AlgorithmData& before, const Array1<std::string>& plain);

}  // namespace merlane
