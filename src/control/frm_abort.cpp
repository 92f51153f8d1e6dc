#include "control/frm_abort.h"

namespace merlane {

FrmAbort::FrmAbort(Desk& d, RunState& state, FrmMain& main) : Form(d, "frmAbort", "") {
  cmdAbort.toolTip = "Give up the calculation that is running";
  cmdAbort.offeredWhileBusy = true;
  cmdAbort.onClick = [this, &state, &main] {
    state.flags.AbortRun = true;
    if (state.flags.BootstrapMode)
      main.stbMain2.Set(1, "Bootstrap procedure will stop when this bootstrap has completed!");
    desk.Unload(*this);
  };
}

void FrmAbort::Open(const std::string& question) {
  desk.Load(*this);
  title = question;
  desk.Show(*this);
}

}  // namespace merlane
