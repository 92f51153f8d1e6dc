#include "control/frm_algo.h"

#include <fmt/format.h>

#include <cmath>
#include <utility>

#include "base/arithmetic.h"
#include "base/number_text.h"
#include "control/algorithm_file.h"
#include "control/ask_number.h"
#include "control/fuses.h"
#include "control/parameter_notes.h"
#include "forms/desk.h"

namespace merlane {

FrmAlgo::FrmAlgo(Desk& d, RunState& state, LogFile& log, FrmMain& main)
    : Form(d, "frmAlgo", ""),
      windowMenu(*this, main.onArrange),
      table(*this, grdVS, state, StepFraction),
      state_(state),
      log_(log) {
  mnuExit.onClick = Command([this] { onExit(); });
  mnuValue.onClick = Command([this] { table.onEditAllValues(); });
  mnuStep.onClick = Command([this] { table.EditAllSteps(); });
  mnuFraction.onClick = Command([this] { ChangeFraction(); });
  mnuUnFuse.onClick = Command([this] { table.UnfuseAll(); });
  mnuFinish.onClick = [this] { desk.Unload(*this); };

  txtAbsRel.readOnly = txtFileName.readOnly = true;
  txtAbsRel.toolTip = "Click to change the tolerance, or to test convergence by absolute or relative change";
  txtAbsRel.onClick = Command([this] { ChangeTolerance(); });
  txtMaxFunctions.onLeave = [this] {
    EnterOption(txtMaxFunctions, "Change the maximum # of function calls",
                "Maximum number of functions must be positive", [this](double x) { Data().MaxCalls = ToInt32(x); });
  };
  txtReduction.onLeave = [this] {
    EnterOption(txtReduction, "Change the step size reduction fraction", "Fraction must be positive",
                [this](double x) { Data().StepReduction = x; });
  };
  txtTerminalFreq.onLeave = [this] {
    EnterOption(txtTerminalFreq, "Change the terminal display frequency", "Frequency must be positive",
                [this](double x) { Data().TerminalFreq = ToInt16(x); });
  };
  txtFileFreq.onLeave = [this] {
    EnterOption(txtFileFreq, "Change the file write frequency", "Frequency must be positive",
                [this](double x) { Data().FileFreq = ToInt16(x); });
  };
  cmdOpenLog.toolTip = "Choose a file in which the minimizers write their progress";
  cmdOpenLog.onClick = Command([this] { OpenLog(); });
  cmdCloseLog.toolTip = "Write no more into the log file";
  cmdCloseLog.onClick = Command([this] { CloseLog(); });

  cmdUpdate.toolTip = "Take over what stands in the entry box";
  cmdUpdate.onClick = Command([] {});
  cmdFinish.toolTip = "Close the editor; all changes are kept";
  cmdFinish.onClick = [this] { desk.Unload(*this); };
}

// ---- Opening and closing

void FrmAlgo::Open(const EditMarks& marks, bool fromMenu) {
  EditorFromMenu_ = fromMenu;
  marks_ = marks;
  desk.Show(*this);
  focus = &grdVS;
}

void FrmAlgo::OnLoad() {
  desk.charge.Take(*this, Charge::Resting::Commands);
  BuildFuseGroups(state_);
  PackFree(state_);
  before_ = {};  // where there is no memory for a copy there is none, rather than half of one
  before_ = AlgorithmData(Data());
  if (StepFraction == 0) StepFraction = 0.1;
  ShowName();
  mnuValue.enabled = Offered(EditItem::Values);
  mnuStep.enabled = Offered(EditItem::Steps);
  mnuUnFuse.enabled = Offered(EditItem::Fuses);
  table.Fill(marks_);
  OfferOptions();
  ShowOptions();
}

void FrmAlgo::OnUnload() {
  table.LeaveEntry();
  BuildFuseGroups(state_);
  PackFree(state_);
  TakeBackNotes(Data(), before_, descriptions());
  desk.Tell("Just so you know", "Algorithm data, if changed, have been updated", style::Information);
  desk.BringBack();
}

void FrmAlgo::ShowName() { title = "Algorithm data file name is:  " + Data().AlgName; }

std::function<void()> FrmAlgo::Command(std::function<void()> command) {
  return [this, command = std::move(command)] {
    table.LeaveEntry();
    command();
  };
}

void FrmAlgo::ChangeFraction() {
  const std::optional<double> number = AskNumber(
      desk, "Change proportionality constant",
      "Enter step size as a fraction of parameter values.\r\nA proportion of 0 will default to 0.1", StepFraction);
  if (number) StepFraction = *number == 0 ? 0.1 : *number;
}

// ---- The options

void FrmAlgo::OfferOptions() {
  lblAbsRel.visible = txtAbsRel.visible = Offered(EditItem::Tolerance);
  lblSimplex.visible = lblMarquardt.visible = txtMaxFunctions.visible = Offered(EditItem::MaxCalls);
  lblTerminalFreq.visible = txtTerminalFreq.visible = Offered(EditItem::TerminalFreq);
  lblReduction.visible = txtReduction.visible = Offered(EditItem::StepReduction);
  ShowLog();
}

void FrmAlgo::ShowOptions() {
  const AlgorithmData& a = Data();
  lblAbsRel.text =
      a.Tolerance < 0 ? "Relative tolerance for convergence (TC):" : "Absolute tolerance for convergence (TC):";
  txtAbsRel.text = Format(std::fabs(a.Tolerance), "0.000E+00");
  txtMaxFunctions.text = fmt::format("{}", a.MaxCalls);
  txtTerminalFreq.text = fmt::format("{}", a.TerminalFreq);
  txtReduction.text = Format(a.StepReduction, "0.0000");
  txtFileFreq.text = log_.IsOpen() ? fmt::format("{}", a.FileFreq) : "";
}

void FrmAlgo::ChangeTolerance() {
  double& tolerance = Data().Tolerance;
  const std::string boxTitle = "Change the tolerance for convergence";
  bool relative = tolerance < 0;
  const char* const question = relative
                                   ? "Current tolerance type is RELATIVE.\r\n\r\nDo you want to change to ABSOLUTE?"
                                   : "Current tolerance type is ABSOLUTE.\r\n\r\nDo you want to change to RELATIVE?";
  if (desk.Ask(boxTitle, question, style::YesNoQuestion) == Answer::Yes) relative = !relative;
  const std::string magnitude = Format(std::fabs(tolerance), "0.0E+00");
  std::optional<double> entered;
  while (!entered) {
    const std::string answer =
        desk.Input(boxTitle, "Current tolerance is " + magnitude + "  (Minimum allowed is 1E-06)", magnitude);
    if (answer.empty()) return;
    // The magnitude that was proposed is rounded: left as it stands it changes nothing.
    entered = answer == magnitude ? tolerance : NumberIn(answer);
  }
  const double size = std::fabs(*entered);
  tolerance = relative && size != 0 ? -size : size;
  RaiseTolerance(Data());
  ShowOptions();
}

void FrmAlgo::EnterOption(TextBox& box, const char* boxTitle, const char* refusal,
                          const std::function<void(double)>& store) {
  const std::string text = box.text;
  ShowOptions();  // the old value stands again, unless a new one is stored
  if (text == box.text) return;
  const std::optional<double> number = NumberIn(text);
  const bool negative = number && *number < 0;
  if (negative) {
    desk.Tell(boxTitle, refusal, style::Information);
    focus = &box;
  }
  if (!number || negative) return;
  store(*number);
  ShowOptions();
}

void FrmAlgo::OpenLog() {
  const std::optional<std::string> path = desk.AskFile({FileRequest::Kind::Save, "Save minimization progress in...",
                                                        "All files (*.*)|*.*|Tolvane log files (*.tvl)|*.tvl", 2,
                                                        Data().LogName, ".tvl", FileRequest::Adding::Always});
  if (!path) return;
  log_.Open(*path);
  desk.host.windows.OnWrote(*path);
  Data().LogName = *path;
  Data().FileFreq = 10;
  ShowLog();
  lblFileFreq.visible = txtFileFreq.visible = true;
  ShowOptions();
  desk.Tell("Log file management", "The log file " + *path + " is now open for output", style::Information);
}

void FrmAlgo::CloseLog() {
  const std::string closed = log_.Path();  // algorithm data loaded since have another name for theirs
  log_.Close();
  desk.Tell("Log file management", "The old log file " + closed + " is now closed for input", style::Information);
  Data().FileFreq = 0;
  ShowLog();
  ShowOptions();
}

void FrmAlgo::ShowLog() {
  const bool offered = Offered(EditItem::Log) && EditorFromMenu_;
  const bool open = log_.IsOpen();
  lblFileName.visible = txtFileName.visible = cmdOpenLog.visible = cmdCloseLog.visible = offered;
  cmdOpenLog.enabled = offered && !open;
  cmdCloseLog.enabled = offered && open;
  txtFileName.text = open ? log_.Path() : "";
  lblFileFreq.visible = txtFileFreq.visible = Offered(EditItem::FileFreq) && EditorFromMenu_ && open;
}

}  // namespace merlane
