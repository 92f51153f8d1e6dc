#include "model/merlane_model.h"

#include <algorithm>
#include <utility>

#include "base/runtime_failure.h"
#include "base/text.h"
#include "data/simulation_plan.h"
#include "data/standard_anomalies.h"
#include "model/catalogue.h"
#include "platform/files.h"

namespace merlane {

MerlaneModel::MerlaneModel(Desk& desk, RunState& state, std::function<Initialisation()> choices)
    : desk_(desk), state_(state), choices_(std::move(choices)) {
  setting_.tell = [this](const Message& m) { desk_.Tell(m.title, m.text, m.style, m.details); };
  setting_.turn = [this] { desk_.Turn(); };
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
  if (!evaluator_) evaluator_.emplace(data);
  // As all tables are at the first evaluation of a run. Covariances make nothing but first evaluations, without
  // estimates.
  if (call.NF == 1 && estimates.estimated) estimates.Preset(data);
  setting_.OneCallRun = state_.flags.OneCallRun;
  setting_.SimulationMode = state_.flags.SimulationMode;
  setting_.BootstrapMode = state_.flags.BootstrapMode;
  evaluator_->EvaluateObjective(setting_, likelihood, call.F, call.X, call.StepSize, call.Names, call.Fuses, call.N,
                                call.NF, call.K);
}

void MerlaneModel::ReadBroodData(ModelCall& call) {
  evaluator_.reset();
  if (!state_.flags.BootstrapMode) {
    const Initialisation choices = choices_();
    TakeChoices(choices, call);
    if (choices.Simulate) PlanSimulation(data, choices.SimulatedBroods, desk_.host.random);
  }
  if (!state_.flags.SimulationMode && !ReadDataFile()) return;
  DimensionResults();
  FillParameterDescriptions(call.Names, call.N, data);
  if (data.CovariateFormat == "A") StandardiseCovariates(data);
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
  data.InteractionBase = static_cast<std::int16_t>(30 + 4 * choices.NCov);
  call.X.Dimension(call.N);
  call.Names.Dimension(call.N);
  call.StepSize.Dimension(call.N);
  data.NCov = choices.Simulate ? std::int16_t{0} : choices.NCov;
  data.CovariateName.Dimension(data.NCov);
  data.simulator = choices.simulator;
  data.FirstYear = choices.FirstYear;
  data.LastYear = choices.LastYear;
  ForgetVisits();
}

void MerlaneModel::ForgetVisits() {
  const auto years = static_cast<std::size_t>(std::max(0, data.LastYear - data.FirstYear + 1));
  AllocateTables(data, std::vector<std::vector<int>>(years));
  data.TotalRecords = 0;
  DimensionResults();
}

void MerlaneModel::DimensionResults() {
  likelihood.Dimension(data);
  estimates.Preset(data);
  simulation.Preset(data);
}

void MerlaneModel::PutBack(Kept kept) {
  evaluator_.reset();
  data = std::move(kept.data);
  likelihood = std::move(kept.likelihood);
  estimates = std::move(kept.estimates);
  simulation = std::move(kept.simulation);
}

void MerlaneModel::TakeDataFileName(const std::string& path) {
  data.DataFileName = path;
  data.DataExt = Rightmost(path, 3);
  const std::string_view name = FileName(path);
  if (name.size() < path.size())
    data.DataBaseName = name.substr(0, name.size() - std::min<std::size_t>(4, name.size()));
}

bool MerlaneModel::ReadDataFile() {
  const bool bootstrap = state_.flags.BootstrapMode;
  data.ReadOK = false;
  std::string reason;
  try {
    if (const std::optional<std::string> file = FileToRead()) {
      ReadTextData(ReadWholeFile(*file), bootstrap, data, [this](const Message& m) { TellWhileInactive(m); });
      data.ReadOK = true;
    }
  } catch (const FatalDataError& fatal) {
    ActivateForms(false, false);
    desk_.Tell(fatal.message.title, fatal.message.text, fatal.message.style, fatal.message.details);
    throw EndProgram{2};
  } catch (const RuntimeFailure& failure) {
    reason = failure.what();
  }
  if (!data.ReadOK) {
    EndFailedRead(reason);
  } else if (!bootstrap) {
    ActivateForms(false, false);
    desk_.Tell("Analysis update", "Data read successfully - analysis can continue", style::Information);
    ActivateForms(true, false);  // frmInitialize is about to close
  }
  return data.ReadOK;
}

std::optional<std::string> MerlaneModel::FileToRead() {
  if (state_.flags.ReadOriginalFile && !state_.flags.BootstrapMode) {
    if (IsWorkbook()) {
      ActivateForms(false, false);
      const auto converted = convertWorkbook(data.DataFileName);
      ActivateForms(true, true);
      if (!converted) return std::nullopt;
      data.TextFileName = converted->TextFileName;
      data.SheetName = converted->SheetName;
    } else {
      data.TextFileName = data.DataFileName;
    }
  }
  return state_.flags.ReadSimulatedFile ? data.SimulatedFileName : data.TextFileName;
}

bool MerlaneModel::IsWorkbook() const { return LowerCase(data.DataExt) == "xls"; }

void MerlaneModel::EndFailedRead(const std::string& reason) {
  ForgetVisits();
  if (IsWorkbook())
    showStatus("No data: " + (reason.empty() ? "no worksheet was chosen" : reason));
  else
    TellWhileInactive({"Problem finding data file or reading data",
                       "Most likely the file doesn't exist or is incorrectly formatted", style::Critical, reason});
  ActivateForms(true, true);
}

void MerlaneModel::TellWhileInactive(const Message& message) {
  ActivateForms(false, false);
  desk_.Tell(message.title, message.text, message.style, message.details);
  ActivateForms(true, true);
}

void MerlaneModel::ActivateForms(bool menu, bool initialize) {
  const auto activate = [this](const char* formName, bool active) {
    Form* const form = desk_.Find(formName);
    if (form != nullptr && form->Loaded()) form->enabled = active;
  };
  activate("frmMenu", menu);
  activate("frmInitialize", initialize);
}

}  // namespace merlane
