#pragma once

#include "control/frm_main.h"
#include "control/run_state.h"

namespace merlane {

/// Sets ObjectiveConstant, the reciprocal of the constant c with which c times the objective is -ln[likelihood], for a
/// command that works with likelihoods. The user is asked where the objective is a likelihood (NOBS = 0); a sum of
/// squares has its constant from its degrees of freedom, (NOBS - NFREE - 1) / (2 x objective), where `objective` is its
/// value at the estimates. False, after a message, when no degree of freedom is left.
bool SetObjectiveConstant(Desk& desk, FrmMain& main, RunState& state, double objective);

/// Asks for c until a number above 0 is entered whose reciprocal is a number, too. `objective` is needed for the
/// proposal only, where NOBS is above 0.
void EnterObjectiveConstant(Desk& desk, FrmMain& main, RunState& state, double objective = 0);

/// Tells that a constant was refused.
void ReportBadConstant(Desk& desk);

}  // namespace merlane
