#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace merlane {

/// How dates are written.
enum class DateOrder { YearMonthDay, DayMonthYear, MonthDayYear, SerialDays, DaysSince1970, ShortYearMonthDay };

/// What each is called, in that order.
const std::vector<std::string>& DateOrderNames();

/// A day of a year, from 1.
struct DayOfYear {
  int year = 0, day = 0;
  bool operator==(const DayOfYear&) const = default;
};

/// A day of the calendar; none where it does not have that day.
std::optional<DayOfYear> DateOf(int year, int month, int day);

/// A month by its number or its name; none for anything else.
std::optional<int> MonthIn(std::string_view field);

/// The number that a day has when days are counted on from the first of another year, as behind a New Year.
int DayCountedFrom(int year, DayOfYear day);

/// Whether a field stands for no value: empty, NA (as spreadsheets write it, too), NULL, a point or a dash.
bool IsMissing(std::string_view field);

/// Whether a text stands for what is above it, as ditto marks do.
bool StandsForTheOneAbove(std::string_view field);

/// A number with that decimal mark, its sign a hyphen or a minus; none for anything else.
std::optional<double> NumberIn(std::string_view field, char decimal);

/// Whether a text may be a number of thousands with a mark between them: one to three digits, a point or a comma, and
/// three digits, such as 1.250 or 12,345.
bool IsLikeThousands(std::string_view field);

/// A date in that order, its parts divided by points, dashes or slashes, or a serial day of a spreadsheet (1 is 1
/// January 1900, 60 the leap day which that year did not have), or the days since 1 January 1970 that R makes of a
/// date. One that begins with a year of four digits, is eight digits, names its month or is an ordinal date is a date
/// in any order. A year of two digits, which only DateOrder::ShortYearMonthDay has in front, is one from 1950 to 2049.
/// None for anything else, as for a day that the calendar does not have. A time of day behind it is passed over.
std::optional<DayOfYear> DateIn(std::string_view field, DateOrder order);

/// A year and the day in it, such as 2019145 or 2019-145, of years from 1900 to 2100. None for anything else.
std::optional<DayOfYear> OrdinalDateIn(std::string_view field);

/// The year in which a season began, such as 2019 of "2019/20" or "2019-2020", and the year of two digits, from 1950 to
/// 2049. None for anything else, a year of four digits included.
std::optional<int> SeasonIn(std::string_view field);

/// The year in the name of a worksheet or a file, such as "Lake 2023"; none where there is no number, or another one.
std::optional<int> YearInName(std::string_view name);

/// Whether a field is a date with a time of day of the time zone that machines write, such as 2023-06-01T23:30:00Z.
bool IsOfUniversalTime(std::string_view field);

/// What a text says of a month whose name is that of several, as "lip" is June in Croatian and July in Polish; empty
/// for any other. Such a text is no date.
std::string MonthOfSeveralNames(std::string_view field);

/// The first and the last number of what would be a date of a year of two digits in some order, its month without a
/// name; none for anything else.
std::optional<std::pair<int, int>> EndsOfShortDate(std::string_view field);

/// The text as a line can hold it: control characters are blanks.
std::string WithoutControls(std::string_view text);

/// The same without blanks at its ends.
std::string OnOneLine(std::string_view text);

}  // namespace merlane
