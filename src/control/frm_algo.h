#pragma once

#include <functional>
#include <string>

#include "control/edit_marks.h"
#include "control/frm_main.h"
#include "control/log_file.h"
#include "control/parameter_table.h"
#include "control/run_state.h"
#include "forms/form.h"

namespace merlane {

/// The editor of the algorithm data: a table of all parameters and the options of the minimisers. Changes go straight
/// into the record; there is no undo, and closing the form keeps them.
class FrmAlgo : public Form {
 public:
  FrmAlgo(Desk& d, RunState& state, LogFile& log, FrmMain& main);

  // The editor is in charge until it closes; then whoever acts comes to the front.
  /// Opens with everything offered.
  void OpenFromMenu() { Open(EditEverything, true); }
  /// Opens for another command with some items locked and the log hidden.
  void OpenLocked(const EditMarks& marks) { Open(marks, false); }

  /// Step sizes as a fraction of values; 0 stands for 0.1.
  double StepFraction = 0.1;

  /// The quit dialogue, for the form's own "Exit".
  std::function<void()> onExit;

  // For the companion that edits all values.
  const EditMarks& Marks() const { return marks_; }
  /// Names the file of the data, which may have become another.
  void ShowName();
  /// Asks for StepFraction.
  void ChangeFraction();

  MenuEntry mnuApplication{*this, "mnuApplication", "&Application"};
  MenuEntry mnuExit{*this, "mnuExit", "E&xit", &mnuApplication};
  MenuEntry mnuEdit{*this, "mnuEdit", "&Edit"};
  MenuEntry mnuValue{*this, "mnuValue", "&Values", &mnuEdit};
  MenuEntry mnuStep{*this, "mnuStep", "&Step sizes", &mnuEdit};
  MenuEntry mnuFraction{*this, "mnuFraction", "Change step size &proportion", &mnuEdit};
  MenuEntry mnuUnFuse{*this, "mnuUnFuse", "&Unfuse all values", &mnuEdit};
  MenuEntry mnuFinish{*this, "mnuFinish", "&Finish editing", &mnuEdit};
  WindowMenu windowMenu;

  /// One row per parameter below the headings; the columns are number, value, step, fuse and description. The entry box
  /// that a host lays over a double-clicked cell is `txtValue` of the user's manual.
  Grid grdVS{*this, "grdVS"};
  ParameterTable table;
  Label lblNote1{*this, "lblNote1", "Note 1: A step size of zero freezes the value of the corresponding parameter"};
  Label lblNote2{*this, "lblNote2",
                 "Note 2: Alphabetically fused parameters are co-estimated.  Only the parameter of lowest ordinal rank "
                 "will have a non-zero step size."};
  Label lblNote3{*this, "lblNote3",
                 "Double-click to edit a Value, Step or Fuse, or double-click the column heading to change them all"};

  Label lblAbsRel{*this, "lblAbsRel", ""};
  TextBox txtAbsRel{*this, "txtAbsRel", ""};
  Label lblSimplex{*this, "lblSimplex", "Simplex (maximum # function calls):"};
  Label lblMarquardt{*this, "lblMarquardt", "Marquardt (maximum # iterations):"};
  TextBox txtMaxFunctions{*this, "txtMaxFunctions", ""};
  Label lblReduction{*this, "lblReduction", "Step size reduction fraction:"};
  TextBox txtReduction{*this, "txtReduction", ""};
  Label lblTerminalFreq{*this, "lblTerminalFreq", "Terminal display frequency:"};
  TextBox txtTerminalFreq{*this, "txtTerminalFreq", ""};
  Label lblFileName{*this, "lblFileName", "Log file name (maximum of 10.3 characters):"};
  TextBox txtFileName{*this, "txtFileName", ""};
  Button cmdOpenLog{*this, "cmdOpenLog", "&Open"};
  Button cmdCloseLog{*this, "cmdCloseLog", "&Close"};
  Label lblFileFreq{*this, "lblFileFreq", "Output frequency:"};
  TextBox txtFileFreq{*this, "txtFileFreq", ""};

  Button cmdUpdate{*this, "cmdUpdate", "&Update edits"};
  Button cmdFinish{*this, "cmdFinish", "&Finish editing"};

  /// What the parameters are described by, before a function call has noted which are to be estimated.
  std::function<Array1<std::string>()> descriptions = [this] { return Data().ParName; };

 protected:
  void OnLoad() override;
  void OnUnload() override;

 private:
  void Open(const EditMarks& marks, bool fromMenu);
  /// A command of the editor, which takes over first what stands in the entry box.
  std::function<void()> Command(std::function<void()> command);

  AlgorithmData& Data() { return state_.algorithm; }
  bool Offered(EditItem item) const { return marks_.Offered(item); }

  void OfferOptions();
  void ShowOptions();
  void ChangeTolerance();
  void EnterOption(TextBox& box, const char* boxTitle, const char* refusal, const std::function<void(double)>& store);
  void OpenLog();
  void CloseLog();
  /// Shows the log's controls as the log stands.
  void ShowLog();

  RunState& state_;
  LogFile& log_;
  EditMarks marks_;
  bool EditorFromMenu_ = false;
  AlgorithmData before_;  // when the editor was opened
};

}  // namespace merlane
