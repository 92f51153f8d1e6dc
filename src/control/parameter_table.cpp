#include "control/parameter_table.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <utility>

#include "base/arithmetic.h"
#include "base/at_end.h"
#include "base/number_text.h"
#include "base/text.h"
#include "control/ask_number.h"
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

}  // namespace

ParameterTable::ParameterTable(Form& editor, Grid& grid, RunState& state, const double& stepFraction)
    : editor_(editor), grid_(grid), state_(state), stepFraction_(stepFraction) {
  grid_.widths = {10, 10, 10, 4};  // and the description as wide as it is
  grid_.onDoubleClick = [this](int row, int column) { DoubleClick(row, column); };
  grid_.onEntry = [this](int row, int column, const std::string& text) {
    if (entry_ && entry_->row == row && entry_->column == column) LeaveEntry(text);
  };
}

void ParameterTable::Fill(const EditMarks& marks) {
  marks_ = marks;
  entry_.reset();
  const AlgorithmData& a = Data();
  grid_.Resize(0, 0);
  grid_.Resize(a.NPAR + 1, ColumnCount);
  const char* const headings[] = {"Parameter", "Value", "Step", "Fuse",
                                  "Parameter description [null value; valid values]"};
  for (int column = 0; column < ColumnCount; ++column) grid_.At(0, column).text = headings[column];
  for (int i = 1; i <= a.NPAR; ++i) {
    Show(i, Number, fmt::format("{}", i), PlainColour);
    Show(i, Value, CellNumber(a.Value(i)), PlainColour);
    Show(i, Step, CellNumber(a.Step(i)), PlainColour);
    ShowFuse(i, FuseColour(a.Fuse(i)));
    Show(i, Description, a.ParName(i), PlainColour);
  }
  grid_.typedColumns = {false, !Locked(Value), !Locked(Step), !Locked(Fuse), false};
  grid_.selectedRow = -1;
  grid_.topRow = 1;
}

bool ParameterTable::Locked(int column) const {
  return (column == Value && !marks_.Offered(EditItem::Values)) ||
         (column == Step && !marks_.Offered(EditItem::Steps)) || (column == Fuse && !marks_.Offered(EditItem::Fuses));
}

void ParameterTable::Show(int row, int column, const std::string& text, Colour colour) {
  if (!Locked(column)) grid_.At(row, column) = {text, colour, Colour::Default};
}

void ParameterTable::ShowFuse(int row, Colour colour) { Show(row, Fuse, Data().Fuse(row), colour); }

void ParameterTable::ShowChangedValue(int parameter) {
  Show(parameter, Value, CellNumber(Data().Value(parameter)), ChangedColour);
}

void ParameterTable::ShowChangedStep(int parameter) {
  Show(parameter, Step, CellNumber(Data().Step(parameter)), ChangedColour);
}

void ParameterTable::DoubleClick(int row, int column) {
  LeaveEntry();
  if (row == 0)
    EditColumn(column);
  else
    BeginEntry(row, column);
}

void ParameterTable::EditColumn(int column) {
  if (!grid_.typedColumns[static_cast<std::size_t>(column)]) return;
  if (column == Value) onEditAllValues();
  if (column == Step) EditAllSteps();
  if (column == Fuse) EditAllFuses();
}

void ParameterTable::BeginEntry(int row, int column) {
  LeaveEntry();
  if (!grid_.typedColumns[static_cast<std::size_t>(column)]) return;
  Grid::Cell& cell = grid_.At(row, column);
  entry_ = Entry{row, column, cell};
  cell.fore = EditedColour;
  cell.back = Colour::White;
  grid_.selectedRow = row;
}

void ParameterTable::LeaveEntry() {
  if (entry_) LeaveEntry(entry_->before.text);
}

void ParameterTable::LeaveEntry(const std::string& text) {
  if (!entry_) return;
  const Entry entry = *entry_;
  entry_.reset();
  grid_.At(entry.row, entry.column) = entry.before;
  editor_.focus = &grid_;  // so that the next row can be typed at once
  // What the cell shows is rounded: left as it stands it changes nothing.
  if (text == entry.before.text) return;
  if (entry.column == Value) EnterValue(entry, text);
  if (entry.column == Step) EnterStep(entry, text);
  if (entry.column == Fuse) EnterFuse(entry, text);
}

