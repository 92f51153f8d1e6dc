// The main menu as a worklist, narrow enough to stand beside the results: an analysis goes down its groups.
#include "ui/layouts.h"

namespace merlane {
namespace {

struct Stage {
  const char* title;
  std::vector<std::vector<const char*>> lines;  // of buttons, at most two on each
};

const Stage Stages[] = {
    {"Model", {{"cmdInitialize"}}},
    {"Algorithm data", {{"cmdLoadAlg", "cmdEditAlg"}, {"cmdSaveAlg", "cmdBayesian"}}},
    {"Minimization", {{"cmdOneFunction"}, {"cmdSimplex", "cmdMarquardt"}}},
    {"Estimates", {{"cmdCovariance"}, {"cmdParEstimate"}}},
    {"Results", {{"cmdUserSummary"}, {"cmdRank"}}},
};

QLabel* Marked(const QString& text, const char* property) {
  auto* const label = new QLabel(text);
  label->setProperty(property, true);
  return label;
}

/// The group's number and title, and its buttons below the title.
void AddStage(Layouter& layouter, QGridLayout& table, int number, const Stage& stage) {
  if (number > 1) table.setRowMinimumHeight(table.rowCount(), 4);
  int row = table.rowCount() + 1;
  auto* const badge = Marked(QString::number(number), "stage");
  badge->setAlignment(Qt::AlignCenter);
  table.addWidget(badge, row, 0);
  table.addWidget(Marked(QLatin1String(stage.title), "stageTitle"), row, 1, 1, 2);
  for (const auto& line : stage.lines) {
    ++row;
    int column = 1;
    for (const char* name : line)
      if (QWidget* const button = layouter.Take(name)) {
        auto* const push = qobject_cast<QPushButton*>(button);
        push->setText(push->text().replace(QLatin1Char('\n'), QLatin1Char(' ')));  // there is room for one line
        table.addWidget(button, row, column++, 1, line.size() == 1 ? 2 : 1);
      }
  }
}

}  // namespace

void LayOutMenu(Layouter& layouter, QVBoxLayout& column) {
  column.setSpacing(6);
  auto* const heading = new QVBoxLayout;
  heading->setSpacing(0);
  if (QWidget* const model = layouter.Take("lblModelname")) {
    model->setProperty("heading", true);
    heading->addWidget(model);
  }
  if (QWidget* const version = layouter.Take("lblVersion")) {
    version->setProperty("quiet", true);
    heading->addWidget(version);
  }
  column.addLayout(heading);

  auto* const table = new QGridLayout;
  table->setHorizontalSpacing(10);
  table->setVerticalSpacing(4);
  table->setColumnStretch(1, 1);
  table->setColumnStretch(2, 1);
  int number = 0;
  for (const Stage& stage : Stages) AddStage(layouter, *table, ++number, stage);
  column.addLayout(table);
  column.addStretch(1);
  column.addLayout(layouter.Buttons({"cmdQuit"}));
  layouter.window.Stand(FormWindow::Room::Left);
  layouter.window.Stay();
}

}  // namespace merlane
