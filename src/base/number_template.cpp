#include "base/number_template.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "base/runtime_failure.h"

namespace merlane {
namespace {

bool IsPlace(char c) { return c == '0' || c == '#'; }

/// Appends what std::to_chars writes of a number, and says where that begins.
template <class... Form>
std::size_t AppendDigits(std::string& text, std::size_t most, auto number, Form... form) {
  const std::size_t start = text.size();
  text.resize(start + most);
  text.resize(static_cast<std::size_t>(
      std::to_chars(text.data() + start, text.data() + text.size(), number, form...).ptr - text.data()));
  return start;
}

/// Puts zeros before a number of so many digits, which begins at `start`, until there are as many as are wanted.
void FillWithZeros(std::string& text, std::size_t start, std::size_t digits, int wanted) {
  if (digits < static_cast<std::size_t>(wanted)) text.insert(start, static_cast<std::size_t>(wanted) - digits, '0');
}

}  // namespace

NumberTemplate::NumberTemplate(std::string_view pattern) {
  std::size_t i = 0;
  while (i < pattern.size() && !IsPlace(pattern[i])) ++i;
  before_ = pattern.substr(0, i);
  for (; i < pattern.size() && IsPlace(pattern[i]); ++i)
    if (pattern[i] == '0') ++leastWhole_;
  if (i < pattern.size() && pattern[i] == '.')
    for (++i; i < pattern.size() && IsPlace(pattern[i]); ++i) {
      ++mostFraction_;
      if (pattern[i] == '0') leastFraction_ = mostFraction_;
    }
  if (i + 1 < pattern.size() && pattern[i] == 'E' && pattern[i + 1] == '+')
    for (i += 2; i < pattern.size() && pattern[i] == '0'; ++i) ++exponentDigits_;
  after_ = pattern.substr(i);
}

void NumberTemplate::AppendTo(std::string& text, double x) const {
  if (!std::isfinite(x)) throw RuntimeFailure("overflow: a result is not a number");
  if (x < 0) text += '-';
  text += before_;
  if (exponentDigits_ > 0)
    AppendWithExponent(text, std::fabs(x));
  else
    AppendFixed(text, std::fabs(x));
  text += after_;
}

void NumberTemplate::AppendFixed(std::string& text, double magnitude) const {
  constexpr double EveryWholeNumberBelow = 9e15;
  // Digits, and the point.
  const std::size_t mostWhole = magnitude < EveryWholeNumberBelow ? 17 : 310;
  if (mostFraction_ == 0 && magnitude < EveryWholeNumberBelow && magnitude == std::floor(magnitude)) {
    const std::size_t start = AppendDigits(text, 16, static_cast<std::int64_t>(magnitude));
    FillWithZeros(text, start, text.size() - start, leastWhole_);
    return;
  }
  const std::size_t start = AppendDigits(text, mostWhole + static_cast<std::size_t>(mostFraction_), magnitude,
                                         std::chars_format::fixed, mostFraction_);
  for (int shown = mostFraction_; shown > leastFraction_ && text.back() == '0'; --shown) text.pop_back();
  FillWithZeros(text, start, std::min(text.find('.', start), text.size()) - start, leastWhole_);
}

void NumberTemplate::AppendWithExponent(std::string& text, double magnitude) const {
  constexpr std::size_t MostAround = 8;  // a digit and the point before, the exponent behind
  const std::size_t start = AppendDigits(text, MostAround + static_cast<std::size_t>(mostFraction_), magnitude,
                                         std::chars_format::scientific, mostFraction_);
  const std::size_t e = text.find('e', start);
  text[e] = 'E';
  const std::size_t first = e + 2;  // behind the sign
  while (text[first] == '0' && first + 1 < text.size()) text.erase(first, 1);
  FillWithZeros(text, first, text.size() - first, exponentDigits_);
}

}  // namespace merlane
