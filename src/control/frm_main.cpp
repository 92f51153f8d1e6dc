#include "control/frm_main.h"

namespace merlane {

FrmMain::FrmMain(Desk& d) : Form(d, "frmMain", "Tolvane") {
  mnuBayesianInt.visible = mnuMLInt.visible = false;
  mnuInterruptBayes.offeredWhileBusy = true;
  mnuInterruptML.offeredWhileBusy = true;
  mnuCascade.onClick = [this] { onArrange(Arrangement::Cascade); };
  mnuTileHorizontal.onClick = [this] { onArrange(Arrangement::TileHorizontal); };
  mnuTileVertical.onClick = [this] { onArrange(Arrangement::TileVertical); };
  mnuArrangeIcons.onClick = [this] { onArrange(Arrangement::Icons); };
}

bool FrmMain::OnCloseRequest() {
  if (onClose) onClose();
  return false;
}

}  // namespace merlane
