#include "plots/bivariate.h"

#include <fmt/format.h>

#include <array>
#include <cmath>

#include "base/arithmetic.h"
#include "base/elementary.h"
#include "base/number_text.h"
#include "plots/graph_area.h"

namespace merlane {
namespace {

constexpr int White = 15;
constexpr int PeakBand = 7;
constexpr std::array Palette{0, 5, 1, 3, 2, 14, 6, 12};  // of the bands, outermost first
constexpr double TickSpacing = 792;                      // across

/// The canvas, which a grid of cells widens by half a cell on each side.
struct Extent {
  double left = 720, top = 480, right = 8640, bottom = 6720;

  /// Each new edge is used for the next one.
  void Widen(int nx, int ny) {
    left = RoundHalfEven(left - (right - left) * 0.5 / (nx - 1));
    right = RoundHalfEven(right + (right - left) * 0.5 / (nx - 1));
    top = RoundHalfEven(top - (bottom - top) * 0.5 / (ny - 1));
    bottom = RoundHalfEven(bottom + (bottom - top) * 0.5 / (ny - 1));
  }
};

Drawing Legend() {
  Drawing legend{0, 0, 1, 1, {}};
  for (int box = 1; box <= PeakBand; ++box)
    legend.items.push_back(Drawing::Box{0, (box - 1) / 7.0, 1, box / 7.0, Palette[static_cast<std::size_t>(8 - box)]});
  return legend;
}

/// The colour of a cell whose density is `d` times the peak's. A density of exp(-b²/2) lies b standard errors from the
/// peak of a Gaussian.
int BandColour(double d) {
  for (const double b : {3.0, 2.5, 2.0, 1.5, 1.0, 0.5, 0.0})
    if (Exp(-b * b / 2) > d) {
      const int colour = Palette[static_cast<std::size_t>(6 - 2 * b)];
      return colour == 0 ? White : colour;
    }
  return Palette[PeakBand];
}

/// Sums over the cells, weighted by density.
struct Moments {
  double w = 0, x = 0, xx = 0, y = 0, yy = 0, xy = 0;

  void Add(double f, double xValue, double yValue) {
    w += f;
    x += f * xValue;
    xx += f * (xValue * xValue);
    y += f * yValue;
    yy += f * (yValue * yValue);
    xy += f * xValue * yValue;
  }
  std::optional<double> Correlation() const {
    if (w == 0) return std::nullopt;
    const double product = (yy - y * y / w) * (xx - x * x / w);
    if (!(product > 0)) return std::nullopt;
    return (xy - x * y / w) / std::sqrt(product);
  }
};

std::string Pair(const char* what, double x, double y) {
  return fmt::format("X-{} = {}\nY-{} = {}", what, Format(x, "0.000E+00"), what, Format(y, "0.000E+00"));
}

/// The values at the edges of the outermost cells.
struct Limits {
  explicit Limits(const Array1<double>& values)
      : half((values(2) - values(1)) / 2), min(values(1) - half), max(values(values.Size()) + half) {}
  bool Inside(double value) const { return min < value && value < max; }
  double half, min, max;
};

/// Takes values to the canvas, where Y grows downward.
struct Scale {
  Scale(const Extent& e, const Limits& x, const Limits& y)
      : xmin(x.min),
        ymin(y.min),
        kx((e.right - e.left) / (x.max - x.min)),
        ky((e.bottom - e.top) / (y.max - y.min)),
        left(e.left),
        y0((y.max - y.min) * ky + e.top) {}
  double Across(double value) const { return kx * (value - xmin) + left; }
  double Down(double value) const { return ky * (ymin - value) + y0; }
  double xmin, ymin, kx, ky, left, y0;
};

/// Paints all cells but those at the border, and sums over those painted.
Moments PaintCells(const BivariateDensity& density, const Extent& e, const Scale& scale, Drawing& drawing) {
  const int nx = density.X.Size(), ny = density.Y.Size();
  const double cx = (e.right - e.left) * 0.5 / nx;
  const double cy = RoundHalfEven((e.bottom - e.top) * 0.5 / ny);
  Moments moments;
  for (int i = 2; i < nx; ++i)
    for (int j = 2; j < ny; ++j) {
      const double f = density.f(j, i);
      const double x = scale.Across(density.X(i)), y = scale.Down(density.Y(j));
      drawing.items.push_back(Drawing::Box{x - cx, y - cy, x + cx, y + cy, BandColour(f / density.fmax)});
      moments.Add(f, density.X(i), density.Y(j));
    }
  return moments;
}

/// Dashed lines where a parameter is 0 or 1.
void DrawLines(const Extent& e, const Limits& x, const Limits& y, const Scale& scale, Drawing& drawing) {
  const auto across = [&](double at) {
    drawing.items.push_back(Drawing::Line{e.left, at, e.right, at, 0, Drawing::Pen::Dashed});
  };
  const auto down = [&](double at) {
    drawing.items.push_back(Drawing::Line{at, e.top, at, e.bottom, 0, Drawing::Pen::Dashed});
  };
  if (y.Inside(0)) across(scale.Down(0));
  if (x.Inside(0)) down(scale.Across(0));
  if (y.Inside(1)) across(e.bottom + ((y.min - 1) / (y.max - y.min)) * (e.bottom - e.top));
  if (x.Inside(1)) down(e.left + RoundHalfEven(((1 - x.min) / (x.max - x.min)) * (e.right - e.left)));
}

}  // namespace

BivariatePlot DrawBivariate(const BivariateDensity& density) {
  BivariatePlot plot;
  Extent e;
  const Limits x(density.X), y(density.Y);
  e.Widen(density.X.Size(), density.Y.Size());
  plot.drawing = Drawing{e.left, e.top, e.right, e.bottom, {}};
  plot.empty = DrawGridmarks(plot.drawing, TickSpacing);
  if (x.max == x.min || y.max == y.min || density.fmax == 0) return plot;
  plot.drawn = true;
  plot.drawing = plot.empty;
  plot.legend = Legend();

  const Scale scale(e, x, y);
  plot.correlation = PaintCells(density, e, scale, plot.drawing).Correlation();
  const std::size_t items = plot.drawing.items.size();
  DrawLines(e, x, y, scale, plot.drawing);
  if (plot.drawing.items.size() > items) plot.note = "NOTE: Dashed line(s) locate 0 and/or 1";

  plot.axes = fmt::format("X - Axis: Values for parameter #{}\nY - Axis: Values for parameter #{}",
                          density.firstParameter, density.secondParameter);
  plot.maxima = Pair("Max", x.max - x.half, y.max - y.half);
  plot.minima = Pair("Min", x.min + x.half, y.min + y.half);
  plot.peak = Pair("Peak", density.peakX, density.peakY);
  return plot;
}

}  // namespace merlane
