#include "minimise/evaluate_trial.h"

#include "base/arithmetic.h"

namespace merlane {

void SetFree(Array1<double>& vector, const Array1<double>& trial, const FreeParameters& free) {
  for (int i = 1; i <= free.NFREE; ++i) vector(free.FreeIndex(i)) = Checked(trial(i));
}

double TrialEvaluator::EvaluateTrial(const Array1<double>& trial) {
  ++NF;
  TrialVector_ = state_.algorithm.Value;
  SetFree(TrialVector_, trial, state_.free);
  return Evaluate(TrialVector_, NF);
}

double TrialEvaluator::Evaluate(Array1<double>& vector, std::int32_t code) {
  ++calls;
  return Checked(objective_(vector, code));
}

}  // namespace merlane
