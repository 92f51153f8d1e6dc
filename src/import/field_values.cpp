#include "import/field_values.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <cmath>
#include <set>

#include "base/alike_letters.h"
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

/// Whether a text can be the time of day behind a date. 24:00 would be of the next day.
bool IsTime(std::string_view text) {
  if (text.size() > 2 && text.substr(1).starts_with("24:")) return false;
  return text.empty() || ((text.front() == ' ' || text.front() == 'T') && text.find(':') < 4 &&
                          text.substr(1).find_first_not_of("0123456789:.,+-Z APMapm") == std::string_view::npos);
}

/// A date as its parts stand, the month maybe by its name.
struct DateParts {
  std::array<int, 3> numbers{};
  std::array<std::size_t, 3> digits{};
  char mark = '\0';
  bool monthIsNamed = false;  // then they are year, month and day
};

/// Eight digits are a date without marks.
std::optional<DateParts> EightDigits(std::string_view field) {
  int number = 0;
  const auto [end, error] = std::from_chars(field.data(), field.data() + field.size(), number);
  if (error != std::errc() || end != field.data() + 8 || number < 10'000'000 || !IsTime(field.substr(8)))
    return std::nullopt;
  return DateParts{{number / 10'000, number / 100 % 100, number % 100}, {4, 2, 2}, '\0', false};
}

/// The three numbers of a date, divided by the same mark; none when there are fewer or anything else.
std::optional<DateParts> ThreeNumbers(std::string_view field) {
  constexpr std::string_view marks = ".-/";
  DateParts parts;
  for (std::size_t i = 0; i < 3; ++i) {
    const auto [end, error] = std::from_chars(field.data(), field.data() + field.size(), parts.numbers[i]);
    if (error != std::errc() || parts.numbers[i] < 0) return std::nullopt;
    parts.digits[i] = static_cast<std::size_t>(end - field.data());
    field.remove_prefix(parts.digits[i]);
    if (i == 2) break;
    if (field.empty() || marks.find(field.front()) == std::string_view::npos) return std::nullopt;
    if (i > 0 && field.front() != parts.mark) return std::nullopt;
    parts.mark = field.front();
    field.remove_prefix(1);
  }
  if (parts.mark == '.' && field.starts_with('.')) field.remove_prefix(1);  // as in Hungary and on the Balkans
  if (!IsTime(field)) return std::nullopt;
  return parts;
}

/// The months whose name in some language of Europe is or, where none is, begins so; none for less than three letters.
/// The same letters are several months in languages that are neighbours.
std::vector<int> MonthsNamed(std::string_view letters) {
  static constexpr std::array<std::string_view, 12> names{
      "january januar januari janvier enero jan ene gennaio stycznia styczen tammikuuta janeiro sijecnja sijecanj "
      "ledna leden",
      "february februar februari fevrier febrero febbraio lutego luty helmikuuta fevereiro veljace veljaca unora unor",
      "march marz maerz maart mars marzo mrz mrt marts marca marzec maaliskuuta marco ozujka ozujak brezna brezen",
      "april avril abril aprile kwietnia kwiecien huhtikuuta travnja travanj dubna duben",
      "may mai mei maj mayo maggio maja toukokuuta maio svibnja svibanj kvetna kveten",
      "june juni juin junio giugno czerwca czerwiec kesakuuta junho lipnja lipanj cervna cerven",
      "july juli juillet julio luglio lipca lipiec heinakuuta julho srpnja srpanj cervence cervenec",
      "august augustus augusti aout agosto sierpnia sierpien elokuuta kolovoza kolovoz srpna srpen",
      "september septembre septiembre setiembre sept settembre wrzesnia wrzesien syyskuuta setembro rujna rujan zari",
      "october oktober octobre octubre ottobre pazdziernika lokakuuta outubro listopada listopad rijna rijen",
      "november novembre noviembre listopada novembro studenoga studenog studeni listopad",
      "december dezember decembre diciembre dicembre grudnia grudzien joulukuuta dezembro prosinca prosinac prosinec"};
  const auto isLetter = [](char c) { return c >= 'a' && c <= 'z'; };
  if (letters.size() < 3 || !std::ranges::all_of(letters, isLetter)) return {};
  std::vector<int> named, begun;
  const std::string word = ' ' + std::string(letters);
  for (std::size_t m = 0; m < names.size(); ++m) {
    const std::string all = ' ' + std::string(names[m]) + ' ';
    if (all.find(word + ' ') != std::string::npos) named.push_back(static_cast<int>(m) + 1);
    if (all.find(word) != std::string::npos) begun.push_back(static_cast<int>(m) + 1);
  }
  return named.empty() ? begun : named;
}

/// The one month of that name; none where it is the name of several.
std::optional<int> MonthNamed(std::string_view letters) {
  const std::vector<int> months = MonthsNamed(letters);
  return months.size() == 1 ? std::optional(months.front()) : std::nullopt;
}

/// A day, the name of a month and a year, or the year first or the month first.
std::optional<DateParts> NamedMonth(std::string_view field) {
  constexpr std::string_view between = " .,-/";
  DateParts parts{{-1, -1, -1}, {}, '\0', true};
  auto& [year, month, day] = parts.numbers;
  while (!field.empty()) {
    const std::string_view word = field.substr(0, field.find_first_of(between));
    field.remove_prefix(std::min(word.size() + 1, field.size()));
    int number = 0;
    const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), number);
    if (word.empty() || word == "de") continue;
    if (error != std::errc()) {
      const std::optional<int> named = MonthNamed(Alike(word));
      if (!named || month >= 0) return std::nullopt;
      month = *named;
    } else if (end != word.data() + word.size()) {
      if (word.find(':') == std::string_view::npos) return std::nullopt;  // or a time of day
    } else {
      const bool isYear = number > 31 || day >= 0;
      int& part = isYear ? year : day;
      if (part >= 0) return std::nullopt;
      part = number;
      if (isYear) parts.digits[0] = word.size();
    }
  }
  if (std::ranges::min(parts.numbers) < 0) return std::nullopt;
  return parts;
}

