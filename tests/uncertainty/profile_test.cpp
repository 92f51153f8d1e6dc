#include "uncertainty/profile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

#include "base/runtime_failure.h"
#include "minimise/marquardt.h"
#include "minimise/simplex.h"
#include "support/function_run.h"

namespace merlane {
namespace {

using test::FunctionRun;
using test::Vector;
using ::testing::ElementsAre;

/// The profile of a parameter of a function, minimised as the program does it.
struct Profiled {
  explicit Profiled(FunctionRun& r) : run(r) {}

  EvaluatedPoints Profile(std::int16_t parameter, std::int16_t points) {
    run.Pack();
    run.state.profile.ProfileOn = true;
    const PinnedParameter pinned(run.state, parameter);
    return EvaluateProfile(pinned, points, run.state, run.objective, minimise, watch);
  }

  bool BySimplex() {
    simplex.Forget();
    SimplexWatch nobody;
    simplexCalls.push_back(MinimiseSimplex(run.state, run.objective, simplex, nobody).calls);
    startedFrom.push_back(run.state.free.FreeValue(1));
    return true;
  }
  bool ByMarquardt() {
    MarquardtWatch nobody;
    startedFrom.push_back(run.state.free.FreeValue(1));
    MinimiseMarquardt(run.state, run.objective, DerivativeMode::Numerical, nobody);
    return true;
  }

  /// Quits at a point, or in its minimiser.
  struct Watch : ProfileWatch {
    void OnPoint(int p) override { point = p; }
    bool Quits() override { return point == quitsAt; }
    void OnPointDone(int p) override { done.push_back(p); }
    void OnBadConstant() override { ++badConstants; }
    int point = 0;
    int quitsAt = 0;
    int badConstants = 0;
    std::vector<int> done;
  };

