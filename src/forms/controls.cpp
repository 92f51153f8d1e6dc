#include "forms/controls.h"

#include <algorithm>
#include <cassert>

#include "forms/desk.h"
#include "forms/form.h"

namespace merlane {

Control::Control(Form& f, std::string controlName, std::string initialText)
    : form(f), name(std::move(controlName)), text(std::move(initialText)) {
  form.controls_.push_back(this);
}

bool Control::TakesInput() const { return beginsNothing ? !form.desk.charge.StandsBehind(form) : form.TakesInput(); }

void Control::KeepDesign() {
  designText_ = text;
  designToolTip_ = toolTip;
  designEnabled_ = enabled;
  designVisible_ = visible;
}

void Control::RestoreDesign() {
  text = designText_;
  toolTip = designToolTip_;
  enabled = designEnabled_;
  visible = designVisible_;
}

void Switch::KeepDesign() {
  Control::KeepDesign();
  designValue_ = value;
}

void Switch::RestoreDesign() {
  Control::RestoreDesign();
  value = designValue_;
}

void Grid::Resize(int rowCount, int columnCount) {
  std::vector<Cell> cells(static_cast<std::size_t>(rowCount) * static_cast<std::size_t>(columnCount));
  for (int row = 0; row < std::min(rows_, rowCount); ++row)
    for (int column = 0; column < std::min(columns_, columnCount); ++column)
      cells[static_cast<std::size_t>(row * columnCount + column)] = std::move(At(row, column));
  rows_ = rowCount;
  columns_ = columnCount;
  cells_ = std::move(cells);
}

Grid::Cell& Grid::At(int row, int column) {
  assert(Has(row, column));
  return cells_[static_cast<std::size_t>(row * columns_ + column)];
}

const Grid::Cell& Grid::At(int row, int column) const {
  assert(Has(row, column));
  return cells_[static_cast<std::size_t>(row * columns_ + column)];
}

void StatusBar::Set(int panel, const std::string& panelText) {
  std::string& held = panels_[static_cast<std::size_t>(panel) - 1];
  if (held == panelText) return;
  held = panelText;
  form.desk.host.windows.OnStatus(name, panel, panelText);
}

}  // namespace merlane
