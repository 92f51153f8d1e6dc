#pragma once

#include <string>

#include "priors/distributions.h"

namespace merlane {

/// The review of the priors at `values` (1..NPAR): how far each estimate lies from the most likely value of its prior,
/// as -ln[L] times the constant. Evaluates the priors. The closing figure is the sum of the lines, penalties outside a
/// domain included.
std::string PriorReview(const Array1<double>& values, double ObjectiveConstant, Priors& priors);

}  // namespace merlane
