#include "support/nist.h"
#include "support/function_run.h"

#include <gtest/gtest.h>

#include "minimise/marquardt.h"
#include "minimise/simplex.h"

// Nonlinear regressions with certified answers: how many digits of the worst parameter each minimiser reaches from both
// published starting points. Steps are a tenth of the starting values. docs/validation.md shows the same figures; a row
// with 0 digits is an honest failure, and is held to fail as it is told there.

namespace merlane::test {
namespace {

struct NistCase {
  const char* name;
  int start;
  double Tolerance;
  double simplexDigits, marquardtDigits;  // to one decimal; 0: another place
};

/// Agreement of the worst parameter with its certified value, in decimal digits.
double Digits(const NistProblem& problem, const Array1<double>& b) {
  double worst = 11;  // those that are certified
  for (int i = 1; i <= b.Size(); ++i) {
    const double certified = problem.certified[static_cast<std::size_t>(i - 1)];
    worst = std::min(worst, -std::log10(std::fabs(b(i) - certified) / std::fabs(certified) + 1e-11));
  }
  return std::max(worst, 0.0);
}

class Nist : public testing::TestWithParam<NistCase> {
 protected:
  Nist()
      : problem(GetParam().name),
        start(problem.starts[static_cast<std::size_t>(GetParam().start - 1)]),
        run(start, problem) {
    AlgorithmData& a = run.state.algorithm;
    a.Tolerance = GetParam().Tolerance;
    a.MaxCalls = 20000;
    for (int i = 1; i <= a.NPAR; ++i) a.Step(i) = 0.1 * a.Value(i);
    run.Pack();
  }

  void ExpectDigits(double expected) {
    const double digits = Digits(problem, run.state.algorithm.Value);
    if (expected > 0)
      EXPECT_GE(digits, expected - 0.5);
    else
      EXPECT_LT(digits, 0.5) << "better than the documents tell";
  }

  NistProblem problem;
  std::vector<double> start;
  FunctionRun run;
};

TEST_P(Nist, TheDataGiveTheCertifiedSumOfSquares) {
  Array1<double> b(static_cast<int>(problem.certified.size()));
  std::copy(problem.certified.begin(), problem.certified.end(), b.begin());
  EXPECT_NEAR(problem(b), problem.residualSumOfSquares, 1e-10 * problem.residualSumOfSquares);
}

TEST_P(Nist, Simplex) {
  SimplexState simplex;
  SimplexWatch nobody;
  MinimiseSimplex(run.state, run.objective, simplex, nobody);
  ExpectDigits(GetParam().simplexDigits);
}

TEST_P(Nist, Marquardt) {
  MarquardtWatch nobody;
  MinimiseMarquardt(run.state, run.objective, DerivativeMode::Numerical, nobody);
  ExpectDigits(GetParam().marquardtDigits);
}

INSTANTIATE_TEST_SUITE_P(
    , Nist,
    testing::Values(NistCase{"misra1a", 1, -1e-12, 7.4, 7.4}, NistCase{"misra1a", 2, -1e-12, 7.9, 7.5},
                    NistCase{"chwirut2", 1, -1e-12, 6.1, 4.3}, NistCase{"chwirut2", 2, -1e-12, 6.1, 4.3},
                    NistCase{"lanczos3", 1, -1e-9, 0, 0}, NistCase{"lanczos3", 2, -1e-9, 4.8, 0},
                    NistCase{"mgh09", 1, -1e-12, 7.1, 0}, NistCase{"mgh09", 2, -1e-12, 6.4, 5.1},
                    NistCase{"thurber", 1, -1e-12, 6.9, 3.1}, NistCase{"thurber", 2, -1e-12, 6.8, 3.7},
                    NistCase{"eckerle4", 1, -1e-12, 7.2, 5.6}, NistCase{"eckerle4", 2, -1e-12, 7.3, 5.3}),
    [](const auto& which) { return std::string(which.param.name) + "_start_" + std::to_string(which.param.start); });

}  // namespace
}  // namespace merlane::test
