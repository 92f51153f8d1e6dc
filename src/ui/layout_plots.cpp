// The plots: the drawing at the left with what labels its axes, all that steers and explains it at the right.
#include "ui/elided_label.h"
#include "ui/layouts.h"
#include "ui/look.h"
#include "ui/save_picture.h"

namespace merlane {
namespace {

/// What that many lines take, which is not quite as many times the spacing of lines.
int HeightOf(int lines, const QFontMetrics& metrics) {
  const QString text = QStringLiteral("0\n").repeated(lines).chopped(1);
  return metrics.boundingRect(QRect(0, 0, 9999, 9999), Qt::AlignLeft, text).height();
}

/// A label whose text comes and goes with what is plotted. The room for its lines is kept, so that the drawing beside
/// it stays as it is, and a number of very many digits does not widen the window.
QWidget* Lines(Layouter& layouter, const char* name, int lines, const QFont& font = QApplication::font()) {
  auto* const label = dynamic_cast<ElidedLabel*>(layouter.Take(name));
  if (label == nullptr) return nullptr;
  label->MayShrink();
  label->setFont(font);
  label->setMinimumHeight(HeightOf(lines, QFontMetrics(font)));
  label->setAlignment(Qt::AlignLeft | Qt::AlignTop);
  return label;
}

/// Such labels side by side.
QHBoxLayout* RowOfLines(Layouter& layouter, std::initializer_list<const char*> names, int lines) {
  auto* const row = new QHBoxLayout;
  row->setSpacing(24);
  for (const char* name : names)
    if (QWidget* const label = Lines(layouter, name, lines)) row->addWidget(label);
  row->addStretch(1);
  return row;
}

/// The drawing with its limits above and the ends of its X axis below; these stand under the ends where the drawing
/// fills its place.
QVBoxLayout* Graph(Layouter& layouter, QLayout* above) {
  auto* const graph = new QVBoxLayout;
  graph->setSpacing(4);
  graph->addLayout(above);
  if (QWidget* const picture = layouter.Take("picGraph")) graph->addWidget(picture, 1);
  auto* const ends = new QHBoxLayout;
  if (QWidget* const start = Lines(layouter, "lblXStart", 1)) ends->addWidget(start);
  ends->addStretch(1);
  if (QWidget* const end = Lines(layouter, "lblXEnd", 1)) ends->addWidget(end);
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

/// The drawing, and beside it what goes with it.
template <class Side>
QHBoxLayout* SideBySide(QLayout* left, Side* right, int leftPart, int rightPart) {
  auto* const row = new QHBoxLayout;
  row->setSpacing(18);
  row->addLayout(left, leftPart);
  if constexpr (std::is_base_of_v<QWidget, Side>)
    row->addWidget(right, rightPart);
  else
    row->addLayout(right, rightPart);
  return row;
}

/// The limits of Y above each other, and beside them those of X.
QGridLayout* Limits(Layouter& layouter) {
  auto* const limits = new QGridLayout;
  int row = 0;
  for (const auto& [yLabel, yBox, xLabel, xBox] : {std::array{"lblYmax", "txtYmax", "lblXmax", "txtXmax"},
                                                   std::array{"lblYmin", "txtYmin", "lblXmin", "txtXmin"}}) {
    int place = 0;
    for (const char* name : {yLabel, yBox, xLabel, xBox})
      if (QWidget* const widget = layouter.Take(name)) limits->addWidget(widget, row, place++);
    ++row;
  }
  return limits;
}

/// The kinds of lines, and beside them what excludes them.
QGroupBox* PlotAs(Layouter& layouter) {
  auto* const options = new QHBoxLayout;
  QVBoxLayout* const lines = layouter.Column({"Check_Line", "Check_Line_LtoR", "Check_Line_RtoL"});
  lines->addStretch(1);
  options->addLayout(lines);
  options->addSpacing(12);
  options->addLayout(layouter.Column({"Check_Scatter", "Check_Drop", "Check_8X8", "Check_10X10"}));
  return layouter.Group(QStringLiteral("Plot as"), options);
}

/// The boxes of the bands, each beside its line: the text has a line for each of the seven and an empty one between
/// two, so a box is two lines high.
QHBoxLayout* Legend(Layouter& layouter) {
  constexpr int TextLines = 13;
  auto* const legend = new QHBoxLayout;
  QWidget* const bands = Lines(layouter, "lblLegend", TextLines);
  QWidget* const boxes = layouter.Take("LegendBox");
  if (boxes == nullptr || bands == nullptr) return legend;
  boxes->setProperty("stretches", true);
  boxes->setFixedSize(60, bands->minimumHeight() * (TextLines + 1) / TextLines + 2 * CanvasMargin);
  legend->addWidget(boxes);
  legend->addWidget(bands, 0, Qt::AlignVCenter);
  legend->addStretch(1);
  return legend;
}

}  // namespace

void LayOutXyPlot(Layouter& layouter, QVBoxLayout& column) {
  Stretch(layouter);
  QVBoxLayout* const graph = Graph(layouter, RowOfLines(layouter, {"lblYMaxMin", "lblXMaxMin"}, 2));
  graph->addLayout(RowOfLines(layouter, {"lblYZero", "lblXZero"}, 1));
  QWidget* const picture = Picture(graph);
  auto* const left = new QVBoxLayout;
  left->addWidget(picture, 1);
  if (QLabel* const note = layouter.Note("lblNote")) {
    note->setProperty("quiet", true);
    left->addWidget(note);
  }

  // The names of the variables are long, so the lists stand one below the other.
  auto* const side = new QVBoxLayout;
  side->setSpacing(6);
  if (QWidget* const page = Lines(layouter, "lblPage", 1)) side->addWidget(page);
  side->addLayout(layouter.Column({"lblY", "listYVar"}), 1);
  side->addLayout(layouter.Column({"lblX", "listXVar"}), 1);
  side->addLayout(Limits(layouter));
  auto* const figures = new QHBoxLayout;
  figures->setSpacing(18);
  figures->addWidget(PlotAs(layouter));
  if (QWidget* const correlation = Lines(layouter, "lblCorr", 7, FixedPitchFont())) figures->addWidget(correlation, 1);
  side->addLayout(figures);
  column.addLayout(SideBySide(left, layouter.Scrolled(side), 4, 3), 1);
  layouter.PinButtons({"cmdPlot", "cmdClear", "cmdNext_Page", "cmdCancel"})
      ->insertWidget(0, SavePictureButton(*picture));
  layouter.window.SetDefault(layouter.Take("cmdPlot"));
  layouter.window.SetCancel(layouter.Take("cmdCancel"));
  layouter.PreferText(150, 48);
  layouter.window.Stand(FormWindow::Room::Whole);
}

void LayOutDistPlot(Layouter& layouter, QVBoxLayout& column) {
  Stretch(layouter);
  QHBoxLayout* const above = RowOfLines(layouter, {"lblGraphMax", "lblVar"}, 2);
  // At the end of the line that it names.
  if (QWidget* const interval = Lines(layouter, "lblCI", 1)) above->addWidget(interval, 0, Qt::AlignBottom);
  QVBoxLayout* const graph = Graph(layouter, above);
  graph->addLayout(RowOfLines(layouter, {"lblNote"}, 2));
  QWidget* const picture = Picture(graph);
  auto* const left = new QVBoxLayout;
  left->addWidget(picture);

  auto* const side = new QVBoxLayout;
  side->setSpacing(10);
  if (QWidget* const list = layouter.Take("listVar")) {
    list->setMaximumHeight(10 * list->fontMetrics().lineSpacing());
    side->addWidget(list, 1);
  }
  if (QWidget* const options = layouter.Take("lblOptions")) side->addWidget(options);
  side->addLayout(layouter.Row({"Check_Line", "Check_Scatter", "Check_Drop"}));
  auto* const estimates = new QHBoxLayout;
  for (const char* name : {"lblEstimateNames", "lblEstimateValues"})
    if (QWidget* const label = Lines(layouter, name, 5, FixedPitchFont())) estimates->addWidget(label);
  estimates->addStretch(1);
  side->addLayout(estimates);
  if (QLabel* const fit = layouter.Note("lblFit")) {
    fit->setProperty("quiet", true);
    side->addWidget(fit);
  }
  side->addStretch(1);
  column.addLayout(SideBySide(left, layouter.Scrolled(side), 3, 2), 1);
  layouter.PinButtons({"cmdPlot", "cmdClear", "cmdDone"})->insertWidget(0, SavePictureButton(*picture));
  layouter.window.SetDefault(layouter.Take("cmdPlot"));
  layouter.window.SetCancel(layouter.Take("cmdDone"));
  layouter.PreferText(120, 42);
  layouter.window.Stand(FormWindow::Room::Whole);
}

void LayOutBivarPlot(Layouter& layouter, QVBoxLayout& column) {
  QVBoxLayout* const graph = Graph(layouter, RowOfLines(layouter, {"lblVar"}, 2));
  graph->addLayout(RowOfLines(layouter, {"lblNote"}, 1));

  auto* const side = new QVBoxLayout;
  side->setSpacing(8);
  const QFont fixedPitch = FixedPitchFont();
  for (const char* name : {"lblXYMax", "lblXYMin", "XYPeak"})
    if (QWidget* const label = Lines(layouter, name, 2, fixedPitch)) side->addWidget(label);
  if (QWidget* const correlation = Lines(layouter, "lblCorr", 1, fixedPitch)) side->addWidget(correlation);
  side->addStretch(1);
  if (QWidget* const high = Lines(layouter, "lblHighDensity", 1)) side->addWidget(high);
  if (QWidget* const head = Lines(layouter, "lblLegendHead", 1)) side->addWidget(head);
  side->addLayout(Legend(layouter));
  if (QWidget* const low = Lines(layouter, "lblLowDensity", 1)) side->addWidget(low);
  side->addStretch(1);
  side->addStrut(22 * QFontMetrics(fixedPitch).horizontalAdvance(QLatin1Char('0')));
  QWidget* const graphAndLegend = Picture(SideBySide(graph, side, 1, 0));
  column.addWidget(graphAndLegend, 1);
  layouter.PinButtons({"cmdClear", "cmdDone"})->insertWidget(0, SavePictureButton(*graphAndLegend));
  layouter.window.SetDefault(layouter.Take("cmdDone"));
  layouter.window.SetCancel(layouter.Take("cmdDone"));
  layouter.PreferText(104, 42);
  layouter.window.Stand(FormWindow::Room::Whole);
}

}  // namespace merlane
