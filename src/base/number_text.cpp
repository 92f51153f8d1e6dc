#include "base/number_text.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>

#include "base/arithmetic.h"
#include "base/number_template.h"
#include "base/runtime_failure.h"
#include "base/text.h"

namespace merlane {
namespace {

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

/// Length of the longest numeric prefix of `text`; 0 when it has no digits.
std::size_t NumericPrefix(std::string_view text) {
  std::size_t i = 0;
  if (i < text.size() && (text[i] == '+' || text[i] == '-')) ++i;
  std::size_t digits = 0;
  while (i < text.size() && IsDigit(text[i])) ++i, ++digits;
  if (i < text.size() && text[i] == '.') {
    ++i;
    while (i < text.size() && IsDigit(text[i])) ++i, ++digits;
  }
  if (digits == 0) return 0;
  if (i < text.size() && (text[i] == 'E' || text[i] == 'e')) {
    std::size_t j = i + 1;
    if (j < text.size() && (text[j] == '+' || text[j] == '-')) ++j;
    if (j < text.size() && IsDigit(text[j])) {
      while (j < text.size() && IsDigit(text[j])) ++j;
      i = j;
    }
  }
  return i;
}

/// The text without the blanks around it when it is a number throughout; empty when it is none.
std::string_view NumberAlone(std::string_view text) {
  const std::string_view number = Trim(text);
  return NumericPrefix(number) == number.size() ? number : std::string_view();
}

/// Value of a text that is a number throughout; infinite when it is too large for a double.
double Value(std::string_view number) {
  const bool negative = number.front() == '-';
  if (negative || number.front() == '+') number.remove_prefix(1);
  double magnitude = 0;
  const auto result = std::from_chars(number.data(), number.data() + number.size(), magnitude);
  // from_chars reports numbers too large and too small alike, and tells neither from the other.
  if (result.ec == std::errc::result_out_of_range) magnitude = std::strtod(std::string(number).c_str(), nullptr);
  return negative ? -magnitude : magnitude;
}

double FiniteValue(std::string_view number) {
  const double value = Value(number);
  if (std::isinf(value)) throw RuntimeFailure("overflow: " + std::string(number) + " is too large a number");
  return value;
}

}  // namespace

std::string Format(double x, std::string_view pattern) {
  std::string text;
  NumberTemplate(pattern).AppendTo(text, x);
  return text;
}

std::string NumberField(double x, std::string_view pattern, int width) {
  const std::string number = Format(x, pattern);
  return RightSet(number, std::max(width, static_cast<int>(number.size())));
}

std::string_view NumberColumns(std::string_view line, int first, int last) {
  const std::string_view field = Columns(line, first, last);
  if (field.empty() || !IsDigit(field.back())) return field;
  int end = last;
  while (static_cast<std::size_t>(end) < line.size() && IsDigit(line[static_cast<std::size_t>(end)])) ++end;
  return Columns(line, first, end);
}

std::string Shortest(double x) { return x == 0 ? "0" : fmt::format("{}", x); }

std::string Plain(double x) {
  if (x == 0) return "0";
  char digits[400];  // the largest double has 309 of them, the smallest 326
  const auto end = std::to_chars(digits, digits + sizeof digits, x, std::chars_format::fixed).ptr;
  return std::string(digits, end);
}

double LenientNumber(std::string_view text) {
  std::string packed;
  for (const char c : text)
    if (c != ' ') packed += c;
  const std::size_t length = NumericPrefix(packed);
  return length == 0 ? 0.0 : FiniteValue(std::string_view(packed).substr(0, length));
}

bool IsNumber(std::string_view text) {
  const std::string_view number = NumberAlone(text);
  return !number.empty() && std::isfinite(Value(number));
}

double StrictNumber(std::string_view text) {
  const std::string_view number = NumberAlone(text);
  if (number.empty()) throw RuntimeFailure("\"" + std::string(text) + "\" is not a number");
  return FiniteValue(number);
}

std::int16_t StrictInt16(std::string_view text) { return ToInt16(StrictNumber(text)); }

std::int32_t StrictInt32(std::string_view text) { return ToInt32(StrictNumber(text)); }

}  // namespace merlane
