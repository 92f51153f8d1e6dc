#include "platform/clock.h"

#include <fmt/format.h>

#include <chrono>
#include <ctime>

namespace merlane {

DateTime SystemClock::Now() const {
  using namespace std::chrono;
  const auto now = system_clock::now();
  const std::time_t seconds = system_clock::to_time_t(floor<std::chrono::seconds>(now));
  std::tm local{};
  localtime_r(&seconds, &local);
  const double fraction = duration<double>(now - floor<std::chrono::seconds>(now)).count();
  return {local.tm_year + 1900, local.tm_mon + 1, local.tm_mday, local.tm_hour, local.tm_min, local.tm_sec + fraction};
}

double Timer(const Clock& clock) {
  const DateTime now = clock.Now();
  return now.hour * 3600.0 + now.minute * 60.0 + now.second;
}

std::string ClockName(const Clock& clock) {
  const DateTime now = clock.Now();
  return fmt::format("{:02}{:02}{:02}{:02}", now.month, now.day, now.hour, now.minute);
}

}  // namespace merlane
