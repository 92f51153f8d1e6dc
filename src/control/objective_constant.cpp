#include "control/objective_constant.h"

#include "base/arithmetic.h"
#include "base/number_text.h"
#include "base/runtime_failure.h"
#include "forms/desk.h"

namespace merlane {

bool SetObjectiveConstant(Desk& desk, FrmMain& main, RunState& state, double objective) {
  const std::int32_t NOBS = state.flags.NOBS;
  if (NOBS == 0) {
    EnterObjectiveConstant(desk, main, state);
    return true;
  }
  const double freedom = static_cast<double>(NOBS) - state.free.NFREE - 1;
  if (freedom <= 0) {
    ReportBadConstant(desk);
    return false;
  }
  state.flags.ObjectiveConstant = Divide(freedom, 2 * objective);
  return true;
}

void EnterObjectiveConstant(Desk& desk, FrmMain& main, RunState& state, double objective) {
  for (;;) {
    main.ShowProgress("");
    desk.Turn();
    std::string text = "Enter the constant WHICH WILL MAKE the objective function the -ln[likelihood]\r\n";
    std::string proposal;
    if (state.flags.ObjectiveHint > 0) {
      text += "Your model suggests you use this constant: ";
      proposal = Format(state.flags.ObjectiveHint, "0.000");
    } else if (state.flags.NOBS > 0) {
      text += "If your objective function is the sum of squares, then use this constant: ";
      const double freedom = static_cast<double>(state.flags.NOBS) - state.free.NFREE;
      proposal = Format(Divide(freedom, 2 * objective), "0.0000000E+00");
    }
    const std::string answer = desk.Input("Enter constant", text, proposal);
    if (answer.empty()) continue;
    try {
      const double constant = LenientNumber(answer);
      if (constant > 0) {
        state.flags.ObjectiveConstant = Divide(1, constant);
        return;
      }
      ReportBadConstant(desk);
    } catch (const RuntimeFailure& failure) {
      // Asked again, too: priors that are in force without a constant would count for nothing.
      desk.TellFailure("Enter constant", failure.what(), style::Exclamation);
    }
  }
}

void ReportBadConstant(Desk& desk) {
  desk.Tell("Insufficient degrees of freedom",
            "Cannot accept a negative or zero constant; perhaps the degrees of freedom are zero or fewer",
            style::Exclamation);
}

}  // namespace merlane
