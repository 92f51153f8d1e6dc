#include "base/arithmetic.h"

#include <cmath>
#include <limits>

#include "base/runtime_failure.h"

namespace merlane {
namespace {

template <class Integer>
Integer Rounded(double x) {
  const double rounded = RoundHalfEven(x);
  if (!(rounded >= std::numeric_limits<Integer>::min() && rounded <= std::numeric_limits<Integer>::max()))
    throw RuntimeFailure("overflow");
  return static_cast<Integer>(rounded);
}

}  // namespace

double Checked(double result) {
  if (!std::isfinite(result)) throw RuntimeFailure("overflow");
  return result;
}

double Divide(double numerator, double denominator) {
  if (denominator == 0) throw RuntimeFailure("division by zero");
  return Checked(numerator / denominator);
}

double CheckedSqrt(double x) {
  if (!(x >= 0)) throw RuntimeFailure("square root of a negative number");
  return Checked(std::sqrt(x));
}

double CheckedLog(double x) {
  if (!(x > 0)) throw RuntimeFailure("logarithm of a number that is not positive");
  return Checked(std::log(x));
}

double RoundHalfEven(double x) { return std::nearbyint(x); }

std::int16_t ToInt16(double x) { return Rounded<std::int16_t>(x); }

std::int32_t ToInt32(double x) { return Rounded<std::int32_t>(x); }

std::int16_t CheckedInt16(std::int64_t x) {
  if (x < std::numeric_limits<std::int16_t>::min() || x > std::numeric_limits<std::int16_t>::max())
    throw RuntimeFailure("overflow");
  return static_cast<std::int16_t>(x);
}

}  // namespace merlane
