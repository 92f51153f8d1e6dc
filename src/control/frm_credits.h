#pragma once

#include "control/frm_information.h"

namespace merlane {

/// What the program is.
class FrmCredits : public FrmInformation {
 public:
  explicit FrmCredits(Desk& d);
  Pane txtCredits{*this, "txtCredits"};
};

}  // namespace merlane
