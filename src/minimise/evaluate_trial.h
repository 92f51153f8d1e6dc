#pragma once

#include <vector>

#include "control/objective.h"
#include "control/run_state.h"

namespace merlane {

/// What a trial point counts as where the objective cannot be evaluated, so that a search turns away from it; of a run
/// whose start is no better than that, the largest number.
inline constexpr double UnevaluatedF = 1E+30;

/// Overwrites the free parameters of a full vector (1..NPAR) with `trial` (1..NFREE).
void SetFree(Array1<double>& vector, const Array1<double>& trial, const FreeParameters& free);

/// The evaluations of one run of a minimiser, and their count. A point counts as UnevaluatedF when its coordinates or
/// the objective there are no numbers, or when the model meets an ArithmeticFailure; other failures end the run.
class TrialEvaluator {
 public:
  TrialEvaluator(const RunState& state, Objective& objective) : state_(state), objective_(objective) {}

  /// The objective where the free parameters are `trial` and all others as in Value, neither of which it changes.
  /// Raises NF by one and passes it to the model.
  double EvaluateTrial(const Array1<double>& trial);

  /// The objective at a full vector, which the fuses and the model may rewrite, under a function-call code of the
  /// caller's; leaves NF alone.
  double Evaluate(Array1<double>& vector, std::int32_t code);

  /// The trials that will be evaluated next; see Objective::Announce.
  void Announce(const std::vector<Array1<double>>& trials) const;

  // Both as above where a run cannot do without the objective, such as at its start: ArithmeticFailure, which says that
  // it is the starting point, when it cannot be evaluated.
  double EvaluateStart(const Array1<double>& trial);
  double EvaluateStart(Array1<double>& vector, std::int32_t code);

  /// The run goes on from a point where the objective is known.
  void GoOnFrom(double F);

  /// Counts a trial for which there is not even a point.
  double Unevaluated();

  std::int32_t NF = 0;           // the running count that the model sees
  std::int32_t calls = 0;        // all evaluations
  std::int32_t unevaluated = 0;  // points that counted as UnevaluatedF

 private:
  /// What `evaluate` gives, or UnevaluatedF.
  template <class Evaluation>
  double OrUnevaluated(const Evaluation& evaluate);
  template <class Evaluation>
  double OrNoStart(const Evaluation& evaluate);

  double At(const Array1<double>& trial);
  double At(Array1<double>& vector, std::int32_t code);

  const RunState& state_;
  Objective& objective_;
  Array1<double> TrialVector_;
  double unevaluatedF_ = UnevaluatedF;
};

}  // namespace merlane
