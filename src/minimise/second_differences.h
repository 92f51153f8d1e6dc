#pragma once

#include "base/arithmetic.h"
#include "base/array1.h"

namespace merlane {

/// The objective less its value at a base point, at the points of a grid of second differences over n parameters:
/// element (a, b), a <= b, is where parameters a and b are both moved up by their step, or both down; (a, a) where a is
/// alone.
struct SecondDifferences {
  SecondDifferences() = default;
  explicit SecondDifferences(int n) : plus(n, n), minus(n, n) {}
  Matrix1<double> plus, minus;
};

/// The diagonal of the Hessian, all else 0. `square(a)` is the square of the step of a. RuntimeFailure on an overflow
/// and where a square is 0.
template <class Square>
Matrix1<double> DiagonalHessian(const SecondDifferences& d, Square square) {
  Matrix1<double> H(d.plus.Rows(), d.plus.Rows());
  for (int a = 1; a <= H.Rows(); ++a) H(a, a) = Divide(d.minus(a, a) + d.plus(a, a), square(a));
  return H;
}

/// The whole Hessian. `twice(a, b)` is twice the product of both steps; how it is multiplied out decides the last bit,
/// so that is the caller's.
template <class Square, class Twice>
Matrix1<double> FullHessian(const SecondDifferences& d, Square square, Twice twice) {
  Matrix1<double> H = DiagonalHessian(d, square);
  for (int a = 1; a <= H.Rows(); ++a)
    for (int b = a + 1; b <= H.Rows(); ++b) {
      const double numerator =
          d.minus(a, b) + d.plus(a, b) - d.plus(a, a) - d.minus(a, a) - d.plus(b, b) - d.minus(b, b);
      H(a, b) = H(b, a) = Divide(numerator, twice(a, b));
    }
  return H;
}

}  // namespace merlane
