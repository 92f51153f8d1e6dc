#include "uncertainty/time_left.h"

#include <gtest/gtest.h>

#include "support/scripted_host.h"

namespace merlane {
namespace {

struct TimeLeftTest : ::testing::Test {
  test::FixedClock clock;
  TimeLeft left{clock};
};

TEST_F(TimeLeftTest, IsTheTimeOfAStepTimesThoseLeft) {
  clock.now.second = 30;
  EXPECT_EQ(left.Text(3, 7), "1:10");
  EXPECT_EQ(left.Text(3, 0), "0:00");
  EXPECT_EQ(left.Text(1, 2), "1:00");
}

TEST_F(TimeLeftTest, SecondsHaveTwoDigitsAndMinutesAsManyAsTheyNeed) {
  clock.now.second = 1;
  EXPECT_EQ(left.Text(1, 9), "0:09");
  EXPECT_EQ(left.Text(1, 100 * 60 + 5), "100:05");
}

TEST_F(TimeLeftTest, IsRoundedToAnEvenSecondBeforeTheMinutesAreTakenOff) {
  clock.now.second = 0.5;
  EXPECT_EQ(left.Text(1, 5), "0:02") << "2.5";
  EXPECT_EQ(left.Text(1, 7), "0:04") << "3.5";
  EXPECT_EQ(left.Text(1, 239), "2:00") << "119.5";
}

TEST_F(TimeLeftTest, CountsFromTheLastStart) {
  clock.now.second = 50;
  left.Start();
  clock.now.second = 52;
  EXPECT_EQ(left.Text(1, 10), "0:20");
}

TEST_F(TimeLeftTest, GoesOnPastMidnight) {
  clock.now = {2024, 6, 1, 23, 59, 50};
  left.Start();
  clock.now = {2024, 6, 2, 0, 0, 10};
  EXPECT_EQ(left.Text(2, 3), "0:30");
}

TEST_F(TimeLeftTest, TimeOfDayHasTwoDigitsEach) {
  clock.now = {2024, 6, 1, 9, 5, 7.9};
  EXPECT_EQ(TimeOfDay(clock), "09:05:07");
}

}  // namespace
}  // namespace merlane
