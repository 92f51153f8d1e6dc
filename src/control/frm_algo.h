#pragma once

#include <array>
#include <functional>
#include <optional>
#include <string>

#include "control/frm_main.h"
#include "control/log_file.h"
#include "control/run_state.h"
#include "forms/form.h"

namespace merlane {

/// What the editor of the algorithm data can offer.
enum class EditItem { Values = 1, Steps, Fuses, Tolerance, MaxCalls, TerminalFreq, FileFreq, Log, StepReduction };

/// The nine edit marks, one for each EditItem: true is locked.
struct EditMarks {
  std::array<bool, 9> locked{};
  bool Offered(EditItem item) const { return !locked[static_cast<std::size_t>(item) - 1]; }
};

/// Everything is offered.
inline constexpr EditMarks EditEverything{};
/// Values and steps alone: for the commands that need no more before they start.
inline constexpr EditMarks EditValuesAndSteps{{false, false, true, true, true, true, true, true, true}};
/// Everything but the log, which is opened and closed from the main menu's editor alone.
inline constexpr EditMarks EditAllButLog{{false, false, false, false, false, false, true, true, false}};

/// A change of a value or step by less than this is none.
inline constexpr double EditThreshold = 1E-10;

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
  /// Opens the companion that edits all values.
  std::function<void()> onEditAllValues;

  // For the companion that edits all values.
  const EditMarks& Marks() const { return marks_; }
  /// Names the file of the data, which may have become another.
  void ShowName();
  /// Asks for StepFraction.
  void ChangeFraction();
  /// Makes every fuse "~~".
  void UnfuseAll();
  /// Asks for a number until one is typed; none when cancelled.
  std::optional<double> AskNumber(const std::string& boxTitle, const std::string& prompt, double current) const;
  /// Asks for a new number for one parameter after the other, those that `edited` says, until it is cancelled; one that
  /// differs is stored. The row of the parameter that is asked for is coloured.
  void Walk(const std::string& boxTitle, const std::string& prompt, const Array1<double>& numbers,
            const std::function<bool(int parameter)>& edited,
            const std::function<void(int parameter, double number)>& store);
  /// Shows the value, or the step, of a parameter as it now is, in the colour of a changed cell.
  void ShowChangedValue(int parameter);
  void ShowChangedStep(int parameter);

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

 protected:
  void OnLoad() override;
  void OnUnload() override;

 private:
  enum Column { Number, Value, Step, Fuse, Description, ColumnCount };

  /// A cell under the entry box, and how it looked before.
  struct Entry {
    int row;
    int column;
    Grid::Cell before;
  };

  /// Colours the row of a parameter, scrolled into view, while a box asks for it; then the colours return.
  class RowMark {
   public:
    RowMark(FrmAlgo& editor, int row);
    ~RowMark();
    RowMark(const RowMark&) = delete;
    RowMark& operator=(const RowMark&) = delete;

   private:
    Grid& grid_;
    int row_;
    std::vector<Grid::Cell> before_;
  };

  void Open(const EditMarks& marks, bool fromMenu);
  /// A command of the editor, which takes over first what stands in the entry box.
  std::function<void()> Command(std::function<void()> command);

  AlgorithmData& Data() { return state_.algorithm; }
  bool Offered(EditItem item) const { return marks_.Offered(item); }
  bool Editable(int row, int column) const;

  // The table.
  void FillGrid();
  void ShowFuse(int row, Colour colour);
  void Show(int row, int column, const std::string& text, Colour colour);
  void DoubleClick(int row, int column);
  void EditColumn(int column);
  void BeginEntry(int row, int column);
  void LeaveEntry(const std::string& text);
  void LeaveEntry();
  void EnterValue(const Entry& entry, const std::string& text);
  void EnterStep(const Entry& entry, const std::string& text);
  void EnterFuse(const Entry& entry, const std::string& text);
  void EditAllSteps();
  void EditAllFuses();
  std::optional<std::string> AskFuse(int parameter);

  // The options.
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
  std::optional<Entry> entry_;
};

}  // namespace merlane
