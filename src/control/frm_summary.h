#pragma once

#include <string>

#include "control/fit_label.h"
#include "control/frm_menu.h"
#include "control/run_state.h"
#include "forms/form.h"

namespace merlane {

/// The results summary of a model, or the data of a simulation, as a text that may be edited and saved.
class FrmSummary : public Form {
 public:
  FrmSummary(Desk& d, const RunState& state, const Objective& objective, FrmMenu& menu);

  /// Shows the form with this text.
  void Open(const std::string& text);
  /// The results behind the summary are gone: nothing can follow upon it.
  void ForgetResults() { cmdPlots.enabled = cmdBootstrap.enabled = false; }

  Button cmdSaveSummary{*this, "cmdSaveSummary", ""};
  // What follows upon a results summary; assigned where the program is put together.
  Button cmdPlots{*this, "cmdPlots", "&Plots..."};
  Button cmdBootstrap{*this, "cmdBootstrap", "Parametric &bootstrap..."};
  FitLabel lblFit{*this};
  Pane rtbOut{*this, "rtbOut"};

 protected:
  void OnUnload() override;

 private:
  void SaveSimulatedData();
  void SaveResults();

  const RunState& state_;
  const Objective& objective_;
  FrmMenu& menu_;
  // What the pane shows, also when the run has meanwhile become another.
  bool simulatedData_ = false;
  std::string algName_, algShortName_;
  std::string noteToSave_;  // what is said beside the name of its fit, as a line for the file; empty: nothing
};

}  // namespace merlane
