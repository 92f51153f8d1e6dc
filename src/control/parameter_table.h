#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "control/edit_marks.h"
#include "control/run_state.h"
#include "forms/form.h"

namespace merlane {

/// A change of a value or step by less than this is none.
inline constexpr double EditThreshold = 1E-10;

/// The table in the editor of the algorithm data: one row for each parameter below the headings, with its number,
/// value, step, fuse and description. What is typed into a cell, or into the boxes that ask for a whole column, goes
/// straight into the record. What has changed shows in another colour.
class ParameterTable {
 public:
  /// `stepFraction`: the step of a value that is typed, as a fraction of it.
  ParameterTable(Form& editor, Grid& grid, RunState& state, const double& stepFraction);

  /// Opens the companion that edits all values.
  std::function<void()> onEditAllValues;

  /// Shows all parameters; the columns that `marks` lock are empty and cannot be typed into.
  void Fill(const EditMarks& marks);
  /// Closes the entry box over a cell with what stands in the cell, if it is open.
  void LeaveEntry();

  /// Asks for a new number for one parameter after the other, those that `edited` says, until it is cancelled; one that
  /// differs is stored. The row of the parameter that is asked for is coloured.
  void Walk(const std::string& boxTitle, const std::string& prompt, const Array1<double>& numbers,
            const std::function<bool(int parameter)>& edited,
            const std::function<void(int parameter, double number)>& store);
  void EditAllSteps();
  /// Makes every fuse "~~".
  void UnfuseAll();
  /// Shows the value, or the step, of a parameter as it now is, in the colour of a changed cell.
  void ShowChangedValue(int parameter);
  void ShowChangedStep(int parameter);

 private:
  enum Column { Number, Value, Step, Fuse, Description, ColumnCount };

  /// A cell under the entry box, and how it looked before.
  struct Entry {
    int row;
    int column;
    Grid::Cell before;
  };

  AlgorithmData& Data() { return state_.algorithm; }
  bool Locked(int column) const;
  void Show(int row, int column, const std::string& text, Colour colour);
  void ShowFuse(int row, Colour colour);

  void DoubleClick(int row, int column);
  void EditColumn(int column);
  void BeginEntry(int row, int column);
  void LeaveEntry(const std::string& text);
  void EnterValue(const Entry& entry, const std::string& text);
  void EnterStep(const Entry& entry, const std::string& text);
  void EnterFuse(const Entry& entry, const std::string& text);
  void EditAllFuses();
  /// Scrolls the row of a parameter into view and colours it while a box asks for it, that is, as long as what is
  /// returned lives.
  [[nodiscard]] auto MarkRow(int row);
  std::optional<std::string> AskFuse(int parameter);

  Form& editor_;
  Grid& grid_;
  RunState& state_;
  const double& stepFraction_;
  EditMarks marks_;
  std::optional<Entry> entry_;
};

}  // namespace merlane
