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
constexpr double RootOfTwoPi = 2.50662827465;

/// ln Gamma(x) below 1, where r = ln Gamma(2 - x).
double Reflected(double x, double r) {
  return CheckedLog(Divide(Pi * (1 - x), Checked(Sin(Pi * (1 - x)) * Checked(Exp(r)))));
}

}  // namespace

double GammaLn(double x) {
  double y = (x >= 1 ? x : 2 - x) - 1;
  double t = y + 5.5;
  t = (y + 0.5) * Log(t) - t;
  double s = 1.0;
  for (const double coefficient : Coefficients) {
    y = y + 1;
    s = s + coefficient / y;
  }
  const double r = t + Log(RootOfTwoPi * s);
  return x >= 1 ? r : Reflected(x, r);
}

void GammaLnRow(std::span<const double> arguments, std::span<double> values) {
  constexpr std::size_t Length = 64;
  std::array<double, Length> y, t, s, log;
  for (std::size_t begin = 0; begin < arguments.size(); begin += Length) {
    const std::size_t n = std::min(Length, arguments.size() - begin);
    const std::span<const double> x = arguments.subspan(begin, n);
    const std::span<double> value = values.subspan(begin, n);
    for (std::size_t i = 0; i < n; ++i) {
      y[i] = (x[i] >= 1 ? x[i] : 2 - x[i]) - 1;
      t[i] = y[i] + 5.5;
      s[i] = 1.0;
    }
    LogRow(std::span(t).first(n), log);
    for (std::size_t i = 0; i < n; ++i) value[i] = (y[i] + 0.5) * log[i] - t[i];
    for (const double coefficient : Coefficients)
      for (std::size_t i = 0; i < n; ++i) {
        y[i] = y[i] + 1;
        s[i] = s[i] + coefficient / y[i];
      }
    for (std::size_t i = 0; i < n; ++i) s[i] = RootOfTwoPi * s[i];
    LogRow(std::span(s).first(n), log);
    for (std::size_t i = 0; i < n; ++i) {
      value[i] = value[i] + log[i];
      if (!(x[i] >= 1)) value[i] = Reflected(x[i], value[i]);
    }
  }
}

}  // namespace merlane
