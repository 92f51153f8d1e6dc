// An import: how the file is written and what should be looked at stand at the left, what its columns are and what
// becomes of them beside it.
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

/// Wishes for no more than the least that it needs, so that what stands beside it is whole first, and takes what is
/// left.
class Modest : public QWidget {
 public:
  QSize sizeHint() const override { return minimumSizeHint(); }
  bool hasHeightForWidth() const override { return false; }
};

/// A table or a text of at least so many lines below its heading.
QWidget* Part(Layouter& layouter, const char* heading, const char* table, int lines) {
  auto* const part = new Modest;
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
  column->addStretch(0);  // where a text is hidden, its heading stands where it stood
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
  choices->addStretch(1);
  parts->addWidget(Part(layouter, "lblPreview", "txtPreview", 4));

  auto* const left = new QVBoxLayout;
  left->setSpacing(12);
  left->addWidget(layouter.Scrolled(choices));
  if (QLabel* const nests = layouter.Note("lblNests")) left->addWidget(nests);
  left->addWidget(Part(layouter, "lblRemarks", "txtRemarks", 3), 1);
  auto* const row = new QHBoxLayout;
  row->setSpacing(18);
  row->addLayout(left, 2);
  row->addWidget(parts, 3);
  column.addLayout(row, 1);
  QHBoxLayout* const buttons = layouter.PinButtons({"cmdDone", "cmdChoices", "cmdCancel"});
  if (QWidget* const progress = layouter.Take("lblProgress")) buttons->insertWidget(0, progress);
  layouter.window.SetDefault(layouter.Take("cmdDone"));
  layouter.window.SetCancel(layouter.Take("cmdCancel"));
  layouter.PreferText(150, 48);
  layouter.window.Stand(FormWindow::Room::Whole);
}

}  // namespace merlane
