#pragma once

#include "control/frm_information.h"

namespace merlane {

/// Default names and values, and other things good to know.
class FrmDefaults : public FrmInformation {
 public:
  FrmDefaults(Desk& d, FrmMain& main);
  Pane txtDefaultNames{*this, "txtDefaultNames"};
};

}  // namespace merlane
