#include "support/textbook.h"
#include "support/function_run.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "minimise/marquardt.h"
#include "minimise/simplex.h"

// The minimisers know nothing of birds: here they run on textbook functions. The counts and values were computed by an
// implementation in another language by another author.

namespace merlane::test {
namespace {

struct Problem {
  const char* name;
  Function function;
  std::vector<double> start;
};

const Problem quadratic{"Quadratic", Quadratic, {0, 0}};
const Problem rosenbrock{"Rosenbrock", Rosenbrock, {-1.2, 1}};
const Problem powell{"PowellSingular", PowellSingular, {3, -1, 0, 1}};
const Problem wood{"Wood", Wood, {-3, -1, -3, -1}};

struct SimplexCase {
  Problem problem;
  double Tolerance;
  int Iterations, NF, Restarts;
  double F;
};

class SimplexOnTextbook : public testing::TestWithParam<SimplexCase> {};

TEST_P(SimplexOnTextbook, TakesTheSameSteps) {
  const SimplexCase& c = GetParam();
  FunctionRun run(c.problem.start, c.problem.function);
  run.state.algorithm.Tolerance = c.Tolerance;
  run.Pack();
  SimplexState simplex;
  SimplexWatch nobody;
  const SimplexResult result = MinimiseSimplex(run.state, run.objective, simplex, nobody);
  EXPECT_EQ(result.ending, SimplexEnding::Minimum);
  EXPECT_EQ(result.Iterations, c.Iterations);
  EXPECT_EQ(result.NF, c.NF);
  EXPECT_EQ(result.calls, c.NF);
  EXPECT_EQ(result.Restarts, c.Restarts);
  EXPECT_NEAR(result.F, c.F, 1e-12 * std::fabs(c.F));
}

INSTANTIATE_TEST_SUITE_P(, SimplexOnTextbook,
                         testing::Values(SimplexCase{quadratic, 1e-4, 26, 57, 0, 5.000026877615224},
                                         SimplexCase{quadratic, 1e-6, 33, 70, 0, 5.000000722699107},
                                         SimplexCase{quadratic, 1e-10, 48, 99, 0, 5.000000000110604},
                                         SimplexCase{rosenbrock, 1e-4, 78, 145, 0, 6.958010389912404e-05},
                                         SimplexCase{rosenbrock, 1e-6, 86, 161, 0, 4.7426640341979186e-07},
                                         SimplexCase{rosenbrock, 1e-10, 99, 185, 0, 1.4087013594008312e-10},
                                         SimplexCase{powell, 1e-4, 107, 188, 0, 8.508548670341875e-05},
                                         SimplexCase{powell, 1e-6, 132, 233, 0, 5.603208441294044e-07},
                                         SimplexCase{powell, 1e-10, 178, 312, 0, 4.7056227473355246e-11},
                                         SimplexCase{wood, 1e-4, 160, 281, 0, 0.0001388369226554537},
                                         SimplexCase{wood, 1e-6, 189, 329, 0, 2.296233480818114e-07},
                                         SimplexCase{wood, 1e-10, 220, 387, 0, 8.668207389161132e-11}),
                         [](const auto& which) {
                           return std::string(which.param.problem.name) + "_" + std::to_string(which.index);
                         });

struct MarquardtCase {
  Problem problem;
  double Tolerance;
  int Iterations, NF, verifications;
  double F;
  MarquardtEnding ending = MarquardtEnding::Minimum;
  double relative = 1e-12;  // to which F is known
};

class MarquardtOnTextbook : public testing::TestWithParam<MarquardtCase> {};

TEST_P(MarquardtOnTextbook, TakesTheSameSteps) {
  const MarquardtCase& c = GetParam();
  FunctionRun run(c.problem.start, c.problem.function);
  run.state.algorithm.Tolerance = c.Tolerance;
  run.Pack();
  MarquardtWatch nobody;
  const MarquardtResult result = MinimiseMarquardt(run.state, run.objective, DerivativeMode::Numerical, nobody);
  EXPECT_EQ(result.ending, c.ending);
  EXPECT_EQ(result.Iterations, c.Iterations);
  EXPECT_EQ(result.NF, c.NF);
  EXPECT_EQ(result.verifications, c.verifications);
  EXPECT_NEAR(result.F, c.F, c.relative * std::fabs(c.F));
}

INSTANTIATE_TEST_SUITE_P(
    , MarquardtOnTextbook,
    testing::Values(MarquardtCase{quadratic, 1e-4, 2, 15, 1, 5.00000000000013},
                    MarquardtCase{quadratic, 1e-6, 3, 22, 1, 5.0}, MarquardtCase{quadratic, 1e-10, 3, 22, 1, 5.0},
                    MarquardtCase{rosenbrock, 1e-4, 2, 21, 1, 4.7282715373949875},
                    MarquardtCase{rosenbrock, 1e-6, 27, 208, 1, 3.995092019256723e-08},
                    MarquardtCase{rosenbrock, 1e-10, 28, 231, 1, 3.995092019256723e-08},
                    MarquardtCase{powell, 1e-4, 10, 211, 1, 1.4642399498327826e-05},
                    MarquardtCase{powell, 1e-6, 13, 274, 1, 1.128529908702094e-07},
                    MarquardtCase{powell, 1e-10, 19, 400, 1, 6.70370225257518e-12},
                    MarquardtCase{powell, -1e-6, 51, 1117, 1, 3.65e-34, MarquardtEnding::FrustratedByTrials, 0.002},
                    MarquardtCase{wood, 1e-4, 8, 181, 1, 7.876509921108065},
                    MarquardtCase{wood, 1e-6, 8, 181, 1, 7.876509921108065},
                    MarquardtCase{wood, 1e-10, 81, 1787, 1, 1.0785129706053101e-09}),
    [](const auto& which) { return std::string(which.param.problem.name) + "_" + std::to_string(which.index); });

// Two more problems of the collection, whose minima are published.

struct Found {
  double F;
  Array1<double> at;
};

Found BySimplex(FunctionRun& run) {
  run.Pack();
  SimplexState simplex;
  SimplexWatch nobody;
  const SimplexResult result = MinimiseSimplex(run.state, run.objective, simplex, nobody);
  EXPECT_EQ(result.ending, SimplexEnding::Minimum);
  return {result.F, run.state.algorithm.Value};
}

Found ByMarquardt(FunctionRun& run) {
  run.Pack();
  MarquardtWatch nobody;
  const MarquardtResult result = MinimiseMarquardt(run.state, run.objective, DerivativeMode::Numerical, nobody);
  EXPECT_EQ(result.ending, MarquardtEnding::Minimum);
  return {result.F, run.state.algorithm.Value};
}

class PublishedMinimum : public testing::TestWithParam<Found (*)(FunctionRun&)> {
 protected:
  static Found Minimise(const Function& function, const std::vector<double>& start) {
    FunctionRun run(start, function);
    run.state.algorithm.Tolerance = 1e-12;
    return GetParam()(run);
  }
};

TEST_P(PublishedMinimum, HelicalValleyEndsAtOneZeroZero) {
  const Found found = Minimise(HelicalValley, {-1, 0, 0});
  EXPECT_LT(found.F, 1e-9);
  EXPECT_NEAR(found.at(1), 1, 1e-5);
  EXPECT_NEAR(found.at(2), 0, 1e-5);
  EXPECT_NEAR(found.at(3), 0, 1e-5);
}

TEST_P(PublishedMinimum, BoxInThreeDimensionsEndsWhereItsResidualsVanish) {
  const Found found = Minimise(Box3, {0, 10, 20});
  EXPECT_LT(found.F, 1e-9);
  // All exact fits: (1, 10, 1), the same exchanged, (10, 1, -1), and the line x1 = x2, x3 = 0.
  const bool straight =
      std::fabs(found.at(1) - 1) < 1e-2 && std::fabs(found.at(2) - 10) < 1e-1 && std::fabs(found.at(3) - 1) < 1e-2;
  const bool exchanged =
      std::fabs(found.at(1) - 10) < 1e-1 && std::fabs(found.at(2) - 1) < 1e-2 && std::fabs(found.at(3) + 1) < 1e-2;
  const bool line = std::fabs(found.at(1) - found.at(2)) < 1e-2 && std::fabs(found.at(3)) < 1e-2;
  EXPECT_TRUE(straight || exchanged || line) << found.at(1) << " " << found.at(2) << " " << found.at(3);
}

INSTANTIATE_TEST_SUITE_P(, PublishedMinimum, testing::Values(BySimplex, ByMarquardt),
                         [](const auto& which) { return which.index == 0 ? "Simplex" : "Marquardt"; });

}  // namespace
}  // namespace merlane::test
