#pragma once

#include "control/objective.h"
#include "control/run_state.h"

namespace merlane {

/// Overwrites the free parameters of a full vector (1..NPAR) with `trial` (1..NFREE).
void SetFree(Array1<double>& vector, const Array1<double>& trial, const FreeParameters& free);

/// The evaluations of one run of a minimiser, and their count.
class TrialEvaluator {
 public:
  TrialEvaluator(const RunState& state, Objective& objective) : state_(state), objective_(objective) {}

  /// The objective where the free parameters are `trial` and all others as in Value, neither of which it changes.
  /// Raises NF by one and passes it to the model. RuntimeFailure when a coordinate or the objective is not finite.
  double EvaluateTrial(const Array1<double>& trial);

  /// The objective at a full vector, which the fuses and the model may rewrite, under a function-call code of the
  /// caller's; leaves NF alone. RuntimeFailure when the objective is not finite.
  double Evaluate(Array1<double>& vector, std::int32_t code);

  std::int32_t NF = 0;     // the running count that the model sees
  std::int32_t calls = 0;  // all evaluations

 private:
  const RunState& state_;
  Objective& objective_;
  Array1<double> TrialVector_;
};

}  // namespace merlane
