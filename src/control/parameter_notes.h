#pragma once

#include "control/run_state.h"

namespace merlane {

/// A function call notes in the descriptions of parameters which are to be estimated. Those that are free now and were
/// not `before`, or the reverse, or are held at another value, get their description `plain` again: what was noted of
/// them does not hold. Nothing is taken back where `before` is of another number of parameters, or empty.
void TakeBackNotes(AlgorithmData& algorithm, const AlgorithmData& before, const Array1<std::string>& plain);

}  // namespace merlane
