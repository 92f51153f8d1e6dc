#include "minimise/evaluate_trial.h"

#include <limits>
#include <string>
#include <utility>

#include "base/arithmetic.h"
#include "base/arithmetic_failure.h"

namespace merlane {

void SetFree(Array1<double>& vector, const Array1<double>& trial, const FreeParameters& free) {
  for (int i = 1; i <= free.NFREE; ++i) vector(free.FreeIndex(i)) = Checked(trial(i));
}

template <class Evaluation>
double TrialEvaluator::OrUnevaluated(const Evaluation& evaluate) {
  try {
    return evaluate();
  } catch (const ArithmeticFailure&) {
    return Unevaluated();
  }
}

template <class Evaluation>
double TrialEvaluator::OrNoStart(const Evaluation& evaluate) {
  try {
    const double F = evaluate();
    GoOnFrom(F);
    return F;
  } catch (const ArithmeticFailure& failure) {
    throw ArithmeticFailure(std::string("the starting point cannot be evaluated: ") + failure.what());
  }
}

double TrialEvaluator::EvaluateTrial(const Array1<double>& trial) {
  return OrUnevaluated([&] { return At(trial); });
}

double TrialEvaluator::Evaluate(Array1<double>& vector, std::int32_t code) {
  return OrUnevaluated([&] { return At(vector, code); });
}

void TrialEvaluator::Announce(const std::vector<Array1<double>>& trials) const {
  std::vector<Array1<double>> vectors(trials.size(), state_.algorithm.Value);
  for (std::size_t t = 0; t < trials.size(); ++t)
    for (int i = 1; i <= state_.free.NFREE; ++i) vectors[t](state_.free.FreeIndex(i)) = trials[t](i);
  objective_.Announce(std::move(vectors), NF + 1);
}

double TrialEvaluator::EvaluateStart(const Array1<double>& trial) {
  return OrNoStart([&] { return At(trial); });
}

double TrialEvaluator::EvaluateStart(Array1<double>& vector, std::int32_t code) {
  return OrNoStart([&] { return At(vector, code); });
}

void TrialEvaluator::GoOnFrom(double F) {
  if (F >= UnevaluatedF) unevaluatedF_ = std::numeric_limits<double>::max();
}

double TrialEvaluator::Unevaluated() {
  ++unevaluated;
  return unevaluatedF_;
}

double TrialEvaluator::At(const Array1<double>& trial) {
  ++NF;
  TrialVector_ = state_.algorithm.Value;
  SetFree(TrialVector_, trial, state_.free);
  return At(TrialVector_, NF);
}

double TrialEvaluator::At(Array1<double>& vector, std::int32_t code) {
  ++calls;
  return Checked(objective_(vector, code));
}

}  // namespace merlane
