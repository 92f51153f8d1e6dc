#include "uncertainty/confidence_series.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>

#include "base/runtime_failure.h"

namespace merlane {
namespace {

/// -ln[L] at `count` points a distance `H` apart, the first at `first`.
EvaluatedPoints Points(int count, double first, double H, const std::function<double(double)>& negLnL) {
  EvaluatedPoints points(count, H);
  for (int i = 1; i <= count; ++i) points.Add(i, first + (i - 1) * H, negLnL(first + (i - 1) * H));
  return points;
}

double HalfSquare(double x) { return 0.5 * x * x; }

/// Density of the beta distribution, from the C library's own ln Gamma.
double BetaDensity(double p, double a, double b) {
  return std::exp(std::lgamma(a + b) - std::lgamma(a) - std::lgamma(b) + (a - 1) * std::log(p) +
                  (b - 1) * std::log(1 - p));
}

TEST(ConfidenceSeries, OfABinomialProportionIsTheBetaDistribution) {
  // 7 of 20 survive: L is proportional to the density of Beta(8, 14).
  const EvaluatedPoints points =
      Points(199, 0.005, 0.005, [](double p) { return -(7 * std::log(p) + 13 * std::log(1 - p)); });
  const ConfidenceSeries s = MakeConfidenceSeries(points);
  EXPECT_NEAR(s.ModeValue, 7.0 / 20, 1e-12);
  EXPECT_NEAR(s.ExpectedValue, 8.0 / 22, 1e-9);
  EXPECT_NEAR(s.EstimatedSE, std::sqrt(8.0 * 14 / (22.0 * 22 * 23)), 1e-8);
  EXPECT_NEAR(s.EstimatedDiff, 7.0 / 20 - 8.0 / 22, 1e-9);
  for (int i = 1; i <= points.Count(); ++i)
    EXPECT_NEAR(s.ProfilePDF(i), BetaDensity(s.ProfileX(i), 8, 14), 1e-7) << s.ProfileX(i);
  // Sum of binomial probabilities: P(Beta(8, 14) <= x) = P(Binomial(21, x) >= 8).
  const auto exact = [](double x) {
    double sum = 0;
    for (int k = 8; k <= 21; ++k)
      sum += std::exp(std::lgamma(22) - std::lgamma(k + 1) - std::lgamma(22 - k) + k * std::log(x) +
                      (21 - k) * std::log(1 - x));
    return sum;
  };
  // Odd points hang together by Simpson's rule, and so do the even ones behind a coarse beginning in the far tail.
  for (int i = 1; i <= points.Count(); ++i) EXPECT_NEAR(s.ProfileCum(i), exact(s.ProfileX(i)), 1e-7) << s.ProfileX(i);
}

TEST(ConfidenceSeries, OfANormalMeanIsTheNormalDistribution) {
  const EvaluatedPoints points =
      Points(401, 3 - 8 * 0.5, 0.04 * 0.5, [](double x) { return HalfSquare((x - 3) / 0.5); });
  // Simpson's rule with steps of 0.04 deviations errs by 0.04^4 / 180 * 1.4, the largest third derivative.
  const ConfidenceSeries s = MakeConfidenceSeries(points);
  EXPECT_NEAR(s.ModeValue, 3, 1e-12);
  EXPECT_NEAR(s.ExpectedValue, 3, 1e-12);
  EXPECT_NEAR(s.EstimatedSE, 0.5, 1e-9);
  for (int i = 1; i <= 401; ++i) {
    const double z = (s.ProfileX(i) - 3) / 0.5;
    EXPECT_NEAR(s.ProfilePDF(i), std::exp(-HalfSquare(z)) / (0.5 * std::sqrt(2 * M_PI)), 1e-9);
    EXPECT_NEAR(s.ProfilePDF(i), s.ProfileNormal(i), 1e-8);
    EXPECT_NEAR(s.ProfileCum(i), 0.5 * std::erfc(-z / std::sqrt(2)), 3e-8);
    EXPECT_NEAR(s.ProfileCIMode(i), std::erf(std::fabs(z) / std::sqrt(2)), 6e-8);
  }
  EXPECT_EQ(s.ProfileCIMode(points.IMin), 0);
  EXPECT_EQ(s.ProfileCIMean(s.IMean), 0);
}

TEST(ConfidenceSeries, MakesNegLnLRelativeToItsLowest) {
  const ConfidenceSeries s = MakeConfidenceSeries(Points(5, -2, 1, [](double x) { return 300 + x * x; }));
  EXPECT_EQ((Array1<double>{4, 1, 0, 1, 4}), s.ProfileF);
}

TEST(ConfidenceSeries, FollowsTheRecipeStepByStep) {
  // L = 1, 2, 1 by hand: area (1 + 8 + 1) * 2 / 6, and so on.
  const double ln2 = std::log(2.0);
  const ConfidenceSeries s =
      MakeConfidenceSeries(Points(3, 1, 1, [&](double x) { return x == 2 ? 0 : ln2; }));  // L = 1/2, 1, 1/2
  const double area = (0.5 + 4 + 0.5) * 2 / 6;
  EXPECT_DOUBLE_EQ(s.ProfilePDF(2), 1 / area);
  EXPECT_DOUBLE_EQ(s.ExpectedValue, 2);
  EXPECT_DOUBLE_EQ(s.EstimatedSE, std::sqrt((0.5 + 16 + 4.5) * 2 / 6 / area - 4));
  EXPECT_DOUBLE_EQ(s.ProfileCum(1), 0.5 / area) << "it begins with the first point's density times H";
  EXPECT_DOUBLE_EQ(s.ProfileCum(2), 0.5 / area + 1 / area);
  EXPECT_EQ(s.ProfileCum(3), 1) << "the end lies above 1 and is cut";
}

TEST(ConfidenceSeries, AMinimumAtTheFirstPointSkipsTheRegionOnTheMode) {
  const ConfidenceSeries s = MakeConfidenceSeries(Points(21, 0, 0.25, [](double x) { return x; }));
  EXPECT_EQ(Array1<double>(21), s.ProfileCIMode);
  EXPECT_GT(s.IMean, 1);
  EXPECT_EQ(s.ProfileCIMean(s.IMean), 0);
  EXPECT_GT(s.ProfileCIMean(21), 0.99);
}

TEST(ConfidenceSeries, AMeanAtTheFirstPointSkipsTheRegionOnTheMean) {
  const ConfidenceSeries s = MakeConfidenceSeries(Points(5, 0, 1, [](double x) { return 40 * x; }));
  EXPECT_EQ(s.IMean, 1);
  EXPECT_EQ(Array1<double>(5), s.ProfileCIMean);
}

TEST(ConfidenceSeries, OfTwoPointsEquallyNearTheMeanTheFirstCounts) {
  const ConfidenceSeries s = MakeConfidenceSeries(Points(3, -1, 1, [](double x) { return x < 0.5 ? 0.0 : 700.0; }));
  // L = 1, 1, 0: mean (-1 + 0) / 5 = -0.2, nearest to 0.
  EXPECT_DOUBLE_EQ(s.ExpectedValue, -0.2);
  EXPECT_EQ(s.IMean, 2);
  EvaluatedPoints tie(3, 1);
  tie.Add(1, 0, 0);
  tie.Add(2, 1, 0);
  tie.Add(3, 1, 0);  // two points share a value
  EXPECT_EQ(MakeConfidenceSeries(tie).IMean, 2);
}

TEST(ConfidenceSeries, OfAnEvenNumberOfPointsLeavesTheLastOut) {
  const EvaluatedPoints points = Points(6, -3, 1, HalfSquare);
  const ConfidenceSeries s = MakeConfidenceSeries(points);
  EXPECT_EQ(s.ProfileCum(6), 0) << "the last cumulative value is never reached";
  EXPECT_GT(s.ProfileCum(5), 0.9);
  EvaluatedPoints fewer = points;
  fewer.Keep(5);
  EXPECT_EQ(MakeConfidenceSeries(fewer).ExpectedValue, s.ExpectedValue);
}

TEST(ConfidenceSeries, ANegativeVarianceIsAnErrorOfZeroWithoutANormalCurve) {
  // All probability at one of large values: the variance is a difference of rounded squares.
  bool seen = false;
  for (double centre = 1e8; centre < 1.1e8 && !seen; centre += 12345.678) {
    const EvaluatedPoints points =
        Points(5, centre - 2e-6, 1e-6, [&](double x) { return std::fabs(x - centre) < 5e-7 ? 0 : 500; });
    const ConfidenceSeries s = MakeConfidenceSeries(points);
    if (s.EstimatedSE != 0) continue;
    seen = true;
    EXPECT_EQ(Array1<double>(5), s.ProfileNormal);
  }
  EXPECT_TRUE(seen);
}

TEST(ConfidenceSeries, WithoutAnAreaLeavesTheEstimatesAtZero) {
  const EvaluatedPoints points = Points(5, 2, 0, HalfSquare);
  const ConfidenceSeries s = MakeConfidenceSeries(points);
  EXPECT_EQ(s.ExpectedValue, 0);
  EXPECT_EQ(s.EstimatedSE, 0);
  EXPECT_EQ(s.EstimatedDiff, 2);
  EXPECT_EQ(s.ProfilePDF(1), 1) << "not normalised";
}

TEST(ConfidenceSeries, AnOverflowIsARuntimeFailure) {
  EXPECT_THROW(MakeConfidenceSeries(Points(3, 1e200, 1e190, [](double) { return 1.0; })), RuntimeFailure);
}

TEST(EvaluatedPoints, TheLowestIsTheFirstOfEquals) {
  const EvaluatedPoints points = Points(5, 0, 1, [](double x) { return x == 1 || x == 3 ? 2.0 : 5.0; });
  EXPECT_EQ(points.IMin, 2);
}

TEST(EvaluatedPoints, AscendTurnsThemEndForEnd) {
  EvaluatedPoints points = Points(5, 4, -1, [](double x) { return x == 3 ? -1.0 : x; });
  EXPECT_EQ(points.IMin, 2);
  points.Ascend();
  EXPECT_EQ((Array1<double>{0, 1, 2, 3, 4}), points.ProfileX);
  EXPECT_EQ((Array1<double>{0, 1, 2, -1, 4}), points.ProfileF);
  EXPECT_EQ(points.H, 1);
  EXPECT_EQ(points.IMin, 4);
}

TEST(EvaluatedPoints, AMinimumThatIsNotKeptIsNone) {
  EvaluatedPoints points = Points(7, 0, 1, [](double x) { return -x; });
  points.Keep(5);
  EXPECT_FALSE(points.HasMinimum());
  EvaluatedPoints descending = Points(7, 0, -1, [](double x) { return x; });
  descending.Keep(5);
  descending.Ascend();
  EXPECT_FALSE(descending.HasMinimum());
  EXPECT_FALSE(EvaluatedPoints(3, 1).HasMinimum());
}

TEST(EvaluatedPoints, APointAsUnlikelyAsCanBeIsNoMinimum) {
  EXPECT_FALSE(Points(3, 0, 1, [](double) { return 1E+100; }).HasMinimum());
  EXPECT_EQ(Points(3, 0, 1, [](double) { return 1E+20; }).IMin, 1);
}

}  // namespace
}  // namespace merlane
