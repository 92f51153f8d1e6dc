#include "control/frm_main.h"

#include "forms/desk.h"

namespace merlane {

FrmMain::FrmMain(Desk& d) : Form(d, "frmMain", "Tolvane") {
  leavesProgram = true;
  mnuBayesianInt.visible = mnuMLInt.visible = false;
  mnuInterruptBayes.offeredWhileBusy = true;
  mnuInterruptML.offeredWhileBusy = true;
  desk.charge.onChange = [this] { mnuApplication.enabled = !desk.charge.ApplicationMenuRests(); };
}

bool FrmMain::OnCloseRequest() {
  if (onClose) onClose();
  return false;
}

}  // namespace merlane
