#pragma once

#include "control/frm_main.h"
#include "control/run_state.h"
#include "forms/desk.h"
#include "likelihood/calculation_watch.h"

namespace merlane {

/// A calculation's messages, turns and progress at the desk; it is aborted by the abort window's flag. Keeps references
/// to all three.
CalculationWatch DeskWatch(Desk& desk, FrmMain& main, const RunFlags& flags);

}  // namespace merlane
