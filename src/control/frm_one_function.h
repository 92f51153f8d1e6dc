#pragma once

#include <functional>
#include <optional>
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
  /// What a search finds at the values that the call has left, when it may be another objective; none otherwise.
  std::function<std::optional<double>()> inASearch = [] { return std::nullopt; };

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

/// A line that tells that a search finds another objective at the same values; empty where none of the digits that are
/// shown differs.
std::string SearchLine(double F, std::optional<double> inASearch);

}  // namespace merlane
