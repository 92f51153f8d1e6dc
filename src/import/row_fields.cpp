#include "import/row_fields.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

namespace merlane {
namespace {

/// Days of a year are counted on over a New Year, backwards and forwards.
constexpr int FirstDay = -366, LastDay = 732;

const std::string Nothing;

const std::string& NameOf(DateOrder order) { return DateOrderNames()[static_cast<std::size_t>(order)]; }

}  // namespace

const std::string& NameOf(Role role) { return RoleNames()[static_cast<std::size_t>(role)]; }

ColumnsByRole::ColumnsByRole(const std::vector<Role>& roles) {
  for (std::size_t c = 0; c < roles.size(); ++c) columns_[static_cast<std::size_t>(roles[c])].push_back(c);
}

const std::string& RowFields::At(std::size_t column) const {
  return column < row_.fields.size() ? row_.fields[column] : Nothing;
}

const std::string& RowFields::Text(Role role) const {
  const std::vector<std::size_t>& columns = columns_.Of(role);
  if (columns.empty()) return Nothing;
  const std::string& text = At(columns.front());
  return IsMissing(text) ? Nothing : text;
}

const std::string& RowFields::Shown(std::size_t column) const {
  return column < row_.fields.size() ? row_.Shown(column) : Nothing;
}

std::string RowFields::Code() const {
  if (Text(Role::Code).empty()) return "";
  std::vector<std::size_t> columns = columns_.Of(Role::CodePart);
  columns.push_back(columns_.Of(Role::Code).front());
  std::ranges::sort(columns);
  std::string code;
  for (const std::size_t column : columns) {
    const std::string& part = Shown(column);
    if (IsMissing(part)) throw LeftOut{"a part of its code is missing"};
    if (StandsForTheOneAbove(part)) throw LeftOut{fmt::format("\"{}\" is no code, but stands for the one above", part)};
    code += (code.empty() ? "" : "-") + OnOneLine(part);
  }
  return code;
}

void RowFields::Refuse(const std::string& text, Role role) const {
  throw LeftOut{fmt::format("\"{}\" is no {}", text, NameOf(role))};
}

std::optional<double> RowFields::Number(Role role, std::size_t column) const {
  const std::string& text = At(column);
  if (IsMissing(text)) return std::nullopt;
  const std::optional<double> number = NumberIn(text, choices_.decimal);
  if (!number) Refuse(text, role);
  return number;
}

std::optional<int> RowFields::Whole(Role role, std::size_t column, int least, int most) const {
  const std::optional<double> number = Number(role, column);
  if (!number) return std::nullopt;
  if (*number != std::trunc(*number) || *number < least || *number > most)
    throw LeftOut{
        fmt::format("\"{}\" is no {}, which is a whole number from {} to {}", At(column), NameOf(role), least, most)};
  return static_cast<int>(*number);
}

std::optional<int> RowFields::Whole(Role role, int least, int most) const {
  const std::vector<std::size_t>& columns = columns_.Of(role);
  return columns.empty() ? std::nullopt : Whole(role, columns.front(), least, most);
}

std::optional<DayOfYear> RowFields::Date(Role role) const {
  const std::string& text = Text(role);
  if (text.empty() || (role == Role::HatchDate && text == "0")) return std::nullopt;  // as in a data file
  const std::optional<DayOfYear> date = DateIn(text, choices_.dates);
  if (!date) RefuseDate(text, role);
  dates_.Take(role, text, *date, row_.line);
  return date;
}

void RowFields::RefuseDate(const std::string& text, Role role) const {
  std::string why = fmt::format("\"{}\" is no {}", text, NameOf(role));
  if (const std::string months = MonthOfSeveralNames(text); !months.empty())
    why += ": " + months + ", as a number it would be clear";
  else if (choices_.dates == DateOrder::YearMonthDay && EndsOfShortDate(text))
    why += ": its year needs four digits, or another order";
  else if (const std::optional<DateOrder> other = dates_.TakeRefused(text, row_.line))
    why += fmt::format(" as {}, but one as {}", NameOf(choices_.dates), NameOf(*other));
  throw LeftOut{why};
}

std::optional<DayOfYear> RowFields::DayNumber(Role role, int year) const {
  if (role == Role::Day && choices_.Has(Role::Month)) return DayOfMonth(role, Role::Month, year);
  if (role == Role::HatchDay && choices_.Has(Role::HatchMonth)) return DayOfMonth(role, Role::HatchMonth, year);
  const std::optional<int> day = Whole(role, FirstDay, LastDay);
  if (!day) return std::nullopt;
  return DayOfYear{year, *day};
}

std::optional<DayOfYear> RowFields::DayOfMonth(Role role, Role month, int year) const {
  constexpr int LongestMonth = 31;
  const std::optional<int> day = Whole(role, 0, LongestMonth);
  const std::string& text = Text(month);
  if (!day || *day == 0) return day ? std::optional(DayOfYear{year, 0}) : std::nullopt;
  if (text.empty()) throw LeftOut{fmt::format("it has no {}", NameOf(month))};
  const std::optional<int> number = MonthIn(text);
  if (const std::string months = MonthOfSeveralNames(text); !months.empty()) throw LeftOut{months};
  if (!number) Refuse(text, month);
  const std::optional<DayOfYear> date = DateOf(year, *number, *day);
  if (!date) throw LeftOut{fmt::format("there is no day {} of month {} in {}", *day, *number, year)};
  return date;
}

std::optional<DayOfYear> RowFields::DateOrNumber(Role role, int year) const {
  const std::optional<double> number = NumberIn(Text(role), choices_.decimal);
  const bool isDay = number && *number >= FirstDay && *number <= LastDay;
  return isDay ? DayNumber(role, year) : Date(role);
}

Role RowFields::FateRole() const { return choices_.Has(Role::Fate) ? Role::Fate : Role::Survived; }

std::optional<Fate> RowFields::FateOfNest() const {
  const Role role = FateRole();
  const std::string& text = Text(role);
  if (text.empty()) return std::nullopt;
  if (const std::optional<double> number = NumberIn(text, choices_.decimal); number == 0.0 || number == 1.0)
    return (*number == 1) == (role == Role::Fate) ? Fate::Failed : Fate::Survived;
  if (const std::optional<bool> answer = AnswerIn(text); answer && role == Role::Survived)
    return *answer ? Fate::Survived : Fate::Failed;
  const Fate fate = FateIn(text);
  if (fate == Fate::Untold) Refuse(text, role);
  return fate;
}

}  // namespace merlane
