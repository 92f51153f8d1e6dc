#include "base/gamma_ln.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <utility>

#include "base/elementary.h"
#include "base/runtime_failure.h"

namespace merlane {
namespace {

TEST(GammaLn, IsTheSixTermSeriesAndNotTheExactFunction) {
  // ln Gamma(1) and ln Gamma(2) are 0; the series misses them.
  EXPECT_NE(GammaLn(1), 0);
  EXPECT_NEAR(GammaLn(1), 0, 1e-9);
  EXPECT_NEAR(GammaLn(2), 0, 1e-9);
  EXPECT_NE(GammaLn(7.5), std::lgamma(7.5));
}

TEST(GammaLn, IsCloseToTheExactFunctionAboveAndBelowOne) {
  for (const double x : {1e-6, 0.01, 0.3, 0.999, 1.0, 1.5, 3.0, 12.0, 170.0, 1e4, 1e7})
    EXPECT_NEAR(GammaLn(x), std::lgamma(x), 2e-9 * std::max(1.0, std::abs(std::lgamma(x)))) << x;
}

TEST(GammaLn, OfOneHalfIsTheLogarithmOfTheRootOfPi) { EXPECT_NEAR(GammaLn(0.5), Log(std::sqrt(Pi)), 1e-9); }

TEST(GammaLn, HasTheBitsOfItsStepsInTheirOrder) {
  // Computed once more by an independent program, with the same elementary functions.
  const std::pair<double, double> known[] = {{1.0, -0x1.2c44000000000p-35}, {2.0, -0x1.57e0000000000p-34},
                                             {7.5, 0x1.e233060e0e899p+2},   {33.0, 0x1.463b59b93eee1p+6},
                                             {0.5, 0x1.250d048ef81b3p-1},   {0.03, 0x1.beb75f03f3921p+1}};
  for (const auto& [x, lnGamma] : known) EXPECT_EQ(GammaLn(x), lnGamma) << x;
}

TEST(GammaLn, ReflectsBelowOne) {
  const double x = 0.25;
  EXPECT_EQ(GammaLn(x), Log(Pi * (1 - x) / (Sin(Pi * (1 - x)) * Exp(GammaLn(2 - x)))));
}

TEST(GammaLn, FailsWhereTheGammaFunctionIsNegativeOrVanishes) {
  EXPECT_THROW(GammaLn(-0.5), RuntimeFailure);
  EXPECT_THROW(GammaLn(-998), RuntimeFailure);
}

}  // namespace
}  // namespace merlane
