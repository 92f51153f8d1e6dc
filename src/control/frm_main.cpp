#include "control/frm_main.h"

namespace merlane {

FrmMain::FrmMain(Desk& d) : Form(d, "frmMain", "Tolvane") {
  mnuBayesianInt.visible = mnuMLInt.visible = false;
  mnuInterruptBayes.offeredWhileBusy = true;
  mnuInterruptML.offeredWhileBusy = true;
}

bool FrmMain::OnCloseRequest() {
  if (onClose) onClose();
  return false;
}

}  // namespace merlane
