#include "base/arithmetic.h"

#include <fmt/format.h>

#include <cmath>
#include <limits>

#include "base/arithmetic_failure.h"
#include "base/elementary.h"

namespace merlane {
namespace {

/// `x`, a whole number, as one of the type.
template <class Integer, class Wider>
Integer InRange(Wider x) {
  constexpr Integer least = std::numeric_limits<Integer>::min(), most = std::numeric_limits<Integer>::max();
  if (!(x >= least && x <= most))
    throw ArithmeticFailure(fmt::format("overflow: {} does not lie between {} and {}", x, least, most));
  return static_cast<Integer>(x);
}

}  // namespace

double Checked(double result) {
  if (!std::isfinite(result)) throw ArithmeticFailure("overflow");
  return result;
}

double Divide(double numerator, double denominator) {
  if (denominator == 0) throw ArithmeticFailure("division by zero");
  return Checked(numerator / denominator);
}

double CheckedSqrt(double x) {
  if (!(x >= 0)) throw ArithmeticFailure("square root of a negative number");
  return Checked(std::sqrt(x));
}

double CheckedLog(double x) {
  if (!(x > 0)) throw ArithmeticFailure("logarithm of a number that is not positive");
  return Checked(Log(x));
}

double RoundHalfEven(double x) { return std::nearbyint(x); }

std::int16_t ToInt16(double x) { return InRange<std::int16_t>(RoundHalfEven(x)); }

std::int32_t ToInt32(double x) { return InRange<std::int32_t>(RoundHalfEven(x)); }

std::int16_t CheckedInt16(std::int64_t x) { return InRange<std::int16_t>(x); }

}  // namespace merlane
