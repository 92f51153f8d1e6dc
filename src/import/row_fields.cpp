#include "import/row_fields.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "import/alike_letters.h"

namespace merlane {
namespace {

/// Days of a year are counted on over a New Year, backwards and forwards.
constexpr int FirstDay = -366, LastDay = 732;

const std::string Nothing;

/// The order with which one of two is easily mistaken for the other.
std::optional<DateOrder> OtherOrder(DateOrder order) {
  if (order == DateOrder::DayMonthYear) return DateOrder::MonthDayYear;
  if (order == DateOrder::MonthDayYear) return DateOrder::DayMonthYear;
  return std::nullopt;
}

/// Whether a date such as 2023-06-04 would be another one with its day for its month.
bool HasDayThatCouldBeMonth(const std::string& text) {
  constexpr std::size_t MonthAt = 5, DayAt = 8, Digits = 2;
  if (text.size() < DayAt + Digits || text[MonthAt - 1] != '-' || text[DayAt - 1] != '-') return false;
  const std::string month = text.substr(MonthAt, Digits), day = text.substr(DayAt, Digits);
  return day <= "12" && day != month;
}

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
  LookAtOtherOrder(text, *date);
  return date;
}

void RowFields::RefuseDate(const std::string& text, Role role) const {
  std::string why = fmt::format("\"{}\" is no {}", text, NameOf(role));
  const std::optional<DateOrder> other = OtherOrder(choices_.dates);
  if (HasShortYear(text)) {
    why += ": its year needs four digits";
  } else if (other && DateIn(text, *other)) {
    why += fmt::format(" as {}, but one as {}", NameOf(choices_.dates), NameOf(*other));
    if (seen_.otherOrder++ == 0) seen_.firstOfOtherOrder = row_.line;
  }
  throw LeftOut{why};
}

void RowFields::LookAtOtherOrder(const std::string& text, DayOfYear date) const {
  const std::optional<DateOrder> other = OtherOrder(choices_.dates);
  const bool hasPoints = text.find('.') != std::string::npos;
  if (!other || (hasPoints && choices_.dates == DateOrder::DayMonthYear)) return;  // as they mostly are
  const std::optional<DayOfYear> otherDate = DateIn(text, *other);
  if (otherDate != date)
    ++seen_.texts;
  else if (HasDayThatCouldBeMonth(text) && seen_.mayBeExchanged++ == 0)
    seen_.firstExchanged = row_.line;
  if (!otherDate) {
    seen_.clear = true;
  } else if (*otherDate != date && hasPoints) {
    if (seen_.monthBeforePoint++ == 0) seen_.exampleWithPoints = text;
  } else if (*otherDate != date && seen_.unclear++ == 0) {
    seen_.example = text;
  }
}

std::optional<DayOfYear> RowFields::DayNumber(Role role, int year) const {
  const std::optional<int> day = Whole(role, FirstDay, LastDay);
  if (!day) return std::nullopt;
  return DayOfYear{year, *day};
}

std::optional<DayOfYear> RowFields::DateOrNumber(Role role, int year) const {
  const std::optional<double> number = NumberIn(Text(role), choices_.decimal);
  const bool isDay = number && *number >= FirstDay && *number <= LastDay;
  return isDay ? DayNumber(role, year) : Date(role);
}

std::optional<bool> RowFields::Failed() const {
  const std::string text = Alike(Text(Role::Fate));
  if (text.empty()) return std::nullopt;
  if (const std::optional<double> number = NumberIn(text, choices_.decimal); number == 0.0 || number == 1.0)
    return *number == 1;
  const auto isOneOf = [&](std::initializer_list<const char*> words) {
    return std::ranges::any_of(words, [&](const char* word) { return text == word; });
  };
  if (isOneOf({"successful", "success", "survived", "hatched", "fledged"})) return false;
  if (isOneOf({"failed", "failure", "fail", "lost", "predated", "depredated", "abandoned", "deserted", "flooded",
               "destroyed"}))
    return true;
  Refuse(Text(Role::Fate), Role::Fate);
}

}  // namespace merlane
