#include "bootstrap/remaining_time.h"

#include <cmath>

#include "base/arithmetic.h"
#include "base/number_text.h"

namespace merlane {

std::string RemainingTime::After(double now, int done, int planned) {
  constexpr double Day = 24 * 60 * 60;
  if (now < previous_) start_ -= Day;
  previous_ = now;
  const double seconds = RoundHalfEven((now - start_) / done * (planned - done));
  const double h = std::floor(seconds / 3600), mm = std::floor((seconds - h * 3600) / 60);
  return Format(h, "0") + ":" + Format(mm, "00") + ":" + Format(seconds - h * 3600 - mm * 60, "00");
}

}  // namespace merlane
