#include "likelihood/likelihood.h"

#include <utility>

#include "base/arithmetic.h"
#include "base/at_end.h"
#include "likelihood/first_evaluation.h"
#include "survival/catalogue.h"

namespace merlane {

Likelihood::Likelihood(const BroodData& data, Workers* workers, std::shared_ptr<EvaluationPlans> plans)
    : data_(data), plans_(plans ? std::move(plans) : std::make_shared<EvaluationPlans>(data)), workers_(workers) {}

void Likelihood::EvaluateObjective(const EvaluationSetting& setting, LikelihoodState& state, double& F,
                                   Array1<double>& Value, Array1<double>& Step, Array1<std::string>& Names,
                                   Array1<std::string>& Fuse, std::int16_t NPAR, std::int32_t NF,
                                   std::int32_t& SampleSize) {
  F = 0;
  state.Penalty = 0;
  if (AllZero(Value)) {
    if (NF == 1) SampleSize = 0;  // not that of an evaluation made before
    return;
  }

  DecodeParameters(Value, Step, ParameterLayout(data_), state.parameters, state.Penalty);
  const bool withoutTables = EvaluateWithoutTables(setting, state, F, Value, NF);
  if (!withoutTables) EvaluateByTables(setting, state, F, Value, Step, Names, Fuse, NPAR, NF);
  if (NF != 1 && F >= state.BestObjective) return;
  state.KeepBestVector(Value);  // the first time it asks for memory, before anything is the best
  state.BestObjective = F;
  state.BestPenalty = state.Penalty;
  SampleSize = ToInt32(static_cast<double>(state.EggsAtRisk) + state.JuvsAtRisk);
  state.owed.best = state.owed.bestIsLast = withoutTables;
  state.owed.bestInBootstrap = setting.BootstrapMode;
  if (!withoutTables) state.KeepBestTables();
}

bool Likelihood::EvaluateWithoutTables(const EvaluationSetting& setting, LikelihoodState& state, double& F,
                                       const Array1<double>& Value, std::int32_t NF) {
  const Parameters& p = state.parameters;
  const LikelihoodState::Ages ages{p.LayAge, p.FledgeAge};
  if (setting.SimulationMode || (NF == 1 && setting.OneCallRun)) return false;  // which look at the tables themselves
  if (NF != 1 && state.filledBetween != ages) return false;

  const ObjectivePlan::Subject subject = SubjectOf(p, survivalPass_);
  lastWasShared_ = subject.broodsShareMortalities;
  ObjectivePass& pass = *PassesFor(subject).front();
  std::optional<double> sum = noted_ ? noted_->Find(Value, setting.BootstrapMode, NF == 1) : std::nullopt;
  if (!sum) {
    const std::optional<double>* known = ahead_ ? ahead_->Find(Value, {setting.BootstrapMode, NF == 1}) : nullptr;
    sum = known != nullptr ? *known : pass.Sum(p, setting.BootstrapMode, NF == 1);
    if (!sum) return false;
    if (noted_) noted_->Note(Value, setting.BootstrapMode, NF == 1, *sum);
  }
  // Beyond the survival tables, which are preset, other visits may have entries if other ages were judged between.
  if (NF == 1 && state.filledBetween != ages) FillTables(state);
  if (NF == 1) {
    state.owed.preset = true;
    state.filledBetween = ages;
    state.YoungestAge = 0;
  }
  state.owed.ofLast = p;  // the first time it asks for memory, before anything is owed
  state.owed.last = true;
  state.owed.bestIsLast = false;
  state.owed.lastInBootstrap = setting.BootstrapMode;
  state.EggsAtRisk = pass.Plan().EggsAtRisk;
  state.JuvsAtRisk = pass.Plan().JuvsAtRisk;
  F = Checked(*sum + state.Penalty);
  if (setting.turn) setting.turn(1 + pass.Plan().turns);
  return true;
}

void Likelihood::EvaluateByTables(const EvaluationSetting& setting, LikelihoodState& state, double& F,
                                  Array1<double>& Value, Array1<double>& Step, Array1<std::string>& Names,
                                  Array1<std::string>& Fuse, std::int16_t NPAR, std::int32_t NF) {
  FillTables(state);
  const auto fillSurvivalTables = [&] {
    survivalPass_.FillSurvivalTables(state.parameters, setting.BootstrapMode, setting.turn, state.survival,
                                     state.Penalty);
    const LikelihoodState::Ages ages{state.parameters.LayAge, state.parameters.FledgeAge};
    if (state.filledBetween != ages) state.filledBetween.reset();
  };
  if (NF == 1) {
    state.filledBetween = {state.parameters.LayAge, state.parameters.FledgeAge};
    BeginEvaluations(data_, state, setting, fillSurvivalTables, Value, Step, Names, Fuse, NPAR);
  }
  fillSurvivalTables();
  state.EggsAtRisk = state.JuvsAtRisk = 0;
  if (setting.SimulationMode) return;
  likelihoodPass_.Do_Likelihoods(setting, NF, state, F);
  F = Checked(F + state.Penalty);
}

void Likelihood::FillTables(LikelihoodState& state) {
  if (!state.owed.last) return;
  if (std::exchange(state.owed.preset, false)) state.Preset();
  const bool best = std::exchange(state.owed.best, false);
  if (best && !state.owed.bestIsLast) {
    FillFrom(state.best.parameters, state.owed.bestInBootstrap, state);
    state.KeepBestTables();
  }
  FillFrom(state.owed.ofLast, state.owed.lastInBootstrap, state);
  if (best && state.owed.bestIsLast) state.KeepBestTables();
  state.owed.last = false;
}

void Likelihood::FillFrom(Parameters& parameters, bool BootstrapMode, LikelihoodState& state) {
  std::swap(state.parameters, parameters);
  const AtEnd putBack([&, Penalty = state.Penalty, eggs = state.EggsAtRisk, juveniles = state.JuvsAtRisk] {
    std::swap(state.parameters, parameters);
    state.Penalty = Penalty;
    state.EggsAtRisk = eggs;
    state.JuvsAtRisk = juveniles;
  });
  EvaluationSetting nobodyAsks;
  nobodyAsks.BootstrapMode = BootstrapMode;
  nobodyAsks.tell = [](const Message&) {};
  constexpr int notTheFirst = 2;  // at which no sums are tested
  double F = 0;
  survivalPass_.FillSurvivalTables(state.parameters, BootstrapMode, {}, state.survival, state.Penalty);
  likelihoodPass_.Do_Likelihoods(nobodyAsks, notTheFirst, state, F);
}

void Likelihood::EvaluateAhead(const EvaluationSetting& setting, std::span<const Array1<double>> vectors,
                               const Array1<double>& Step, std::int32_t NF) {
  const bool byTables = setting.SimulationMode || (NF == 1 && setting.OneCallRun);
  if (workers_ == nullptr || workers_->Count() < 2 || vectors.size() < 2 || byTables) return;
  if (!ahead_) ahead_.emplace(data_, survivalPass_, *workers_);
  SumsAhead::Passes& passes = lastWasShared_ ? sharedPasses_ : ownPasses_;
  if (passes.empty()) return;
  const std::shared_ptr<const ObjectivePlan> plan = passes.front()->SharedPlan();
  if (!plan->regular || plan->IsLarge()) return;  // each evaluation is shared itself
  while (static_cast<int>(passes.size()) < workers_->Count()) AddPass(passes, plan);
  ahead_->Compute(vectors, Step, {setting.BootstrapMode, NF == 1}, passes);
}

SumsAhead::Passes& Likelihood::PassesFor(const ObjectivePlan::Subject& subject) {
  SumsAhead::Passes& passes = subject.broodsShareMortalities ? sharedPasses_ : ownPasses_;
  if (passes.empty() || passes.front()->Plan().subject != subject) {
    passes.clear();
    AddPass(passes, plans_->For(data_, subject));
  }
  return passes;
}

void Likelihood::AddPass(SumsAhead::Passes& passes, std::shared_ptr<const ObjectivePlan> plan) {
  passes.push_back(
      std::make_unique<ObjectivePass>(data_, plans_->visits, plans_->distributions, std::move(plan), workers_));
}

}  // namespace merlane
