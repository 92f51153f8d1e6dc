#include "control/frm_main.h"

namespace merlane {

FrmMain::FrmMain(Desk& d) : Form(d, "frmMain", "Tolvane") {
  mnuInterruptBayes.offeredWhileBusy = true;
  mnuInterruptML.offeredWhileBusy = true;
  mnuCascade.onClick = [this] { Arrange(Arrangement::Cascade); };
  mnuTileHorizontal.onClick = [this] { Arrange(Arrangement::TileHorizontal); };
  mnuTileVertical.onClick = [this] { Arrange(Arrangement::TileVertical); };
  mnuArrangeIcons.onClick = [this] { Arrange(Arrangement::Icons); };
}

bool FrmMain::OnCloseRequest() {
  if (onClose) onClose();
  return false;
}

void FrmMain::Arrange(Arrangement arrangement) const {
  if (onArrange) onArrange(arrangement);
}

}  // namespace merlane
