#pragma once

#include <optional>
#include <string>

#include "base/array1.h"
#include "forms/drawing.h"

namespace merlane {

/// A joint density of two parameters on a grid.
struct BivariateDensity {
  Array1<double> X, Y;
  Matrix1<double> f;  // density at (Y index, X index)
  double fmax = 0;    // the peak's density
  int firstParameter = 0, secondParameter = 0;
  double peakX = 0, peakY = 0;
};

/// What a bivariate plot shows: cells in bands of standard errors from the peak, lines at 0 and 1, and the texts beside
/// it.
struct BivariatePlot {
  Drawing drawing;  // without anything on it, tick marks included, when a range or the peak is 0
  Drawing empty;    // the canvas with its tick marks alone
  Drawing legend;   // seven boxes in a unit square, the peak's band on top
  bool drawn = false;
  std::string axes, maxima, minima, peak, note;
  std::optional<double> correlation;  // over the cells painted
};

/// Draws a density whose X and Y have at least two values each and equal distances. The cells at the border are neither
/// painted nor counted in the correlation.
BivariatePlot DrawBivariate(const BivariateDensity& density);

}  // namespace merlane
