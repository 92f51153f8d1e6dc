#pragma once

namespace merlane {

/// ln Gamma(x) by the six-term series of Lanczos (1964), reflected below 1. It differs from the exact value by some
/// 1e-10; the digits of all results depend on this series, so nothing else takes its place. RuntimeFailure below 0,
/// where Gamma is negative or too small for its reciprocal to be a number.
double GammaLn(double x);

}  // namespace merlane
