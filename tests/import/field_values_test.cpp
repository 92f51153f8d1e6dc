#include "import/field_values.h"

namespace merlane {
namespace {

using Day = std::optional<DayOfYear>;

TEST(FieldValues, DatesOfAllOrdersBecomeDaysOfTheirYear) {
  EXPECT_EQ(DateIn("2023-06-09", DateOrder::YearMonthDay), Day({2023, 160}));
  EXPECT_EQ(DateIn("2023-06-09T08:15", DateOrder::YearMonthDay), Day({2023, 160}));
  EXPECT_EQ(DateIn("9.6.2023", DateOrder::DayMonthYear), Day({2023, 160}));
  EXPECT_EQ(DateIn("2023.06.09.", DateOrder::YearMonthDay), Day({2023, 160}));
  EXPECT_EQ(DateIn("09/06/2023 12:00", DateOrder::DayMonthYear), Day({2023, 160}));
  EXPECT_EQ(DateIn("6/9/2023", DateOrder::MonthDayYear), Day({2023, 160}));
  EXPECT_EQ(DateIn("45086", DateOrder::SerialDays), Day({2023, 160}));
  EXPECT_EQ(DateIn("45086.75", DateOrder::SerialDays), Day({2023, 160}));
  EXPECT_EQ(DateIn("19517", DateOrder::DaysSince1970), Day({2023, 160}));
  EXPECT_EQ(DateIn("19517,75", DateOrder::DaysSince1970), Day({2023, 160}));
  EXPECT_EQ(DateIn("-1", DateOrder::DaysSince1970), Day({1969, 365}));
  EXPECT_EQ(DateIn("1e9", DateOrder::DaysSince1970), Day());
}

TEST(FieldValues, DatesWithoutMarksOrWithTheNameOfTheirMonthAreOfNoOrder) {
  for (const DateOrder order :
       {DateOrder::YearMonthDay, DateOrder::DayMonthYear, DateOrder::MonthDayYear, DateOrder::SerialDays})
    for (const char* text : {"20230609", "20230609 08:15", "9 June 2023", "June 9, 2023", "09-JUN-2023", "2023-Jun-09",
                             "9. Juni 2023", "9 juin 2023", "9 de junio de 2023", "9 jun. 2023 8:15", "9/juni/2023"})
      EXPECT_EQ(DateIn(text, order), Day({2023, 160})) << text;
  EXPECT_EQ(DateIn("1 ao\u00FBt 2023", DateOrder::DayMonthYear), Day({2023, 213}));
  EXPECT_EQ(DateIn("1. M\u00E4rz 2023", DateOrder::DayMonthYear), Day({2023, 60}));
  EXPECT_EQ(DateIn("1 jui 2023", DateOrder::DayMonthYear), Day()) << "juin or juillet";
}

TEST(FieldValues, AYearAndItsDayAreADateOfAnyOrder) {
  for (const DateOrder order : {DateOrder::YearMonthDay, DateOrder::DayMonthYear, DateOrder::MonthDayYear})
    for (const char* text : {"2023160", "2023-160", " 2023160 "}) EXPECT_EQ(DateIn(text, order), Day({2023, 160}));
  EXPECT_EQ(OrdinalDateIn("2020366"), Day({2020, 366}));
  for (const char* text : {"2019366", "2023000", "2460094", "202316", "20231600", "2023/160", "-023160", "2023+16"})
    EXPECT_EQ(OrdinalDateIn(text), Day()) << text;
}

TEST(FieldValues, AYearIsFoundInAName) {
  for (const char* name : {"2023", "Lake 2023", "lake_2023.csv", "Visits2023.xlsx"}) EXPECT_EQ(YearInName(name), 2023);
  for (const char* name : {"", "Lake", "Lake 12", "2019-20", "2019 to 2023", "2023-05-30", "20230530", "1234", "3000"})
    EXPECT_EQ(YearInName(name), std::nullopt) << name;
}

TEST(FieldValues, ASeasonIsTheYearInWhichItBegan) {
  for (const char* text : {"2019/20", "2019-20", "2019/2020", "2019-2020", "19", "'19"})
    EXPECT_EQ(SeasonIn(text), 2019) << text;
  EXPECT_EQ(SeasonIn("1999/00"), 1999);
  EXPECT_EQ(SeasonIn("95"), 1995);
  for (const char* text : {"2019", "2019/21", "5", "195", "2019-06-09", "", "2019/", "19x", "-19"})
    EXPECT_EQ(SeasonIn(text), std::nullopt) << text;
}

TEST(FieldValues, AYearOfTwoDigitsIsOneOfThisCenturyOrTheLast) {
  EXPECT_EQ(DateIn("9.6.23", DateOrder::DayMonthYear), Day({2023, 160}));
  EXPECT_EQ(DateIn("6/9/23 8:15", DateOrder::MonthDayYear), Day({2023, 160}));
  EXPECT_EQ(DateIn("23-06-09", DateOrder::ShortYearMonthDay), Day({2023, 160}));
  EXPECT_EQ(DateIn("9 June 23", DateOrder::YearMonthDay), Day({2023, 160}));
  EXPECT_EQ(DateIn("9-Jun-49", DateOrder::YearMonthDay), Day({2049, 160}));
  EXPECT_EQ(DateIn("9.6.50", DateOrder::DayMonthYear), Day({1950, 160}));
  EXPECT_EQ(DateIn("23-06-09", DateOrder::YearMonthDay), Day()) << "which could begin with the day";
  EXPECT_EQ(DateIn("2023-06-09", DateOrder::ShortYearMonthDay), Day({2023, 160}));
  EXPECT_EQ(EndsOfShortDate("9.6.23"), std::pair(9, 23));
  for (const char* text : {"9.6.2023", "9 June 23", "9.6", "Nest"}) EXPECT_EQ(EndsOfShortDate(text), std::nullopt);
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
  for (const char* text : {"", "160", "2023-06", "9.6.3", "9.6.023", "31.4.2023", "31.4.23", "2023-13-01",
                           "Juice 9, 2023", "9 June 3", "9 6 June", "2023-06-09x", "-1-1-2023"})
    for (const DateOrder order : {DateOrder::YearMonthDay, DateOrder::DayMonthYear, DateOrder::MonthDayYear})
      EXPECT_EQ(DateIn(text, order), Day()) << text;
  EXPECT_EQ(DateIn("1995", DateOrder::YearMonthDay), Day());
  EXPECT_EQ(DateIn("60", DateOrder::SerialDays), Day()) << "29 February 1900";
}

TEST(FieldValues, ATimeOfDayIsPassedOverUnlessItIsOfTheNextDay) {
  const Day day({2023, 156});
  EXPECT_EQ(DateIn("2023-06-05 23:59", DateOrder::YearMonthDay), day);
  EXPECT_EQ(DateIn("6/5/2023 11:59 PM", DateOrder::MonthDayYear), day);
  EXPECT_EQ(DateIn("6/5/2023 24:00", DateOrder::MonthDayYear), std::nullopt);
  EXPECT_TRUE(IsOfUniversalTime("2023-06-05T22:00:00.000Z"));
  EXPECT_TRUE(IsOfUniversalTime("2023-06-05 06:30:00+00:00"));
  EXPECT_FALSE(IsOfUniversalTime("2023-06-05T00:00:00Z")) << "a date alone, as machines write it";
  EXPECT_FALSE(IsOfUniversalTime("2023-06-05T22:00:00-05:00")) << "the time where it was written";
  EXPECT_FALSE(IsOfUniversalTime("2023-06-05"));
}

TEST(FieldValues, AMonthIsANumberOrAName) {
  EXPECT_EQ(MonthIn("5"), 5);
  EXPECT_EQ(MonthIn(" 12 "), 12);
  EXPECT_EQ(MonthIn("Mai"), 5);
  EXPECT_EQ(MonthIn("September"), 9);
  for (const char* none : {"", "0", "13", "4.5", "-1", "ma", "Nest"}) EXPECT_EQ(MonthIn(none), std::nullopt) << none;
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