std::optional<DateParts> PartsOf(std::string_view field) {
  std::optional<DateParts> parts = ThreeNumbers(field);
  if (!parts) parts = EightDigits(field);
  const bool hasLetters = std::ranges::any_of(field, [](char c) { return c < 0 || (c >= 'A' && c <= 'z'); });
  return parts || !hasLetters ? parts : NamedMonth(field);
}

/// A number of digits alone; none for anything else.
std::optional<int> Digits(std::string_view text) {
  if (text.empty() || text.find_first_not_of("0123456789") != std::string_view::npos) return std::nullopt;
  int number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc() ? std::optional(number) : std::nullopt;
}

constexpr int LeastYear = 1000, MostYear = 9999;

/// Nobody has kept data of the years before, or keeps any of those behind.
int YearOfTwoDigits(int digits) {
  constexpr int FirstOfLastCentury = 50;
  return digits + (digits < FirstOfLastCentury ? 2000 : 1900);
}

/// The day so many days behind 1 January 1970; none outside the years that a date can have.
std::optional<DayOfYear> DaySince1970(double days) {
  constexpr double Before = -354'285, Behind = 2'932'897;  // 1 January 1000 and 10000
  if (days < Before || days >= Behind) return std::nullopt;
  return DayOf(calendar::sys_days(calendar::days(static_cast<int>(std::floor(days)))));
}

/// Bytes of a mark for no value, or of a blank that is no space.
constexpr std::size_t LongestMissing = 6;

}  // namespace

std::optional<DayOfYear> DateOf(int year, int month, int day) {
  if (month < 0 || day < 0) return std::nullopt;
  const calendar::year_month_day date{calendar::year(year), calendar::month(static_cast<unsigned>(month)),
                                      calendar::day(static_cast<unsigned>(day))};
  if (!date.ok()) return std::nullopt;
  return DayOf(calendar::sys_days(date));
}

std::optional<int> MonthIn(std::string_view field) {
  constexpr double LastMonth = 12;
  const std::optional<double> number = NumberIn(Trim(field), '.');
  if (!number) return MonthNamed(Alike(field));
  const bool isMonth = *number >= 1 && *number <= LastMonth && *number == std::floor(*number);
  return isMonth ? std::optional(static_cast<int>(*number)) : std::nullopt;
}

const std::vector<std::string>& DateOrderNames() {
  static const std::vector<std::string> names{"year-month-day",        "day.month.year",  "month/day/year",
                                              "days of a spreadsheet", "days since 1970", "year-month-day, short"};
  return names;
}

