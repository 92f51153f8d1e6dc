// The editor of the algorithm data: the table, and beside it the options of the minimisers and the log.
#include "ui/layouts.h"

namespace merlane {

void LayOutAlgorithm(Layouter& layouter, QVBoxLayout& column) {
  auto* const table = new QVBoxLayout;
  table->setSpacing(3);
  if (QWidget* const grid = layouter.Take("grdVS")) table->addWidget(grid, 1);
  for (const char* note : {"lblNote3", "lblNote1", "lblNote2"})
    if (QLabel* const label = layouter.Note(note)) {
      label->setProperty("quiet", true);
      table->addWidget(label);
    }

  auto* const options = new QVBoxLayout;
  options->setSpacing(14);
  options->addWidget(
      layouter.Group(QStringLiteral("Minimization"),
                     layouter.Column({"lblAbsRel", "txtAbsRel", "lblSimplex", "lblMarquardt", "txtMaxFunctions",
                                      "lblReduction", "txtReduction", "lblTerminalFreq", "txtTerminalFreq"})));
  layouter.Note("lblFileName");
  auto* const log = layouter.Column({"lblFileName", "txtFileName"});
  log->addLayout(layouter.Row({"cmdOpenLog", "cmdCloseLog"}));
  log->addLayout(layouter.Column({"lblFileFreq", "txtFileFreq"}));
  options->addWidget(layouter.Group(QStringLiteral("Log file"), log));
  options->addStretch(1);

  auto* const row = new QHBoxLayout;
  row->setSpacing(16);
  row->addLayout(table, 1);
  row->addWidget(layouter.Scrolled(options));
  column.addLayout(row, 1);
  layouter.PinButtons({"cmdUpdate", "cmdFinish"});
  layouter.PreferText(170, 48);
  layouter.window.Stand(FormWindow::Room::Whole);
}

}  // namespace merlane
