#pragma once

#include <span>

namespace merlane {

/// ln Gamma(x) by the six-term series of C. Lanczos, A precision approximation of the gamma function, SIAM Journal on
/// Numerical Analysis, Series B, 1 (1964) 86-96, with the coefficients of W. H. Press, B. P. Flannery, S. A. Teukolsky
/// and W. T. Vetterling, Numerical Recipes (1986), chapter 6.1; reflected below 1. It differs from the exact value by
/// some 1e-10; the digits of all results depend on this series, so nothing else takes its place. RuntimeFailure below
/// 0, where Gamma is negative or too small for its reciprocal to be a number.
double GammaLn(double x);

/// The same of a row of arguments, several at a time; of those below 1 nothing comes out. `y` is as long as the
/// arguments and does not overlap them.
void GammaLnRow(std::span<const double> x, std::span<double> y);

}  // namespace merlane
