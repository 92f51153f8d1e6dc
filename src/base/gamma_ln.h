#pragma once

namespace merlane {

/// ln Gamma(x) by the six-term series of C. Lanczos, A precision approximation of the gamma function, SIAM Journal on
/// Numerical Analysis, Series B, 1 (1964) 86-96, with the coefficients of W. H. Press, B. P. Flannery, S. A. Teukolsky
/// and W. T. Vetterling, Numerical Recipes (1986), chapter 6.1; reflected below 1. It differs from the exact value by
/// some 1e-10; the digits of all results depend on this series, so nothing else takes its place. RuntimeFailure below
/// 0, where Gamma is negative or too small for its reciprocal to be a number.
double GammaLn(double x);

/// The constants of the series.
namespace gamma_series {
inline constexpr double Coefficients[] = {76.18009173,  -86.50532033,  24.01409822,
                                          -1.231739516, 0.00120858003, -5.36382e-06};
inline constexpr double RootOf2Pi = 2.50662827465;
}  // namespace gamma_series

}  // namespace merlane
