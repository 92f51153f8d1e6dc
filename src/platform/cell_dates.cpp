#include "platform/cell_dates.h"

#include <fmt/format.h>

#include <chrono>
#include <cmath>
#include <cstdint>

namespace merlane {
namespace {

namespace calendar = std::chrono;

constexpr std::int64_t SecondsOfDay = 86400;
constexpr std::int64_t FalseLeapDay = 60;                       // 29 February 1900, which never was
constexpr double LastDay = 2958465, LastDayFrom1904 = 2957003;  // 31 December 9999

std::string Day(std::int64_t day, bool from1904) {
  if (!from1904 && day == FalseLeapDay) return "1900-02-29";
  const calendar::sys_days origin = from1904             ? calendar::year(1904) / calendar::January / 1
                                    : day < FalseLeapDay ? calendar::year(1899) / calendar::December / 31
                                                         : calendar::year(1899) / calendar::December / 30;
  const calendar::year_month_day date(origin + calendar::days(day));
  return fmt::format("{:04}-{:02}-{:02}", static_cast<int>(date.year()), static_cast<unsigned>(date.month()),
                     static_cast<unsigned>(date.day()));
}

std::string Time(std::int64_t seconds) {
  return fmt::format("{:02}:{:02}:{:02}", seconds / 3600, seconds / 60 % 60, seconds % 60);
}

}  // namespace

Shows ShownBy(std::string_view code) {
  bool time = false, month = false;
  for (std::size_t i = 0; i < code.size() && code[i] != ';'; ++i) {  // the first section, that of positive numbers
    switch (code[i]) {
      case '"':
        i = code.find('"', i + 1);
        break;
      case '[': {
        const std::size_t end = code.find(']', i);
        const std::string_view inside = code.substr(i + 1, end == std::string_view::npos ? end : end - i - 1);
        // Elapsed hours, minutes or seconds; anything else is a colour, a condition or a language.
        time = time || (!inside.empty() && inside.find_first_not_of("hHmMsS") == std::string_view::npos);
        i = end;
        break;
      }
      case '\\':
      case '_':
      case '*':
        ++i;
        break;
      case 'G':  // General
        return Shows::Number;
      case 'y':
      case 'Y':
      case 'd':
      case 'D':
        return Shows::Date;
      case 'h':
      case 'H':
      case 's':
      case 'S':
        time = true;
        break;
      case 'm':
      case 'M':
        month = true;  // minutes, beside hours or seconds
        break;
      default:
        break;
    }
    if (i == std::string_view::npos) break;
  }
  return time ? Shows::Time : month ? Shows::Date : Shows::Number;
}

Shows ShownBy(int format) {
  const auto within = [format](int first, int last) { return format >= first && format <= last; };
  // 27 to 36 and 50 to 58 are dates of eastern Asia.
  if (within(14, 17) || format == 22 || within(27, 31) || format == 36 || within(50, 58)) return Shows::Date;
  if (within(18, 21) || within(32, 35) || within(45, 47)) return Shows::Time;
  return Shows::Number;
}

std::string DateText(double serial, Shows shows, bool from1904) {
  const bool isDay =
      serial >= (from1904 || shows == Shows::Time ? 0 : 1) && serial < (from1904 ? LastDayFrom1904 : LastDay) + 1;
  if (!isDay) return fmt::format("{:.15g}", serial);
  const std::int64_t seconds = std::llround(serial * SecondsOfDay);
  const std::int64_t day = seconds / SecondsOfDay, time = seconds % SecondsOfDay;
  if (shows == Shows::Time && day == 0) return Time(time);
  return time == 0 ? Day(day, from1904) : Day(day, from1904) + ' ' + Time(time);
}

}  // namespace merlane
