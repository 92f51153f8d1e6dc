#pragma once

#include <string>

#include "control/frm_main.h"
#include "forms/desk.h"

namespace merlane {

/// A window with a text to be read and put away. The main window is hidden while it is open.
class FrmInformation : public Form {
 public:
  Button cmdOK{*this, "cmdOK", "OK"};

 protected:
  FrmInformation(Desk& d, FrmMain& main, std::string formName, std::string formTitle)
      : Form(d, std::move(formName), std::move(formTitle)), main_(main) {
    cmdOK.onClick = [this] { desk.Unload(*this); };
  }
  void OnLoad() override { desk.Hide(main_); }
  void OnUnload() override { desk.Show(main_); }

 private:
  FrmMain& main_;
};

}  // namespace merlane
