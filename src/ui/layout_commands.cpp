// Small windows that offer a choice of commands, one below the other.
#include "ui/layouts.h"

namespace merlane {

void LayOutCommands(Layouter& layouter, QVBoxLayout& column) {
  bool belowCommands = false;
  for (const Control* control : layouter.window.binding.form.Controls()) {
    if (dynamic_cast<const Button*>(control) != nullptr) {
      column.addWidget(layouter.Take(control->name));
      belowCommands = true;
    } else if (dynamic_cast<const Label*>(control) != nullptr) {
      QLabel* const note = layouter.Note(control->name.c_str());
      note->setProperty("quiet", belowCommands);
      column.addWidget(note);
    }
  }
  column.addStretch(1);
  if (QWidget* const cancel = layouter.Take("cmdCancel"))
    layouter.window.SetCancel(cancel);
  else
    layouter.window.CloseByEscape();
  layouter.PreferText(74, 1);
}

/// Stands where the menu stood, so that the results that it is about are seen beside it.
void LayOutCovDisplay(Layouter& layouter, QVBoxLayout& column) {
  if (QLabel* const question = layouter.Note("lblCovDisplay")) column.addWidget(question);
  if (QLabel* const fit = layouter.Note("lblFit")) column.addWidget(fit);
  column.addLayout(layouter.Column({"cmdScreen", "cmdFile", "cmdFinish"}));
  if (QWidget* const explanation = layouter.Take("txtExplain")) column.addWidget(explanation, 1);
  layouter.PreferText(40, 24);
  layouter.window.Stand(FormWindow::Room::Left);
}

void LayOutAbort(Layouter& layouter, QVBoxLayout& column) {
  if (QWidget* const abort = layouter.Take("cmdAbort")) column.addWidget(abort, 1, Qt::AlignCenter);
  layouter.PreferText(44, 1);
  layouter.window.Stand(FormWindow::Room::Above);
}

}  // namespace merlane
