#include "plots/graph_area.h"

namespace merlane {
namespace {

constexpr int Ticks = 10;
constexpr double TickLength = 100;

}  // namespace

Drawing DrawGridmarks() {
  Drawing drawing{graph::Left, graph::Top, graph::Right, graph::Bottom, {}};
  for (int k = 0; k < Ticks; ++k) {
    const double y = graph::Top + 624 * k;
    drawing.items.push_back(Drawing::Line{graph::Left, y, graph::Left + TickLength, y});
  }
  for (int k = 0; k < Ticks; ++k) {
    const double x = graph::Right - 648 * k;
    drawing.items.push_back(Drawing::Line{x, graph::Bottom, x, graph::Bottom - TickLength});
  }
  return drawing;
}

Drawing::Line AcrossAt(double y, int colour, Drawing::Pen pen, int width) {
  return {graph::Left, y, graph::Right, y, colour, pen, width};
}

Drawing::Line DownAt(double x, int colour, Drawing::Pen pen, int width) {
  return {x, graph::Top, x, graph::Bottom, colour, pen, width};
}

}  // namespace merlane
