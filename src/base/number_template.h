#pragma once

#include <string>
#include <string_view>

namespace merlane {

/// A template of numbers as Format (number_text.h) takes it, read once for many numbers.
class NumberTemplate {
 public:
  /// Keeps a view of `pattern`.
  explicit NumberTemplate(std::string_view pattern);

  /// Appends x to a text. RuntimeFailure when it is not finite.
  void AppendTo(std::string& text, double x) const;

 private:
  void AppendFixed(std::string& text, double magnitude) const;
  void AppendWithExponent(std::string& text, double magnitude) const;

  std::string_view before_, after_;  // literal text
  int leastWhole_ = 0;               // digits always shown before the point
  int leastFraction_ = 0;            // digits always shown behind it
  int mostFraction_ = 0;             // digits shown at most
  int exponentDigits_ = 0;           // 0: no exponent
};

}  // namespace merlane