void ParameterTable::EnterValue(const Entry& entry, const std::string& text) {
  const int r = entry.row;
  double& value = Data().Value(r);
  const std::optional<double> number = NumberIn(text);
  if (!number) {
    if (value == 0) grid_.At(r, Value).fore = PlainColour;
    return;
  }
  // The step follows the value, for a frozen parameter too: editing a value one by one gives it a step.
  const double step = std::fabs(*number == 0 ? stepFraction_ : Checked(stepFraction_ * *number));
  const bool valueChanged = std::fabs(*number - value) >= EditThreshold;
  const bool stepChanged = std::fabs(step - Data().Step(r)) >= EditThreshold;
  value = *number;
  Data().Step(r) = step;
  Show(r, Value, CellNumber(value), valueChanged ? ChangedColour : entry.before.fore);
  Show(r, Step, CellNumber(step), stepChanged ? ChangedColour : grid_.At(r, Step).fore);
}

void ParameterTable::EnterStep(const Entry& entry, const std::string& text) {
  const int r = entry.row;
  double& step = Data().Step(r);
  const std::optional<double> number = NumberIn(text);
  if (!number) {
    if (step == 0) grid_.At(r, Step).fore = PlainColour;
    return;
  }
  const bool changed = std::fabs(*number - step) >= EditThreshold;
  step = *number;
  Show(r, Step, CellNumber(step), changed ? ChangedColour : entry.before.fore);
}

void ParameterTable::EnterFuse(const Entry& entry, const std::string& text) {
  std::string fuse = UpperCase(Trim(text));
  if (fuse == "~") fuse = Unfused;
  const bool accepted =
      fuse == Unfused || (!fuse.empty() && fuse.size() <= 2 && IsCapital(fuse.front()) && IsCapital(fuse.back()));
  if (!accepted || fuse == Data().Fuse(entry.row)) return;
  Data().Fuse(entry.row) = fuse;
  ShowFuse(entry.row, ChangedColour);
}

void ParameterTable::EditAllSteps() {
  Walk(
      "Edit all step sizes", "Enter new step size for parameter #", Data().Step, [](int) { return true; },
      [this](int i, double step) {
        Data().Step(i) = step;
        ShowChangedStep(i);
      });
}

auto ParameterTable::MarkRow(int row) {
  constexpr int RowsInView = 10;
  grid_.topRow = std::max(1, row - RowsInView + 1);
  grid_.selectedRow = row;
  std::vector<Grid::Cell> before;
  for (int column = 0; column < grid_.Columns(); ++column) {
    Grid::Cell& cell = grid_.At(row, column);
    before.push_back(cell);
    cell.fore = EditedColour;
    cell.back = Colour::White;
  }
  return AtEnd([this, row, before = std::move(before)] {
    for (int column = 0; column < grid_.Columns(); ++column)
      grid_.At(row, column) = before[static_cast<std::size_t>(column)];
  });
}

void ParameterTable::Walk(const std::string& boxTitle, const std::string& prompt, const Array1<double>& numbers,
                          const std::function<bool(int)>& edited, const std::function<void(int, double)>& store) {
  for (int i = 1; i <= Data().NPAR; ++i) {
    if (!edited(i)) continue;
    const std::optional<double> number = [&] {
      const auto mark = MarkRow(i);
      return AskNumber(editor_.desk, boxTitle, prompt + std::to_string(i), numbers(i));
    }();
    if (!number) return;
    if (std::fabs(*number - numbers(i)) >= EditThreshold) store(i, *number);
  }
}

void ParameterTable::EditAllFuses() {
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

std::optional<std::string> ParameterTable::AskFuse(int parameter) {
  const auto mark = MarkRow(parameter);
  for (;;) {
    const std::string answer = UpperCase(editor_.desk.Input(
        "Edit all parameter fuse characters",
        fmt::format("Enter new alphabetical fuse character(s) (e.g., A,B,AA,AB,...) or the null character "
                    "[~~, unfused] for parameter #{}",
                    parameter),
        Data().Fuse(parameter)));
    if (answer.empty()) return std::nullopt;
    // Only the last character is looked at here, so "1A" passes.
    if (answer == Unfused || (IsCapital(answer.back()) && answer.size() <= 2)) return answer;
  }
}

void ParameterTable::UnfuseAll() {
  Data().Fuse.Fill(Unfused);
  for (int i = 1; i <= Data().NPAR; ++i) ShowFuse(i, PlainColour);
}

}  // namespace merlane