  FunctionRun& run;
  SimplexState simplex;
  std::vector<int> simplexCalls;
  std::vector<double> startedFrom;
  Watch watch;
  ProfileMinimiser minimise = [this] { return BySimplex(); };
};

double Squared(double x) { return x * x; }

/// x fixed, the best y is x / 2, and there the function is 3 x^2 / 4.
double Valley(Array1<double>& v) { return v(1) * v(1) - v(1) * v(2) + v(2) * v(2); }

TEST(PinnedParameter, IsGivenValuesAroundItsOwn) {
  FunctionRun run({10}, {0.25}, Valley);
  const PinnedParameter pinned(run.state, 1);
  EXPECT_EQ(pinned.ValueAt(1, 5), 9.5);
  EXPECT_EQ(pinned.ValueAt(3, 5), 10);
  EXPECT_EQ(pinned.ValueAt(5, 5), 10.5);
}

TEST(Profile, WithOnlyTheProfiledParameterFreeMinimisesNothingAndTakesOneCallAPoint) {
  FunctionRun run({2, 7}, {0.5, 0}, [](Array1<double>& v) { return 10 + v(1) + v(2); });
  Profiled p(run);
  p.minimise = [] {
    ADD_FAILURE() << "nothing is free";
    return true;
  };
  const EvaluatedPoints points = p.Profile(1, 5);
  EXPECT_THAT(Vector(points.ProfileX), ElementsAre(1, 1.5, 2, 2.5, 3));
  EXPECT_THAT(Vector(points.ProfileF), ElementsAre(18, 18.5, 19, 19.5, 20));
  EXPECT_THAT(run.Codes(), ElementsAre(1, 1, 1, 1, 1));
  EXPECT_THAT(p.watch.done, ElementsAre(1, 2, 3, 4, 5));
}

TEST(Profile, MinimisesTheOthersAtEachPoint) {
  FunctionRun run({0, 0}, Valley);
  run.state.algorithm.Tolerance = 1e-10;
  Profiled p(run);
  const EvaluatedPoints points = p.Profile(1, 21);
  for (int i = 1; i <= 21; ++i)
    EXPECT_NEAR(points.ProfileF(i), 0.75 * Squared(points.ProfileX(i)), 1e-8) << points.ProfileX(i);
  EXPECT_NEAR(run.state.algorithm.Value(2), 0.5, 1e-4) << "the last point's minimum stays";
}

TEST(Profile, TheParameterHasItsValueAndStepAgainAndCountsAsFree) {
  FunctionRun run({0.25, 0}, Valley);
  Profiled p(run);
  p.Profile(1, 5);
  EXPECT_EQ(run.state.algorithm.Value(1), 0.25);
  EXPECT_EQ(run.state.algorithm.Step(1), 0.1);
  EXPECT_EQ(run.state.free.NFREE, 2);
}

TEST(Profile, ANegativeStepGivesAscendingPoints) {
  FunctionRun run({2}, {-0.5}, [](Array1<double>& v) { return Squared(v(1) - 2.5); });
  Profiled p(run);
  const EvaluatedPoints points = p.Profile(1, 5);
  EXPECT_THAT(Vector(points.ProfileX), ElementsAre(1, 1.5, 2, 2.5, 3));
  EXPECT_THAT(Vector(points.ProfileF), ElementsAre(2.25, 1, 0.25, 0, 0.25));
  EXPECT_EQ(points.IMin, 4);
  EXPECT_EQ(points.H, 0.5);
  EXPECT_EQ(run.calls.front().X(1), 3) << "they were evaluated the other way round";
}

TEST(Profile, ASimplexStartsEachPointFromThePackedValuesAndMarquardtGoesOn) {
  FunctionRun run({0, 0.3}, Valley);
  Profiled bySimplex(run);
  bySimplex.Profile(1, 5);
  EXPECT_THAT(bySimplex.startedFrom, ElementsAre(0.3, 0.3, 0.3, 0.3, 0.3));

  FunctionRun again({0, 0.3}, Valley);
  Profiled byMarquardt(again);
  byMarquardt.minimise = [&] { return byMarquardt.ByMarquardt(); };
  byMarquardt.Profile(1, 5);
  EXPECT_EQ(byMarquardt.startedFrom[0], 0.3);
  EXPECT_NEAR(byMarquardt.startedFrom[1], -0.1, 1e-3) << "the minimum at x = -0.2";
  EXPECT_NEAR(byMarquardt.startedFrom[2], -0.05, 1e-3);
}

TEST(Profile, WhatIsKeptIsOneMoreCallAtTheMinimumWithCodeOne) {
  FunctionRun run({0, 0}, Valley);
  Profiled p(run);
  p.Profile(1, 3);
  const std::vector<std::int32_t> codes = run.Codes();
  int made = 0;
  for (const int calls : p.simplexCalls) {
    made += calls;
    EXPECT_EQ(codes[static_cast<std::size_t>(made)], 1);
    ++made;
  }
  EXPECT_EQ(made, static_cast<int>(codes.size()));
}

TEST(Profile, WhatTheModelRewritesStaysInValue) {
  FunctionRun run({1, 0.5}, {0.25, 0}, [](Array1<double>& v) {
    v(2) = -v(2);
    return v(1);
  });
  Profiled p(run);
  p.Profile(1, 3);
  EXPECT_EQ(run.state.algorithm.Value(2), -0.5) << "turned three times";
}

TEST(Profile, QuittingKeepsThePointsUpToTheOneBeforeTheLastThatWasDone) {
  for (const int quitsAt : {1, 2, 3, 4, 5, 6, 7}) {
    FunctionRun run({2}, {0.5}, [](Array1<double>& v) { return v(1); });
    Profiled p(run);
    p.watch.quitsAt = quitsAt;
    const EvaluatedPoints points = p.Profile(1, 7);
    EXPECT_EQ(points.Count(), std::max(0, quitsAt - 2)) << quitsAt;
    EXPECT_EQ(run.calls.size(), static_cast<std::size_t>(quitsAt));
    EXPECT_EQ(run.state.algorithm.Value(1), 2);
    EXPECT_EQ(run.state.algorithm.Step(1), 0.5);
  }
}

TEST(Profile, QuittingInsideAMinimiserMakesNoCallMore) {
  FunctionRun run({0, 0}, Valley);
  Profiled p(run);
  p.minimise = [&] { return p.watch.point < 6; };
  const EvaluatedPoints points = p.Profile(1, 9);
  EXPECT_EQ(points.Count(), 4);
  EXPECT_EQ(run.calls.size(), 5U) << "one behind each point that was done";
}

TEST(Profile, TheLowestPointMayNotBeAmongThoseKept) {
  FunctionRun run({2}, {0.5}, [](Array1<double>& v) { return -v(1); });
  Profiled p(run);
  p.watch.quitsAt = 6;
  EXPECT_FALSE(p.Profile(1, 9).HasMinimum());
}

TEST(Profile, TheObjectiveAndThePriorAreDividedByTheConstantTogether) {
  FunctionRun run({2}, {1}, [](Array1<double>&) { return 12; });
  run.state.flags.ObjectiveConstant = 2;
  run.state.flags.BayesOn = true;
  run.objective.priorTerm = [](const Array1<double>& v) { return v(1); };
  Profiled p(run);
  EXPECT_THAT(Vector(p.Profile(1, 3).ProfileF), ElementsAre(6.5, 7, 7.5));
}

TEST(Profile, OfASumOfSquaresThePriorIsScaledByTheConstantThatTheObjectiveAloneSets) {
  FunctionRun run({2}, {1}, [](Array1<double>& v) { return v(1); });
  run.state.flags.NOBS = 9;
  run.state.flags.BayesOn = true;
  run.objective.priorTerm = [&](const Array1<double>&) { return 5 * run.state.flags.ObjectiveConstant; };
  Profiled p(run);
  EXPECT_THAT(Vector(p.Profile(1, 3).ProfileF), ElementsAre(5.25, 6, 7.25));
}

TEST(Profile, ASumOfSquaresSetsItsConstantAtEachPoint) {
  FunctionRun run({2}, {1}, [](Array1<double>& v) { return v(1); });
  run.state.flags.NOBS = 9;
  Profiled p(run);
  // F / ((9 - 0 - 1) / (2 F)) = F^2 / 4
  EXPECT_THAT(Vector(p.Profile(1, 3).ProfileF), ElementsAre(0.25, 1, 2.25));
  EXPECT_EQ(p.watch.badConstants, 0);
}

TEST(Profile, WithoutADegreeOfFreedomTheConstantIsReported) {
  FunctionRun run({2}, {0.5}, [](Array1<double>& v) { return v(1); });
  run.state.flags.NOBS = 1;
  Profiled p(run);
  EXPECT_THROW(p.Profile(1, 3), RuntimeFailure) << "a constant of 0";
  EXPECT_EQ(p.watch.badConstants, 1);
  EXPECT_EQ(run.state.algorithm.Value(1), 2) << "a failure gives value and step back";
  EXPECT_EQ(run.state.algorithm.Step(1), 0.5);
  EXPECT_EQ(run.state.free.NFREE, 1);
}

TEST(Profile, APointThatCannotBeEvaluatedCountsAsImpossible) {
  FunctionRun run({2}, {0.5}, [](Array1<double>& v) { return v(1) == 2.5 ? std::nan("") : v(1); });
  Profiled p(run);
  EXPECT_EQ(p.Profile(1, 5).ProfileF, (Array1<double>{1, 1.5, 2, UnevaluatedNegLnL, 3}));
  EXPECT_THAT(p.watch.done, ElementsAre(1, 2, 3, 4, 5));
}

TEST(Profile, AnObjectiveThatIsNotFiniteAnywhereIsARuntimeFailure) {
  FunctionRun run({2}, {0.5}, [](Array1<double>&) { return std::nan(""); });
  Profiled p(run);
  EXPECT_THROW(p.Profile(1, 3), RuntimeFailure);
}

TEST(Profile, OfALeaderTheFollowersGoWithIt) {
  FunctionRun run({1, 5, 3}, {0.5, 0, 0}, [](Array1<double>& v) { return v(1) + v(2) + v(3); });
  run.state.algorithm.Fuse(1) = run.state.algorithm.Fuse(3) = "A";
  Profiled p(run);
  EXPECT_THAT(Vector(p.Profile(1, 3).ProfileF), ElementsAre(6, 7, 8));
}

TEST(Profile, OfAFollowerTheMembersBeforeItStayAndThoseBehindGoWithIt) {
  FunctionRun run({1, 1, 1}, {0.1, 0, 0}, [](Array1<double>& v) { return 100 * v(1) + 10 * v(2) + v(3); });
  for (int i = 1; i <= 3; ++i) run.state.algorithm.Fuse(i) = "A";
  run.Pack();
  run.state.algorithm.Step(1) = 0;
  run.state.algorithm.Step(2) = 1;
  run.state.profile.ProfileOn = true;
  Profiled p(run);
  const PinnedParameter pinned(run.state, 2);
  const EvaluatedPoints points = EvaluateProfile(pinned, 3, run.state, run.objective, p.minimise, p.watch);
  EXPECT_THAT(Vector(points.ProfileF), ElementsAre(100, 111, 122));
}

TEST(Profile, OfANormalMeanOfUnknownVarianceIsStudentsT) {
  // Ten measurements: the objective is -2 ln[L], the other parameter the logarithm of the deviation.
  const std::vector<double> data{4.1, 5.2, 4.8, 5.9, 5.1, 4.4, 5.5, 4.9, 5.3, 4.7};
  const double n = static_cast<double>(data.size());
  double mean = 0;
  for (const double x : data) mean += x / n;
  double squares = 0;
  for (const double x : data) squares += Squared(x - mean);
  FunctionRun run({mean, std::log(std::sqrt(squares / n))}, {0.02, 0.05}, [&](Array1<double>& v) {
    double sum = 0;
    for (const double x : data) sum += 2 * v(2) + Squared((x - v(1)) / std::exp(v(2)));
    return sum;
  });
  run.state.algorithm.Tolerance = 1e-12;
  run.state.flags.ObjectiveConstant = 2;
  Profiled p(run);
  const EvaluatedPoints points = p.Profile(1, 301);
  const ConfidenceSeries s = MakeConfidenceSeries(points);
  // exp(-profile) is proportional to (1 + n (m - mean)^2 / SS)^(-n/2): Student's t with n - 1 degrees of freedom, of
  // variance SS / (n (n - 3)).
  for (int i = 1; i <= points.Count(); ++i)
    EXPECT_NEAR(s.ProfileF(i), n / 2 * std::log1p(n * Squared(s.ProfileX(i) - mean) / squares), 1e-9);
  EXPECT_NEAR(s.ModeValue, mean, 1e-12);
  EXPECT_NEAR(s.ExpectedValue, mean, 1e-9);
  EXPECT_NEAR(s.EstimatedSE, std::sqrt(squares / (n * (n - 3))), 1e-5) << "but for the tails beyond 3";
}

TEST(Profile, OfABinomialProportionWithANuisanceIsTheBetaDistribution) {
  // 7 of 20 in one group; the other parameter belongs to a second group and does not matter.
  FunctionRun run({0.5, 0.5}, {0.005, 0.05}, [](Array1<double>& v) {
    const auto binomial = [](double k, double m, double p) { return -2 * (k * std::log(p) + m * std::log(1 - p)); };
    for (int i = 1; i <= 2; ++i) v(i) = std::min(std::max(v(i), 1e-9), 1 - 1e-9);
    return binomial(7, 13, v(1)) + binomial(11, 4, v(2));
  });
  run.state.algorithm.Tolerance = 1e-12;
  run.state.flags.ObjectiveConstant = 2;
  Profiled p(run);
  const ConfidenceSeries s = MakeConfidenceSeries(p.Profile(1, 199));
  EXPECT_NEAR(s.ModeValue, 0.35, 1e-12);
  EXPECT_NEAR(s.ExpectedValue, 8.0 / 22, 1e-8) << "of Beta(8, 14)";
  EXPECT_NEAR(s.EstimatedSE, std::sqrt(8.0 * 14 / (22.0 * 22 * 23)), 1e-8);
}

}  // namespace
}  // namespace merlane
