#include "base/gamma_ln.h"

#include "base/arithmetic.h"
#include "base/elementary.h"

namespace merlane {

double GammaLn(double x) {
  const double z = x >= 1 ? x : 2 - x;
  double y = z - 1;
  double t = y + 5.5;
  t = (y + 0.5) * Log(t) - t;
  double s = 1.0;
  for (const double coefficient : gamma_series::Coefficients) {
    y = y + 1;
    s = s + coefficient / y;
  }
  const double r = t + Log(gamma_series::RootOf2Pi * s);
  if (x >= 1) return r;

  return CheckedLog(Divide(Pi * (1 - x), Checked(Sin(Pi * (1 - x)) * Checked(Exp(r)))));
}

}  // namespace merlane
