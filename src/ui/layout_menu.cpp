// The main menu as a worklist: an analysis goes down its lines.
#include "ui/layouts.h"

namespace merlane {

void LayOutMenu(Layouter& layouter, QVBoxLayout& column) {
  struct Stage {
    const char* title;
    std::initializer_list<const char*> buttons;
  };
  static const Stage stages[] = {
      {"Model", {"cmdInitialize"}},
      {"Algorithm data", {"cmdLoadAlg", "cmdEditAlg", "cmdSaveAlg", "cmdBayesian"}},
      {"Minimization", {"cmdOneFunction", "cmdSimplex", "cmdMarquardt"}},
      {"Estimates", {"cmdCovariance", "cmdParEstimate"}},
      {"Results", {"cmdUserSummary", "cmdRank"}},
  };

  auto* const heading = new QHBoxLayout;
  if (QWidget* const model = layouter.Take("lblModelname")) {
    model->setProperty("heading", true);
    heading->addWidget(model);
  }
  heading->addStretch(1);
  if (QWidget* const version = layouter.Take("lblVersion")) heading->addWidget(version, 0, Qt::AlignBottom);
  column.addLayout(heading);

  auto* const table = new QGridLayout;
  table->setHorizontalSpacing(12);
  table->setVerticalSpacing(10);
  int row = 0, widest = 0, places = 2;
  for (const Stage& stage : stages) {
    auto* const number = new QLabel(QString::number(row + 1));
    number->setProperty("stage", true);
    number->setAlignment(Qt::AlignCenter);
    table->addWidget(number, row, 0);
    auto* const title = new QLabel(QLatin1String(stage.title));
    title->setProperty("stageTitle", true);
    table->addWidget(title, row, 1);
    int place = 2;
    for (const char* name : stage.buttons)
      if (QWidget* const button = layouter.Take(name)) {
        button->setProperty("worklist", true);
        button->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Expanding);
        table->addWidget(button, row, place++);
        button->ensurePolished();
        widest = std::max(widest, button->sizeHint().width());
      }
    places = std::max(places, place);
    ++row;
  }
  for (int place = 2; place < places; ++place) {
    table->setColumnMinimumWidth(place, widest);
    table->setColumnStretch(place, 1);
  }
  column.addLayout(table, 1);
  column.addLayout(layouter.Buttons({"cmdQuit"}));
}

}  // namespace merlane
