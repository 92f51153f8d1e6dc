#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace merlane {

/// `x` after a template such as "0.0000000E+00", "####0", "    000) " or "#0.0###": 0 is a digit always shown, # one
/// shown when needed, E+00 an exponent of at least that many digits; anything before and behind stands as it is. The
/// sign of a negative number comes before all of it. Rounds the exact binary value; prints zero without a sign.
/// RuntimeFailure when x is not finite.
std::string Format(double x, std::string_view pattern);

/// `x` after a template, flush right in a field of that width. A number is never cut: the field grows for it.
std::string NumberField(double x, std::string_view pattern, int width);

/// Columns `first` to `last` of a line, counted from 1, and the digits with which the number there has outgrown them.
std::string_view NumberColumns(std::string_view line, int first, int last);

/// Shortest text that reads back as the same number; whole numbers have no point.
std::string Shortest(double x);

/// Shortest text that reads back as the same number, without an exponent however small or large it is.
std::string Plain(double x);

/// The lenient reading: drops blanks, takes the longest numeric prefix ([sign] digits [. digits] [E [sign] digits]), 0
/// when there is none. RuntimeFailure ("overflow") only for a number too large for a double.
double LenientNumber(std::string_view text);

/// The strict reading: a number with surrounding blanks; RuntimeFailure on anything else, empty text included, and for
/// a number too large for a double.
double StrictNumber(std::string_view text);
/// True for a text that the strict reading accepts.
bool IsNumber(std::string_view text);
/// The strict reading, rounded half to even into the type's range; RuntimeFailure outside it.
std::int16_t StrictInt16(std::string_view text);
std::int32_t StrictInt32(std::string_view text);

}  // namespace merlane
