#include "program/fit.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "base/arithmetic_failure.h"
#include "base/at_end.h"
#include "base/number_text.h"
#include "base/runtime_failure.h"
#include "base/text.h"
#include "bootstrap/saved_model.h"
#include "control/fuses.h"
#include "data/data_digest.h"
#include "minimise/evaluate_trial.h"
#include "priors/priors_file.h"
#include "program/program.h"
#include "survival/catalogue.h"
#include "survival/parameter_layout.h"

namespace merlane {
namespace {

constexpr const char* AgesMoved =
    "      An age at laying or fledging was free, and visits that it left out kept the prediction of an earlier call.\n"
    "      Give ages a step of 0, and minimize at each age that is possible\n";

constexpr const char* BroughtToLimit =
    "      A value beyond its limit was penalised and brought back to it, where there is no penalty.\n"
    "      Minimize again from these values\n";

/// Whether a search moves this parameter.
bool IsMoved(const AlgorithmData& a, int parameter) {
  for (int i = 1; i <= a.NPAR; ++i)
    if (a.Step(i) != 0 && LeaderOf(a.Fuse, i) == LeaderOf(a.Fuse, parameter)) return true;
  return false;
}

/// Why the objective that a search has reached at these values need not be that of one call; null when it is.
const char* MayBeAnother(const AlgorithmData& a, const Array1<double>& values) {
  if (IsMoved(a, parameter::LayAge) || IsMoved(a, parameter::FledgeAge)) return AgesMoved;
  for (const int i : CappedAtOne)
    if (values(i) == 1 && IsMoved(a, i)) return BroughtToLimit;
  return nullptr;
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
  if (likelihood.BestObjective + fit.prior == reached)
    fit.penalty = likelihood.BestPenalty;
  else if (const std::optional<Outcome> once = EvaluateOnce(state.algorithm.Value))
    fit.penalty = once->penalty;
  if (fit.minimisation->ending == EndingText(SimplexEnding::Minimum))
    fitsMade.Keep(EvaluatedEstimates(), PresentProvenance());
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

std::optional<Program::Outcome> Program::EvaluateOnce(Array1<double> values) {
  const auto search = Meanwhile(state.flags.OneCallRun, false);
  const auto silently = model.Silently();
  const AtEnd putBack([this, kept = model.Keep(), own = priors, sampleSize = state.flags.SampleSize]() mutable {
    model.PutBack(std::move(kept));
    priors = std::move(own);
    state.flags.SampleSize = sampleSize;
  });
  try {
    const double F = objective(values, 1);
    return Outcome{F, model.Evaluated().Penalty};
  } catch (const ArithmeticFailure&) {
    return {};
  }
}

std::optional<CarriedOver> Program::CarriedOverBy(const Array1<double>& values) {
  const char* const why = MayBeAnother(state.algorithm, values);
  if (why == nullptr) return {};
  const std::optional<Outcome> once = EvaluateOnce(values);
  return CarriedOver{once ? once->F : UnevaluatedF, why};
}

AlgorithmData Program::EvaluatedEstimates() const {
  AlgorithmData estimates = state.algorithm;
  estimates.Value = objective.Present().Value;
  estimates.Value = model.AsEvaluated(estimates);
  return estimates;
}

Array1<std::string> Program::DescriptionsOfCatalogue() const {
  Array1<std::string> Names(state.algorithm.NPAR);
  FillParameterDescriptions(Names, state.algorithm.NPAR, model.data);
  return Names;
}

Provenance Program::PresentProvenance() const {
  Provenance present{DigestOf(model.data), std::string(FileName(model.data.DataFileName)), ""};
  // As far as files keep them: priors that have been saved and loaded again are no others. Without a constant they
  // count for nothing, and with another one for more or less.
  const RunFlags& flags = state.flags;
  if (flags.BayesOn && flags.ObjectiveConstant != 0 && priors.AnySet())
    present.priors = PriorsInFile(priors) + Shortest(flags.ObjectiveConstant);
  return present;
}

std::string Program::SinceSaved() const {
  if (state.algorithm.AlgName.empty()) return "";
  RunState present = state, saved = state;
  if (!TakeSavedAlgorithm(algorithmCommands.TextOfFile(), saved)) return " (not saved)";
  try {
    for (RunState* run : {&present, &saved}) run->algorithm.Value = model.AsEvaluated(run->algorithm);
  } catch (const RuntimeFailure&) {
    return " (changed since)";  // the model can read the values in the run, and not those in the file
  }
  return UnsavedParameters(present, saved, Steps::ByBeingFree).empty() ? "" : " (changed since)";
}

std::string Program::BesideAlgName() const {
  try {
    const AlgorithmData estimates = EvaluatedEstimates();
    const Provenance present = PresentProvenance();
    std::string beside = SinceSaved();
    if (const std::string file = fitsMade.OtherData(estimates, present); !file.empty())
      beside += fmt::format(" (its estimates were fitted to other data, those of {})", file);
    if (const std::string how = fitsMade.OtherPriors(estimates, present, "these results are"); !how.empty())
      beside += fmt::format(" (its estimates were fitted {})", how);
    return beside;
  } catch (const RuntimeFailure&) {
    return "";  // values that the model cannot read: what is done with them tells of it
  }
}

}  // namespace merlane
