#pragma once

#include "data/brood_data.h"

namespace merlane {

/// Replaces each covariate by its standard anomaly: its distance from the mean of all broods in (population) standard
/// deviations. Missing values stay. RuntimeFailure for a covariate without values or without variation.
void StandardiseCovariates(BroodData& data);

}  // namespace merlane