int DayCountedFrom(int year, DayOfYear day) {
  const calendar::sys_days from = calendar::year(year) / calendar::January / 1;
  const calendar::sys_days to = calendar::year(day.year) / calendar::January / 1;
  return day.day + static_cast<int>((to - from).count());
}

bool IsMissing(std::string_view field) {
  field = Trim(field);
  if (field.size() > LongestMissing) return false;
  if (!field.empty() && field.front() >= '0' && field.front() <= '9') return false;  // as most are
  static const std::set<std::string, std::less<>> marks{"",  "NA",  "N/A",  "NAN",  "#N/A",   ".",
                                                        "-", "#NV", "NULL", "N.A.", "\u2013", "\u2014"};
  return marks.contains(UpperCase(field)) || (field.front() < 0 && WithoutCase(field).empty());
}

bool StandsForTheOneAbove(std::string_view field) {
  // Two letters alone may be a code.
  static const std::set<std::string, std::less<>> words{
      "idem",   "ditto", "dito",   "dto",        "dtto",    "same",    "dgl",        "dsgl", "ebd",
      "ebenda", "ibid",  "ibidem", "igual",      "samma",   "sama",    "id.",        "do.",  "ib.",
      "s.o.",   "jw.",   "so.",    "comoarriba", "asabove", "wieoben", "sameasabove"};
  static const std::set<std::string, std::less<>> marks{
      "\"",   "\"\"", "''",     ",,",     "\u3003", "\u201C", "\u201D", "\u201E", "\u00BB", "-\"-", "--\"--",
      "-''-", "|",    "\u2193", "\u2191", "\u00B0", "&",      "^",      "~",      "=",      "..",   "..."};
  if (field.find_first_of("0123456789") != std::string_view::npos) return false;  // as most codes have
  const std::string alike = Alike(field);
  const std::string bare = alike.substr(0, alike.find_last_not_of('.') + 1);
  return marks.contains(alike) || words.contains(alike) || words.contains(bare);
}

std::optional<double> NumberIn(std::string_view field, char decimal) {
  constexpr std::string_view Minus = "\u2212";
  std::string text = field.starts_with(Minus) ? "-" + std::string(field.substr(Minus.size())) : std::string(field);
  if (decimal == ',') {
    if (text.find('.') != std::string::npos) return std::nullopt;
    std::ranges::replace(text, ',', '.');
  }
  if (!IsNumber(text)) return std::nullopt;
  return StrictNumber(text);
}

bool IsLikeThousands(std::string_view field) {
  constexpr std::size_t Group = 3;
  if (field.starts_with('-')) field.remove_prefix(1);
  const std::size_t mark = field.find_first_of(".,");
  return mark != std::string_view::npos && mark >= 1 && mark <= Group && field.front() != '0' &&
         field.size() == mark + 1 + Group && Digits(field.substr(0, mark)) && Digits(field.substr(mark + 1));
}

std::optional<DayOfYear> DateIn(std::string_view field, DateOrder order) {
  field = Trim(field);
  if (order == DateOrder::SerialDays || order == DateOrder::DaysSince1970) {
    const bool hasMoreZeros = field.size() > 1 && field[0] == '0' && field[1] >= '0' && field[1] <= '9';  // as 052023
    const std::optional<double> days =
        hasMoreZeros ? std::nullopt : NumberIn(field, field.find(',') == std::string_view::npos ? '.' : ',');
    if (days && order == DateOrder::DaysSince1970) return DaySince1970(*days);
    if (days) return DateIn(DateText(*days, Shows::Date, false), DateOrder::YearMonthDay);
  }
  if (const std::optional<DayOfYear> ordinal = OrdinalDateIn(field)) return ordinal;
  const std::optional<DateParts> parts = PartsOf(field);
  if (!parts) return std::nullopt;
  const auto [first, second, third] = parts->numbers;
  const bool mayBeShort = parts->monthIsNamed || order != DateOrder::YearMonthDay;
  if (first >= LeastYear || parts->monthIsNamed) order = DateOrder::YearMonthDay;
  const bool endsWithYear = order == DateOrder::DayMonthYear || order == DateOrder::MonthDayYear;
  int year = endsWithYear ? third : first;
  if (mayBeShort && parts->digits[endsWithYear ? 2 : 0] == 2) year = YearOfTwoDigits(year);
  const int month = order == DateOrder::MonthDayYear ? first : second;
  const int day = order == DateOrder::DayMonthYear ? first : order == DateOrder::MonthDayYear ? second : third;
  if (year < LeastYear || year > MostYear) return std::nullopt;
  return DateOf(year, month, day);
}

