#pragma once

#include "control/run_state.h"
#include "forms/form.h"

namespace merlane {

/// The main menu, where all commands begin: thirteen buttons, of which those are enabled that the run has come to. It
/// is unloaded during long commands and loaded again behind them, so that its load is the one place that recomputes the
/// buttons. The actions are assigned where the program is put together.
class FrmMenu : public Form {
 public:
  FrmMenu(Desk& d, const RunState& state);

  /// The buttons as they stand once algorithm data are loaded: all of them, or in a simulation those that a simulation
  /// needs. Also names `cmdUserSummary` for what it will do. Without algorithm data none that needs them.
  void ApplyPattern();
  /// The pattern, with the focus on `analysing` or, in a simulation, on `cmdUserSummary`.
  void ApplyPattern(Button& analysing);
  /// The buttons behind an initialisation: algorithm data are to be loaded, which the ranking does for itself. Names
  /// `cmdUserSummary`, too.
  void ApplyPatternOfNewData();

  Button cmdInitialize{*this, "cmdInitialize", "&Initialize model"};
  Button cmdLoadAlg{*this, "cmdLoadAlg", "&Load algorithm data"};
  Button cmdEditAlg{*this, "cmdEditAlg", "&Edit  algorithm data"};
  Button cmdSaveAlg{*this, "cmdSaveAlg", "&Save algorithm data"};
  Button cmdOneFunction{*this, "cmdOneFunction", "        &1 Function call        (Run before minimization)"};
  Button cmdSimplex{*this, "cmdSimplex", "Simple&x"};
  Button cmdMarquardt{*this, "cmdMarquardt", "&Marquardt"};
  Button cmdCovariance{*this, "cmdCovariance", "&Single model covariances"};
  Button cmdBayesian{*this, "cmdBayesian", "Set &Bayesian priors"};
  Button cmdParEstimate{*this, "cmdParEstimate", "  E&valuate single model    parameter estimates"};
  Button cmdUserSummary{*this, "cmdUserSummary", "Single model res&ults summary"};
  Button cmdRank{*this, "cmdRank", "&Multi-model statistics"};
  Button cmdQuit{*this, "cmdQuit", "&Quit"};
  Label lblModelname{*this, "lblModelname", ""};
  Label lblVersion{*this, "lblVersion", ""};

 protected:
  void OnLoad() override;
  /// Stays open while the application menu, which would bring it back, rests.
  bool OnCloseRequest() override;

 private:
  /// Names `cmdUserSummary` for what it will do: write results, or simulate.
  void NameUserSummary();
  /// Enables or disables the ten buttons that need algorithm data.
  void EnableAnalysis(bool enable);

  const RunState& state_;
};

}  // namespace merlane
