#include "base/gamma_ln.h"

#include "base/arithmetic.h"
#include "base/elementary.h"

namespace merlane {

double GammaLn(double x) {
  constexpr double coefficients[] = {76.18009173, -86.50532033, 24.01409822, -1.231739516, 0.00120858003, -5.36382e-06};
  const double z = x >= 1 ? x : 2 - x;
  double y = z - 1;
  double t = y + 5.5;
  t = (y + 0.5) * Log(t) - t;
  double s = 1.0;
  for (const double coefficient : coefficients) {
    y = y + 1;
    s = s + coefficient / y;
  }
  const double r = t + Log(2.50662827465 * s);
  if (x >= 1) return r;

  return CheckedLog(Divide(Pi * (1 - x), Checked(Sin(Pi * (1 - x)) * Checked(Exp(r)))));
}

}  // namespace merlane
