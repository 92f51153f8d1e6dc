#include "uncertainty/tail_probability.h"

#include <cmath>

#include "base/elementary.h"
#include "base/gamma_ln.h"
#include "base/number_text.h"

namespace merlane {
namespace {

constexpr int Panels = 4000;
constexpr double DegreesOfFreedom = 999;

/// Student's density without its constant.
double Kernel(double t) { return Exp(-0.5 * (DegreesOfFreedom + 1) * Log(t * t / DegreesOfFreedom + 1)); }

double DensityConstant() { return Exp(GammaLn(500) - GammaLn(499.5) - Log(std::sqrt(DegreesOfFreedom * Pi))); }

}  // namespace

double TailProbability(double z) {
  // Single precision, so that a distance a hair short of 20 counts as 20.
  const double bound = static_cast<double>(static_cast<float>(z));
  if (bound >= 20) return 0;
  const double h = (bound + 20) / Panels;
  double sum = 0;
  for (int i = 0; i < Panels; ++i) {
    const double left = -20 + i * h;
    const double right = left + h;
    sum += (Kernel(left) + 4 * Kernel((left + right) / 2) + Kernel(right)) * h / 6;
  }
  const double I = sum * DensityConstant();
  const double Q = 1 - std::floor(I * 10000 + 0.5) / 10000;
  return StrictNumber(Format(Q, "0.0000")) * 2;
}

}  // namespace merlane
