#pragma once

#include <cstdint>

namespace merlane {

/// `result` itself when it is a number; RuntimeFailure ("overflow") for an infinity or a NaN.
double Checked(double result);

/// numerator / denominator; RuntimeFailure for a denominator of 0 ("division by zero") or an overflow.
double Divide(double numerator, double denominator);

/// Square root and natural logarithm; RuntimeFailure outside their domain instead of NaN or infinity.
double CheckedSqrt(double x);
double CheckedLog(double x);

/// Rounds half to even, as every conversion of a real to an integer in the program does.
double RoundHalfEven(double x);

/// Rounds half to even into the range of the type; RuntimeFailure, which tells the number and the range, outside it.
std::int16_t ToInt16(double x);
std::int32_t ToInt32(double x);

/// An i16 sum, difference or product that has already been computed wider; RuntimeFailure like ToInt16.
std::int16_t CheckedInt16(std::int64_t x);

}  // namespace merlane
