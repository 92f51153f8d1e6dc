#include "uncertainty/time_left.h"

#include <fmt/format.h>

#include <cmath>

#include "base/arithmetic.h"

namespace merlane {

std::string TimeLeft::Text(double done, double left) const {
  constexpr double Day = 24 * 60 * 60;
  const double since = Timer(clock_) - start_;
  const double elapsed = since < 0 ? since + Day : since;  // the clock starts anew at midnight
  const double seconds = RoundHalfEven(elapsed / done * left);
  const double minutes = std::floor(seconds / 60);
  return fmt::format("{:.0f}:{:02.0f}", minutes, seconds - 60 * minutes);
}

std::string TimeOfDay(const Clock& clock) {
  const DateTime now = clock.Now();
  return fmt::format("{:02}:{:02}:{:02.0f}", now.hour, now.minute, std::floor(now.second));
}

}  // namespace merlane
