#include "control/frm_credits.h"

#include "control/version.h"

namespace merlane {

FrmCredits::FrmCredits(Desk& d, FrmMain& main) : FrmInformation(d, main, "frmCredits", "About Merlane") {
  txtCredits.fixedPitch = false;
  txtCredits.wraps = true;
  txtCredits.text =
      "Merlane Survival Estimation Model, version " + std::string(Version()) +
      "\r\n\r\n"
      "Merlane estimates the survival of clutches of eggs and of broods of juveniles from repeated field visits. It "
      "plugs into Tolvane, a framework that estimates the parameters of a model, their uncertainty and the merits of "
      "competing models, and that knows nothing of birds."
      "\r\n\r\n"
      "It is free software under the MIT licence and stands on Qt, FreeXL, {fmt}, CLI11 and nlohmann-json, with thanks "
      "to their authors.";
}

}  // namespace merlane
