#pragma once

#include "control/run_state.h"
#include "forms/desk.h"

namespace merlane {

/// True when every step is 0: no parameter is free, and there is nothing to estimate.
bool NothingIsFree(const AlgorithmData& a);

/// Tells so.
void TellNothingToDo(Desk& desk);

}  // namespace merlane
