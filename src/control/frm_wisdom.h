#pragma once

#include "control/frm_information.h"

namespace merlane {

/// Advice on how to come to satisfying results.
class FrmWisdom : public FrmInformation {
 public:
  FrmWisdom(Desk& d, FrmMain& main);
  Pane txtWisdom{*this, "txtWisdom"};
};

}  // namespace merlane
