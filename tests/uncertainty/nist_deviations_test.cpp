#include <gtest/gtest.h>

#include "support/function_run.h"
#include "support/nist.h"
#include "uncertainty/covariance.h"

namespace merlane::test {
namespace {

/// Largest relative difference of the smallest grid's standard errors from `expected`.
double Difference(const Covariances& c, const std::vector<double>& expected) {
  double largest = 0;
  for (int a = 1; a <= c.CovCount; ++a) {
    const double deviation = expected[static_cast<std::size_t>(a - 1)];
    largest = std::max(largest, std::fabs(c.grid(3).standardErrors(a) / deviation - 1));
  }
  return largest;
}

struct DeviationCase {
  const char* name;
  double ofHessian;    // relative difference allowed from the deviations of the full Hessian
  double ofCertified;  // and from the certified ones, which leave the curvature of the model out
};

class NistDeviations : public testing::TestWithParam<DeviationCase> {};

// At the certified estimates, with steps of a hundredth of the deviations: the smallest grid takes a ten-thousandth.
TEST_P(NistDeviations, AreThoseOfTheFullHessian) {
  const NistProblem problem(GetParam().name);
  FunctionRun run(problem.certified, problem);
  run.state.algorithm.AlgName = "nist.alg";
  for (int i = 1; i <= run.state.algorithm.NPAR; ++i)
    run.state.algorithm.Step(i) = 0.01 * problem.deviations[static_cast<std::size_t>(i - 1)];
  Covariances c = PrepareCovariances({}, run.state, run.objective);
  const double freedom = static_cast<double>(problem.y.size()) - c.CovCount;
  run.state.flags.ObjectiveConstant = 2 * c.CovF0 / freedom;
  CovarianceWatch watch;
  CalculateCovariances(c, false, run.state, run.objective, watch);
  ASSERT_EQ(c.grid(3).ending, GridEnding::Calculated);
  EXPECT_LT(Difference(c, problem.hessianDeviations), GetParam().ofHessian);
  EXPECT_LT(Difference(c, problem.deviations), GetParam().ofCertified);
}

INSTANTIATE_TEST_SUITE_P(, NistDeviations,
                         testing::Values(DeviationCase{"misra1a", 1e-4, 0.0015}, DeviationCase{"chwirut2", 1e-4, 0.024},
                                         DeviationCase{"lanczos3", 0.005, 0.02}, DeviationCase{"mgh09", 1e-4, 0.22},
                                         DeviationCase{"thurber", 0.005, 0.21}, DeviationCase{"eckerle4", 1e-4, 0.015}),
                         [](const auto& which) { return which.param.name; });

}  // namespace
}  // namespace merlane::test
