#include "plots/frm_xy_plot.h"

#include <cmath>

#include "base/arithmetic.h"
#include "base/number_text.h"

namespace merlane {
namespace {

constexpr int Black = 0, White = 15;

/// A limit as a box or label shows it: to a millionth, halves rounded upward.
double Millionths(double x) { return std::floor(x * 1000000 + 0.5) / 1000000; }

/// Widens a range by a value and rewrites the boxes that hold its limits. Both limits are tested, whatever became of
/// the other.
void Widen(double value, double& min, double& max, TextBox& minBox, TextBox& maxBox) {
  if (value > max) {
    max = value;
    maxBox.text = Plain(Millionths(max));
  }
  if (value < min) {
    min = value;
    minBox.text = Plain(Millionths(min));
  }
}

std::string Limits(const char* axis, double max, double min) {
  return std::string(axis) + "-Max =  " + Plain(Millionths(max)) + "\n" + axis + "-Min =  " + Plain(Millionths(min));
}

}  // namespace

FrmXyPlot::FrmXyPlot(Desk& d) : Form(d, "frmXYPlot", "Data and prediction plots") {
  Check_Line.toolTip = "Connects all points with a line";
  Check_Line_LtoR.toolTip = "Connects left to right sequential points";
  Check_Line_RtoL.toolTip = "Connects right to left sequential points";
  Exclude(Check_Line, {&Check_Drop, &Check_8X8, &Check_10X10, &Check_Line_LtoR, &Check_Line_RtoL});
  Exclude(Check_Line_LtoR, {&Check_Drop, &Check_8X8, &Check_10X10, &Check_Line, &Check_Line_RtoL});
  Exclude(Check_Line_RtoL, {&Check_Drop, &Check_8X8, &Check_10X10, &Check_Line, &Check_Line_LtoR});
  Exclude(Check_Scatter, {&Check_Drop, &Check_8X8, &Check_10X10});
  Exclude(Check_Drop, {&Check_Scatter, &Check_Line, &Check_8X8, &Check_10X10, &Check_Line_LtoR, &Check_Line_RtoL});
  Exclude(Check_8X8, {&Check_Scatter, &Check_Line, &Check_Drop, &Check_10X10, &Check_Line_LtoR, &Check_Line_RtoL});
  Exclude(Check_10X10, {&Check_Scatter, &Check_Line, &Check_Drop, &Check_8X8, &Check_Line_LtoR, &Check_Line_RtoL});
  Check_Line.value = true;
  Check_Scatter.value = true;
  listXVar.onSelect = [this] { ChooseX(); };
  listYVar.onSelect = [this] { ChooseY(); };
  listXVar.onDoubleClick = listYVar.onDoubleClick = cmdPlot.onClick = [this] { Plot(); };
  cmdClear.onClick = [this] { Clear(); };
  cmdNext_Page.onClick = [this] { desk.Unload(*this); };
  cmdCancel.onClick = [this] {
    PlotGoOn = false;
    desk.Unload(*this);
  };
}

void FrmXyPlot::Exclude(CheckBox& set, std::vector<CheckBox*> cleared) {
  set.onClick = [&set, cleared = std::move(cleared)] {
    if (!set.value) return;
    for (CheckBox* box : cleared) box->value = false;
  };
}

void FrmXyPlot::ShowXYPlot(PlotTable table) {
  desk.Load(*this);
  table_ = std::move(table);
  lblPage.text = table_.PlotPageText.empty() ? "" : "Page:  " + table_.PlotPageText;
  listYVar.items.assign(table_.PlotVarName.begin(), table_.PlotVarName.end());
  listXVar.items = listYVar.items;
  listXVar.items.insert(listXVar.items.begin(), table_.PlotXName);
  listXVar.selected = listYVar.selected = 0;
  PlotGoOn = true;
  Clear();
  focus = &cmdPlot;
  desk.Show(*this);
}

void FrmXyPlot::ChooseX() {
  const bool index = IndexChosen();
  txtXmin.enabled = txtXmax.enabled = !index;
  Check_Drop.enabled = true;
  Check_Line_LtoR.enabled = Check_Line_RtoL.enabled = !index;
  if (index) {
    Check_Line_LtoR.value = Check_Line_RtoL.value = false;
    txtXmin.text = Plain(Millionths(table_.PlotXMin)) + " (" + Plain(table_.PlotXLabelMin) + ")";
    txtXmax.text = Plain(Millionths(table_.PlotXMax)) + " (" + Plain(table_.PlotXLabelMax) + ")";
  } else {
    FillEmpty(txtXmin, table_.PlotYMin(listXVar.selected));
    FillEmpty(txtXmax, table_.PlotYMax(listXVar.selected));
  }
}

void FrmXyPlot::ChooseY() {
  FillEmpty(txtYmin, table_.PlotYMin(listYVar.selected + 1));
  FillEmpty(txtYmax, table_.PlotYMax(listYVar.selected + 1));
}

void FrmXyPlot::FillEmpty(TextBox& box, double limit) {
  if (box.text.empty()) box.text = Plain(Millionths(limit));
}

void FrmXyPlot::Clear() {
  picGraph.drawing = DrawGridmarks();
  ++picGraph.version;
  presses_ = 0;
  black8_ = black10_ = false;
  for (Label* label : {&lblYMaxMin, &lblXMaxMin, &lblXStart, &lblXEnd, &lblYZero, &lblXZero, &lblCorr})
    label->text.clear();
  for (TextBox* box : {&txtYmax, &txtYmin, &txtXmax, &txtXmin}) box->text.clear();
  ChooseX();
  ChooseY();
}

void FrmXyPlot::Plot() {
  ++presses_;
  ++picGraph.version;
  if (DrawGrids()) return;
  StretchSingleRecord();
  DrawPoints(Points());
}

/// An axis of the index needs two ends.
void FrmXyPlot::StretchSingleRecord() {
  if (!IndexChosen() || table_.PlotXMax != table_.PlotXMin) return;
  table_.PlotXMax = table_.PlotXMin + 1;
  table_.PlotXLabelMax = table_.PlotXLabelMin + 1;
}

bool FrmXyPlot::DrawGrids() {
  if (Check_8X8.value)
    DrawGrid(8, black8_);
  else if (Check_10X10.value)
    DrawGrid(10, black10_);
  else
    return false;
  return true;
}

void FrmXyPlot::DrawGrid(int cells, bool& black) {
  black = !black;
  const int colour = black ? Black : White;
  auto& items = picGraph.drawing.items;
  for (int k = 1; k < cells; ++k)
    items.push_back(DownAt(graph::Left + graph::Width / cells * k, colour, Drawing::Pen::Solid, 2));
  for (int k = 1; k < cells; ++k)
    items.push_back(AcrossAt(graph::Top + graph::Height / cells * k, colour, Drawing::Pen::Solid, 2));
}

double FrmXyPlot::ValueAt(int variable, int row) const {
  // With a single record the axis is stretched to an index that the table does not have.
  return row >= 1 && row <= table_.PlotData.Columns() ? table_.PlotData(variable, row) : MissingPoint;
}

std::vector<FrmXyPlot::Point> FrmXyPlot::Points() const {
  const int first = static_cast<int>(RoundHalfEven(table_.PlotXMin));
  const int last = static_cast<int>(RoundHalfEven(table_.PlotXMax));
  std::vector<Point> points;
  for (int row = first; row <= last; ++row) {
    Point& point = points.emplace_back();
    point.y = ValueAt(listYVar.selected + 1, row);
    point.x = IndexChosen() ? row : ValueAt(listXVar.selected, row);
  }
  return points;
}

FrmXyPlot::Range FrmXyPlot::WidenedY(const std::vector<Point>& points) {
  Range y{LenientNumber(txtYmin.text), LenientNumber(txtYmax.text)};
  for (const Point& point : points)
    if (point.Present()) Widen(point.y, y.min, y.max, txtYmin, txtYmax);
  return y.max == y.min ? Range{-1, 1} : y;
}

FrmXyPlot::Range FrmXyPlot::WidenedX(const std::vector<Point>& points) {
  if (IndexChosen()) return {table_.PlotXMin, table_.PlotXMax};
  Range x{LenientNumber(txtXmin.text), LenientNumber(txtXmax.text)};
  for (const Point& point : points)
    if (point.Present()) Widen(point.x, x.min, x.max, txtXmin, txtXmax);
  return x.max == x.min ? Range{-1, 1} : x;
}

void FrmXyPlot::DrawPoints(const std::vector<Point>& points) {
  const Range yRange = WidenedY(points);
  const Range xRange = WidenedX(points);
  DrawAxes(xRange, yRange);
  const XScale x(xRange.min, xRange.max);
  const YScale y(yRange.min, yRange.max);
  JoinPoints(points, x, y);
  if (Check_Scatter.value || Check_Drop.value) MarkPoints(points, x, y);
  ShowFigures(FiguresOf(points, xRange));
}

void FrmXyPlot::DrawAxes(const Range& xRange, const Range& yRange) {
  auto& items = picGraph.drawing.items;
  lblYZero.text.clear();
  if (yRange.min < 0 && yRange.max > 0) {
    items.push_back(AcrossAt(YScale(yRange.min, yRange.max)(0), Black, Drawing::Pen::Dashed));
    lblYZero.text = "Horizontal dashed line shows Y=0";
  }
  lblYMaxMin.text = Limits("Y", yRange.max, yRange.min);
  if (IndexChosen()) {
    lblXStart.text = Plain(table_.PlotXLabelMin);
    lblXEnd.text = Plain(table_.PlotXLabelMax);
    return;
  }
  lblXZero.text.clear();
  if (xRange.min < 0 && xRange.max > 0) {
    const double zero = graph::Left + (-xRange.min / (xRange.max - xRange.min)) * graph::Width;
    items.push_back(DownAt(zero, Black, Drawing::Pen::Dashed));
    lblXZero.text = "Vertical dashed line shows X=0";
  }
  lblXMaxMin.text = Limits("X", xRange.max, xRange.min);
}

/// True for the first point of a brood's, or of whatever else the index goes through one after the other.
bool FrmXyPlot::BeginsRun(std::size_t point) const {
  if (table_.PlotRun == 0) return false;
  const int row = static_cast<int>(RoundHalfEven(table_.PlotXMin)) + static_cast<int>(point);
  return (row - 1) % table_.PlotRun == 0;
}

/// Joins neighbours in the table; a missing point breaks the line and, along the index, the next brood.
void FrmXyPlot::JoinPoints(const std::vector<Point>& points, const XScale& x, const YScale& y) {
  for (std::size_t i = 1; i < points.size(); ++i) {
    const Point &from = points[i - 1], &to = points[i];
    if (!from.Present() || !to.Present() || (IndexChosen() && BeginsRun(i))) continue;
    if (Check_Line.value || (Check_Line_LtoR.value && to.x >= from.x) || (Check_Line_RtoL.value && to.x <= from.x))
      picGraph.drawing.items.push_back(Drawing::Line{x(from.x), y(from.y), x(to.x), y(to.y), PlotColour()});
  }
}

void FrmXyPlot::MarkPoints(const std::vector<Point>& points, const XScale& x, const YScale& y) {
  auto& items = picGraph.drawing.items;
  for (const Point& point : points) {
    if (!point.Present()) continue;
    items.push_back(Drawing::Circle{x(point.x), y(point.y), graph::PointRadius, PlotColour()});
    if (Check_Drop.value)
      items.push_back(Drawing::Line{x(point.x), y(point.y), x(point.x), graph::Bottom, PlotColour()});
  }
}

/// The figures read the index as the axis is labelled, which may be other numbers than the index itself.
XyFigures FrmXyPlot::FiguresOf(const std::vector<Point>& points, const Range& xRange) const {
  XyFigures figures;
  const double labelled = table_.PlotXLabelMax - table_.PlotXLabelMin;
  for (const Point& point : points) {
    if (!point.Present()) continue;
    const double x =
        IndexChosen() ? labelled * (point.x - xRange.min) / (xRange.max - xRange.min) + table_.PlotXLabelMin : point.x;
    figures.Add(x, point.y);
  }
  return figures;
}

void FrmXyPlot::ShowFigures(const XyFigures& figures) {
  if (figures.Count() <= 2) return;
  const std::optional<std::string> correlation = figures.Correlation();
  const std::string above = correlation ? *correlation + "\n\n" : "";
  if (correlation) lblCorr.text = *correlation;
  if (Check_Scatter.value) lblCorr.text = above + figures.ScatterOfY();
  if (Check_Drop.value)
    if (const auto distribution = figures.DistributionOfX(correlation ? "#0.0000" : "#0.0000#"))
      lblCorr.text = above + *distribution;
}

}  // namespace merlane
