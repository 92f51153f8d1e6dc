// Windows that are mostly text: results with their commands above them, and pages to be read.
#include "ui/layouts.h"

namespace merlane {
namespace {

std::vector<QWidget*> TakeKind(Layouter& layouter, bool (*isKind)(const Control&)) {
  std::vector<QWidget*> widgets;
  for (const Control* control : layouter.window.binding.form.Controls())
    if (isKind(*control)) widgets.push_back(layouter.Take(control->name));
  return widgets;
}

bool IsButton(const Control& control) { return dynamic_cast<const Button*>(&control) != nullptr; }
bool IsPane(const Control& control) { return dynamic_cast<const Pane*>(&control) != nullptr; }

}  // namespace

void LayOutText(Layouter& layouter, QVBoxLayout& column) {
  const std::vector<QWidget*> buttons = TakeKind(layouter, IsButton);
  if (!buttons.empty()) {
    auto* const row = new QHBoxLayout;
    for (QWidget* button : buttons) row->addWidget(button);
    row->addStretch(1);
    column.addLayout(row);
  } else {
    layouter.window.CloseByEscape();  // there is nothing in it but a text to be read
  }
  if (QLabel* const fit = layouter.Note("lblFit")) {
    fit->setProperty("quiet", true);
    column.addWidget(fit);
  }
  auto* const panes = new QSplitter(Qt::Vertical);
  panes->setChildrenCollapsible(false);
  panes->setHandleWidth(8);
  for (QWidget* pane : TakeKind(layouter, IsPane)) panes->addWidget(pane);
  for (int i = 0; i < panes->count(); ++i) panes->setStretchFactor(i, i + 1);
  column.addWidget(panes, 1);
  layouter.PreferText(120, 46);
}

/// The menu is away while these results are open, and their lines are long.
void LayOutWideText(Layouter& layouter, QVBoxLayout& column) {
  LayOutText(layouter, column);
  layouter.PreferText(170, 46);
  layouter.window.Stand(FormWindow::Room::Whole);
}

void LayOutPage(Layouter& layouter, QVBoxLayout& column) {
  for (QWidget* pane : TakeKind(layouter, IsPane)) {
    auto* const page = qobject_cast<QPlainTextEdit*>(pane);
    page->setFrameShape(QFrame::NoFrame);
    page->document()->setDocumentMargin(14);
    column.addWidget(page, 1);
  }
  column.addLayout(layouter.Buttons({"cmdOK"}));
  layouter.window.SetDefault(layouter.Take("cmdOK"));
  layouter.window.SetCancel(layouter.Take("cmdOK"));
  layouter.PreferText(96, 40);
}

}  // namespace merlane
