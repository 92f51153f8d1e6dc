#include "control/frm_algo.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <utility>

#include "base/arithmetic.h"
#include "base/number_text.h"
#include "base/text.h"
#include "control/algorithm_file.h"
#include "control/fuses.h"
#include "forms/desk.h"

namespace merlane {
namespace {

// The four states of a cell.
constexpr Colour PlainColour = Colour::Black;
constexpr Colour FusedColour = Colour::Blue;
constexpr Colour ChangedColour = Colour::Red;
constexpr Colour EditedColour = Colour::Green;  // on white

/// A value or step as a cell shows it.
std::string CellNumber(double x) { return x == 0 ? "0" : Format(x, "0.0000E+00"); }

Colour FuseColour(const std::string& fuse) { return fuse == Unfused ? PlainColour : FusedColour; }

bool IsCapital(char c) { return c >= 'A' && c <= 'Z'; }

/// The number a text holds; none when it is no number, or one too large.
std::optional<double> NumberIn(const std::string& text) {
  if (!IsNumber(text)) return std::nullopt;
  return StrictNumber(text);
}

}  // namespace

FrmAlgo::FrmAlgo(Desk& d, RunState& state, LogFile& log, FrmMain& main)
    : Form(d, "frmAlgo", ""), windowMenu(*this, main.onArrange), state_(state), log_(log) {
  mnuExit.onClick = Command([this] { onExit(); });
  mnuValue.onClick = Command([this] { onEditAllValues(); });
  mnuStep.onClick = Command([this] { EditAllSteps(); });
  mnuFraction.onClick = Command([this] { ChangeFraction(); });
  mnuUnFuse.onClick = Command([this] { UnfuseAll(); });
  mnuFinish.onClick = [this] { desk.Unload(*this); };

  grdVS.widths = {10, 10, 10, 4};  // and the description as wide as it is
  grdVS.onDoubleClick = [this](int row, int column) { DoubleClick(row, column); };
  grdVS.onEntry = [this](int row, int column, const std::string& text) {
    if (entry_ && entry_->row == row && entry_->column == column) LeaveEntry(text);
  };

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
  if (StepFraction == 0) StepFraction = 0.1;
  ShowName();
  entry_.reset();
  mnuValue.enabled = Offered(EditItem::Values);
  mnuStep.enabled = Offered(EditItem::Steps);
  mnuUnFuse.enabled = Offered(EditItem::Fuses);
  FillGrid();
  OfferOptions();
  ShowOptions();
}

void FrmAlgo::OnUnload() {
  LeaveEntry();
  BuildFuseGroups(state_);
  PackFree(state_);
  desk.Tell("Just so you know", "Algorithm data, if changed, have been updated", style::Information);
  desk.BringBack();
}

void FrmAlgo::ShowName() { title = "Algorithm data file name is:  " + Data().AlgName; }

std::function<void()> FrmAlgo::Command(std::function<void()> command) {
  return [this, command = std::move(command)] {
    LeaveEntry();
    command();
  };
}

// ---- The table

void FrmAlgo::FillGrid() {
  const AlgorithmData& a = Data();
  grdVS.Resize(0, 0);
  grdVS.Resize(a.NPAR + 1, ColumnCount);
  const char* const headings[] = {"Parameter", "Value", "Step", "Fuse",
                                  "Parameter description [null value; valid values]"};
  for (int column = 0; column < ColumnCount; ++column) grdVS.At(0, column).text = headings[column];
  for (int i = 1; i <= a.NPAR; ++i) {
    Show(i, Number, fmt::format("{}", i), PlainColour);
    Show(i, Value, CellNumber(a.Value(i)), PlainColour);
    Show(i, Step, CellNumber(a.Step(i)), PlainColour);
    ShowFuse(i, FuseColour(a.Fuse(i)));
    Show(i, Description, a.ParName(i), PlainColour);
  }
  grdVS.typedColumns = {false, Offered(EditItem::Values), Offered(EditItem::Steps), Offered(EditItem::Fuses), false};
  grdVS.selectedRow = -1;
  grdVS.topRow = 1;
}

bool FrmAlgo::Editable(int row, int column) const {
  return row > 0 && grdVS.typedColumns[static_cast<std::size_t>(column)];
}

void FrmAlgo::Show(int row, int column, const std::string& text, Colour colour) {
  const bool locked = (column == Value && !Offered(EditItem::Values)) ||
                      (column == Step && !Offered(EditItem::Steps)) || (column == Fuse && !Offered(EditItem::Fuses));
  if (!locked) grdVS.At(row, column) = {text, colour, Colour::Default};
}

void FrmAlgo::ShowFuse(int row, Colour colour) { Show(row, Fuse, Data().Fuse(row), colour); }

void FrmAlgo::ShowChangedValue(int parameter) {
  Show(parameter, Value, CellNumber(Data().Value(parameter)), ChangedColour);
}

void FrmAlgo::ShowChangedStep(int parameter) {
  Show(parameter, Step, CellNumber(Data().Step(parameter)), ChangedColour);
}

void FrmAlgo::DoubleClick(int row, int column) {
  LeaveEntry();
  if (row == 0)
    EditColumn(column);
  else
    BeginEntry(row, column);
}

void FrmAlgo::EditColumn(int column) {
  if (!grdVS.typedColumns[static_cast<std::size_t>(column)]) return;
  if (column == Value) onEditAllValues();
  if (column == Step) EditAllSteps();
  if (column == Fuse) EditAllFuses();
}

void FrmAlgo::BeginEntry(int row, int column) {
  LeaveEntry();
  if (!Editable(row, column)) return;
  Grid::Cell& cell = grdVS.At(row, column);
  entry_ = Entry{row, column, cell};
  cell.fore = EditedColour;
  cell.back = Colour::White;
  grdVS.selectedRow = row;
}

void FrmAlgo::LeaveEntry() {
  if (entry_) LeaveEntry(entry_->before.text);
}

void FrmAlgo::LeaveEntry(const std::string& text) {
  if (!entry_) return;
  const Entry entry = *entry_;
  entry_.reset();
  grdVS.At(entry.row, entry.column) = entry.before;
  focus = &grdVS;  // so that the next row can be typed at once
  // What the cell shows is rounded: left as it stands it changes nothing.
  if (text == entry.before.text) return;
  if (entry.column == Value) EnterValue(entry, text);
  if (entry.column == Step) EnterStep(entry, text);
  if (entry.column == Fuse) EnterFuse(entry, text);
}

void FrmAlgo::EnterValue(const Entry& entry, const std::string& text) {
  const int r = entry.row;
  double& value = Data().Value(r);
  const std::optional<double> number = NumberIn(text);
  if (!number) {
    if (value == 0) grdVS.At(r, Value).fore = PlainColour;
    return;
  }
  // The step follows the value, for a frozen parameter too: editing a value one by one gives it a step.
  const double step = std::fabs(*number == 0 ? StepFraction : Checked(StepFraction * *number));
  const bool valueChanged = std::fabs(*number - value) >= EditThreshold;
  const bool stepChanged = std::fabs(step - Data().Step(r)) >= EditThreshold;
  value = *number;
  Data().Step(r) = step;
  Show(r, Value, CellNumber(value), valueChanged ? ChangedColour : entry.before.fore);
  Show(r, Step, CellNumber(step), stepChanged ? ChangedColour : grdVS.At(r, Step).fore);
}

void FrmAlgo::EnterStep(const Entry& entry, const std::string& text) {
  const int r = entry.row;
  double& step = Data().Step(r);
  const std::optional<double> number = NumberIn(text);
  if (!number) {
    if (step == 0) grdVS.At(r, Step).fore = PlainColour;
    return;
  }
  const bool changed = std::fabs(*number - step) >= EditThreshold;
  step = *number;
  Show(r, Step, CellNumber(step), changed ? ChangedColour : entry.before.fore);
}

void FrmAlgo::EnterFuse(const Entry& entry, const std::string& text) {
  std::string fuse = UpperCase(Trim(text));
  if (fuse == "~") fuse = Unfused;
  const bool accepted =
      fuse == Unfused || (!fuse.empty() && fuse.size() <= 2 && IsCapital(fuse.front()) && IsCapital(fuse.back()));
  if (!accepted || fuse == Data().Fuse(entry.row)) return;
  Data().Fuse(entry.row) = fuse;
  ShowFuse(entry.row, ChangedColour);
}

void FrmAlgo::EditAllSteps() {
  Walk(
      "Edit all step sizes", "Enter new step size for parameter #", Data().Step, [](int) { return true; },
      [this](int i, double step) {
        Data().Step(i) = step;
        ShowChangedStep(i);
      });
}

void FrmAlgo::Walk(const std::string& boxTitle, const std::string& prompt, const Array1<double>& numbers,
                   const std::function<bool(int)>& edited, const std::function<void(int, double)>& store) {
  for (int i = 1; i <= Data().NPAR; ++i) {
    if (!edited(i)) continue;
    const std::optional<double> number = [&] {
      const RowMark mark(*this, i);
      return AskNumber(boxTitle, prompt + std::to_string(i), numbers(i));
    }();
    if (!number) return;
    if (std::fabs(*number - numbers(i)) >= EditThreshold) store(i, *number);
  }
}

void FrmAlgo::EditAllFuses() {
  for (int i = 1; i <= Data().NPAR; ++i) {
    const std::optional<std::string> fuse = AskFuse(i);
    if (!fuse) return;
    if (*fuse == Data().Fuse(i)) {
      ShowFuse(i, FuseColour(*fuse));
    } else {
      Data().Fuse(i) = *fuse;
      ShowFuse(i, ChangedColour);
    }
  }
}

std::optional<std::string> FrmAlgo::AskFuse(int parameter) {
  const RowMark mark(*this, parameter);
  for (;;) {
    const std::string answer = UpperCase(
        desk.Input("Edit all parameter fuse characters",
                   fmt::format("Enter new alphabetical fuse character(s) (e.g., A,B,AA,AB,...) or the null character "
                               "[~~, unfused] for parameter #{}",
                               parameter),
                   Data().Fuse(parameter)));
    if (answer.empty()) return std::nullopt;
    // Only the last character is looked at here, so "1A" passes.
    if (answer == Unfused || (IsCapital(answer.back()) && answer.size() <= 2)) return answer;
  }
}

void FrmAlgo::UnfuseAll() {
  Data().Fuse.Fill(Unfused);
  for (int i = 1; i <= Data().NPAR; ++i) ShowFuse(i, PlainColour);
}

std::optional<double> FrmAlgo::AskNumber(const std::string& boxTitle, const std::string& prompt, double current) const {
  for (;;) {
    const std::string answer = desk.Input(boxTitle, prompt, Shortest(current));
    if (answer.empty()) return std::nullopt;
    if (const std::optional<double> number = NumberIn(answer)) return number;
  }
}

void FrmAlgo::ChangeFraction() {
  const std::optional<double> number = AskNumber(
      "Change proportionality constant",
      "Enter step size as a fraction of parameter values.\r\nA proportion of 0 will default to 0.1", StepFraction);
  if (number) StepFraction = *number == 0 ? 0.1 : *number;
}

FrmAlgo::RowMark::RowMark(FrmAlgo& editor, int row) : grid_(editor.grdVS), row_(row) {
  constexpr int RowsInView = 10;
  grid_.topRow = std::max(1, row - RowsInView + 1);
  grid_.selectedRow = row;
  for (int column = 0; column < grid_.Columns(); ++column) {
    Grid::Cell& cell = grid_.At(row, column);
    before_.push_back(cell);
    cell.fore = EditedColour;
    cell.back = Colour::White;
  }
}

FrmAlgo::RowMark::~RowMark() {
  for (int column = 0; column < grid_.Columns(); ++column)
    grid_.At(row_, column) = before_[static_cast<std::size_t>(column)];
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
  log_.Close();
  desk.Tell("Log file management", "The old log file " + Data().LogName + " is now closed for input",
            style::Information);
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
