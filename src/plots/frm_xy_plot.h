#pragma once

#include "forms/desk.h"
#include "plots/graph_area.h"
#include "plots/plot_table.h"
#include "plots/xy_figures.h"

namespace merlane {

/// Draws any variable of a plot table against the index of the points or against another variable, one press over the
/// other.
class FrmXyPlot : public Form {
 public:
  explicit FrmXyPlot(Desk& d);

  Label lblNote{
      *this, "lblNote",
      "Plots are automatically scaled to the range of the data, unless the model includes a scaling function. To "
      "override a scaling function, set the maximum or minimum of X or Y to 0."};
  Label lblPage{*this, "lblPage", ""};
  Canvas picGraph{*this, "picGraph"};
  Label lblYMaxMin{*this, "lblYMaxMin", ""};
  Label lblXMaxMin{*this, "lblXMaxMin", ""};
  Label lblXStart{*this, "lblXStart", ""};
  Label lblXEnd{*this, "lblXEnd", ""};
  Label lblYZero{*this, "lblYZero", ""};
  Label lblXZero{*this, "lblXZero", ""};
  Label lblCorr{*this, "lblCorr", ""};
  Label lblY{*this, "lblY", "Y variable:"};
  ListBox listYVar{*this, "listYVar"};
  Label lblX{*this, "lblX", "X variable:"};
  ListBox listXVar{*this, "listXVar"};
  Label lblYmax{*this, "lblYmax", "Y-Max:"};
  TextBox txtYmax{*this, "txtYmax", ""};
  Label lblYmin{*this, "lblYmin", "Y-Min:"};
  TextBox txtYmin{*this, "txtYmin", ""};
  Label lblXmax{*this, "lblXmax", "X-Max (label):"};
  TextBox txtXmax{*this, "txtXmax", ""};
  Label lblXmin{*this, "lblXmin", "X-Min (label):"};
  TextBox txtXmin{*this, "txtXmin", ""};
  CheckBox Check_Line{*this, "Check_Line", "Lines <>"};
  CheckBox Check_Line_LtoR{*this, "Check_Line_LtoR", "Lines >"};
  CheckBox Check_Line_RtoL{*this, "Check_Line_RtoL", "Lines <"};
  CheckBox Check_Scatter{*this, "Check_Scatter", "Points"};
  CheckBox Check_Drop{*this, "Check_Drop", "Drop lines"};
  CheckBox Check_8X8{*this, "Check_8X8", "8x8 Grid"};
  CheckBox Check_10X10{*this, "Check_10X10", "10x10 Grid"};
  Button cmdPlot{*this, "cmdPlot", "&Plot it!"};
  Button cmdClear{*this, "cmdClear", "&Clear Plot && Reset Axes"};
  Button cmdNext_Page{*this, "cmdNext_Page", "&Next Plot Page"};
  Button cmdCancel{*this, "cmdCancel", "&Quit plots"};

  /// Opens the form on a page of plots.
  void ShowXYPlot(PlotTable table);

  bool PlotGoOn = true;  // another page is wanted; false once "Quit plots" was pressed

  int Presses() const { return presses_; }
  int PlotColour() const { return presses_ % 15; }

 private:
  /// The values of the two axes at one point.
  struct Point {
    double x = MissingPoint, y = MissingPoint;
    bool Present() const { return x != MissingPoint && y != MissingPoint; }
  };
  struct Range {
    double min = 0, max = 0;
  };

  void Exclude(CheckBox& set, std::vector<CheckBox*> cleared);
  bool IndexChosen() const { return listXVar.selected <= 0; }
  void ChooseX();
  void ChooseY();
  void FillEmpty(TextBox& box, double limit);
  void Clear();
  void Plot();
  bool DrawGrids();
  void DrawGrid(int cells, bool& black);
  void StretchSingleRecord();
  std::vector<Point> Points() const;
  double ValueAt(int variable, int row) const;
  void DrawPoints(const std::vector<Point>& points);
  bool BeginsRun(std::size_t point) const;
  void DrawAxes(const Range& xRange, const Range& yRange);
  void JoinPoints(const std::vector<Point>& points, const XScale& x, const YScale& y);
  void MarkPoints(const std::vector<Point>& points, const XScale& x, const YScale& y);
  XyFigures FiguresOf(const std::vector<Point>& points, const Range& xRange) const;
  Range WidenedY(const std::vector<Point>& points);
  Range WidenedX(const std::vector<Point>& points);
  void ShowFigures(const XyFigures& figures);

  PlotTable table_;
  int presses_ = 0;
  bool black8_ = false, black10_ = false;  // the grid that stands is black
};

}  // namespace merlane
