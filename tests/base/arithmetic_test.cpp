#include "base/arithmetic.h"

#include <gmock/gmock.h>

#include <limits>

#include "base/runtime_failure.h"

namespace merlane {
namespace {

constexpr double Infinite = std::numeric_limits<double>::infinity();
constexpr double NaN = std::numeric_limits<double>::quiet_NaN();

/// What the user would be told.
std::string FailureOf(const std::function<void()>& calculation) {
  try {
    calculation();
  } catch (const RuntimeFailure& failure) {
    return failure.what();
  }
  return "no failure";
}

TEST(ArithmeticTest, HalvesAreRoundedToTheEvenNumber) {
  EXPECT_EQ(ToInt16(0.5), 0);
  EXPECT_EQ(ToInt16(1.5), 2);
  EXPECT_EQ(ToInt16(-2.5), -2);
  EXPECT_EQ(ToInt32(26.5), 26);
}

TEST(ArithmeticTest, WhatDoesNotFitItsTypeIsToldWithTheRange) {
  EXPECT_EQ(ToInt16(32767.4), 32767);
  EXPECT_EQ(ToInt16(-32768.5), -32768);
  EXPECT_EQ(FailureOf([] { ToInt16(40000); }), "overflow: 40000 does not lie between -32768 and 32767");
  EXPECT_EQ(FailureOf([] { CheckedInt16(-32769); }), "overflow: -32769 does not lie between -32768 and 32767");
  EXPECT_EQ(FailureOf([] { ToInt32(1e20); }), "overflow: 1e+20 does not lie between -2147483648 and 2147483647");
  EXPECT_EQ(FailureOf([] { ToInt32(NaN); }), "overflow: nan does not lie between -2147483648 and 2147483647");
}

TEST(ArithmeticTest, NoInfinityAndNoNaNPasses) {
  EXPECT_EQ(Checked(-1.5), -1.5);
  EXPECT_EQ(FailureOf([] { Checked(Infinite); }), "overflow");
  EXPECT_EQ(FailureOf([] { Checked(NaN); }), "overflow");
  EXPECT_EQ(FailureOf([] { Divide(1e300, 1e-300); }), "overflow");
  EXPECT_EQ(FailureOf([] { CheckedSqrt(Infinite); }), "overflow");
  EXPECT_EQ(FailureOf([] { CheckedLog(Infinite); }), "overflow");
}

TEST(ArithmeticTest, OutsideTheirDomainDivisionRootAndLogarithmFail) {
  EXPECT_EQ(Divide(1, 4), 0.25);
  EXPECT_EQ(FailureOf([] { Divide(0, 0); }), "division by zero");
  EXPECT_EQ(FailureOf([] { Divide(1, -0.0); }), "division by zero");
  EXPECT_EQ(CheckedSqrt(0), 0);
  EXPECT_EQ(FailureOf([] { CheckedSqrt(-1e-300); }), "square root of a negative number");
  EXPECT_EQ(FailureOf([] { CheckedLog(0); }), "logarithm of a number that is not positive");
  EXPECT_EQ(FailureOf([] { CheckedLog(NaN); }), "logarithm of a number that is not positive");
}

}  // namespace
}  // namespace merlane
