#include "plots/graph_area.h"

namespace merlane {
namespace {

constexpr int Ticks = 10;
constexpr double TickLength = 100;
constexpr double SpacingDown = graph::Height / Ticks;

}  // namespace

Drawing DrawGridmarks(const Drawing& canvas, double across) {
  Drawing drawing{canvas.left, canvas.top, canvas.right, canvas.bottom, {}};
  for (int k = 0; k < Ticks; ++k) {
    const double y = canvas.top + SpacingDown * k;
    drawing.items.push_back(Drawing::Line{canvas.left, y, canvas.left + TickLength, y});
  }
  for (int k = 0; k < Ticks; ++k) {
    const double x = canvas.right - across * k;
    drawing.items.push_back(Drawing::Line{x, canvas.bottom, x, canvas.bottom - TickLength});
  }
  return drawing;
}

Drawing DrawGridmarks() {
  return DrawGridmarks({graph::Left, graph::Top, graph::Right, graph::Bottom, {}}, graph::Width / Ticks);
}

Drawing::Line AcrossAt(double y, int colour, Drawing::Pen pen, int width) {
  return {graph::Left, y, graph::Right, y, colour, pen, width};
}

Drawing::Line DownAt(double x, int colour, Drawing::Pen pen, int width) {
  return {x, graph::Top, x, graph::Bottom, colour, pen, width};
}

}  // namespace merlane
