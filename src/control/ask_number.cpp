#include "control/ask_number.h"

#include "base/number_text.h"

namespace merlane {

std::optional<double> NumberIn(const std::string& text) {
  if (!IsNumber(text)) return std::nullopt;
  return StrictNumber(text);
}

std::optional<double> AskNumber(Desk& desk, const std::string& boxTitle, const std::string& prompt, double current) {
  for (;;) {
    const std::string answer = desk.Input(boxTitle, prompt, Shortest(current));
    if (answer.empty()) return std::nullopt;
    if (const std::optional<double> number = NumberIn(answer)) return number;
  }
}

}  // namespace merlane
