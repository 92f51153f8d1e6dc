#include "uncertainty/covariance.h"

#include <fmt/format.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

#include "base/runtime_failure.h"
#include "minimise/lu.h"
#include "support/function_run.h"

namespace merlane {
namespace {

using test::FunctionRun;
using ::testing::ElementsAre;

constexpr double RelativeOfGrid[] = {0, 1e-9, 1e-7, 1e-6};

#define EXPECT_RELATIVE(actual, expected, tolerance) EXPECT_NEAR(actual, expected, std::fabs(expected) * (tolerance))

Covariances Calculate(FunctionRun& t, const CovarianceOptions& options = {}, bool optimistic = false,
                      CovarianceWatch&& watch = CovarianceWatch()) {
  Covariances c = PrepareCovariances(options, t.state, t.objective);
  CalculateCovariances(c, optimistic, t.state, t.objective, watch);
  return c;
}

/// Abandons one grid behind one of its calls.
struct Quitter : CovarianceWatch {
  Quitter(int grid, int call) : grid_(grid), call_(call) {}
  void OnGrid(int g) override { g_ = g; }
  void OnCall(int call, int /*calls*/) override { current_ = call; }
  bool AbandonGrid() override { return g_ == grid_ && current_ == call_; }
  int grid_, call_, g_ = 0, current_ = 0;
};

// F = 4 x^2 + 2 x y + 3 y^2 around (1, -2), with a constant parameter between.
double Quadratic(const Array1<double>& v) {
  const double x = v(1) - 1;
  const double y = v(3) + 2;
  return 10 + 4 * x * x + 2 * x * y + 3 * y * y;
}
struct QuadraticRun : FunctionRun {
  QuadraticRun() : FunctionRun({1, 5, -2}, {0.1, 0, 0.2}, Quadratic) {}
};

TEST(Covariance, QuadraticGivesItsInverseHessianOnEveryGrid) {
  QuadraticRun t;
  t.state.flags.ObjectiveConstant = 2;
  const Covariances c = Calculate(t);
  ASSERT_EQ(c.CovCount, 2);
  EXPECT_EQ(c.CovIndex(1), 1);
  EXPECT_EQ(c.CovIndex(2), 3);
  EXPECT_EQ(c.CovF0, 10);
  // H = (8 2; 2 6), its determinant 44; C = 2 H^-1.
  for (int g = 1; g <= 3; ++g) {
    const CovarianceGrid& grid = c.grid(g);
    const double tolerance = RelativeOfGrid[g];
    ASSERT_EQ(grid.ending, GridEnding::Calculated);
    EXPECT_RELATIVE(grid.covariances(1, 1), 12.0 / 44, tolerance);
    EXPECT_RELATIVE(grid.covariances(1, 2), -4.0 / 44, tolerance);
    EXPECT_RELATIVE(grid.covariances(2, 1), -4.0 / 44, tolerance);
    EXPECT_RELATIVE(grid.covariances(2, 2), 16.0 / 44, tolerance);
    EXPECT_RELATIVE(grid.standardErrors(1), std::sqrt(12.0 / 44), tolerance);
    EXPECT_RELATIVE(grid.standardErrors(2), std::sqrt(16.0 / 44), tolerance);
    EXPECT_RELATIVE(grid.determinant, 4.0 / 44, tolerance);
    EXPECT_RELATIVE(grid.productOfVariances, 192.0 / 44 / 44, tolerance);
    EXPECT_RELATIVE(grid.Correlation(1, 2), -4 / std::sqrt(192), tolerance);
    EXPECT_RELATIVE(grid.CorrelationDeterminant(), 1 - 16.0 / 192, tolerance);
  }
}

// The differences of this quartic have a closed form: 802 + 200 h^2, -400 and 200 for steps h and any k.
TEST(Covariance, RosenbrockAtItsMinimum) {
  FunctionRun t({1, 1}, {0.1, 0.2}, [](const Array1<double>& v) {
    const double bend = v(2) - v(1) * v(1);
    const double rest = 1 - v(1);
    return 100 * bend * bend + rest * rest;
  });
  const Covariances c = Calculate(t);
  for (int g = 1; g <= 3; ++g) {
    const double h = 0.1 * c.grid(g).GridFactor;
    const double determinant = (802 + 200 * h * h) * 200 - 160000;
    const double tolerance = 100 * RelativeOfGrid[g];  // the matrix is ill-conditioned
    EXPECT_RELATIVE(c.grid(g).covariances(1, 1), 200 / determinant, tolerance);
    EXPECT_RELATIVE(c.grid(g).covariances(1, 2), 400 / determinant, tolerance);
    EXPECT_RELATIVE(c.grid(g).covariances(2, 2), (802 + 200 * h * h) / determinant, tolerance);
  }
}

TEST(Covariance, NormalRegressionHasItsClosedFormStandardErrors) {
  // -2 ln L of y = a + b x with a known error of 0.5, less a constant.
  const std::vector<double> x = {1, 2, 3, 4, 5, 6, 7, 8};
  const std::vector<double> y = {2.1, 3.9, 6.2, 7.8, 10.1, 12.2, 13.8, 16.1};
  const double sigma = 0.5;
  double n = 0, sx = 0, sxx = 0, sy = 0, sxy = 0;
  for (std::size_t i = 0; i < x.size(); ++i) {
    n += 1;
    sx += x[i];
    sxx += x[i] * x[i];
    sy += y[i];
    sxy += x[i] * y[i];
  }
  const double determinant = n * sxx - sx * sx;
  FunctionRun t({(sxx * sy - sx * sxy) / determinant, (n * sxy - sx * sy) / determinant}, {0.05, 0.01},
                [&](const Array1<double>& v) {
                  double sum = 0;
                  for (std::size_t i = 0; i < x.size(); ++i) {
                    const double residual = (y[i] - v(1) - v(2) * x[i]) / sigma;
                    sum += residual * residual;
                  }
                  return sum;
                });
  t.state.flags.ObjectiveConstant = 2;
  const Covariances c = Calculate(t);
  for (int g = 1; g <= 3; ++g) {
    EXPECT_RELATIVE(c.grid(g).standardErrors(1), sigma * std::sqrt(sxx / determinant), 10 * RelativeOfGrid[g]);
    EXPECT_RELATIVE(c.grid(g).standardErrors(2), sigma * std::sqrt(n / determinant), 10 * RelativeOfGrid[g]);
    EXPECT_RELATIVE(c.grid(g).Correlation(1, 2), -sx / std::sqrt(n * sxx), 10 * RelativeOfGrid[g]);
  }
}

TEST(Covariance, StepMovesOneParameterOnTheDiagonalAndTwoOffIt) {
  QuadraticRun t;
  t.state.algorithm.Step = {0.1, 0, 0.1};
  Calculate(t);
  ASSERT_EQ(t.calls.size(), 1U + 3 * 6);
  EXPECT_EQ(t.calls[0].X, (Array1<double>{1, 5, -2}));
  EXPECT_EQ(t.calls[1].X, (Array1<double>{1 + 0.1, 5, -2}));
  EXPECT_EQ(t.calls[2].X, (Array1<double>{1 - 0.1, 5, -2}));
  EXPECT_EQ(t.calls[3].X, (Array1<double>{1 + 0.1, 5, -2 + 0.1}));
  EXPECT_EQ(t.calls[4].X, (Array1<double>{1 - 0.1, 5, -2 - 0.1}));
  EXPECT_EQ(t.calls[5].X, (Array1<double>{1, 5, -2 + 0.1}));
  EXPECT_EQ(t.calls[6].X, (Array1<double>{1, 5, -2 - 0.1}));
  for (const FunctionRun::Call& call : t.calls) EXPECT_EQ(call.NF, 1);
}

// Where last bits decide, the figures of two computers agree only if the operations have one order.
TEST(Covariance, OperationsHaveTheirOrder) {
  FunctionRun t({0.1, 0.2}, {0.3, 0.7},
                [](const Array1<double>& v) { return 1.1 * v(1) * v(1) + 0.7 * v(1) * v(2) + 0.9 * v(2) * v(2); });
  const Covariances c = Calculate(t);
  for (int g = 1; g <= 3; ++g) {
    // Plus and minus of the pairs (1, 1), (1, 2) and (2, 2).
    double E[6];
    for (std::size_t i = 0; i < 6; ++i) {
      Array1<double> x = t.calls[static_cast<std::size_t>(6 * (g - 1)) + i + 1].X;
      E[i] = t.function(x) - c.CovF0;
    }
    const double f = c.grid(g).GridFactor;
    Matrix1<double> H(2, 2);
    H(1, 1) = (E[1] + E[0]) / ((0.3 * f) * (0.3 * f));
    H(2, 2) = (E[5] + E[4]) / ((0.7 * f) * (0.7 * f));
    H(1, 2) = H(2, 1) = (E[3] + E[2] - E[0] - E[1] - E[4] - E[5]) / (((2 * (f * f)) * 0.3) * 0.7);
    const LUPermutation permutation = LUDecompose(2, H);
    Array1<double> column{1, 0};
    LUBackSubstitute(2, H, permutation, column);
    EXPECT_EQ(c.grid(g).covariances(1, 1), column(1)) << g;
    EXPECT_EQ(c.grid(g).covariances(2, 1), column(2)) << g;
    EXPECT_EQ(c.grid(g).determinant, permutation.sign / H(1, 1) / H(2, 2)) << g;
  }
}

TEST(Covariance, GridsTakeTheFactorsOfTheirOptions) {
  QuadraticRun t;
  CovarianceOptions options;
  options.GridFactor = {2, 0.5, 0.25};
  Calculate(t, options);
  EXPECT_EQ(t.calls[1].X(1), 1 + 0.1 * 2);
  EXPECT_EQ(t.calls[7].X(1), 1 + 0.1 * 0.5);
  EXPECT_EQ(t.calls[13].X(1), 1 + 0.1 * 0.25);
}

TEST(Covariance, MeanAndDeviationAreOverAllCallsOfAGrid) {
  // F = x^2 at 0: both calls give h^2, so the deviation is 0.
  FunctionRun one({0}, {0.5}, [](const Array1<double>& v) { return 7 + v(1) * v(1); });
  const Covariances flat = Calculate(one);
  EXPECT_EQ(flat.grid(1).GridMean, 7.25);
  EXPECT_EQ(flat.grid(1).GridSD, 0);

  // Differences 4 + 2 + 3 with steps of 1: 4 4 9 9 3 3; mean 16/3, variance 106/3 - 256/9.
  QuadraticRun two;
  two.state.algorithm.Step = {1, 0, 1};
  const Covariances c = Calculate(two);
  EXPECT_DOUBLE_EQ(c.grid(1).GridMean, 10 + 16.0 / 3);
  EXPECT_DOUBLE_EQ(c.grid(1).GridSD, std::sqrt(106.0 / 3 - 256.0 / 9));
}

TEST(Covariance, RoundedNegativeVarianceGivesANegativeDeviation) {
  // The differences of both sides are alike, so the variance is rounding alone; some are negative.
  int negative = 0;
  for (int k = 1; k <= 200; ++k) {
    FunctionRun t({0}, {0.1 * k}, [](const Array1<double>& v) { return v(1) * v(1) / 3; });
    negative += Calculate(t).grid(1).GridSD < 0 ? 1 : 0;
    EXPECT_NEAR(Calculate(t).grid(1).GridSD, 0, 1e-6 * k * k);
  }
  // Sums of two equal terms halve exactly, so this needs three and more.
  EXPECT_EQ(negative, 0);
  for (int k = 1; k <= 200; ++k) {
    FunctionRun t({0, 0, 0}, {0.1 * k, 0.1 * k, 0.1 * k}, [](const Array1<double>& v) {
      return std::max({std::fabs(v(1)), std::fabs(v(2)), std::fabs(v(3))}) / 3;  // the same on the whole grid
    });
    const double sd = Calculate(t).grid(1).GridSD;
    negative += sd < 0 ? 1 : 0;
  }
  EXPECT_GT(negative, 0);
}

TEST(Covariance, OptimisticModeCallsTheDiagonalAloneAndCountsTheRestAsBasePoint) {
  QuadraticRun t;
  t.state.algorithm.Step = {1, 0, 1};
  const Covariances c = Calculate(t, {}, true);
  EXPECT_EQ(t.calls.size(), 1U + 3 * 4);
  EXPECT_TRUE(c.OptimisticSE);
  // Differences 4 4 0 0 3 3.
  EXPECT_DOUBLE_EQ(c.grid(1).GridMean, 10 + 14.0 / 6);
  EXPECT_DOUBLE_EQ(c.grid(1).GridSD, std::sqrt(50.0 / 6 - 196.0 / 36));
  EXPECT_DOUBLE_EQ(c.grid(1).standardErrors(1), std::sqrt(1.0 / 8));
  EXPECT_DOUBLE_EQ(c.grid(1).standardErrors(2), std::sqrt(1.0 / 6));
  EXPECT_EQ(c.grid(1).covariances(1, 2), 0);
  EXPECT_DOUBLE_EQ(c.grid(1).determinant, 1.0 / 48);
}

TEST(Covariance, AbandonedGridIsMinusOneAndTheOthersGoOn) {
  QuadraticRun t;
  const Covariances c = Calculate(t, {}, false, Quitter(2, 3));
  EXPECT_EQ(t.calls.size(), 1U + 6 + 3 + 6);
  const CovarianceGrid& quit = c.grid(2);
  EXPECT_EQ(quit.ending, GridEnding::Abandoned);
  EXPECT_EQ(quit.GridMean, -1);
  EXPECT_EQ(quit.GridSD, -1);
  for (int a = 1; a <= 2; ++a) {
    EXPECT_EQ(quit.standardErrors(a), -1);
    for (int b = 1; b <= 2; ++b) {
      EXPECT_EQ(quit.covariances(a, b), -1);
      EXPECT_EQ(quit.Correlation(a, b), -1);
    }
  }
  EXPECT_EQ(quit.determinant, -1);
  EXPECT_EQ(quit.productOfVariances, -1);
  EXPECT_EQ(quit.CorrelationDeterminant(), -1);
  EXPECT_EQ(c.grid(1).ending, GridEnding::Calculated);
  EXPECT_EQ(c.grid(3).ending, GridEnding::Calculated);
}

TEST(Covariance, GridThatIsNotPositiveDefiniteIsMinusOneAndTheOthersGoOn) {
  // Falls off again beyond 1: the largest grid sees a maximum in parameter 2.
  FunctionRun t({0, 0}, {0.1, 2}, [](const Array1<double>& v) {
    const double y = v(2) * v(2);
    return v(1) * v(1) + y - y * y;
  });
  const Covariances c = Calculate(t);
  EXPECT_EQ(c.grid(1).ending, GridEnding::NotPositiveDefinite);
  EXPECT_EQ(c.grid(1).failedAt, 2);
  EXPECT_EQ(c.grid(1).standardErrors(1), -1);
  EXPECT_EQ(c.grid(1).determinant, -1);
  EXPECT_NE(c.grid(1).GridMean, -1);
  EXPECT_EQ(c.grid(2).ending, GridEnding::Calculated);
  EXPECT_EQ(c.grid(3).ending, GridEnding::Calculated);
}

TEST(Covariance, DeadParameterIsToldByItsNumber) {
  FunctionRun t({1, 2, 3}, {0.1, 0, 0.1}, [](const Array1<double>& v) { return v(1) * v(1); });
  EXPECT_EQ(Calculate(t).grid(1).failedAt, 3);
}

TEST(Covariance, SaddleFails) {
  FunctionRun t({0, 0}, {0.1, 0.1}, [](const Array1<double>& v) { return v(1) * v(2); });
  EXPECT_EQ(Calculate(t).grid(3).failedAt, 1);
}

TEST(Covariance, FollowersOfAFuseMoveWithTheirLeaderAndTakeNoPart) {
  FunctionRun t({1, 1, 4}, {0.1, 0.3, 0.1},
                [](const Array1<double>& v) { return v(1) * v(1) + 2 * v(2) * v(2) + (v(3) - 4) * (v(3) - 4); });
  t.state.algorithm.Fuse = {"A", "A", Unfused};
  BuildFuseGroups(t.state);
  const Covariances c = Calculate(t);
  EXPECT_EQ(c.CovCount, 2);
  EXPECT_EQ(c.CovIndex(2), 3);
  EXPECT_EQ(t.calls[1].X, (Array1<double>{1.1, 1.1, 4}));
  EXPECT_RELATIVE(c.grid(1).standardErrors(1), std::sqrt(1.0 / 6), 1e-9);
}

TEST(Covariance, BasePointIsRewrittenByTheModelAndValueIsNot) {
  FunctionRun t({-3, 1}, {0.1, 0.1}, [](Array1<double>& v) {
    v(1) = std::fabs(v(1));
    return v(1) * v(1) + v(2) * v(2);
  });
  const Covariances c = Calculate(t);
  EXPECT_EQ(c.CovBaseValue(1), 3);
  EXPECT_EQ(t.state.algorithm.Value(1), -3);
  EXPECT_EQ(t.calls[1].X(1), 3.1);
}

TEST(Covariance, LeavesNFREEAtTheNumberOfParametersTakingPart) {
  QuadraticRun t;
  t.state.free.NFREE = 17;
  Calculate(t);
  EXPECT_EQ(t.state.free.NFREE, 2);
}

// The prior is scaled with the constant, which is 0 until it is entered, and that happens behind the base point.
TEST(Covariance, FirstBasePointOfARunLacksThePrior) {
  QuadraticRun t;
  t.state.flags.BayesOn = true;
  t.state.flags.ObjectiveConstant = 0;
  t.objective.priorTerm = [&](const Array1<double>&) { return 3 * t.state.flags.ObjectiveConstant; };
  Covariances c = PrepareCovariances({}, t.state, t.objective);
  EXPECT_EQ(c.CovF0, 10);
  t.state.flags.ObjectiveConstant = 2;
  CovarianceWatch watch;
  CalculateCovariances(c, false, t.state, t.objective, watch);
  EXPECT_NEAR(c.grid(3).GridMean, 16, 0.001);
  EXPECT_EQ(PrepareCovariances({}, t.state, t.objective).CovF0, 16);
}

TEST(Covariance, PriorAddsItsCurvature) {
  QuadraticRun t;
  t.state.flags.BayesOn = true;
  t.objective.priorTerm = [](const Array1<double>& v) { return 2 * (v(1) - 1) * (v(1) - 1); };
  EXPECT_RELATIVE(Calculate(t, {}, true).grid(1).standardErrors(1), std::sqrt(1.0 / 12), 1e-9);
}

CovarianceOptions Analytical() {
  CovarianceOptions options;
  options.mode = CovarianceMode::Analytical;
  return options;
}

TEST(Covariance, MissingAnalyticalDerivativesFailAtTheFirstParameter) {
  QuadraticRun t;
  const Covariances c = Calculate(t, Analytical());
  for (int g = 1; g <= 3; ++g) {
    EXPECT_EQ(c.grid(g).ending, GridEnding::NotPositiveDefinite);
    EXPECT_EQ(c.grid(g).failedAt, 1);
    EXPECT_EQ(c.grid(g).standardErrors(2), -1);
  }
}

TEST(Covariance, AnalyticalDerivativesGiveThreeTimesTheSame) {
  QuadraticRun t;
  t.derivatives = [](ModelCall& call) {
    ASSERT_EQ(call.NF, -2);
    ASSERT_EQ(call.G.Size(), 3);
    ASSERT_EQ(call.H.Rows(), 3);
    call.H(1, 1) = 8;
    call.H(1, 3) = call.H(3, 1) = 2;
    call.H(3, 3) = 6;
  };
  const Covariances c = Calculate(t, Analytical());
  EXPECT_EQ(t.calls.size(), 1U + 3);
  for (int g = 1; g <= 3; ++g) {
    EXPECT_EQ(c.grid(g).GridFactor, 0);
    EXPECT_EQ(c.grid(g).GridMean, -1);
    EXPECT_DOUBLE_EQ(c.grid(g).standardErrors(1), std::sqrt(6.0 / 44));
    EXPECT_EQ(c.grid(g).covariances(1, 2), c.grid(1).covariances(1, 2));
    EXPECT_EQ(c.grid(g).determinant, c.grid(1).determinant);
  }
}

TEST(Covariance, OptimisticChoiceMeansNothingToAnalyticalDerivatives) {
  QuadraticRun t;
  t.derivatives = [](ModelCall& call) {
    call.H(1, 1) = 8;
    call.H(1, 3) = call.H(3, 1) = 2;
    call.H(3, 3) = 6;
  };
  EXPECT_DOUBLE_EQ(Calculate(t, Analytical(), true).grid(1).standardErrors(1), std::sqrt(6.0 / 44));
}

TEST(Covariance, VarianceThatUnderflowsToZeroHasNoStandardError) {
  FunctionRun t({0}, {1}, [](const Array1<double>&) { return 0.0; });
  t.state.flags.ObjectiveConstant = 1e-20;
  t.derivatives = [](ModelCall& call) { call.H(1, 1) = 1e307; };
  const Covariances c = Calculate(t, Analytical());
  EXPECT_EQ(c.grid(1).covariances(1, 1), 0);
  EXPECT_EQ(c.grid(1).standardErrors(1), -1);
  EXPECT_EQ(c.grid(1).CorrelationDeterminant(), -1);
}

TEST(Covariance, NoParameterTakingPartIsAFailure) {
  QuadraticRun t;
  t.state.algorithm.Step = {0, 0, 0};
  EXPECT_THROW(Calculate(t), RuntimeFailure);
}

TEST(Covariance, ObjectiveThatOverflowsIsAFailure) {
  FunctionRun t({0}, {1}, [](const Array1<double>& v) { return v(1) == 0 ? 0 : HUGE_VAL; });
  EXPECT_THROW(Calculate(t), RuntimeFailure);
}

TEST(Covariance, StepThatUnderflowsIsAFailure) {
  FunctionRun t({0}, {1e-200}, [](const Array1<double>& v) { return v(1) * v(1); });
  EXPECT_THROW(Calculate(t), RuntimeFailure);
}

TEST(Covariance, CorrelationOfAZeroProductIsMinusOne) {
  CovarianceGrid grid;
  grid.standardErrors = {0, 2};
  grid.covariances.Dimension(2, 2, 5);
  EXPECT_EQ(grid.Correlation(1, 2), -1);
}

/// Writes down what it is told.
struct Recorder : CovarianceWatch {
  void OnGrid(int g) override { told.push_back(fmt::format("grid {}", g)); }
  void OnCalled(int g, int call, int calls) override { told.push_back(fmt::format("{}: {} of {}", g, call, calls)); }
  void OnSummary(int g, double mean, double sd) override { told.push_back(fmt::format("{}: {} {}", g, mean, sd)); }
  void OnNotPositiveDefinite(int parameter) override { told.push_back(fmt::format("failed {}", parameter)); }
  void OnInverting(int g) override { told.push_back(fmt::format("inverting {}", g)); }
  void OnDeterminant(double determinant) override { told.push_back(fmt::format("determinant {}", determinant)); }
  void Turn() override { ++turns; }
  std::vector<std::string> told;
  int turns = 0;
};

TEST(Covariance, TellsItsCourse) {
  FunctionRun t({0}, {1}, [](const Array1<double>& v) { return 8 + 2 * v(1) * v(1); });
  t.state.flags.ObjectiveConstant = 2;
  CovarianceOptions options;
  options.GridFactor = {1, 0.5, 0.25};
  Covariances c = PrepareCovariances(options, t.state, t.objective);
  Recorder watch;
  CalculateCovariances(c, false, t.state, t.objective, watch);
  EXPECT_THAT(watch.told,
              ElementsAre("grid 1", "1: 1 of 2", "1: 2 of 2", "1: 5 0", "inverting 1", "determinant 0.5",  //
                          "grid 2", "2: 1 of 2", "2: 2 of 2", "2: 4.25 0", "inverting 2", "determinant 0.5", "grid 3",
                          "3: 1 of 2", "3: 2 of 2", "3: 4.0625 0", "inverting 3", "determinant 0.5"));
  EXPECT_GT(watch.turns, 0);
}

}  // namespace
}  // namespace merlane
