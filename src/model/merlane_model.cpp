#include "model/merlane_model.h"

#include <algorithm>
#include <utility>

#include "base/text.h"
#include "data/simulation_plan.h"
#include "data/standard_anomalies.h"
#include "survival/catalogue.h"

namespace merlane {

MerlaneModel::MerlaneModel(Desk& desk, RunState& state, std::function<Initialisation()> choices)
    : desk_(desk), state_(state), choices_(std::move(choices)) {
  setting_.tell = [this](const Message& m) { desk_.Tell(m.title, m.text, m.style, m.details); };
  setting_.turn = [this](long count) { desk_.Turns(count); };
}

void MerlaneModel::operator()(ModelCall& call) {
  if (call.NF == 0)
    ReadBroodData(call);
  else if (call.NF > 0)
    Evaluate(call);
  else if (call.NF == -1)
    (state_.flags.SimulationMode ? simulate : writeResults)(call);
}

void MerlaneModel::Evaluate(ModelCall& call) {
  TakeSetting();
  // As all tables are at the first evaluation of a run: what was estimated or simulated from an earlier one does not
  // belong to it. Covariances make nothing but first evaluations, with neither.
  if (call.NF == 1 && (estimates_.estimated || simulation.simulated) && !AllZero(call.X)) {
    estimates_ = {};
    simulation.Preset(data);
  }
  evaluator_->EvaluateObjective(setting_, likelihood_, call.F, call.X, call.StepSize, call.Names, call.Fuses, call.N,
                                call.NF, call.K);
}

void MerlaneModel::EvaluateAhead(std::span<const Array1<double>> vectors, std::int32_t NF) {
  TakeSetting();
  evaluator_->EvaluateAhead(setting_, vectors, state_.algorithm.Step, NF);
}

void MerlaneModel::TakeSetting() {
  Dimension();
  if (!evaluator_) evaluator_.emplace(data, &SharingWorkers(), plans_);
  setting_.OneCallRun = state_.flags.OneCallRun;
  setting_.SimulationMode = state_.flags.SimulationMode;
  setting_.BootstrapMode = state_.flags.BootstrapMode;
}

Workers& MerlaneModel::SharingWorkers() {
  if (!workers_) workers_.emplace(cores);
  return *workers_;
}

const LikelihoodState& MerlaneModel::Evaluated() const {
  Dimension();
  if (evaluator_) evaluator_->FillTables(likelihood_);
  return likelihood_;
}

LikelihoodState& MerlaneModel::Evaluated() {
  std::as_const(*this).Evaluated();
  return likelihood_;
}

const SurvivalEstimates& MerlaneModel::Estimates() const {
  if (!estimates_.HasShapeOf(data)) estimates_.Preset(data);
  return estimates_;
}

SurvivalEstimates& MerlaneModel::Estimates() {
  std::as_const(*this).Estimates();
  return estimates_;
}

Array1<double> MerlaneModel::AsEvaluated(const AlgorithmData& algorithm) const {
  Array1<double> Value = algorithm.Value;
  Parameters parameters;
  double Penalty = 0;
  DecodeParameters(Value, algorithm.Step, ParameterLayout(data), parameters, Penalty);
  return Value;
}

void MerlaneModel::ReadBroodData(ModelCall& call) {
  evaluator_.reset();
  plans_.reset();
  if (readElsewhere) return TakeReadElsewhere(call);
  if (!state_.flags.BootstrapMode) {
    const Initialisation choices = choices_();
    TakeChoices(choices, call);
    if (choices.Simulate) PlanSimulation(data, choices.SimulatedBroods, desk_.host.random);
  }
  const bool anyData = state_.flags.SimulationMode || readData(data);
  ForgetResults();
  if (!anyData) return;
  FillParameterDescriptions(call.Names, call.N, data);
  if (data.CovariateFormat == "A") StandardiseCovariates(data);
}

void MerlaneModel::TakeReadElsewhere(ModelCall& call) {
  const ReadElsewhere read = *std::exchange(readElsewhere, std::nullopt);
  data = *read.data;
  ForgetResults();
  plans_ = read.plans;
  FillParameterDescriptions(call.Names, call.N, data);
}

void MerlaneModel::TakeChoices(const Initialisation& choices, ModelCall& call) {
  TakeDataFileName(choices.DataFileName);
  data.CensorEggs = choices.CensorEggs;
  data.CensorJuvs = choices.CensorJuvs;
  data.CovariateFormat = choices.CovariateFormat;
  state_.flags.SimulationMode = choices.Simulate;
  state_.flags.ObjectiveHint = 0.5;

  // The catalogue is laid out for the covariates chosen, though a simulation has none.
  call.N = static_cast<std::int16_t>(ParameterCount(choices.NCov));
  data.InteractionBase = static_cast<std::int16_t>(InteractionBaseOf(choices.NCov));
  call.X.Dimension(call.N);
  call.Names.Dimension(call.N);
  call.StepSize.Dimension(call.N);
  data.NCov = choices.Simulate ? std::int16_t{0} : choices.NCov;
  data.CovariateName.Dimension(data.NCov);
  data.simulator = choices.simulator;
  data.FirstYear = choices.FirstYear;
  data.LastYear = choices.LastYear;
  ForgetVisits(data);
  ForgetResults();
}

void MerlaneModel::ForgetResults() {
  dimensioned_ = false;
  estimates_ = {};
  simulation.Preset(data);
}

void MerlaneModel::Dimension() const {
  if (dimensioned_) return;
  likelihood_.Dimension(data);
  dimensioned_ = true;
}

void MerlaneModel::PutBack(Kept kept) {
  evaluator_.reset();
  plans_.reset();
  data = std::move(kept.data);
  likelihood_ = std::move(kept.likelihood);
  dimensioned_ = true;
  estimates_ = std::move(kept.estimates);
  simulation = std::move(kept.simulation);
}

void MerlaneModel::TakeDataFileName(const std::string& path) {
  data.DataFileName = path;
  data.DataExt = Rightmost(path, 3);
  const std::string_view name = FileName(path);
  if (name.size() < path.size())
    data.DataBaseName = name.substr(0, name.size() - std::min<std::size_t>(4, name.size()));
}

}  // namespace merlane
