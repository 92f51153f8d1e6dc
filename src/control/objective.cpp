#include "control/objective.h"

#include "base/at_end.h"
#include "base/number_text.h"
#include "base/runtime_failure.h"
#include "control/fuses.h"

namespace merlane {

double Objective::operator()(Array1<double>& vector, std::int32_t NF) {
  RequireData();
  ApplyFuses(vector, state_);
  const double F = Call(vector, NF);
  return state_.flags.BayesOn ? F + priorTerm(vector) : F;
}

void Objective::RequireData() const {
  if (state_.flags.SimulationMode)
    throw RuntimeFailure("data are simulated here, so there are none to fit. Initialize with a data file");
}

double Objective::Call(Array1<double>& vector, std::int32_t NF, double F) {
  if (NF == 0) state_.reading = ++taken_;
  AlgorithmData& a = state_.algorithm;
  ModelCall call{F,
                 vector,
                 a.Step,
                 a.ParName,
                 a.Fuse,
                 a.NPAR,
                 NF,
                 state_.flags.NOBS,
                 state_.Gradient,
                 state_.Hessian,
                 state_.flags.SampleSize};
  if (!known || !known(call)) model_(call);
  return F;
}

void Objective::Announce(std::vector<Array1<double>> vectors, std::int32_t NF) const {
  if (!ahead || known) return;
  for (Array1<double>& vector : vectors) ApplyFuses(vector, state_);
  ahead(vectors, NF);
}

Basis Objective::Present() const {
  std::string priors = state_.flags.BayesOn ? priorsInForce() : "";
  if (!priors.empty()) priors += " x " + Shortest(state_.flags.ObjectiveConstant);
  return BasisOf(state_, priors);
}

Basis Objective::PresentToShow() const {
  Basis present = Present();
  present.besideAlgName = besideAlgName();
  return present;
}

Basis Objective::UsersPresent() const {
  const auto& pinned = state_.profile.pinned;
  if (!pinned) return Present();
  AlgorithmData& a = state_.algorithm;
  const auto ownValue = Meanwhile(a.Value(pinned->parameter), pinned->value);  // which its followers take, too
  const auto ownStep = Meanwhile(a.Step(pinned->parameter), pinned->step);
  return Present();
}

}  // namespace merlane
