#include "base/gamma_ln.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "base/arithmetic.h"
#include "base/elementary.h"
#include "base/elementary_rows.h"

namespace merlane {
namespace {

constexpr double Coefficients[] = {76.18009173, -86.50532033, 24.01409822, -1.231739516, 0.00120858003, -5.36382e-06};
constexpr double RootOf2Pi = 2.50662827465;

}  // namespace

double GammaLn(double x) {
  const double z = x >= 1 ? x : 2 - x;
  double y = z - 1;
  double t = y + 5.5;
  t = (y + 0.5) * Log(t) - t;
  double s = 1.0;
  for (const double coefficient : Coefficients) {
    y = y + 1;
    s = s + coefficient / y;
  }
  const double r = t + Log(RootOf2Pi * s);
  if (x >= 1) return r;

  return CheckedLog(Divide(Pi * (1 - x), Checked(Sin(Pi * (1 - x)) * Checked(Exp(r)))));
}

void GammaLnRow(std::span<const double> x, std::span<double> y) {
  using Some = std::array<double, 32>;  // in loops of a length that the compiler knows
  for (std::size_t begin = 0; begin < x.size(); begin += Some().size()) {
    const std::span<const double> of = x.subspan(begin, std::min(Some().size(), x.size() - begin));
    Some shifted{}, t, s, log;
    std::ranges::transform(of, shifted.begin(), [](double argument) { return argument - 1; });
    for (std::size_t i = 0; i < t.size(); ++i) t[i] = shifted[i] + 5.5;
    LogRow(t, log);
    for (std::size_t i = 0; i < t.size(); ++i) t[i] = (shifted[i] + 0.5) * log[i] - t[i];
    s.fill(1.0);
    for (const double coefficient : Coefficients)
      for (std::size_t i = 0; i < s.size(); ++i) {
        shifted[i] = shifted[i] + 1;
        s[i] = s[i] + coefficient / shifted[i];
      }
    for (double& sum : s) sum = RootOf2Pi * sum;
    LogRow(s, log);
    for (std::size_t i = 0; i < of.size(); ++i) y[begin + i] = t[i] + log[i];
  }
}

}  // namespace merlane
