#include "control/frm_summary.h"

#include <fmt/format.h>

#include "base/text.h"
#include "control/save_pane.h"
#include "forms/desk.h"

namespace merlane {

FrmSummary::FrmSummary(Desk& d, const RunState& state, const Objective& objective, FrmMenu& menu)
    : Form(d, "frmSummary", "Brood survival results summary"), state_(state), objective_(objective), menu_(menu) {
  beginsCommands = true;  // what follows upon it
  cmdSaveSummary.beginsNothing = true;
  rtbOut.readOnly = false;
  cmdSaveSummary.toolTip = "Saves the (possibly edited) output appearing in the textbox below";
  cmdPlots.toolTip = "Shows plots of data and predictions, for each brood and for whole years";
  cmdBootstrap.toolTip =
      "Fits the saved model to data sets simulated from it, and adds what comes of it to the summary";
  cmdSaveSummary.onClick = [this] { simulatedData_ ? SaveSimulatedData() : SaveResults(); };
}

void FrmSummary::Open(const std::string& text) {
  desk.Load(*this);
  rtbOut.text = text;
  simulatedData_ = state_.flags.SimulationMode;
  const Basis shown = objective_.PresentToShow();
  const std::string what = simulatedData_ ? "Simulated data" : "Results summary";
  lblFit.Show(WordsOf(what, shown, objective_));
  noteToSave_ = shown.besideAlgName.empty() ? "" : fmt::format("\r\nNote: {}.\r\n", NamedFor(what, shown));
  algName_ = state_.algorithm.AlgName;
  algShortName_ = state_.algorithm.AlgShortName;
  cmdSaveSummary.text = simulatedData_ ? "Save simulated data as..." : "Save results summary as...";
  for (Button* follows : {&cmdPlots, &cmdBootstrap}) {
    follows->enabled = true;
    follows->visible = !simulatedData_;
  }
  desk.Show(*this);
}

void FrmSummary::OnUnload() {
  desk.BringBack();
  menu_.ApplyPattern(menu_.cmdUserSummary);
}

void FrmSummary::SaveSimulatedData() {
  const std::optional<std::string> path = desk.AskFile(
      {FileRequest::Kind::Save, "Save simulated data in...", "All Files (*.*)|*.*|Simulated data files (*.sim)|*.sim",
       2, ClockName(desk.host.clock), ".sim", FileRequest::Adding::Always});
  if (path) desk.Write(*path, WithCrLf(rtbOut.text));
}

void FrmSummary::SaveResults() {
  const std::string model = algName_.empty() ? ClockName(desk.host.clock) : algName_;
  const std::string start = (model.ends_with(".alg") ? model.substr(0, model.size() - 4) : model) + ".tvo";
  const std::string filter = fmt::format(
      "All Files (*.*)|*.*|Output files (*.tvo)|*.tvo|Named for algorithm file ({0}.*)|{0}.*|", algShortName_);
  const std::optional<std::string> path =
      desk.AskFile({FileRequest::Kind::Save, "Save results summary in (*.tvo)...", filter, 2, start, ".tvo"});
  if (!path) return;
  // The text names the file alone; beside it the label does not go with what is saved.
  if (rtbOut.text.find(noteToSave_) == std::string::npos) rtbOut.text += noteToSave_;
  SavePane(desk, rtbOut, *path);
}

}  // namespace merlane
