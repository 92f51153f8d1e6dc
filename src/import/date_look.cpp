#include "import/date_look.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdlib>

namespace merlane {
namespace {

/// The order with which one of two is easily mistaken for the other.
std::optional<DateOrder> OtherOrder(DateOrder order) {
  if (order == DateOrder::DayMonthYear) return DateOrder::MonthDayYear;
  if (order == DateOrder::MonthDayYear) return DateOrder::DayMonthYear;
  return std::nullopt;
}

/// Whether a date such as 2023-06-04 would be another one with its day for its month.
bool HasDayThatCouldBeMonth(const std::string& text) {
  constexpr std::size_t MonthAt = 5, DayAt = 8, Digits = 2;
  constexpr std::string_view marks = "-/.";
  if (text.size() < DayAt + Digits || text[MonthAt - 1] != text[DayAt - 1] ||
      marks.find(text[DayAt - 1]) == std::string_view::npos)
    return false;
  const std::string month = text.substr(MonthAt, Digits), day = text.substr(DayAt, Digits);
  return day <= "12" && day != month;
}

const std::string& NameOf(DateOrder order) { return DateOrderNames()[static_cast<std::size_t>(order)]; }

}  // namespace

void DateLook::Seen::Add(const std::string& example, int where) {
  if (count++ > 0) return;
  text = example;
  line = where;
}

void DateLook::Take(Role role, const std::string& text, DayOfYear date, int line) {
  if (IsOfUniversalTime(text)) universal_.Add(text, line);
  if (order_ == DateOrder::SerialDays || order_ == DateOrder::DaysSince1970) return TakeNumber(text, date);
  TakeInOrder(role, text, date, line);
  TakeShortYear(text, date, line);
}

void DateLook::TakeShortYear(const std::string& text, DayOfYear date, int line) {
  if (text.find(fmt::format_int(date.year).str()) != std::string::npos) return;
  firstShortYear_ = shortYears_.count == 0 ? date.year : std::min(firstShortYear_, date.year);
  lastShortYear_ = std::max(lastShortYear_, date.year);
  shortYears_.Add(text, line);
}

void DateLook::TakeInOrder(Role role, const std::string& text, DayOfYear date, int line) {
  const bool isVisit = role == Role::Date || role == Role::FirstFound;
  if (isVisit) visit_ = date;
  const std::optional<DateOrder> other = OtherOrder(order_);
  const bool hasPoints = text.find('.') != std::string::npos;
  if (!other || (hasPoints && order_ == DateOrder::DayMonthYear)) return;  // as they mostly are
  const std::optional<DayOfYear> otherDate = DateIn(text, *other);
  if (otherDate != date)
    ++ordered_;
  else if (HasDayThatCouldBeMonth(text))
    mayBeExchanged_.Add(text, line);
  const auto column = static_cast<std::size_t>(role);
  const bool nearByThisOrder = !isVisit && otherDate && IsNearVisit(date) && !IsNearVisit(*otherDate);
  if (!otherDate || nearByThisOrder)
    clear_[column] = true;
  else if (*otherDate != date)
    (hasPoints ? monthBeforePoint_ : unclear_[column]).Add(text, line);
}

bool DateLook::IsNearVisit(DayOfYear date) const {
  constexpr int MostDays = 60;
  return std::abs(DayCountedFrom(visit_.year, date) - visit_.day) <= MostDays;
}

void DateLook::TakeNumber(const std::string& text, DayOfYear date) {
  constexpr int FirstYear = 1990, LastYear = 2034;  // of nearly all that anybody has
  const bool since1970 = order_ == DateOrder::DaysSince1970;
  const std::optional<DayOfYear> other = DateIn(text, since1970 ? DateOrder::SerialDays : DateOrder::DaysSince1970);
  if (!other || *other == date) return;  // written with its year
  const bool mayBeOther = since1970 || (other->year >= FirstYear && other->year <= LastYear);
  if (!mayBeOther && date.year <= LastYear) return;  // 52023 may be 20 May 2023
  if (numbers_.count == 0) firstNumber_ = date;
  numbers_.Add(text, 0);
}

std::optional<DateOrder> DateLook::TakeRefused(const std::string& text, int line) {
  const std::optional<DateOrder> other = OtherOrder(order_);
  if (!other || !DateIn(text, *other)) return std::nullopt;
  otherOrder_.Add(text, line);
  return other;
}

void DateLook::Remark(Remarks& remarks) const {
  const auto taken = [this](const Seen& seen) {
    return fmt::format("{} taken as {}", seen.count == 1 ? "was" : "were", NameOf(order_));
  };
  if (monthBeforePoint_.count > 0)
    remarks.Say(fmt::format("{} between points, such as \"{}\", {}", Counted(monthBeforePoint_.count, "date"),
                            monthBeforePoint_.text, taken(monthBeforePoint_)));
  if (universal_.count > 0)
    remarks.Say(fmt::format("{} of universal time, such as \"{}\" in {} {}: the day may be another where the nests are",
                            Counted(universal_.count, "date"), universal_.text, remarks.Place(), universal_.line));
  RemarkShortYears(remarks);
  RemarkExchanged(remarks);
  RemarkUnclear(remarks);
  if (numbers_.count > 0)
    remarks.Say(fmt::format("{} such as \"{}\" {}, that one for day {} of {}: are they counted so?",
                            Counted(numbers_.count, "number"), numbers_.text, taken(numbers_), firstNumber_.day,
                            firstNumber_.year));
}

void DateLook::RemarkShortYears(Remarks& remarks) const {
  if (shortYears_.count == 0) return;
  const std::string years = firstShortYear_ == lastShortYear_
                                ? std::to_string(firstShortYear_)
                                : fmt::format("{} to {}", firstShortYear_, lastShortYear_);
  // In the order that begins with a long year, these have the name of their month.
  const std::string order = order_ == DateOrder::YearMonthDay ? "" : NameOf(order_) + " ";
  remarks.Say(fmt::format("{} a year of two digits, such as \"{}\" in {} {}: taken as {}of {}",
                          shortYears_.count == 1 ? "1 date has" : fmt::format("{} dates have", shortYears_.count),
                          shortYears_.text, remarks.Place(), shortYears_.line, order, years));
}

void DateLook::RemarkUnclear(Remarks& remarks) const {
  Seen all;
  for (const Seen& unclear : unclear_) {
    if (unclear.count == 0) continue;
    if (all.count == 0 || unclear.line < all.line) all = {all.count, unclear.line, unclear.text};
    all.count += unclear.count;
  }
  if (all.count == 0) return;
  const auto taken = [this](const Seen& seen) {
    return fmt::format("{} taken as {}", seen.count == 1 ? "was" : "were", NameOf(order_));
  };
  if (otherOrder_.count > 0)
    return remarks.Say(
        fmt::format("dates are in two orders: {} in the other one left out, the first in {} {}, and {} such as "
                    "\"{}\", which could be of both, taken as {}",
                    otherOrder_.count, remarks.Place(), otherOrder_.line, all.count, all.text, NameOf(order_)));
  if (std::ranges::find(clear_, true) == clear_.end())
    return remarks.Say(fmt::format("{} such as \"{}\" {}: no date tells whether that is their order",
                                   Counted(all.count, "date"), all.text, taken(all)));
  for (std::size_t column = 0; column < unclear_.size(); ++column)
    if (unclear_[column].count > 0 && !clear_[column])
      remarks.Say(
          fmt::format("{} of the {} such as \"{}\" {}, as in other columns: no date of this one tells whether "
                      "that is its order",
                      Counted(unclear_[column].count, "date"), RoleNames()[column], unclear_[column].text,
                      taken(unclear_[column])));
}

void DateLook::RemarkExchanged(Remarks& remarks) const {
  if (ordered_ == 0 || mayBeExchanged_.count == 0) return;
  const bool one = ordered_ == 1, oneOther = mayBeExchanged_.count == 1;
  // A spreadsheet of another country makes a date of 4/6/2023 with its day for its month, and leaves 13/6/2023 a text.
  remarks.Say(fmt::format(
      "{} {}, and {} {}, the first in {} {}: day and month of {} may have been exchanged", Counted(ordered_, "date"),
      ofSheet_ ? one ? "stands as a text" : "stand as texts" : "written as " + NameOf(order_), mayBeExchanged_.count,
      ofSheet_ ? oneOther ? "is a date of the spreadsheet" : "are dates of the spreadsheet"
               : "beginning with the year, as a spreadsheet makes them",
      remarks.Place(), mayBeExchanged_.line, oneOther ? "that one" : "those"));
}

}  // namespace merlane
