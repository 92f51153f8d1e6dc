#pragma once

#include "control/run_state.h"
#include "data/brood_data.h"

namespace merlane {

/// A data set and the algorithm data to start a fit of it from.
struct Example {
  BroodData data;
  AlgorithmData algorithm;
};

/// Broods of 1995 and 1996 with three covariates. RuntimeFailure when the files are not there.
Example ReadExample();

}  // namespace merlane
