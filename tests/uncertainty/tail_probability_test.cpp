#include "uncertainty/tail_probability.h"

#include <gtest/gtest.h>

namespace merlane {
namespace {

TEST(TailProbability, TwentyStandardErrorsCountAsCertainDifference) {
  EXPECT_EQ(TailProbability(20), 0);
  EXPECT_EQ(TailProbability(1e30), 0);
}

// Single precision takes it for 20. The integral would give the same answer, so that what is seen is that it ends.
TEST(TailProbability, JustShortOfTwentyIsTwentyInSinglePrecision) { EXPECT_EQ(TailProbability(19.9999999999), 0); }

TEST(TailProbability, NoDistanceIsProbabilityOne) { EXPECT_DOUBLE_EQ(TailProbability(0), 1); }

// Quantiles of Student's t with 999 degrees of freedom for two-sided 10, 5, 1 and 0.1 %.
TEST(TailProbability, AgreesWithQuantilesOfStudentsT) {
  EXPECT_NEAR(TailProbability(1.646380), 0.10, 0.0002);
  EXPECT_NEAR(TailProbability(1.962341), 0.05, 0.0002);
  EXPECT_NEAR(TailProbability(2.580765), 0.01, 0.0002);
  EXPECT_NEAR(TailProbability(3.300307), 0.001, 0.0002);
}

TEST(TailProbability, IsAnEvenNumberOfTenThousandths) {
  for (const double z : {0.1, 0.7, 1.3, 2.2, 3.1}) {
    const double halves = TailProbability(z) * 5000;
    EXPECT_NEAR(halves, std::round(halves), 1e-9) << z;
  }
}

TEST(TailProbability, FarTailIsZero) { EXPECT_EQ(TailProbability(5), 0); }

}  // namespace
}  // namespace merlane
