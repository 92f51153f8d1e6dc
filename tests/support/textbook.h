#pragma once

#include <cmath>

#include "base/array1.h"

namespace merlane::test {

inline double Square(double x) { return x * x; }

/// (x - 3)^2 + 4 (y + 1)^2 + 5.
inline double Quadratic(const Array1<double>& x) { return Square(x(1) - 3) + 4 * Square(x(2) + 1) + 5; }

// The order of operations in these functions is that of the runs they are compared with: Marquardt's method follows the
// last bit of an objective.
//
// J. J. More, B. S. Garbow and K. E. Hillstrom, Testing unconstrained optimization software, ACM Transactions on
// Mathematical Software 7 (1981) 17-41: numbers in brackets are those of the collection.

/// [1], from (-1.2, 1); minimum 0 at (1, 1).
inline double Rosenbrock(const Array1<double>& x) { return 100 * Square(x(2) - x(1) * x(1)) + Square(1 - x(1)); }

/// [7], from (-1, 0, 0); minimum 0 at (1, 0, 0).
inline double HelicalValley(const Array1<double>& x) {
  const double pi = 4 * std::atan(1.0);
  double theta = std::atan(x(2) / x(1)) / (2 * pi);
  if (x(1) < 0) theta += 0.5;
  return Square(10 * (x(3) - 10 * theta)) + Square(10 * (std::sqrt(x(1) * x(1) + x(2) * x(2)) - 1)) + Square(x(3));
}

/// [12] with 10 terms, from (0, 10, 20); minimum 0 at (1, 10, 1), (10, 1, -1) and wherever x1 = x2 and x3 = 0.
inline double Box3(const Array1<double>& x) {
  double sum = 0;
  for (int i = 1; i <= 10; ++i) {
    const double t = 0.1 * i;
    sum += Square(std::exp(-t * x(1)) - std::exp(-t * x(2)) - x(3) * (std::exp(-t) - std::exp(-10 * t)));
  }
  return sum;
}

/// [13], from (3, -1, 0, 1); minimum 0 at the origin, where the Hessian is singular.
inline double PowellSingular(const Array1<double>& x) {
  return Square(x(1) + 10 * x(2)) + 5 * Square(x(3) - x(4)) + std::pow(x(2) - 2 * x(3), 4) +
         10 * std::pow(x(1) - x(4), 4);
}

/// [14], from (-3, -1, -3, -1); minimum 0 at (1, 1, 1, 1); a saddle near (-1, 1, -1, 1).
inline double Wood(const Array1<double>& x) {
  return 100 * Square(x(1) * x(1) - x(2)) + Square(x(1) - 1) + Square(x(3) - 1) + 90 * Square(x(3) * x(3) - x(4)) +
         10.1 * (Square(x(2) - 1) + Square(x(4) - 1)) + 19.8 * (x(2) - 1) * (x(4) - 1);
}

}  // namespace merlane::test
