#include "uncertainty/posterior.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

#include "base/runtime_failure.h"
#include "priors/distributions.h"
#include "priors/set_prior.h"
#include "support/function_run.h"

namespace merlane {
namespace {

using test::FunctionRun;
using test::Vector;
using ::testing::ElementsAre;

struct Watch : PosteriorWatch {
  void OnStart(double c) override { calls = c; }
  void OnGridPoint(int parameter, int j) override {
    gridPoints.push_back({parameter, j});
    ++asked;
  }
  void OnCall(double call, double all) override { left = all - call; }
  bool Quits() override { return asked == quitsAt; }
  void OnBadConstant() override { ++badConstants; }
  void OnUnevaluated(double nodes, const std::string&) override { unevaluated = nodes; }
  double calls = 0;
  double left = -1;
  int asked = 0;
  int quitsAt = -1;
  int badConstants = 0;
  double unevaluated = 0;
  std::vector<std::pair<int, int>> gridPoints;
};

struct Integrated {
  explicit Integrated(FunctionRun& r) : run(r) {}
  Posterior Integrate(std::int16_t parameter, PosteriorOptions options) {
    run.Pack();
    run.state.profile.IntegrationOn = true;
    const PinnedParameter pinned(run.state, parameter);
    return EvaluatePosterior(pinned, options, run.state, run.objective, ReferenceF, watch);
  }
  FunctionRun& run;
  double ReferenceF = 0;
  Watch watch;
};

double Square(double x) { return x * x; }

TEST(Posterior, WithNoOtherFreeParameterIsAPlainCurve) {
  FunctionRun run({2, 7}, {0.5, 0}, [](Array1<double>& v) { return v(1) * v(2); });
  Integrated p(run);
  const Posterior posterior = p.Integrate(1, {5, 0});
  EXPECT_THAT(Vector(posterior.points.ProfileX), ElementsAre(1, 1.5, 2, 2.5, 3));
  EXPECT_THAT(Vector(posterior.points.ProfileF), ElementsAre(7, 10.5, 14, 17.5, 21));
  EXPECT_FALSE(posterior.bivariate);
  EXPECT_EQ(posterior.NodeCounter, 5);
  EXPECT_EQ(p.watch.calls, 5);
  EXPECT_EQ(p.ReferenceF, 0);
}

TEST(Posterior, VisitsTheNodesWithTheFirstFreeParameterOutermost) {
  FunctionRun run({10, 20, 30}, {1, 2, 3}, [](Array1<double>& v) { return v(1) / 1000; });
  Integrated p(run);
  const Posterior posterior = p.Integrate(2, {3, 3});
  EXPECT_EQ(posterior.NodeCounter, 27);
  EXPECT_EQ(p.watch.calls, 27);
  EXPECT_EQ(p.watch.left, 0);
  std::vector<std::vector<double>> expected;
  for (const double profiled : {18, 20, 22})
    for (const double outer : {9, 10, 11})
      for (const double inner : {27, 30, 33}) expected.push_back({outer, profiled, inner});
  ASSERT_EQ(run.calls.size(), expected.size());
  for (std::size_t i = 0; i < expected.size(); ++i) EXPECT_EQ(Vector(run.calls[i].X), expected[i]) << i;
  EXPECT_THAT(std::vector(p.watch.gridPoints.begin(), p.watch.gridPoints.begin() + 6),
              ElementsAre(std::pair(1, 1), std::pair(3, 1), std::pair(3, 2), std::pair(3, 3), std::pair(1, 2),
                          std::pair(3, 1)));
  EXPECT_EQ(run.Codes(), std::vector<std::int32_t>(27, 1));
}

TEST(Posterior, SumsTheLikelihoodAroundTheReference) {
  FunctionRun run({0, 0}, {1, 1}, [](Array1<double>& v) { return 100 + v(1) + std::fabs(v(2)); });
  Integrated p(run);
  const Posterior posterior = p.Integrate(1, {3, 3});
  EXPECT_EQ(p.ReferenceF, 100) << "-ln[L] at the values";
  const double sum = 1 + 2 * std::exp(-1.0);
  for (int i = 1; i <= 3; ++i) EXPECT_DOUBLE_EQ(posterior.points.ProfileF(i), -std::log(sum * std::exp(2.0 - i)));
  ASSERT_TRUE(posterior.bivariate);
  const BivariateDensity& b = *posterior.bivariate;
  EXPECT_THAT(Vector(b.X), ElementsAre(-1, 0, 1));
  EXPECT_THAT(Vector(b.Y), ElementsAre(-1, 0, 1));
  EXPECT_DOUBLE_EQ(b.f(2, 1), std::exp(1.0)) << "by the other parameter first";
  EXPECT_DOUBLE_EQ(b.f(1, 3), std::exp(-2.0));
  EXPECT_DOUBLE_EQ(b.fmax, std::exp(1.0));
  EXPECT_EQ(b.peakX, -1);
  EXPECT_EQ(b.peakY, 0);
  EXPECT_EQ(b.firstParameter, 1);
  EXPECT_EQ(b.secondParameter, 2);
}

TEST(Posterior, WithMoreOthersTheReferenceIsWhatARunBeforeLeft) {
  FunctionRun run({0, 0, 0}, {1, 1, 1}, [](Array1<double>& v) { return 5 + v(1); });
  Integrated p(run);
  p.ReferenceF = 5;
  const Posterior posterior = p.Integrate(1, {3, 3});
  EXPECT_EQ(p.ReferenceF, 5);
  EXPECT_DOUBLE_EQ(posterior.points.ProfileF(2), -std::log(9.0));
  EXPECT_FALSE(posterior.bivariate);
}

TEST(Posterior, APointWhoseNodesAllUnderflowHasADensityOfZero) {
  FunctionRun run({0, 0, 0}, {1, 1, 1}, [](Array1<double>& v) { return v(1) == 1 ? 700 : 800; });
  Integrated p(run);
  const EvaluatedPoints points = p.Integrate(1, {3, 3}).points;
  EXPECT_EQ(points.ProfileF(1), 1E+20);
  EXPECT_EQ(points.ProfileF(2), 1E+20);
  EXPECT_DOUBLE_EQ(points.ProfileF(3), 700 - std::log(9.0));
  EXPECT_EQ(MakeConfidenceSeries(points).ProfilePDF(1), 0);
}

TEST(Posterior, WhereTheLikelihoodsAreTooSmallToHaveAllDigitsItSaysSo) {
  for (const double least : {690.0, 742.0}) {
    FunctionRun run({0, 0, 0}, {1, 1, 1}, [=](Array1<double>& v) { return least + 0.1 * v(1) * v(1); });
    Integrated p(run);
    EXPECT_EQ(p.Integrate(1, {5, 3}).losesDigits, least > 700) << least;
  }
  FunctionRun alone({0}, {1}, [](Array1<double>& v) { return 742 + v(1) * v(1); });
  Integrated p(alone);
  EXPECT_FALSE(p.Integrate(1, {5, 3}).losesDigits) << "nothing is summed";
}

TEST(Posterior, WhenEverythingUnderflowsThereIsNoCurve) {
  FunctionRun run({0, 0, 0}, {1, 1, 1}, [](Array1<double>&) { return 800; });
  Integrated p(run);
  const Posterior posterior = p.Integrate(1, {5, 3});
  EXPECT_TRUE(posterior.Vanishes());
  EXPECT_FALSE(posterior.points.HasMinimum());
}

TEST(Posterior, ADensityThatOverflowsIsARuntimeFailure) {
  FunctionRun run({0, 0, 0}, {1, 1, 1}, [](Array1<double>&) { return -800; });
  Integrated p(run);
  EXPECT_THROW(p.Integrate(1, {3, 3}), RuntimeFailure);
  EXPECT_EQ(run.state.algorithm.Step(1), 1) << "a failure gives value and step back";
}

TEST(Posterior, ANodeThatCannotBeEvaluatedHasADensityOfZeroAndIsTold) {
  const auto f = [](Array1<double>& v) { return v(1) == 2.5 && v(2) > 6.5 ? std::nan("") : Square(v(1)) + v(2); };
  FunctionRun run({2, 7}, {0.5, 0.5}, f);
  Integrated p(run);
  const Posterior posterior = p.Integrate(1, {5, 3});
  EXPECT_EQ(p.watch.unevaluated, 2);
  EXPECT_EQ(posterior.NodeCounter, 15);
  EXPECT_EQ(posterior.bivariate->f(1, 4), std::exp(-(6.25 + 6.5 - 11)));
  EXPECT_EQ(posterior.bivariate->f(2, 4), 0);
  EXPECT_EQ(posterior.bivariate->f(3, 4), 0);
  EXPECT_EQ(posterior.points.ProfileF(4), 6.25 + 6.5 - 11);
}

TEST(Posterior, OfAPlainCurveAPointThatCannotBeEvaluatedIsImpossible) {
  FunctionRun run({2}, {0.5}, [](Array1<double>& v) { return v(1) == 2.5 ? std::nan("") : v(1); });
  Integrated p(run);
  EXPECT_THAT(Vector(p.Integrate(1, {5, 0}).points.ProfileF), ElementsAre(1, 1.5, 2, VanishedF, 3));
  EXPECT_EQ(p.watch.unevaluated, 1);
}

TEST(Posterior, ThatCannotBeEvaluatedAnywhereIsARuntimeFailure) {
  FunctionRun run({2, 7}, {0.5, 0}, [](Array1<double>& v) { return v(1) == 2 ? v(1) : std::nan(""); });
  run.state.algorithm.Value(1) = 2.25;
  Integrated p(run);
  EXPECT_THROW(p.Integrate(1, {5, 0}), RuntimeFailure);
}

TEST(Posterior, AMinimumAtTheFirstPointSkipsTheRegionOnTheMode) {
  FunctionRun run({5, 0}, {1, 1}, [](Array1<double>& v) { return v(1); });
  Integrated p(run);
  const EvaluatedPoints points = p.Integrate(1, {5, 3}).points;
  EXPECT_EQ(points.IMin, 1);
  EXPECT_EQ(Array1<double>(5), MakeConfidenceSeries(points).ProfileCIMode);
}

TEST(Posterior, ANegativeStepTurnsTheSeriesAndNotTheJointDensity) {
  FunctionRun run({5, 0}, {-1, 1}, [](Array1<double>& v) { return v(1); });
  Integrated p(run);
  const Posterior posterior = p.Integrate(1, {3, 3});
  EXPECT_THAT(Vector(posterior.points.ProfileX), ElementsAre(4, 5, 6));
  EXPECT_EQ(posterior.points.IMin, 1);
  EXPECT_EQ(posterior.points.H, 1);
  EXPECT_THAT(Vector(posterior.bivariate->X), ElementsAre(6, 5, 4));
  EXPECT_EQ(run.state.algorithm.Step(1), -1) << "the step has its sign again";
}

TEST(Posterior, AClampOfTheModelPenalisesTheFirstNodeAlone) {
  // Parameter 2 lies in the outer loop; above 1 it is put back to 1 with a penalty.
  FunctionRun run({0, 1, 0}, {1, 0.5, 1}, [](Array1<double>& v) {
    const double excess = std::max(0.0, v(2) - 1);
    if (excess > 0) v(2) = 1;
    return 1e20 * excess;
  });
  Integrated p(run);
  p.Integrate(1, {3, 3});
  // At its third value the first node is called with 1.5, the two others with 1.
  EXPECT_EQ(run.calls[6].X(2), 1.5);
  EXPECT_EQ(run.calls[7].X(2), 1);
  EXPECT_EQ(run.calls[8].X(2), 1);
  EXPECT_EQ(run.calls[9].X(2), 0.5) << "the next point begins anew";
}

TEST(Posterior, TheJointDensityNamesTheValueThatTheModelLeft) {
  FunctionRun run({1, 0.5}, {1, 1}, [](Array1<double>& v) {
    v(2) = std::fabs(v(2));
    return v(2);
  });
  Integrated p(run);
  EXPECT_THAT(Vector(p.Integrate(1, {3, 3}).bivariate->Y), ElementsAre(0.5, 0.5, 1.5));
}

TEST(Posterior, QuittingKeepsThePointsUpToTheOneBeforeTheLastThatWasDone) {
  for (const int point : {1, 3, 4, 5}) {
    FunctionRun run({0, 0}, {1, 1}, [](Array1<double>& v) { return v(1); });
    Integrated p(run);
    p.watch.quitsAt = 3 * (point - 1) + 2;  // at the second of three nodes
    const Posterior posterior = p.Integrate(1, {7, 3});
    EXPECT_EQ(posterior.points.Count(), std::max(0, point - 2)) << point;
    EXPECT_EQ(Vector(posterior.bivariate->X), Vector(posterior.points.ProfileX)) << "nothing of points not kept";
    EXPECT_EQ(posterior.NodeCounter, 3 * (point - 1) + 1);
    EXPECT_EQ(run.state.algorithm.Value(1), 0);
  }
}

TEST(Posterior, OfAPlainCurveTheUserIsAskedBehindACallBeforeItIsTold) {
  struct QuitsOnceFourAreTold : PosteriorWatch {
    void OnCall(double call, double) override { told = call; }
    bool Quits() override { return told == 4; }
    double told = 0;
  } watch;
  FunctionRun run({2}, {0.5}, [](Array1<double>& v) { return v(1); });
  run.Pack();
  const PinnedParameter pinned(run.state, 1);
  double ReferenceF = 0;
  const Posterior posterior = EvaluatePosterior(pinned, {9, 0}, run.state, run.objective, ReferenceF, watch);
  EXPECT_EQ(posterior.NodeCounter, 5);
  EXPECT_EQ(posterior.points.Count(), 3);
}

TEST(Posterior, IsAskedAtEveryDepthWhetherTheUserQuits) {
  FunctionRun run({0, 0, 0}, {1, 1, 1}, [](Array1<double>& v) { return v(1); });
  Integrated p(run);
  p.watch.quitsAt = 5;  // the second grid point of the outer parameter
  EXPECT_EQ(p.Integrate(1, {3, 3}).NodeCounter, 3);
  EXPECT_EQ(p.watch.gridPoints.back(), std::pair(2, 2));
}

TEST(Posterior, SixOtherParametersAreSummedOver) {
  FunctionRun run({1, 1, 1, 1, 1, 1, 1}, {1, 1, 1, 1, 1, 1, 1}, [](Array1<double>&) { return 0; });
  Integrated p(run);
  const Posterior posterior = p.Integrate(4, {3, 3});
  EXPECT_EQ(posterior.NodeCounter, 3 * std::pow(3, 6));
  EXPECT_DOUBLE_EQ(posterior.points.ProfileF(1), -std::log(std::pow(3, 6)));
}

TEST(Posterior, OfNormalVariablesTheMarginalIsNormalAndTheirCorrelationIsSeen) {
  // Two correlated normal variables: the marginal knows nothing of the other.
  constexpr double r = 0.6;
  FunctionRun run({0, 0}, {0.2, 0.2}, [](Array1<double>& v) {
    return 0.5 * (Square(v(1)) - 2 * r * v(1) * v(2) + Square(v(2))) / (1 - r * r);
  });
  Integrated p(run);
  const Posterior posterior = p.Integrate(1, {61, 71});
  const ConfidenceSeries s = MakeConfidenceSeries(posterior.points);
  EXPECT_NEAR(s.EstimatedSE, 1, 2e-6);
  for (int i = 1; i <= 61; ++i) EXPECT_NEAR(s.ProfileF(i), 0.5 * Square(s.ProfileX(i)), i > 5 && i < 57 ? 1e-3 : 0.2);
  EXPECT_NEAR(*DrawBivariate(*posterior.bivariate).correlation, r, 1e-5);
}

TEST(Posterior, OfBinomialCountsWithABetaPriorIsTheExactBetaOnEitherScale) {
  // Beta(3, 7) prior, 7 of 20: the posterior is Beta(10, 20), whether the objective is -ln[L] or -2 ln[L].
  for (const double constant : {1.0, 2.0}) {
    FunctionRun run({0.5}, {0.0098}, [constant](Array1<double>& v) {
      return -constant * (7 * std::log(v(1)) + 13 * std::log(1 - v(1)));
    });
    Priors priors = test::PriorsOf(1, "B", 0.3, std::sqrt(0.3 * 0.7 / 11));
    run.state.flags.BayesOn = true;
    run.state.flags.ObjectiveConstant = constant;
    run.objective.priorTerm = [&](const Array1<double>& v) { return EvaluatePrior(v, constant, priors); };
    Integrated p(run);
    const ConfidenceSeries s = MakeConfidenceSeries(p.Integrate(1, {101, 0}).points);
    EXPECT_NEAR(s.ModeValue, 9.0 / 28, 0.0049);
    EXPECT_NEAR(s.ExpectedValue, 10.0 / 30, 1e-7);
    EXPECT_NEAR(s.EstimatedSE, std::sqrt(10.0 * 20 / (30.0 * 30 * 31)), 1e-7);
  }
}

TEST(Posterior, ThePriorCountsOnceInTheReferenceAndInTheJointDensity) {
  FunctionRun run({0.5, 1}, {0.1, 0.5}, [](Array1<double>& v) { return 2 * (v(1) + v(2)); });
  run.state.flags.ObjectiveConstant = 2;
  run.state.flags.BayesOn = true;
  run.objective.priorTerm = [](const Array1<double>& v) { return 2 * (3 * v(1)); };
  Integrated p(run);
  const Posterior posterior = p.Integrate(1, {3, 3});
  EXPECT_DOUBLE_EQ(p.ReferenceF, 0.5 + 1 + 1.5);
  EXPECT_DOUBLE_EQ(posterior.bivariate->f(2, 3), std::exp(-0.4)) << "at 0.6 beside 0.5";
}

TEST(Posterior, OfTwoProportionsOfOneSampleTheMarginalIsTheExactBeta) {
  // 7, 13 and 10 of 30: the marginal of the first is Beta(8, 24), of a Dirichlet distribution (8, 14, 11) with the
  // flat prior: Beta(8, 14 + 11).
  FunctionRun run({0.5, 0.49}, {0.01, 0.01}, [](Array1<double>& v) {
    const double third = 1 - v(1) - v(2);
    if (!(third > 0) || !(v(1) > 0) || !(v(2) > 0)) return 1e5;
    return -(7 * std::log(v(1)) + 13 * std::log(v(2)) + 10 * std::log(third));
  });
  Integrated p(run);
  const ConfidenceSeries s = MakeConfidenceSeries(p.Integrate(1, {99, 99}).points);
  EXPECT_NEAR(s.ExpectedValue, 8.0 / 33, 1e-7);
  EXPECT_NEAR(s.EstimatedSE, std::sqrt(8.0 * 25 / (33.0 * 33 * 34)), 1e-7);
}

TEST(Posterior, OfABetaBinomialPairSumsToTheExactMarginal) {
  // Counts 3 of 8 and 6 of 9 of a beta-binomial of mean m and precision s, on a grid of both: the sum over s is known
  // node by node.
  const auto betaBinomial = [](double k, double n, double a, double b) {
    return std::lgamma(k + a) + std::lgamma(n - k + b) - std::lgamma(n + a + b) - std::lgamma(a) - std::lgamma(b) +
           std::lgamma(a + b);
  };
  const auto negLnL = [&](double m, double s) {
    return -(betaBinomial(3, 8, m * s, (1 - m) * s) + betaBinomial(6, 9, m * s, (1 - m) * s));
  };
  FunctionRun run({0.5, 4}, {0.05, 0.25}, [&](Array1<double>& v) { return 2 * negLnL(v(1), v(2)); });
  run.state.flags.ObjectiveConstant = 2;
  Integrated p(run);
  const Posterior posterior = p.Integrate(1, {15, 15});
  EXPECT_DOUBLE_EQ(p.ReferenceF, negLnL(0.5, 4));
  for (int i = 1; i <= 15; ++i) {
    double sum = 0;
    for (int j = 1; j <= 15; ++j) sum += std::exp(negLnL(0.5, 4) - negLnL(0.5 - (8 - i) * 0.05, 4 - (8 - j) * 0.25));
    EXPECT_NEAR(posterior.points.ProfileF(i), -std::log(sum), 1e-12);
  }
}

TEST(Posterior, ASumOfSquaresSetsItsConstantAtEachNode) {
  FunctionRun run({2}, {1}, [](Array1<double>& v) { return v(1); });
  run.state.flags.NOBS = 9;
  Integrated p(run);
  EXPECT_THAT(Vector(p.Integrate(1, {3, 0}).points.ProfileF), ElementsAre(0.25, 1, 2.25));
}

}  // namespace
}  // namespace merlane
