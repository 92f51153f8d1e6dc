#pragma once

#include "control/fit_label.h"
#include "control/frm_main.h"
#include "control/objective.h"
#include "control/run_state.h"
#include "forms/form.h"
#include "uncertainty/covariance.h"
#include "uncertainty/frm_cov_data.h"

namespace merlane {

/// Offers the last covariances: on the screen, and in a .cov file. They may be those of an earlier fit when the window
/// was left open; it says whose they are.
class FrmCovDisplay : public Form {
 public:
  FrmCovDisplay(Desk& d, const RunState& state, const Objective& objective, const Covariances& covariances,
                FrmMain& main, FrmCovData& data);

  /// Opens behind a calculation.
  void OpenCalculated();
  /// Opens to view the last results again.
  void OpenAgain();

  Label lblCovDisplay{*this, "lblCovDisplay", "Do you wish to:"};
  FitLabel lblFit{*this};
  Button cmdScreen{*this, "cmdScreen", "Display results on &screen"};
  Button cmdFile{*this, "cmdFile", "Save &covariance results as..."};
  Button cmdFinish{*this, "cmdFinish", "&Finish display"};
  Pane txtExplain{*this, "txtExplain"};

 protected:
  void OnUnload() override;

 private:
  void Open(const char* label);
  /// Which fit the covariances are of, and what has changed since.
  std::string WhoseTheyAre() const;
  void DisplayOnScreen();
  void SaveAs();

  const RunState& state_;
  const Objective& objective_;
  const Covariances& covariances_;
  FrmMain& main_;
  FrmCovData& data_;
};

}  // namespace merlane
