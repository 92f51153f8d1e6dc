#include "uncertainty/evaluation_questions.h"

#include <fmt/format.h>

#include <algorithm>

#include "base/arithmetic.h"
#include "base/number_text.h"
#include "base/text.h"

namespace merlane {
namespace {

/// Asks for a whole number of a range until one is given; none when the answer is empty or "Q".
std::optional<std::int16_t> AskNumber(Desk& desk, const std::string& boxTitle, const std::string& prompt,
                                      const std::string& proposal, int least, int most) {
  for (;;) {
    const std::string answer = desk.Input(boxTitle, prompt, proposal);
    if (answer.empty() || UpperCase(Trim(answer)) == "Q") return std::nullopt;
    if (!IsNumber(answer)) continue;
    const double number = RoundHalfEven(StrictNumber(answer));
    if (number >= least && number <= most) return ToInt16(number);
  }
}

}  // namespace

std::int16_t PointsUsed(std::int16_t asked, std::int16_t standard) {
  const int points = asked == 0 ? standard : std::max<int>(asked, 3);
  return static_cast<std::int16_t>(points % 2 == 0 ? points + 1 : points);
}

std::optional<std::int16_t> AskParameterNumber(Desk& desk, const std::string& boxTitle, const std::string& prompt,
                                               std::int16_t NPAR, const std::string& proposal) {
  return AskNumber(desk, boxTitle, prompt, proposal, 1, NPAR);
}

std::optional<std::int16_t> AskPointCount(Desk& desk, const std::string& boxTitle, const std::string& prompt, int least,
                                          std::int16_t standard) {
  const auto asked = AskNumber(desk, boxTitle, prompt, std::to_string(standard), least, MostPoints);
  if (!asked) return std::nullopt;
  return PointsUsed(*asked, standard);
}

std::string SinglePointText(int point, int points, int parameter, double value) {
  return fmt::format("Calculating profile point {} of {}, Value of parameter # {} which is being profiled is: {}",
                     point, points, parameter, Format(value, "0.0000E+00"));
}

}  // namespace merlane
