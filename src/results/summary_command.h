#pragma once

#include "control/frm_abort.h"
#include "control/frm_main.h"
#include "control/frm_summary.h"
#include "control/objective.h"
#include "control/run_state.h"
#include "forms/desk.h"
#include "likelihood/calculation_watch.h"
#include "model/merlane_model.h"
#include "results/desk_watch.h"

namespace merlane {

/// What a command works with whose text is shown in the summary window: behind calculations that tell their progress in
/// the main window and that the abort window can stop.
class SummaryCommand {
 public:
  SummaryCommand(Desk& desk, RunState& state, MerlaneModel& model, FrmMain& main, FrmAbort& abort, FrmSummary& summary)
      : desk_(desk),
        state_(state),
        model_(model),
        main_(main),
        abort_(abort),
        summary_(summary),
        watch_(DeskWatch(desk, main, state.flags)) {}

 protected:
  Desk& desk_;
  RunState& state_;
  MerlaneModel& model_;
  FrmMain& main_;
  FrmAbort& abort_;
  FrmSummary& summary_;
  CalculationWatch watch_;
};

}  // namespace merlane
