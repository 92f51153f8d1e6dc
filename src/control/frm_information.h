#pragma once

#include <string>

#include "forms/desk.h"

namespace merlane {

/// A window with a text to be read and put away. The main window is hidden while it is open.
class FrmInformation : public Form {
 public:
  Button cmdOK{*this, "cmdOK", "OK"};

 protected:
  FrmInformation(Desk& d, std::string formName, std::string formTitle)
      : Form(d, std::move(formName), std::move(formTitle)) {
    cmdOK.onClick = [this] { desk.Unload(*this); };
  }
  void OnLoad() override { desk.Hide("frmMain"); }
  void OnUnload() override { desk.Show("frmMain"); }
};

}  // namespace merlane
