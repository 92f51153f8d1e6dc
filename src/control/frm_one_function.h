#pragma once

#include <functional>
#include <string>

#include "control/fit_label.h"
#include "control/frm_main.h"
#include "control/objective.h"
#include "forms/form.h"

namespace merlane {

/// The window of "1 Function call": the objective at the present values, and the values.
class FrmOneFunction : public Form {
 public:
  FrmOneFunction(Desk& d, RunState& state, Objective& objective, FrmMain& main);

  /// Shows the form, evaluates the objective once at Value as the first call of a run, and writes what it found and how
  /// long it took. Returns the objective.
  double Run();

  /// Shows the review of the priors; called at the end of a run while priors are on.
  std::function<void()> reviewPriors;

  FitLabel lblFit{*this};
  Pane rtbOneFunction{*this, "rtbOneFunction"};

 protected:
  void OnUnload() override;

 private:
  RunState& state_;
  Objective& objective_;
  FrmMain& main_;
};

/// The report of one call: objective, parameters, and the seconds it took.
std::string OneFunctionText(double F, const AlgorithmData& a, double seconds);

}  // namespace merlane
