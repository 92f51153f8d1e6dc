#include "newer_library.h"

#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>

namespace {

const char* BehindDigits(const char* at, const char* last) {
  return std::find_if(at, last, [](char c) { return c < '0' || c > '9'; });
}

/// Where the numeric prefix of a text ends; at its beginning when it has none.
const char* BehindNumber(const char* first, const char* last) {
  const char* const begin = first != last && *first == '-' ? first + 1 : first;
  const char* end = BehindDigits(begin, last);
  auto count = end - begin;
  if (end != last && *end == '.') {
    const char* const fraction = BehindDigits(end + 1, last);
    count += fraction - (end + 1);
    if (count > 0) end = fraction;
  }
  if (count == 0) return first;
  if (end == last || (*end != 'e' && *end != 'E')) return end;
  const char* exponent = end + 1;
  if (exponent != last && (*exponent == '+' || *exponent == '-')) ++exponent;
  const char* const behind = BehindDigits(exponent, last);
  return behind == exponent ? end : behind;
}

constexpr double PowersOfTen[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                                  1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

/// The value of a number of few digits without an exponent: digits and power of ten are doubles to the last bit, so
/// that their quotient alone is rounded. None of any other.
std::optional<double> ValueOfFewDigits(std::string_view number) {
  constexpr std::uint64_t Most = std::uint64_t{1} << 53;
  const bool negative = number.front() == '-';
  std::uint64_t digits = 0;
  std::size_t places = 0;
  bool behindPoint = false;
  for (const char c : number.substr(negative ? 1 : 0)) {
    if (c == '.') {
      behindPoint = true;
      continue;
    }
    if (c < '0' || c > '9') return std::nullopt;
    digits = digits * 10 + static_cast<std::uint64_t>(c - '0');
    if (behindPoint) ++places;
    if (digits > Most || places >= std::size(PowersOfTen)) return std::nullopt;
  }
  const double value = static_cast<double>(digits) / PowersOfTen[places];
  return negative ? -value : value;
}

std::to_chars_result Put(char* first, char* last, std::string_view text) {
  if (last - first < static_cast<std::ptrdiff_t>(text.size())) return {last, std::errc::value_too_large};
  return {std::copy(text.begin(), text.end(), first), std::errc()};
}

}  // namespace

namespace std {

from_chars_result from_chars(const char* first, const char* last, double& value) {
  const char* const end = BehindNumber(first, last);
  if (end == first) return {first, errc::invalid_argument};
  if (const optional<double> few = ValueOfFewDigits({first, static_cast<size_t>(end - first)})) {
    value = *few;
    return {end, errc()};
  }
  errno = 0;
  const double read = strtod(string(first, end).c_str(), nullptr);  // exact for any number of digits
  if (errno == ERANGE && (isinf(read) || read == 0)) return {end, errc::result_out_of_range};
  value = read;
  return {end, errc()};
}

to_chars_result to_chars(char* first, char* last, double value, chars_format format, int places) {
  string text(400 + static_cast<size_t>(places), '\0');
  const char* const pattern = format == chars_format::fixed ? "%.*f" : "%.*e";
  text.resize(static_cast<size_t>(snprintf(text.data(), text.size(), pattern, places, value)));
  return Put(first, last, text);
}

to_chars_result to_chars(char* first, char* last, double value, chars_format) {
  if (value == floor(value)) return to_chars(first, last, value, chars_format::fixed, 0);
  // Digits, a point maybe, and an exponent that is negative, since this is no whole number.
  const string shortest = fmt::format("{}", value);
  const size_t e = shortest.find('e');
  if (e == string::npos) return Put(first, last, shortest);
  string digits = shortest.substr(0, e);
  const bool negative = digits.front() == '-';
  erase_if(digits, [](char c) { return c == '.' || c == '-'; });
  const auto zeros = static_cast<size_t>(-stoi(shortest.substr(e + 1)) - 1);
  return Put(first, last, (negative ? "-0." : "0.") + string(zeros, '0') + digits);
}

}  // namespace std
