// The description of an analysis: the choices at the left, the help on model and data beside them.
#include "ui/layouts.h"

namespace merlane {
namespace {

QGridLayout* Fields() {
  auto* const fields = new QGridLayout;
  fields->setHorizontalSpacing(12);
  fields->setVerticalSpacing(7);
  fields->setColumnStretch(1, 1);
  return fields;
}

/// Something that is known of the data file, and what to do about it.
void AddNote(Layouter& layouter, QVBoxLayout& content, const char* note, const char* button) {
  auto* const row = new QHBoxLayout;
  row->setSpacing(10);
  if (QLabel* const label = layouter.Note(note)) row->addWidget(label, 1);
  if (QWidget* const widget = layouter.Take(button)) row->addWidget(widget);
  content.addLayout(row);
}

/// What is read, from where, and how.
QGroupBox* Data(Layouter& layouter) {
  auto* const content = new QVBoxLayout;
  content->setSpacing(9);
  content->addLayout(layouter.Row({"lblReadOrSimulate", "optRead", "optSimulate"}));
  auto* const file = layouter.Row({"lblDataInput"});
  for (const char* name : {"cmdLoadData", "cmdImport"})
    if (QWidget* const choose = layouter.Take(name)) file->addWidget(choose);
  content->addLayout(file);
  if (QWidget* const path = layouter.Take("txtDataInput")) content->addWidget(path);
  AddNote(layouter, *content, "lblFileHolds", "cmdFit");
  AddNote(layouter, *content, "lblLastTime", "cmdLastTime");
  content->addLayout(layouter.Row({"lblStartYear", "cboStartYear", "lblEndYear", "cboEndYear"}));
  content->addLayout(layouter.Row({"lblBroodCovs", "cboBroodCovs"}));
  content->addLayout(layouter.Row({"lblFormat", "cboFormat"}));
  content->addLayout(layouter.Row({"chkCensorEggs", "chkCensorJuvs"}));
  return layouter.Group(QStringLiteral("Data"), content);
}

QGroupBox* Simulator(Layouter& layouter) {
  auto* const fields = Fields();
  layouter.Field(*fields, "lblMinInitBroodSize", {"cboMinInitBroodSize"});
  layouter.Field(*fields, "lblMaxInitBroodSize", {"cboMaxInitBroodSize"});
  layouter.Field(*fields, "lblSimInitBroodAge", {"cboInitBroodAge"});
  layouter.Field(*fields, "lblSimFinalBroodAge", {"cboFinalBroodAge"});
  layouter.Field(*fields, "lblNClutchesBroods", {"cboNClutchesBroods"});
  layouter.Field(*fields, "lblMinHatchDay", {"cboMinHatchDay"});
  layouter.Field(*fields, "lblMaxHatchDay", {"cboMaxHatchDay"});
  layouter.Field(*fields, "lblSampFreq", {"cboSampFreq1", "cboSampFreq2", "lblSampDays"});
  auto* const content = new QVBoxLayout;
  if (QWidget* const frame = layouter.Take("fraSims")) {
    frame->setProperty("stageTitle", true);
    content->addWidget(frame);
  }
  content->addLayout(fields);
  return layouter.Group(QString(), content);
}

void AddHelp(Layouter& layouter, QVBoxLayout& help, const char* label, const char* pane, int lines, int stretch) {
  if (QWidget* const heading = layouter.Take(label)) {
    heading->setProperty("stageTitle", true);
    help.addWidget(heading);
  }
  auto* const text = qobject_cast<QPlainTextEdit*>(layouter.Take(pane));
  if (text == nullptr) return;
  text->setMinimumHeight(lines * text->fontMetrics().lineSpacing() + 16);
  help.addWidget(text, stretch);
}

}  // namespace

void LayOutInitialize(Layouter& layouter, QVBoxLayout& column) {
  auto* const choices = new QVBoxLayout;
  choices->setSpacing(12);
  choices->addWidget(Data(layouter));
  choices->addWidget(Simulator(layouter));
  choices->addStretch(1);
  if (QWidget* const objective = layouter.Take("lblObjective")) {
    objective->setProperty("quiet", true);
    choices->addWidget(objective);
  }

  auto* const help = new QVBoxLayout;
  help->setSpacing(6);
  AddHelp(layouter, *help, "lblInitialize", "txtInitialize", 2, 2);
  AddHelp(layouter, *help, "lblDataFormat", "txtDataFormat", 3, 3);
  AddHelp(layouter, *help, "lblLimits", "txtLimits", 2, 2);

  auto* const row = new QHBoxLayout;
  row->setSpacing(18);
  row->addWidget(layouter.Scrolled(choices));
  row->addLayout(help, 1);
  column.addLayout(row, 1);
  layouter.PinButtons({"cmdDone", "cmdCancel"});
  layouter.window.SetDefault(layouter.Take("cmdDone"));
  layouter.window.SetCancel(layouter.Take("cmdCancel"));
  layouter.PreferText(150, 36);
  layouter.window.Stand(FormWindow::Room::Whole);
}

}  // namespace merlane
