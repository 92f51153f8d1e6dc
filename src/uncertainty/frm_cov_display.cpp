#include "uncertainty/frm_cov_display.h"

#include <fmt/format.h>

#include "base/number_text.h"
#include "base/text.h"
#include "control/algorithm_file.h"
#include "control/save_pane.h"
#include "forms/desk.h"
#include "uncertainty/covariance_report.h"

namespace merlane {
namespace {

constexpr const char* Explanation =
    "If the results for numerically calculated SEs etc. are similar for all three grids,"
    " then the model's behaviour can be considered to be 'close-to-linear' and the"
    " uncertainty around the parameter estimates can be considered to be"
    " represented by a normal distribution.  Else the SEs etc. are probably"
    " inaccurate and parameter uncertainty is more difficult to interpret.  This"
    " problem tends to diminish as sample size increases and the central limit"
    " theorem starts to apply.  Alternatively, you can choose the option 'Evaluate"
    " estimates' from the Main Menu, then use maximum-likelihood or Bayesian"
    " utilities to evaluate parameter uncertainty.";

}  // namespace

FrmCovDisplay::FrmCovDisplay(Desk& d, const RunState& state, const Objective& objective, const Covariances& covariances,
                             FrmMain& main, FrmCovData& data)
    : Form(d, "frmCovDisplay", "Covariance display"),
      state_(state),
      objective_(objective),
      covariances_(covariances),
      main_(main),
      data_(data) {
  cmdFile.toolTip = "Saves the (possibly edited) covariance output";
  cmdFile.enabled = false;
  txtExplain.text = Explanation;
  txtExplain.fixedPitch = false;
  txtExplain.wraps = true;
  cmdScreen.onClick = [this] { DisplayOnScreen(); };
  cmdFile.onClick = [this] { SaveAs(); };
  cmdFinish.onClick = [this] { desk.Unload(*this); };
  data_.onCloseDisplay = [this] { desk.Unload(*this); };
  data_.onClosed = [this] {
    cmdFile.enabled = false;
    cmdScreen.enabled = true;
  };
}

void FrmCovDisplay::OpenCalculated() { Open("Calculation completed. Do you wish to:"); }

void FrmCovDisplay::OpenAgain() {
  Open("Do you wish to:");
  desk.charge.Take(*this, Charge::Resting::ApplicationMenu);
  desk.ToFront(*this);
}

void FrmCovDisplay::Open(const char* label) {
  desk.Load(*this);
  lblCovDisplay.text = label;
  lblFit.Show([this] { return WhoseTheyAre(); });
  cmdScreen.enabled = true;  // it may still be open from before
  desk.Show(*this);
}

std::string FrmCovDisplay::WhoseTheyAre() const {
  const Covariances& c = covariances_;
  if (!c.basis) return "";
  const std::string words =
      fmt::format("{}, where the objective was {}",
                  NamedFor(fmt::format("Covariances of {} free parameters", c.CovCount), *c.basis),
                  Format(c.CovF0, "####0.000000"));
  return WithChanges(words, c.ChangesUntil(objective_.UsersPresent()));
}

void FrmCovDisplay::DisplayOnScreen() {
  cmdScreen.enabled = false;
  data_.OpenForReport();
  main_.stbMain5.Set(1, "Please be patient while covariance output is collated...");
  data_.rtbCovData.text = CovarianceReport(covariances_, [this] { desk.Turn(); });
  main_.stbMain5.Set(1, "");
  cmdFile.enabled = true;
  desk.ToFront(*this);
}

void FrmCovDisplay::SaveAs() {
  // Of an earlier fit they are named for its algorithm file.
  const std::string& present = state_.algorithm.AlgShortName;
  const std::string base = covariances_.AreOf(objective_.UsersPresent())
                               ? present
                               : AlgorithmShortName(covariances_.basis->AlgName, present);
  FileRequest request;
  request.kind = FileRequest::Kind::Save;
  request.title = "Save covariance results as...";
  request.filter =
      "All files (*.*)|*.*|Covariance files (*.cov)|*.cov|Named for algorithm file (" + base + ".*)|" + base + ".*|";
  request.startName = ClockName(desk.host.clock) + ".cov";
  const std::optional<std::string> path = desk.AskFile(request);
  if (path) SavePane(desk, data_.rtbCovData, *path);
}

void FrmCovDisplay::OnUnload() {
  desk.Unload(data_);
  desk.BringBack();
  main_.stbMain5.Set(1, "");
}

}  // namespace merlane
