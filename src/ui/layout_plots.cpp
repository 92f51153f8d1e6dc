// The plots: the drawing at the left with what labels its axes, all that steers and explains it at the right.
#include "ui/layouts.h"
#include "ui/look.h"
#include "ui/save_picture.h"

namespace merlane {
namespace {

/// The drawing with its limits above and the ends of its X axis below; these stand under the ends where the drawing
/// fills its place.
QVBoxLayout* Graph(Layouter& layouter, std::initializer_list<const char*> above) {
  auto* const graph = new QVBoxLayout;
  graph->setSpacing(4);
  graph->addLayout(layouter.Row(above));
  if (QWidget* const picture = layouter.Take("picGraph")) graph->addWidget(picture, 1);
  auto* const ends = new QHBoxLayout;
  if (QWidget* const start = layouter.Take("lblXStart")) ends->addWidget(start);
  ends->addStretch(1);
  if (QWidget* const end = layouter.Take("lblXEnd")) ends->addWidget(end);
  graph->addLayout(ends);
  return graph;
}

void Stretch(Layouter& layouter) {
  if (QWidget* const picture = layouter.window.binding.Find("picGraph")) picture->setProperty("stretches", true);
}

/// The widget that a picture is saved of.
QWidget* Picture(QLayout* content) {
  auto* const picture = new QWidget;
  content->setContentsMargins(0, 0, 0, 0);
  picture->setLayout(content);
  return picture;
}

QHBoxLayout* SideBySide(QWidget* graph, QLayout* side) {
  auto* const row = new QHBoxLayout;
  row->setSpacing(18);
  row->addWidget(graph, 3);
  row->addLayout(side, 2);
  return row;
}

void AddFixedPitch(Layouter& layouter, QVBoxLayout& side, const char* name) {
  if (QWidget* const label = layouter.Take(name)) {
    label->setFont(FixedPitchFont());
    side.addWidget(label);
  }
}

}  // namespace

void LayOutXyPlot(Layouter& layouter, QVBoxLayout& column) {
  Stretch(layouter);
  QVBoxLayout* const graph = Graph(layouter, {"lblYMaxMin", "lblXMaxMin"});
  graph->addLayout(layouter.Row({"lblYZero", "lblXZero"}));

  auto* const side = new QVBoxLayout;
  side->setSpacing(8);
  if (QWidget* const page = layouter.Take("lblPage")) side->addWidget(page);
  auto* const variables = new QHBoxLayout;
  variables->addLayout(layouter.Column({"lblY", "listYVar"}));
  variables->addLayout(layouter.Column({"lblX", "listXVar"}));
  side->addLayout(variables, 1);

  auto* const limits = new QGridLayout;
  int row = 0;
  for (const auto& [yLabel, yBox, xLabel, xBox] : {std::array{"lblYmax", "txtYmax", "lblXmax", "txtXmax"},
                                                   std::array{"lblYmin", "txtYmin", "lblXmin", "txtXmin"}}) {
    int place = 0;
    for (const char* name : {yLabel, yBox, xLabel, xBox})
      if (QWidget* const widget = layouter.Take(name)) limits->addWidget(widget, row, place++);
    ++row;
  }
  side->addLayout(limits);

  auto* const options = new QGridLayout;
  int option = 0;
  for (const char* name :
       {"Check_Line", "Check_Line_LtoR", "Check_Line_RtoL", "Check_Scatter", "Check_Drop", "Check_8X8", "Check_10X10"})
    if (QWidget* const box = layouter.Take(name)) {
      options->addWidget(box, option / 3, option % 3);
      ++option;
    }
  side->addWidget(layouter.Group(QStringLiteral("Plot as"), options));
  AddFixedPitch(layouter, *side, "lblCorr");
  auto* const buttons = new QGridLayout;
  int button = 0;
  for (const char* name : {"cmdPlot", "cmdClear", "cmdNext_Page", "cmdCancel"})
    if (QWidget* const widget = layouter.Take(name)) {
      buttons->addWidget(widget, button / 2, button % 2);
      ++button;
    }
  QWidget* const picture = Picture(graph);
  buttons->addWidget(SavePictureButton(*picture), 2, 0);
  side->addLayout(buttons);
  column.addLayout(SideBySide(picture, side), 1);
  if (QLabel* const note = layouter.Note("lblNote")) {
    note->setProperty("quiet", true);
    column.addWidget(note);
  }
  layouter.window.SetDefault(layouter.Take("cmdPlot"));
  layouter.window.SetCancel(layouter.Take("cmdCancel"));
  layouter.PreferText(126, 37);
  layouter.window.Stand(FormWindow::Room::Whole);
}

void LayOutDistPlot(Layouter& layouter, QVBoxLayout& column) {
  Stretch(layouter);
  QVBoxLayout* const graph = Graph(layouter, {"lblGraphMax", "lblVar"});
  graph->addLayout(layouter.Row({"lblNote", "lblCI"}));

  auto* const side = new QVBoxLayout;
  side->setSpacing(10);
  if (QWidget* const list = layouter.Take("listVar")) side->addWidget(list, 1);
  if (QWidget* const options = layouter.Take("lblOptions")) side->addWidget(options);
  side->addLayout(layouter.Row({"Check_Line", "Check_Scatter", "Check_Drop"}));
  auto* const estimates = new QHBoxLayout;
  for (const char* name : {"lblEstimateNames", "lblEstimateValues"})
    if (QWidget* const label = layouter.Take(name)) {
      label->setFont(FixedPitchFont());
      estimates->addWidget(label);
    }
  estimates->addStretch(1);
  side->addLayout(estimates);
  QWidget* const picture = Picture(graph);
  QHBoxLayout* const buttons = layouter.Row({"cmdPlot", "cmdClear", "cmdDone"});
  buttons->addWidget(SavePictureButton(*picture));
  side->addLayout(buttons);
  column.addLayout(SideBySide(picture, side), 1);
  layouter.window.SetDefault(layouter.Take("cmdPlot"));
  layouter.window.SetCancel(layouter.Take("cmdDone"));
  layouter.PreferText(120, 34);
  layouter.window.Stand(FormWindow::Room::Whole);
}

void LayOutBivarPlot(Layouter& layouter, QVBoxLayout& column) {
  QVBoxLayout* const graph = Graph(layouter, {"lblVar"});
  if (QWidget* const note = layouter.Take("lblNote")) graph->addWidget(note);

  auto* const side = new QVBoxLayout;
  side->setSpacing(8);
  for (const char* name : {"lblXYMax", "lblXYMin", "XYPeak", "lblCorr"}) AddFixedPitch(layouter, *side, name);
  side->addStretch(1);
  side->addLayout(layouter.Column({"lblHighDensity", "lblLegendHead"}));
  auto* const legend = new QHBoxLayout;
  if (QWidget* const boxes = layouter.Take("LegendBox")) {
    boxes->setProperty("stretches", true);  // to the height of the text beside it
    boxes->setMinimumSize(60, 0);
    boxes->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Ignored);
    boxes->setFixedWidth(60);
    legend->addWidget(boxes);
  }
  if (QWidget* const bands = layouter.Take("lblLegend")) legend->addWidget(bands);
  legend->addStretch(1);
  side->addLayout(legend);
  if (QWidget* const low = layouter.Take("lblLowDensity")) side->addWidget(low);
  side->addStretch(1);
  QWidget* const graphAndLegend = Picture(SideBySide(Picture(graph), side));
  column.addWidget(graphAndLegend, 1);
  QHBoxLayout* const buttons = layouter.Buttons({"cmdClear", "cmdDone"});
  buttons->insertWidget(1, SavePictureButton(*graphAndLegend));
  column.addLayout(buttons);
  layouter.window.SetDefault(layouter.Take("cmdDone"));
  layouter.window.SetCancel(layouter.Take("cmdDone"));
  layouter.PreferText(116, 34);
  layouter.window.Stand(FormWindow::Room::Whole);
}

}  // namespace merlane
