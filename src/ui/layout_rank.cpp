// Ranking and averaging: models are added at the top, compared in the table, and averaged below it.
#include "ui/layouts.h"

namespace merlane {

void LayOutRank(Layouter& layouter, QVBoxLayout& column) {
  auto* const add = new QGridLayout;
  add->setColumnStretch(0, 1);
  if (QLabel* const how = layouter.Note("lblAdd")) add->addWidget(how, 0, 0, 2, 1);
  int place = 0;
  for (const char* name : {"cmdLoadAlg", "cmdEditAlg", "cmdSaveAlg", "cmdBayesian"})
    if (QWidget* const button = layouter.Take(name)) {
      add->addWidget(button, place / 2, 1 + place % 2);
      ++place;
    }
  auto* const compare = new QVBoxLayout;
  compare->addLayout(layouter.Row({"cmdAICc", "cmdQAICc", "txtCHat"}));
  compare->addLayout(layouter.Row({"cmdRank", "cmdAverage"}));
  auto* const commands = new QHBoxLayout;
  commands->setSpacing(14);
  commands->addWidget(layouter.Group(QStringLiteral("Models"), add), 1);
  commands->addWidget(layouter.Group(QStringLiteral("Statistics"), compare));
  column.addLayout(commands);

  auto* const models = new QWidget;
  auto* const table = new QVBoxLayout(models);
  table->setContentsMargins(0, 0, 0, 0);
  table->setSpacing(4);
  if (QWidget* const grid = layouter.Take("grdRank")) table->addWidget(grid, 1);
  auto* const averages = new QWidget;
  auto* const pane = new QVBoxLayout(averages);
  pane->setContentsMargins(0, 0, 0, 0);
  pane->setSpacing(4);
  if (QWidget* const label = layouter.Take("lblAverage")) pane->addWidget(label);
  if (QWidget* const text = layouter.Take("txtAverage")) {
    text->setMinimumHeight(4 * text->fontMetrics().lineSpacing());
    pane->addWidget(text, 1);
  }
  auto* const parts = new QSplitter(Qt::Vertical);
  parts->setChildrenCollapsible(false);
  parts->setHandleWidth(8);
  parts->addWidget(models);
  parts->addWidget(averages);
  parts->setStretchFactor(0, 1);
  parts->setStretchFactor(1, 1);
  parts->setSizes({1000, 1000});  // halves, once there are averages to read
  column.addWidget(parts, 1);

  auto* const notes = layouter.Column({"lblDelete", "lblCovariance", "lblNotes"});
  notes->setSpacing(2);
  for (const char* name : {"lblDelete", "lblCovariance", "lblNotes"})
    if (QWidget* const note = layouter.Take(name)) note->setProperty("quiet", true);
  layouter.PinButtons({"cmdSaveRank", "cmdFinish"})->insertLayout(0, notes);
  layouter.PreferText(150, 48);
  layouter.window.Stand(FormWindow::Room::Whole);
}

}  // namespace merlane
