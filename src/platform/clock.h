#pragma once

#include <string>

namespace merlane {

/// A date and time of day as the host's clock shows it.
struct DateTime {
  int year = 2000, month = 1, day = 1, hour = 0, minute = 0;
  double second = 0;
};

/// Tells the time.
class Clock {
 public:
  virtual ~Clock() = default;
  virtual DateTime Now() const = 0;
  /// True when it tells the same time from now on, in each run of the same commands.
  virtual bool Stands() const { return false; }
};

/// The machine's own clock, in local time.
class SystemClock : public Clock {
 public:
  DateTime Now() const override;
};

/// Seconds since midnight, with their fraction.
double Timer(const Clock& clock);

/// A default file name without extension: month, day, hour and minute, two digits each ("mmddhhmm").
std::string ClockName(const Clock& clock);

}  // namespace merlane
