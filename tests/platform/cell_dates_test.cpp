#include "platform/cell_dates.h"

namespace merlane {
namespace {

TEST(CellDates, FormatsShowDatesTimesOrNumbers) {
  for (const char* code : {"yyyy-mm-dd", "dd/mm/yyyy", "D.M.YY", "d. mmmm yyyy;@", "[$-407]d. mmmm yyyy;@", "mmm",
                           "m/d/yy h:mm", "[$-F800]dddd\\,\\ mmmm\\ dd\\,\\ yyyy", "[Red]dd/mm/yyyy"})
    EXPECT_EQ(ShownBy(code), Shows::Date) << code;
  for (const char* code : {"h:mm", "[h]:mm:ss", "mm:ss.0", "hh:mm AM/PM"})
    EXPECT_EQ(ShownBy(code), Shows::Time) << code;
  for (const char* code : {"General", "0.00", "#,##0", "0.00E+00", "0 \"days\"", "0\\d", "[Red]0.00",
                           "_-* #,##0.00 _D_M", "@", "", "0%", "[$kr-41D] 0", "0.00;[Red]-0.00 d", "\"", "[", "\\"})
    EXPECT_EQ(ShownBy(code), Shows::Number) << code;
}

TEST(CellDates, FormatsWithANumberAloneAreKnown) {
  for (const int format : {14, 15, 16, 17, 22, 27, 36, 50, 58}) EXPECT_EQ(ShownBy(format), Shows::Date) << format;
  for (const int format : {18, 21, 45, 47}) EXPECT_EQ(ShownBy(format), Shows::Time) << format;
  for (const int format : {-1, 0, 1, 9, 12, 13, 37, 44, 48, 49, 59, 164})
    EXPECT_EQ(ShownBy(format), Shows::Number) << format;
}

TEST(CellDates, DaysCountFrom1900WithTheLeapDayThatNeverWas) {
  EXPECT_EQ(DateText(1, Shows::Date, false), "1900-01-01");
  EXPECT_EQ(DateText(59, Shows::Date, false), "1900-02-28");
  EXPECT_EQ(DateText(60, Shows::Date, false), "1900-02-29");
  EXPECT_EQ(DateText(61, Shows::Date, false), "1900-03-01");
  EXPECT_EQ(DateText(45086, Shows::Date, false), "2023-06-09");
  EXPECT_EQ(DateText(2958465, Shows::Date, false), "9999-12-31");
}

TEST(CellDates, OrFrom1904) {
  EXPECT_EQ(DateText(0, Shows::Date, true), "1904-01-01");
  EXPECT_EQ(DateText(60, Shows::Date, true), "1904-03-01") << "a leap year";
  EXPECT_EQ(DateText(43624, Shows::Date, true), "2023-06-09");
}

TEST(CellDates, AFractionIsATimeOfDay) {
  EXPECT_EQ(DateText(45086.75, Shows::Date, false), "2023-06-09 18:00:00");
  EXPECT_EQ(DateText(45086.75, Shows::Time, false), "2023-06-09 18:00:00");
  EXPECT_EQ(DateText(45086.9999999, Shows::Date, false), "2023-06-10") << "less than half a second before midnight";
  EXPECT_EQ(DateText(0.25, Shows::Time, false), "06:00:00");
}

TEST(CellDates, WhatIsNoDayStaysANumber) {
  EXPECT_EQ(DateText(0, Shows::Date, false), "0");
  EXPECT_EQ(DateText(-5.5, Shows::Date, false), "-5.5");
  EXPECT_EQ(DateText(3e6, Shows::Date, false), "3000000");
  EXPECT_EQ(DateText(1e300, Shows::Date, true), "1e+300");
}

}  // namespace
}  // namespace merlane
