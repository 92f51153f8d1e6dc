#pragma once

#include <string>

#include "platform/clock.h"

namespace merlane {

/// Estimates from the progress of a calculation how long it will still take.
class TimeLeft {
 public:
  explicit TimeLeft(const Clock& clock) : clock_(clock) { Start(); }

  void Start() { start_ = Timer(clock_); }
  /// Minutes and seconds, as "m:ss", that `left` steps will take when `done` have taken the time since the start.
  std::string Text(double done, double left) const;

 private:
  const Clock& clock_;
  double start_ = 0;
};

/// The time of day as "hh:mm:ss".
std::string TimeOfDay(const Clock& clock);

}  // namespace merlane
