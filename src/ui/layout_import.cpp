// An import: how the file is written at the left, what its columns are and what becomes of them beside it.
#include "ui/layouts.h"

namespace merlane {
namespace {

QGroupBox* File(Layouter& layouter) {
  auto* const content = new QVBoxLayout;
  content->addLayout(layouter.Row({"chkHeading"}));
  auto* const fields = new QGridLayout;
  fields->setHorizontalSpacing(12);
  fields->setVerticalSpacing(7);
  layouter.Field(*fields, "lblSheet", {"cboSheet"});
  layouter.Field(*fields, "lblEncoding", {"cboEncoding"});
  layouter.Field(*fields, "lblDelimiter", {"cboDelimiter"});
  layouter.Field(*fields, "lblDecimal", {"cboDecimal"});
  layouter.Field(*fields, "lblDates", {"cboDates"});
  layouter.Field(*fields, "lblUnknownAge", {"cboUnknownAge"});
  layouter.Field(*fields, "lblYear", {"txtYear"});
  content->addLayout(fields);
  return layouter.Group(QStringLiteral("How the file is written"), content);
}

/// A table or a text of at least so many lines below its heading.
QWidget* Part(Layouter& layouter, const char* heading, const char* table, int lines) {
  auto* const part = new QWidget;
  auto* const column = new QVBoxLayout(part);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(4);
  if (QLabel* const label = layouter.Note(heading)) {
    label->setProperty("stageTitle", true);
    column->addWidget(label);
  }
  if (QWidget* const widget = layouter.Take(table)) {
    widget->setMinimumHeight(lines * widget->fontMetrics().lineSpacing() + 16);
    column->addWidget(widget, 1);
  }
  return part;
}

}  // namespace

void LayOutImport(Layouter& layouter, QVBoxLayout& column) {
  auto* const file = new QHBoxLayout;
  file->setSpacing(10);
  for (const char* name : {"lblFile", "txtFile"})
    if (QWidget* const widget = layouter.Take(name)) file->addWidget(widget);
  column.addLayout(file);
  if (QLabel* const proposal = layouter.Note("lblProposal")) column.addWidget(proposal);

  auto* const choices = new QVBoxLayout;
  choices->setSpacing(12);
  choices->addWidget(File(layouter));
  auto* const parts = new QSplitter(Qt::Vertical);
  parts->setChildrenCollapsible(false);
  parts->setHandleWidth(8);
  QWidget* const columns = Part(layouter, "lblColumns", "grdColumns", 5);
  qobject_cast<QVBoxLayout*>(columns->layout())->addLayout(layouter.Row({"lblRole", "cboRole"}));
  parts->addWidget(columns);
  if (QLabel* const nests = layouter.Note("lblNests")) choices->addWidget(nests);
  choices->addStretch(1);
  parts->addWidget(Part(layouter, "lblPreview", "txtPreview", 4));
  parts->addWidget(Part(layouter, "lblRemarks", "txtRemarks", 2));
  parts->setStretchFactor(0, 3);
  parts->setStretchFactor(1, 3);
  parts->setStretchFactor(2, 1);

  auto* const row = new QHBoxLayout;
  row->setSpacing(18);
  row->addWidget(layouter.Scrolled(choices));
  row->addWidget(parts, 1);
  column.addLayout(row, 1);
  QHBoxLayout* const buttons = layouter.PinButtons({"cmdDone", "cmdChoices", "cmdCancel"});
  if (QWidget* const progress = layouter.Take("lblProgress")) buttons->insertWidget(0, progress);
  layouter.window.SetDefault(layouter.Take("cmdDone"));
  layouter.window.SetCancel(layouter.Take("cmdCancel"));
  layouter.PreferText(150, 48);
  layouter.window.Stand(FormWindow::Room::Whole);
}

}  // namespace merlane
