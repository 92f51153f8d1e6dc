#include "uncertainty/prior_profile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <nlohmann/json.hpp>

#include "base/runtime_failure.h"
#include "platform/files.h"
#include "priors/priors_file.h"
#include "priors/set_prior.h"
#include "support/function_run.h"
#include "uncertainty/evaluation_table.h"
#include "uncertainty/kept_plot.h"

namespace merlane {
namespace {

using nlohmann::json;
using test::PriorsOf;
using test::Vector;
using ::testing::ElementsAre;

EvaluatedPoints Profile(Priors priors, int points) {
  PriorProfileWatch watch;
  return ProfilePrior(Array1<double>{0}, 1, points, 2, priors, watch);
}

void ExpectAll(const Array1<double>& actual, const json& kept, const std::string& what) {
  ASSERT_EQ(actual.Size(), static_cast<int>(kept.size()));
  for (int i = 1; i <= actual.Size(); ++i) {
    EXPECT_EQ(actual(i), kept[static_cast<std::size_t>(i) - 1].get<double>()) << what << " of point " << i;
  }
}

class KeptPriorProfile : public ::testing::TestWithParam<std::string> {};

TEST_P(KeptPriorProfile, AgreesFigureByFigure) {
  const json kept = KeptPlot("prior_profile_" + GetParam());
  Priors priors = GetParam() == "beta" ? PriorsOf(1, "B", 0.5, 0.2)
                                       : ReadPriorsText(KeptPlot("review")["file"].get<std::string>(), 9).priors;
  PriorProfileWatch watch;
  const EvaluatedPoints points =
      ProfilePrior(Array1<double>(priors.PriorCode.Size(), 0.5), kept["parameter"], kept["points"], 2, priors, watch);
  ExpectAll(points.ProfileX, kept["X"], "value");
  EXPECT_EQ(points.H, kept["step"].get<double>());
  const ConfidenceSeries s = MakeConfidenceSeries(points);
  ExpectAll(s.ProfileF, kept["neg_lnl"], "-ln[L]");
  ExpectAll(s.ProfilePDF, kept["pdf"], "density");
  ExpectAll(s.ProfileCum, kept["cumulative"], "cumulative");
  EXPECT_EQ(s.ExpectedValue, kept["expected"].get<double>());
  EXPECT_EQ(s.EstimatedSE, kept["se"].get<double>());
  ExpectAll(s.ProfileCIMean, kept["ci_mean"], "region on mean");
  EXPECT_EQ(points.IMin, kept["imin"].get<int>());
  EXPECT_EQ(s.ModeValue, kept["ml"].get<double>());
  EXPECT_EQ(s.EstimatedDiff, kept["diff"].get<double>());
  ExpectAll(s.ProfileNormal, kept["normal"], "normal density");
  ExpectAll(s.ProfileCIMode, kept["ci_mode"], "region on mode");
  EXPECT_EQ(PriorProfileTable(s), kept["pane"].get<std::string>());
}

INSTANTIATE_TEST_SUITE_P(All, KeptPriorProfile,
                         ::testing::Values("normal", "gamma", "exponential", "ln_normal", "beta", "left_cliff",
                                           "right_cliff", "bounded"),
                         [](const auto& kept) { return kept.param; });

TEST(PriorDomain, OfANormalPriorSpansTenDeviationsAroundItsMean) {
  const PriorDomain domain = DomainOfPrior(PriorsOf(1, "N", 2, 0.5), 1, 11);
  EXPECT_EQ(domain.step, 0.5);
  EXPECT_EQ(domain.X(1), -0.5);
  EXPECT_EQ(domain.X(6), 2);
  EXPECT_EQ(domain.X(11), 4.5);
}

TEST(PriorDomain, OfGammaAndLnNormalBeginsJustAboveZeroAtTheDistanceThatThePointsReallyHave) {
  for (const char* code : {"G", "L"}) {
    const PriorDomain domain = DomainOfPrior(PriorsOf(1, code, 3, 1), 1, 25);
    EXPECT_EQ(domain.X(1), 1e-06);
    EXPECT_NEAR(domain.X(25), 8, 2e-6) << "mean plus five deviations";
    EXPECT_NEAR(domain.step, 8.0 / 24, 1e-12);
    EXPECT_NEAR(domain.X(2) - domain.X(1), domain.step, 1e-12);
  }
}

TEST(PriorDomain, OfAnExponentialBeginsAtZeroAndReachesTenOverTheMeanBeyondIt) {
  const PriorDomain domain = DomainOfPrior(PriorsOf(1, "E", 2, 2), 1, 101);
  EXPECT_EQ(domain.X(1), 0);
  EXPECT_NEAR(domain.X(101), 7, 1e-12);
}

TEST(PriorDomain, OfABetaIsHeldWithinZeroToOneWhereverItsMeanLies) {
  const PriorDomain domain = DomainOfPrior(PriorsOf(1, "B", 0.3, 0.1), 1, 11);
  EXPECT_EQ(domain.step, 0.1);
  EXPECT_EQ(domain.X(1), 1e-06);
  EXPECT_EQ(domain.X(2), 1e-06) << "-0.1 is held, too";
  EXPECT_NEAR(domain.X(11), 0.8, 1e-12);
  EXPECT_EQ(DomainOfPrior(PriorsOf(1, "B", 0.8, 0.1), 1, 11).X(11), 0.999999);
}

TEST(PriorDomain, OfACliffSpansThreeDeviationsOnBothSidesOfItsFoot) {
  for (const char* code : {"S", "D"}) {
    const PriorDomain domain = DomainOfPrior(PriorsOf(1, code, 4, 0.5), 1, 21);
    EXPECT_NEAR(domain.X(1), 2.5, 1e-12);
    EXPECT_NEAR(domain.X(21), 5.5, 1e-12);
  }
}

TEST(PriorDomain, OfASharpCliffGoesFromZeroToTwiceItsFoot) {
  const PriorDomain domain = DomainOfPrior(PriorsOf(1, "D", 4, 0), 1, 5);
  EXPECT_THAT(Vector(domain.X), ElementsAre(0, 2, 4, 6, 8));
}

TEST(PriorDomain, OfABoundedPriorReachesThreeDeviationsBeyondBothFeet) {
  const PriorDomain domain = DomainOfPrior(PriorsOf(1, "T", 1, 0.1, "3", 0.2), 1, 30);
  EXPECT_NEAR(domain.X(1), 0.7, 1e-12);
  EXPECT_NEAR(domain.X(30), 3.6, 1e-12);
  EXPECT_NEAR(domain.step, 0.1, 1e-12);
}

TEST(PriorProfile, ASharpRightCliffIsLevel) {
  EXPECT_THAT(Vector(Profile(PriorsOf(1, "D", 4, 0), 5).ProfileF), ElementsAre(0, 0, 0, 0, 0));
}

TEST(PriorProfile, ASharpCliffWithANegativeFootIsTurnedRound) {
  const EvaluatedPoints points = Profile(PriorsOf(1, "D", -4, 0), 5);
  EXPECT_THAT(Vector(points.ProfileX), ElementsAre(-8, -6, -4, -2, 0));
  EXPECT_EQ(points.H, 2);
}

TEST(PriorProfile, ASharpCliffAtZeroHasAllItsPointsThere) {
  const EvaluatedPoints points = Profile(PriorsOf(1, "D", 0, 0), 5);
  EXPECT_THAT(Vector(points.ProfileX), ElementsAre(0, 0, 0, 0, 0));
}

TEST(PriorProfile, WithoutADeviationIsARuntimeFailure) {
  for (const char* code : {"N", "G", "L", "S"})
    EXPECT_THROW(Profile(PriorsOf(1, code, 2, 0), 5), RuntimeFailure) << code;
  EXPECT_THROW(Profile(PriorsOf(1, "E", 0, 0), 5), RuntimeFailure);
}

TEST(PriorProfile, SeesAllParameters) {
  // A right cliff with a deviation of 0 is judged by what the cliff before it left; a failing prior ends the profile.
  Priors both = PriorsOf(2, "S", 0, 1);
  test::SetPrior(both, 2, "D", 4, 0);
  PriorProfileWatch watch;
  const EvaluatedPoints points = ProfilePrior(Array1<double>{0, 1}, 2, 3, 2, both, watch);
  EXPECT_NEAR(points.ProfileF(1), std::log(2.0), 1e-6) << "-ln(1 - 0.5)";
  both.PriorFirstSD(1) = 0;
  EXPECT_THROW(ProfilePrior(Array1<double>{0, 1}, 2, 3, 2, both, watch), RuntimeFailure);
}

TEST(PriorProfile, IsNotMultipliedByTheConstantAndLeavesTheEstimates) {
  Priors priors = PriorsOf(1, "N", 2, 0.5);
  PriorProfileWatch watch;
  const Array1<double> values{9};
  for (const double constant : {0.0, 2.0, 100.0}) {
    const EvaluatedPoints points = ProfilePrior(values, 1, 11, constant, priors, watch);
    EXPECT_DOUBLE_EQ(points.ProfileF(1), 12.5);
  }
  EXPECT_EQ(values(1), 9);
}

TEST(PriorProfile, TellsEachPoint) {
  struct PointWatch : PriorProfileWatch {
    void OnPoint(int point, double value) override { told.push_back({point, value}); }
    std::vector<std::pair<int, double>> told;
  } watch;
  Priors priors = PriorsOf(1, "N", 0, 1);
  ProfilePrior(Array1<double>{0}, 1, 3, 2, priors, watch);
  EXPECT_THAT(watch.told, ElementsAre(std::pair(1, -5.0), std::pair(2, 0.0), std::pair(3, 5.0)));
}

TEST(PriorProfile, OfATextbookDistributionHasItsMoments) {
  // The moments that were typed come back as those of the profile, but for the tails that its domain cuts: five
  // deviations above its mean a gamma distribution of these moments still has 7e-5 of its probability.
  struct Expected {
    const char* code;
    double mean, sd, tolerance;
  };
  for (const Expected& e : {Expected{"N", 2, 0.5, 1e-5}, Expected{"G", 2, 0.5, 2e-4}, Expected{"B", 0.5, 0.2, 1e-4}}) {
    const ConfidenceSeries s = MakeConfidenceSeries(Profile(PriorsOf(1, e.code, e.mean, e.sd), 301));
    EXPECT_NEAR(s.ExpectedValue, e.mean, e.tolerance) << e.code;
    EXPECT_NEAR(s.EstimatedSE, e.sd, 5 * e.tolerance) << e.code;
  }
}

}  // namespace
}  // namespace merlane
