#pragma once

#include "control/frm_abort.h"
#include "control/frm_main.h"
#include "control/frm_summary.h"
#include "control/objective.h"
#include "control/run_state.h"
#include "forms/desk.h"
#include "model/calculation_watch.h"
#include "model/merlane_model.h"

namespace merlane {

/// Simulates the data set that was planned when the analysis was initialised, and shows it as the text of a data file
/// to be saved.
class SimulationCommand {
 public:
  SimulationCommand(Desk& desk, RunState& state, MerlaneModel& model, FrmMain& main, FrmAbort& abort,
                    FrmSummary& summary);

  /// The model's answer to the request to simulate. When it is aborted there is no text, and the menu comes back.
  void Simulate(ModelCall& call);

 private:
  void TellOfDeficiencies();
  void WriteSimulatedData();

  Desk& desk_;
  RunState& state_;
  MerlaneModel& model_;
  FrmMain& main_;
  FrmAbort& abort_;
  FrmSummary& summary_;
  const CalculationWatch watch_;
};

}  // namespace merlane
