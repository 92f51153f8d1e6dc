#pragma once

#include "forms/drawing.h"

namespace merlane {

/// The plot area on the logical canvas of XY and distribution plots: 720 to 7200 across, 480 to 6720 down.
namespace graph {
inline constexpr double Left = 720, Right = 7200, Top = 480, Bottom = 6720;
inline constexpr double Width = Right - Left, Height = Bottom - Top;
inline constexpr double PointRadius = 30;
}  // namespace graph

/// A clean drawing of the extent of `canvas` with ten tick marks on the left edge, from the top down, and ten on the
/// bottom edge, from the right, which are `across` units apart.
Drawing DrawGridmarks(const Drawing& canvas, double across);
/// The same of the plot area.
Drawing DrawGridmarks();

/// A line straight across or straight down the whole plot area.
Drawing::Line AcrossAt(double y, int colour, Drawing::Pen pen = Drawing::Pen::Solid, int width = 1);
Drawing::Line DownAt(double x, int colour, Drawing::Pen pen = Drawing::Pen::Solid, int width = 1);

/// Take values between two limits, which must differ, to the canvas, where Y grows downward.
struct YScale {
  YScale(double ymin, double ymax)
      : min(ymin), factor(graph::Height / (ymax - ymin)), base((ymax - ymin) * factor + graph::Top) {}
  double operator()(double y) const { return factor * (min - y) + base; }
  double min, factor, base;
};
struct XScale {
  XScale(double xmin, double xmax) : min(xmin), factor(graph::Width / (xmax - xmin)) {}
  double operator()(double x) const { return factor * (x - min) + graph::Left; }
  double min, factor;
};

}  // namespace merlane
