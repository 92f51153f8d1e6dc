#pragma once

#include <string>

#include "base/array1.h"
#include "control/run_state.h"

namespace merlane {

/// The free parameters in a text pane: a row each, with number, value (`values`, 1..NFREE) and fuse.
std::string PaneRows(const RunState& state, const Array1<double>& values);

/// The free parameters in the log: four to a row, with number and value.
std::string LogRows(const RunState& state, const Array1<double>& values);

}  // namespace merlane
