#include "program/fit.h"

#include <algorithm>
#include <utility>

#include "base/arithmetic_failure.h"
#include "base/at_end.h"
#include "base/text.h"
#include "data/data_digest.h"
#include "minimise/evaluate_trial.h"
#include "model/catalogue.h"
#include "model/parameter_layout.h"
#include "program/program.h"

namespace merlane {
namespace {

constexpr const char* AgesMoved =
    "      An age at laying or fledging was free, and visits that it left out kept the prediction of an earlier call.\n"
    "      Give ages a step of 0, and minimize at each age that is possible\n";

/// Whether a search moves one of the ages between which visits are judged.
bool AgesAreFree(const AlgorithmData& a) {
  const auto follows = [&a](int age, int i) {
    return i == age || (a.Fuse(age) != Unfused && a.Fuse(i) == a.Fuse(age));
  };
  for (const int age : {parameter::LayAge, parameter::FledgeAge})
    for (int i = 1; i <= a.NPAR; ++i)
      if (a.Step(i) != 0 && follows(age, i)) return true;
  return false;
}

}  // namespace

void Program::KeepFit(double reached, std::optional<Minimisation> minimisation) {
  const LikelihoodState& likelihood = model.Evaluated();
  const auto free = std::ranges::count_if(state.algorithm.Step, [](double step) { return step != 0; });
  fit = {.basis = objective.Present(),
         .minimisation = std::move(minimisation),
         .objective = reached,
         .ofOneCall = {},
         .penalty = likelihood.Penalty,
         .prior = state.flags.BayesOn ? priors.PriorTotal : 0,
         .sampleSize = state.flags.SampleSize,
         .eggsAtRisk = likelihood.EggsAtRisk,
         .juvenilesAtRisk = likelihood.JuvsAtRisk,
         .clutchIntervals = likelihood.survival.ClutchIntervals,
         .broodIntervals = likelihood.survival.BroodIntervals,
         .freeParameters = static_cast<std::int32_t>(free)};
}

void Program::KeepSearch(double reached, Minimisation minimisation) {
  KeepFit(reached, std::move(minimisation));
  // What was evaluated last need not be where the search has ended.
  if (state.flags.BayesOn) fit.prior = objective.priorTerm(EvaluatedEstimates().Value);
  const LikelihoodState& likelihood = model.Evaluated();
  if (likelihood.BestObjective + fit.prior == reached) fit.penalty = likelihood.BestPenalty;
  if (fit.minimisation->ending == EndingText(SimplexEnding::Minimum))
    fitsMade.Keep(EvaluatedEstimates(), PresentData());
  const std::optional<CarriedOver> carried = CarriedOverBy(state.algorithm.Value);
  if (carried && carried->calledOnce != reached) fit.ofOneCall = carried->calledOnce;
}

BestTables Program::TablesAtFit() {
  const BestTables& best = model.Evaluated().best;
  if (!fit.basis || fit.basis->reading != state.reading || AllZero(fit.basis->Value)) return best;
  if (fit.basis->priors.empty() && model.Evaluated().BestObjective == fit.objective) return best;
  const auto values = Meanwhile(state.algorithm.Value, fit.basis->Value);
  const auto steps = Meanwhile(state.algorithm.Step, fit.basis->Step);
  Array1<double> Value = model.AsEvaluated(state.algorithm);
  if (best.Value == Value) return best;
  const auto sampleSize = Meanwhile(state.flags.SampleSize, state.flags.SampleSize);
  const AtEnd putBack([this, kept = model.Keep()]() mutable { model.PutBack(std::move(kept)); });
  objective.Call(Value, 1);
  return model.Evaluated().best;
}

std::optional<CarriedOver> Program::CarriedOverBy(const Array1<double>& values) {
  if (!AgesAreFree(state.algorithm)) return {};
  const AtEnd putBack([this, kept = model.Keep(), own = priors, sampleSize = state.flags.SampleSize]() mutable {
    model.PutBack(std::move(kept));
    priors = std::move(own);
    state.flags.SampleSize = sampleSize;
  });
  Array1<double> Value = values;
  try {
    return CarriedOver{objective(Value, 1), AgesMoved};
  } catch (const ArithmeticFailure&) {
    return CarriedOver{UnevaluatedF, AgesMoved};
  }
}

AlgorithmData Program::EvaluatedEstimates() const {
  AlgorithmData estimates = state.algorithm;
  estimates.Value = objective.Present().Value;
  estimates.Value = model.AsEvaluated(estimates);
  return estimates;
}

FitsMade::Data Program::PresentData() const {
  return {DigestOf(model.data), std::string(FileName(model.data.DataFileName))};
}

}  // namespace merlane
