#include "results/simulation_command.h"

#include "results/simulated_data_text.h"
#include "survival/catalogue.h"

namespace merlane {
namespace {

/// True when the plan has visits to be simulated and not one of them got a count.
bool NothingPredicted(const BroodData& data, const Simulation& simulation) {
  bool any = false;
  for (int brood = 0; brood < data.Broods(); ++brood) {
    const auto b = static_cast<std::size_t>(brood);
    const auto first = static_cast<std::size_t>(data.FirstVisit[b]);
    if (data.VisitsOf[b] == 0 || simulation.SimCount[first] <= 0) continue;
    for (std::size_t v = first + 1; v < first + static_cast<std::size_t>(data.VisitsOf[b]); ++v) {
      if (simulation.SimCount[v] != Missing) return false;
      any = true;
    }
  }
  return any;
}

}  // namespace

bool SimulationCommand::Simulate(ModelCall& call) {
  state_.flags.AbortRun = false;
  SimulateCounts(call);
  TellOfDeficiencies();
  if (!state_.flags.AbortRun) WriteSimulatedData();
  return !state_.flags.AbortRun;
}

void SimulationCommand::SimulateCounts(const ModelCall& call) {
  const auto abortOffered = abort_.Offer("Abort randomizations?");
  if (AllZero(call.X)) {
    // There is no state to simulate from: it goes as a simulation goes that fails at its first brood.
    desk_.host.random.BeginNext();
    watch_.progress("Simulating data, one moment please...");
    model_.simulation.Preset(model_.data);
    watch_.tell(SimulationError("all parameters are 0"));
    watch_.progress("");
  } else {
    SimulateData(model_.data, {.SimulationMode = true}, model_.Evaluated().best, desk_.host.random, watch_,
                 model_.simulation);
  }
}

void SimulationCommand::TellOfDeficiencies() {
  const auto tell = [this](const std::string& title, const std::string& finding) {
    desk_.Tell(title,
               finding + "\r\nReview your simulation choices during initialization to overcome this limitation.\r\n",
               style::Critical);
  };
  if (model_.simulation.SimBroodSizeDeficient)
    tell("Warning: Simulations as a function of E[brood size@hatch] are invalid!",
         "A lack of clutch visits means the E[brood size@hatch] cannot be calculated for at least some broods.");
  if (model_.simulation.SimHatchDateDeficient)
    tell("Warning: Simulations as a function of Hatch Day are invalid!",
         "A lack of data means that Hatch Day cannot be calculated for at least some broods.");
  if (!state_.flags.AbortRun && NothingPredicted(model_.data, model_.simulation))
    tell("Warning: Nothing could be simulated!",
         "No count behind the first one of a brood could be predicted; the data hold the first counts alone.\r\n"
         "Ages before the age @ laying, or at or behind the age @ fledge, cannot be predicted.");
}

void SimulationCommand::WriteSimulatedData() {
  const std::string text = SimulatedText();
  if (!state_.flags.AbortRun) summary_.Open(text);
}

std::string SimulationCommand::SimulatedText() {
  const auto abortOffered = abort_.Offer("Abort writing output?");
  main_.ShowProgress("One moment please while simulated data are consolidated for output ...");
  std::string text = SimulatedDataText(model_.data, model_.simulation.SimCount, desk_.host.random, watch_);
  main_.ShowProgress("");
  return text;
}

}  // namespace merlane
