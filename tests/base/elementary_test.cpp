#include "base/elementary.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

namespace merlane {
namespace {

constexpr double Infinity = std::numeric_limits<double>::infinity();

// Computed by a program linked with musl itself. At each of these but the first of a list the C library of some host,
// by fused multiply-add or another algorithm, gives another last digit.

TEST(Elementary, HasTheKnownBitsOnEveryMachine) {
  const std::vector<std::pair<double, double>> exponentials{{-0.5, 0x1.368b2fc6f960ap-1},
                                                            {-0x1.d3p-7, 0x1.f8c13f828916ep-1},
                                                            {-0x1.eep-7, 0x1.f856d1f916132p-1},
                                                            {-0x1.8bp-6, 0x1.f3cdc9aa872aep-1}};
  for (const auto& [x, value] : exponentials) EXPECT_EQ(Exp(x), value) << x;
  const std::vector<std::pair<double, double>> logarithms{{2, 0x1.62e42fefa39efp-1},
                                                          {0x1.c37p-2, -0x1.a35889d80cab1p-1},
                                                          {0x1.35aep-1, -0x1.016d2ef03a058p-1},
                                                          {0x1.46dp-1, -0x1.cbb66810a188p-2}};
  for (const auto& [x, value] : logarithms) EXPECT_EQ(Log(x), value) << x;
  const std::vector<std::pair<double, double>> powers{{4, 8},
                                                      {0x1.fdp-3, 0x1.fb81b06c3cedcp-4},
                                                      {0x1.ed6p-1, 0x1.e451711a71012p-1},
                                                      {0x1.0dfp+0, 0x1.15303286726b6p+0}};
  for (const auto& [x, value] : powers) EXPECT_EQ(Pow(x, 1.5), value) << x;
  const std::vector<std::pair<double, double>> sines{{0.5, 0x1.eaee8744b05fp-2},
                                                     {0x1.cp-4, 0x1.bf1b78568391ep-4},
                                                     {0x1.dfp-4, 0x1.dde8b1f90d27ap-4},
                                                     {0x1.1bp-3, 0x1.1a19a866f20cfp-3}};
  for (const auto& [x, value] : sines) EXPECT_EQ(Sin(x), value) << x;
}

TEST(Elementary, TellsTheEndsOfTheRangeByTheirLimits) {
  EXPECT_EQ(Exp(710), Infinity);
  EXPECT_EQ(Exp(-746), 0);
  EXPECT_EQ(Exp(-708.5), 0x1.cd9eda1112f58p-1023);
  EXPECT_EQ(Exp(-Infinity), 0);
  EXPECT_EQ(Log(0), -Infinity);
  EXPECT_EQ(Log(0x1.2688b70e62bp-1030), -0x1.64e69394d9508p+9);
  EXPECT_TRUE(std::isnan(Log(-1)));
  EXPECT_EQ(Pow(0, 0), 1);
  EXPECT_EQ(Pow(-2, 3), -8);
  EXPECT_TRUE(std::isnan(Pow(-2, 0.5)));
  EXPECT_EQ(Pow(10, 400), Infinity);
  EXPECT_EQ(Sin(1e22), -0x1.b453ab76bf397p-1);
  EXPECT_TRUE(std::isnan(Sin(Infinity)));
}

TEST(Elementary, WholePowersOfWholeNumbersAreExact) {
  for (int x = 2; x <= 33; ++x) {
    double product = 1;
    for (int n = 1; n <= 9; ++n) EXPECT_EQ(Pow(x, n), product *= x) << x << "^" << n;
  }
}

TEST(Elementary, PiIsTheDoubleNearestToIt) { EXPECT_EQ(Pi, M_PI); }

}  // namespace
}  // namespace merlane
