#include "import/field_values.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>

#include "base/number_text.h"
#include "base/runtime_failure.h"
#include "base/text.h"
#include "platform/cell_dates.h"

namespace merlane {
namespace {

namespace calendar = std::chrono;

DayOfYear DayOf(calendar::sys_days day) {
  const calendar::year_month_day date(day);
  const calendar::sys_days newYear = date.year() / calendar::January / 1;
  return {static_cast<int>(date.year()), static_cast<int>((day - newYear).count()) + 1};
}

/// Whether a text can be the time of day behind a date.
bool IsTime(std::string_view text) {
  return text.empty() || ((text.front() == ' ' || text.front() == 'T') && text.find(':') < 4 &&
                          text.substr(1).find_first_not_of("0123456789:.,+-Z APMapm") == std::string_view::npos);
}

/// The three numbers of a date, divided by the same mark; none when there are fewer or anything else.
std::optional<std::array<int, 3>> ThreeNumbers(std::string_view field) {
  constexpr std::string_view marks = ".-/";
  std::array<int, 3> numbers{};
  char mark = '\0';
  for (std::size_t i = 0; i < 3; ++i) {
    const auto [end, error] = std::from_chars(field.data(), field.data() + field.size(), numbers[i]);
    if (error != std::errc() || numbers[i] < 0) return std::nullopt;
    field.remove_prefix(static_cast<std::size_t>(end - field.data()));
    if (i == 2) break;
    if (field.empty() || marks.find(field.front()) == std::string_view::npos) return std::nullopt;
    if (i > 0 && field.front() != mark) return std::nullopt;
    mark = field.front();
    field.remove_prefix(1);
  }
  if (!IsTime(field)) return std::nullopt;
  return numbers;
}

constexpr int LeastYear = 1000, MostYear = 9999;

}  // namespace

const std::vector<std::string>& DateOrderNames() {
  static const std::vector<std::string> names{"year-month-day", "day.month.year", "month/day/year",
                                              "days of a spreadsheet"};
  return names;
}

int DayCountedFrom(int year, DayOfYear day) {
  const calendar::sys_days from = calendar::year(year) / calendar::January / 1;
  const calendar::sys_days to = calendar::year(day.year) / calendar::January / 1;
  return day.day + static_cast<int>((to - from).count());
}

bool IsMissing(std::string_view field) {
  const std::string upper = UpperCase(Trim(field));
  return upper.empty() || upper == "NA" || upper == "N/A" || upper == "NAN" || upper == "#N/A" || upper == "." ||
         upper == "-";
}

std::optional<double> NumberIn(std::string_view field, char decimal) {
  std::string text(field);
  if (decimal == ',') {
    if (text.find('.') != std::string::npos) return std::nullopt;
    std::ranges::replace(text, ',', '.');
  }
  if (!IsNumber(text)) return std::nullopt;
  return StrictNumber(text);
}

std::optional<DayOfYear> DateIn(std::string_view field, DateOrder order) {
  field = Trim(field);
  if (order == DateOrder::SerialDays) {
    const std::optional<double> serial = NumberIn(field, field.find(',') == std::string_view::npos ? '.' : ',');
    if (serial) return DateIn(DateText(*serial, Shows::Date, false), DateOrder::YearMonthDay);
  }
  const std::optional<std::array<int, 3>> numbers = ThreeNumbers(field);
  if (!numbers) return std::nullopt;
  const auto [first, second, third] = *numbers;
  if (first >= LeastYear) order = DateOrder::YearMonthDay;
  const int year = order == DateOrder::DayMonthYear || order == DateOrder::MonthDayYear ? third : first;
  const int month = order == DateOrder::MonthDayYear ? first : second;
  const int day = order == DateOrder::DayMonthYear ? first : order == DateOrder::MonthDayYear ? second : third;
  if (year < LeastYear || year > MostYear) return std::nullopt;  // a year of two digits is nobody's guess
  const calendar::year_month_day date{calendar::year(year), calendar::month(static_cast<unsigned>(month)),
                                      calendar::day(static_cast<unsigned>(day))};
  if (!date.ok()) return std::nullopt;
  return DayOf(calendar::sys_days(date));
}

bool HasShortYear(std::string_view field) {
  const std::optional<std::array<int, 3>> numbers = ThreeNumbers(Trim(field));
  return numbers && std::ranges::max(*numbers) < 100;
}

std::string OnOneLine(std::string_view text) {
  std::string line(text);
  std::ranges::replace_if(
      line, [](char c) { return (c >= 0 && c < ' ') || c == '\x7F'; }, ' ');
  return std::string(Trim(line));
}

}  // namespace merlane
