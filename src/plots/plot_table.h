#pragma once

#include <string>

#include "base/array1.h"

namespace merlane {

/// Marks a value that a plot table lacks: never plotted, never counted.
inline constexpr double MissingPoint = 1e-100;

/// What an XY plot draws: a page of variables, each with a value per point.
struct PlotTable {
  Matrix1<double> PlotData;           // variable by point
  Array1<double> PlotYMin, PlotYMax;  // the model's limits of each variable; 0 and 0 when it has none
  Array1<std::string> PlotVarName;
  std::string PlotXName;                        // what the index of the points means, such as "Data Record"
  double PlotXMin = 1, PlotXMax = 1;            // first and last point plotted
  double PlotXLabelMin = 1, PlotXLabelMax = 1;  // what the X axis reads there
  int PlotRun = 0;                              // points that belong together, such as a brood's visits; 0: all do
  std::string PlotPageText;                     // empty: no page line
};

}  // namespace merlane
