#include "import/field_values.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>

#include "base/number_text.h"
#include "base/runtime_failure.h"
#include "base/text.h"

namespace merlane {
namespace {

namespace calendar = std::chrono;

DayOfYear DayOf(calendar::sys_days day) {
  const calendar::year_month_day date(day);
  const calendar::sys_days newYear = date.year() / calendar::January / 1;
  return {static_cast<int>(date.year()), static_cast<int>((day - newYear).count()) + 1};
}

/// The three numbers of a date; none when there are fewer or anything else.
std::optional<std::array<int, 3>> ThreeNumbers(std::string_view field) {
  std::array<int, 3> numbers{};
  for (std::size_t i = 0; i < 3; ++i) {
    const auto [end, error] = std::from_chars(field.data(), field.data() + field.size(), numbers[i]);
    if (error != std::errc() || numbers[i] < 0) return std::nullopt;
    field.remove_prefix(static_cast<std::size_t>(end - field.data()));
    if (i == 2) break;
    if (field.empty() || std::string_view(".-/").find(field.front()) == std::string_view::npos) return std::nullopt;
    field.remove_prefix(1);
  }
  if (!field.empty() && field.front() != ' ' && field.front() != 'T') return std::nullopt;
  return numbers;
}

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
  return upper.empty() || upper == "NA" || upper == "N/A" || upper == "NAN" || upper == "." || upper == "-";
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
    const std::optional<double> serial = NumberIn(field, '.');
    // The 29 February 1900 that spreadsheets count never was; from 1 March on their days are those since 30 December.
    if (!serial || *serial < 61 || *serial > 2958465) return std::nullopt;
    const calendar::sys_days origin = calendar::year(1899) / calendar::December / 30;
    return DayOf(origin + calendar::days(static_cast<int>(*serial)));
  }
  const std::optional<std::array<int, 3>> numbers = ThreeNumbers(field);
  if (!numbers) return std::nullopt;
  const auto [first, second, third] = *numbers;
  const int year = order == DateOrder::YearMonthDay ? first : third;
  const int month = order == DateOrder::MonthDayYear ? first : second;
  const int day = order == DateOrder::YearMonthDay ? third : order == DateOrder::DayMonthYear ? first : second;
  // A year of two digits is nobody's guess.
  if (year < 1000 || year > 9999) return std::nullopt;
  const calendar::year_month_day date{calendar::year(year), calendar::month(static_cast<unsigned>(month)),
                                      calendar::day(static_cast<unsigned>(day))};
  if (!date.ok()) return std::nullopt;
  return DayOf(calendar::sys_days(date));
}

}  // namespace merlane
