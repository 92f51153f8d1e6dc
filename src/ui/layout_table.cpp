// Windows that are a table with its menus.
#include "ui/layouts.h"

namespace merlane {

void LayOutTable(Layouter& layouter, QVBoxLayout& column) {
  for (const Control* control : layouter.window.binding.form.Controls())
    if (dynamic_cast<const Grid*>(control) != nullptr) column.addWidget(layouter.Take(control->name), 1);
  layouter.PreferText(150, 48);
  layouter.window.Stand(FormWindow::Room::Whole);
}

}  // namespace merlane
