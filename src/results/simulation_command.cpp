#include "results/simulation_command.h"

#include "model/catalogue.h"
#include "results/simulated_data_text.h"

namespace merlane {

void SimulationCommand::Simulate(ModelCall& call) {
  state_.flags.AbortRun = false;
  abort_.Open("Abort randomizations?");
  if (AllZero(call.X)) {
    model_.simulation.Preset(model_.data);
    watch_.tell(SimulationError("all parameters are 0"));
  } else {
    SimulateData(model_.data, {.SimulationMode = true}, model_.likelihood.best, desk_.host.random, watch_,
                 model_.simulation);
  }
  desk_.Unload(abort_);
  TellOfDeficiencies();
  if (!state_.flags.AbortRun) WriteSimulatedData();
  if (state_.flags.AbortRun) desk_.Show("frmMenu");
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
}

void SimulationCommand::WriteSimulatedData() {
  abort_.Open("Abort writing output?");
  main_.ShowProgress("One moment please while simulated data are consolidated for output ...");
  const std::string text = SimulatedDataText(model_.data, model_.simulation.SimCount, desk_.host.random, watch_);
  main_.ShowProgress("");
  desk_.Unload(abort_);
  if (!state_.flags.AbortRun) summary_.Open(text);
}

}  // namespace merlane
