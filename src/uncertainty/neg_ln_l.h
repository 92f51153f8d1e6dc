#pragma once

#include "control/objective.h"
#include "control/run_state.h"

namespace merlane {

/// Why a sum of squares gives no likelihood, and where that is told.
class ConstantWatch {
 public:
  virtual ~ConstantWatch() = default;
  /// No degree of freedom is left: the constant is not positive.
  virtual void OnBadConstant() {}
};

/// -ln[L] at `vector` (1..NPAR), which the fuses and the model may rewrite: the objective, called as the first of a
/// run, and the prior term when priors are on, which is on the scale of the objective, both over the run's
/// ObjectiveConstant. So a prior counts exactly as much as in a minimisation. A sum of squares (NOBS above 0) sets the
/// constant from its degrees of freedom each time. RuntimeFailure when there is no finite result.
double NegLnL(Array1<double>& vector, RunState& state, Objective& objective, ConstantWatch& watch);

}  // namespace merlane
