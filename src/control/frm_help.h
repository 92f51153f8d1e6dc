#pragma once

#include <string>

#include "forms/desk.h"

namespace merlane {

/// A page of help; its text is set by whoever opens it.
class FrmHelp : public Form {
 public:
  explicit FrmHelp(Desk& d) : Form(d, "frmHelp", "Help") {}

  void Open(const std::string& text) {
    desk.Load(*this);
    rtbHelp.text = text;
    desk.Show(*this);
  }

  Pane rtbHelp{*this, "rtbHelp"};
};

}  // namespace merlane
