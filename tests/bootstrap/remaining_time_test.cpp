#include "bootstrap/remaining_time.h"

#include <gtest/gtest.h>

namespace merlane {
namespace {

TEST(RemainingTime, IsTheMeanTimeOfAnAttemptTimesThoseStillPlanned) {
  RemainingTime remaining(36000);
  EXPECT_EQ(remaining.After(36010, 1, 100), "0:16:30");
  EXPECT_EQ(remaining.After(36020, 2, 100), "0:16:20");
  EXPECT_EQ(remaining.After(37000, 100, 100), "0:00:00");
}

TEST(RemainingTime, OneDigitMinutesAndSecondsGetALeadingZeroAndHoursDoNot) {
  EXPECT_EQ(RemainingTime(0).After(1, 1, 3662), "1:01:01");
  EXPECT_EQ(RemainingTime(0).After(100, 1, 1001), "27:46:40");
}

TEST(RemainingTime, AcrossMidnightStaysPositive) {
  RemainingTime remaining(86390);
  EXPECT_EQ(remaining.After(86395, 1, 4), "0:00:15");
  EXPECT_EQ(remaining.After(2, 2, 4), "0:00:12");
  EXPECT_EQ(remaining.After(8, 3, 4), "0:00:06") << "the day is taken off once";
}

}  // namespace
}  // namespace merlane
