#include "import/field_values.h"

namespace merlane {
namespace {

using Day = std::optional<DayOfYear>;

TEST(FieldValues, DatesOfAllOrdersBecomeDaysOfTheirYear) {
  EXPECT_EQ(DateIn("2023-06-09", DateOrder::YearMonthDay), Day({2023, 160}));
  EXPECT_EQ(DateIn("2023-06-09T08:15", DateOrder::YearMonthDay), Day({2023, 160}));
  EXPECT_EQ(DateIn("9.6.2023", DateOrder::DayMonthYear), Day({2023, 160}));
  EXPECT_EQ(DateIn("09/06/2023 12:00", DateOrder::DayMonthYear), Day({2023, 160}));
  EXPECT_EQ(DateIn("6/9/2023", DateOrder::MonthDayYear), Day({2023, 160}));
  EXPECT_EQ(DateIn("45086", DateOrder::SerialDays), Day({2023, 160}));
  EXPECT_EQ(DateIn("45086.75", DateOrder::SerialDays), Day({2023, 160}));
}

TEST(FieldValues, LeapYearsAreThoseOfTheCalendar) {
  EXPECT_EQ(DateIn("2024-12-31", DateOrder::YearMonthDay), Day({2024, 366}));
  EXPECT_EQ(DateIn("2023-12-31", DateOrder::YearMonthDay), Day({2023, 365}));
  EXPECT_EQ(DateIn("2000-03-01", DateOrder::YearMonthDay), Day({2000, 61}));
  EXPECT_EQ(DateIn("1900-03-01", DateOrder::YearMonthDay), Day({1900, 60}));
  EXPECT_EQ(DateIn("61", DateOrder::SerialDays), Day({1900, 60}));
  EXPECT_EQ(DateIn("2023-02-29", DateOrder::YearMonthDay), Day());
}

TEST(FieldValues, WhatIsNoDateIsNone) {
  for (const char* text :
       {"", "160", "2023-06", "9.6.23", "31.4.2023", "2023-13-01", "June 9, 2023", "2023-06-09x", "-1-1-2023"})
    for (const DateOrder order : {DateOrder::YearMonthDay, DateOrder::DayMonthYear, DateOrder::MonthDayYear})
      EXPECT_EQ(DateIn(text, order), Day()) << text;
  EXPECT_EQ(DateIn("1995", DateOrder::YearMonthDay), Day());
  EXPECT_EQ(DateIn("60", DateOrder::SerialDays), Day()) << "29 February 1900";
}

TEST(FieldValues, DaysAreCountedOnBehindANewYear) {
  EXPECT_EQ(DayCountedFrom(2023, {2024, 5}), 370);
  EXPECT_EQ(DayCountedFrom(2024, {2025, 1}), 367);
  EXPECT_EQ(DayCountedFrom(2024, {2023, 365}), 0);
  EXPECT_EQ(DayCountedFrom(2023, {2023, 160}), 160);
}

TEST(FieldValues, NumbersHaveTheDecimalMarkThatWasChosen) {
  EXPECT_EQ(NumberIn("0,65", ','), 0.65);
  EXPECT_EQ(NumberIn("12", ','), 12);
  EXPECT_EQ(NumberIn("0.65", '.'), 0.65);
  EXPECT_FALSE(NumberIn("0,65", '.'));
  EXPECT_FALSE(NumberIn("0.65", ','));
  EXPECT_FALSE(NumberIn("1.000,5", ','));
  EXPECT_FALSE(NumberIn("12a", '.'));
}

TEST(FieldValues, PeopleWriteMissingValuesInSomeWays) {
  for (const char* text : {"", " ", "NA", "na", "n/a", ".", "-", "NaN"}) EXPECT_TRUE(IsMissing(text)) << text;
  for (const char* text : {"0", "-1", "x", "?", "-?"}) EXPECT_FALSE(IsMissing(text)) << text;
}

}  // namespace
}  // namespace merlane
