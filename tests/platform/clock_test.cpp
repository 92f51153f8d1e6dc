#include "platform/clock.h"

#include <gtest/gtest.h>

#include "support/scripted_host.h"

namespace merlane {
namespace {

TEST(ClockTest, DefaultFileNameIsMonthDayHourMinute) {
  test::FixedClock clock;
  clock.now = {2024, 6, 1, 9, 5, 59.9};
  EXPECT_EQ(ClockName(clock), "06010905");
  clock.now = {1999, 12, 31, 23, 59, 0};
  EXPECT_EQ(ClockName(clock), "12312359");
}

TEST(ClockTest, TimerCountsSecondsSinceMidnight) {
  test::FixedClock clock;
  clock.now = {2024, 6, 1, 0, 0, 0};
  EXPECT_EQ(Timer(clock), 0);
  clock.now = {2024, 6, 1, 10, 30, 1.25};
  EXPECT_EQ(Timer(clock), 37801.25);
}

TEST(ClockTest, SystemClockShowsATimeOfDayAndDoesNotRunBackwards) {
  const SystemClock clock;
  const DateTime first = clock.Now(), second = clock.Now();
  EXPECT_GE(first.year, 2024);
  EXPECT_TRUE(first.month >= 1 && first.month <= 12 && first.day >= 1 && first.day <= 31);
  EXPECT_TRUE(first.hour < 24 && first.minute < 60 && first.second < 61);
  const auto of = [](const DateTime& t) { return (t.hour * 60.0 + t.minute) * 60 + t.second; };
  EXPECT_TRUE(first.day != second.day || of(first) <= of(second));
}

}  // namespace
}  // namespace merlane
