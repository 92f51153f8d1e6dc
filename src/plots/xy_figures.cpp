#include "plots/xy_figures.h"

#include <cmath>

#include "base/number_text.h"

namespace merlane {
namespace {

constexpr const char* FourDecimals = "#0.0000";

std::string Line(const char* label, double value, const char* pattern = FourDecimals) {
  return std::string("      ") + label + " = " + Format(value, pattern);
}

}  // namespace

void XyFigures::Add(double x, double y) {
  ++n_;
  sx_ += x;
  sxx_ += x * x;
  sy_ += y;
  syy_ += y * y;
  sxy_ += x * y;
  sxxy_ += (x * x) * y;
}

std::optional<std::string> XyFigures::Correlation() const {
  if (n_ <= 2) return std::nullopt;
  const double d = (sxx_ - sx_ * sx_ / n_) * (syy_ - sy_ * sy_ / n_);
  if (!(d > 0)) return std::nullopt;
  const double r = (sxy_ - sx_ * sy_ / n_) / std::sqrt(d);
  // The root covers the numerator alone.
  const double s = 1 - r * r > 0 ? std::sqrt(1 - r * r) / (n_ - 2) : 0.0;
  return "r  = " + Format(r, FourDecimals) + "\ns\u00B0 = " + Format(s, FourDecimals);
}

std::string XyFigures::ScatterOfY() const {
  const double mean = sy_ / n_;
  const double radicand = ((syy_ / n_ - mean * mean) * n_) / (n_ - 1);
  const double sd = radicand > 0 ? std::sqrt(radicand) : 0.0;
  return "Scatter of Y:\n" + Line("Mean", mean) + "\n" + Line("SD", sd) + "\n" + Line("Var", sd * sd);
}

std::optional<std::string> XyFigures::DistributionOfX(const char* meanPattern) const {
  if (sy_ == 0) return std::nullopt;
  const double mean = sxy_ / sy_;
  const double variance = sxxy_ / sy_ - mean * mean;
  if (!(variance > 0)) return std::nullopt;
  return "Distribution of X:\n" + Line("Mean", mean, meanPattern) + "\n" + Line("SD", std::sqrt(variance)) + "\n" +
         Line("Var", variance);
}

}  // namespace merlane