std::optional<DayOfYear> OrdinalDateIn(std::string_view field) {
  constexpr std::size_t YearDigits = 4, DayDigits = 3;
  constexpr int FirstYear = 1900, LastYear = 2100;
  field = Trim(field);
  const bool hasDash = field.size() == YearDigits + 1 + DayDigits && field[YearDigits] == '-';
  if (!hasDash && field.size() != YearDigits + DayDigits) return std::nullopt;
  const std::optional<int> year = Digits(field.substr(0, YearDigits));
  const std::optional<int> day = Digits(field.substr(field.size() - DayDigits));
  if (!year || !day) return std::nullopt;
  const DayOfYear date{*year, *day};
  const int days = calendar::year(date.year).is_leap() ? 366 : 365;
  if (date.year < FirstYear || date.year > LastYear || date.day < 1 || date.day > days) return std::nullopt;
  return date;
}

std::optional<int> SeasonIn(std::string_view field) {
  field = Trim(field);
  if (field.starts_with('\'')) field.remove_prefix(1);
  const std::string_view begun = field.substr(0, field.find_first_of("/-"));
  const std::string_view rest = field.substr(begun.size());
  const auto number = [](std::string_view text) { return Digits(text).value_or(-1); };
  int year = number(begun);
  if (year < 0 || (begun.size() != 2 && begun.size() != 4)) return std::nullopt;
  if (begun.size() == 2) year = YearOfTwoDigits(year);
  if (rest.empty()) return begun.size() == 2 ? std::optional(year) : std::nullopt;
  const std::string_view ended = rest.substr(1);
  const bool follows = (ended.size() == 2 && number(ended) == (year + 1) % 100) || number(ended) == year + 1;
  return follows ? std::optional(year) : std::nullopt;
}

std::optional<int> YearInName(std::string_view name) {
  constexpr int FirstYear = 1900, LastYear = 2100;
  constexpr std::string_view digits = "0123456789";
  name.remove_prefix(std::min(name.find_first_of(digits), name.size()));
  const std::string_view number = name.substr(0, name.find_first_not_of(digits));
  const bool isOnly = name.substr(number.size()).find_first_of(digits) == std::string_view::npos;
  const std::optional<int> year = number.size() == 4 ? Digits(number) : std::nullopt;
  return isOnly && year && *year >= FirstYear && *year <= LastYear ? year : std::nullopt;
}

bool IsOfUniversalTime(std::string_view field) {
  constexpr std::string_view Time = "123456789";  // of midnight nobody has written more than the date
  field = Trim(field);
  const std::size_t time = field.find_first_of("T ");
  if (time == std::string_view::npos) return false;
  for (const std::string_view zone : {"Z", "+00:00", "+0000"})
    if (field.ends_with(zone))
      return field.substr(time, field.size() - time - zone.size()).find_first_of(Time) != std::string_view::npos;
  return false;
}

std::string MonthOfSeveralNames(std::string_view field) {
  constexpr std::string_view Between = " .,-/0123456789";
  while (!field.empty()) {
    const std::string_view word = field.substr(0, field.find_first_of(Between));
    field.remove_prefix(std::min(word.size() + 1, field.size()));
    if (word.size() < 3) continue;
    const std::vector<int> months = MonthsNamed(Alike(word));
    if (months.size() > 1)
      return fmt::format("\"{}\" is month {} in one language and month {} in another", word, months[0], months[1]);
  }
  return "";
}

std::optional<std::pair<int, int>> EndsOfShortDate(std::string_view field) {
  const std::optional<DateParts> parts = ThreeNumbers(Trim(field));
  if (!parts || std::ranges::max(parts->numbers) >= 100) return std::nullopt;
  return std::pair(parts->numbers.front(), parts->numbers.back());
}

std::string WithoutControls(std::string_view text) {
  std::string line(text);
  std::ranges::replace_if(
      line, [](char c) { return (c >= 0 && c < ' ') || c == '\x7F'; }, ' ');
  return line;
}

std::string OnOneLine(std::string_view text) { return std::string(Trim(WithoutControls(text))); }

}  // namespace merlane
