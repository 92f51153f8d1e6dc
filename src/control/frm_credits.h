#pragma once

#include "control/frm_information.h"

namespace merlane {

/// What the program is.
class FrmCredits : public FrmInformation {
 public:
  FrmCredits(Desk& d, FrmMain& main);
  Pane txtCredits{*this, "txtCredits"};
};

}  // namespace merlane
