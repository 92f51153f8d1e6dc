#pragma once

#include <functional>
#include <string>

#include "control/window_menu.h"
#include "forms/form.h"

namespace merlane {

/// The main window: menu bar and status bars. The actions of its entries are assigned where the program is put
/// together.
class FrmMain : public Form {
 public:
  explicit FrmMain(Desk& d);

  // The status bars.
  void ShowDataFile(const std::string& text) { stbMain0.Set(1, "Brood data file name: " + text); }
  void ShowAlgorithmFile(const std::string& shortName) { stbMain1.Set(1, "Algorithm file: " + shortName); }
  void ShowPriorsFile(const std::string& fileName) { stbMain1.Set(2, "Bayesian priors file: " + fileName); }
  /// What has to be said about the priors of that file; empty when there is nothing.
  void ShowPriorsNote(const std::string& text) { stbMain1.Set(3, text); }
  /// A transient message; empty when the work is done.
  void ShowProgress(const std::string& text) { stbMain5.Set(1, text); }

  MenuEntry mnuApplication{*this, "mnuApplication", "&Application"};
  MenuEntry mnuMenu{*this, "mnuMenu", "Main &menu", &mnuApplication};
  MenuEntry mnuExit{*this, "mnuExit", "E&xit", &mnuApplication};
  // Each interrupt menu is visible while that calculation runs, a posterior or a profile, and only then.
  MenuEntry mnuBayesianInt{*this, "mnuBayesianInt", "&Interrupt "};
  MenuEntry mnuInterruptBayes{*this, "mnuInterruptBayes", "I&nterrupt calculations", &mnuBayesianInt};
  MenuEntry mnuMLInt{*this, "mnuMLInt", "&Interrupt"};
  MenuEntry mnuInterruptML{*this, "mnuInterruptML", "&Interrupt calculations", &mnuMLInt};
  WindowMenu windowMenu{*this, onArrange};
  MenuEntry mnuDefaultNames{*this, "mnuDefaultNames", "&Defaults etc."};
  MenuEntry mnuWisdom{*this, "mnuWisdom", "&Wisdom"};
  MenuEntry mnuAbout{*this, "mnuAbout", "A&bout"};
  MenuEntry mnuCredits{*this, "mnuCredits", "C&redits", &mnuAbout};

  StatusBar stbMain0{*this, "stbMain0", 1};
  StatusBar stbMain1{*this, "stbMain1", 3};
  StatusBar stbMain2{*this, "stbMain2", 1};
  StatusBar stbMain5{*this, "stbMain5", 4};  // "status panel n" of a calculation is panel n of this bar

  /// Lays out the child windows; the desktop brings the layout, elsewhere nothing happens.
  std::function<void(Arrangement)> onArrange = [](Arrangement) {};
  /// The quit dialogue, asked before the window closes by its frame; it ends the program or returns.
  std::function<void()> onClose;

 protected:
  bool OnCloseRequest() override;
};

}  // namespace merlane
