#pragma once

#include <string>

namespace merlane {

/// Estimates how long a number of attempts will take from the time that the first ones took. Seconds since midnight.
class RemainingTime {
 public:
  explicit RemainingTime(double start) : start_(start), previous_(start) {}

  /// "h:mm:ss" that the `planned` attempts will still take, when `done` of them have been made by `now`, which may be
  /// past midnight.
  std::string After(double now, int done, int planned);

 private:
  double start_, previous_;
};

}  // namespace merlane
