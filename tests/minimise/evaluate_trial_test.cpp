#include "minimise/evaluate_trial.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/arithmetic.h"
#include "base/arithmetic_failure.h"
#include "support/function_run.h"
#include "support/textbook.h"

namespace merlane::test {
namespace {

using testing::ElementsAre;

TEST(EvaluateTrial, PutsTheFreeParametersInTheirPlaces) {
  Array1<double> seen;
  FunctionRun run({1, 2, 3, 4}, [&](Array1<double>& x) {
    seen = x;
    return 5.0;
  });
  run.state.algorithm.Step(1) = run.state.algorithm.Step(3) = 0;
  run.Pack();
  TrialEvaluator evaluator(run.state, run.objective);
  EXPECT_EQ(evaluator.EvaluateTrial({20, 40}), 5.0);
  EXPECT_EQ(seen, (Array1<double>{1, 20, 3, 40}));
  EXPECT_EQ(run.state.algorithm.Value, (Array1<double>{1, 2, 3, 4}));
}

TEST(EvaluateTrial, BeginsAtValueWhateverTheModelMadeOfTheTrialBefore) {
  FunctionRun run({-2, 5}, {0, 0.1}, [](Array1<double>& x) {
    x(1) *= 2;
    return 0.0;
  });
  run.Pack();
  TrialEvaluator evaluator(run.state, run.objective);
  evaluator.EvaluateTrial({6});
  evaluator.EvaluateTrial({7});
  EXPECT_EQ(run.calls[1].X, (Array1<double>{-2, 7}));
}

TEST(EvaluateTrial, GivesFollowersTheValueOfTheirLeader) {
  Array1<double> seen;
  FunctionRun run({1, 2, 3}, [&](Array1<double>& x) {
    seen = x;
    return 0.0;
  });
  run.state.algorithm.Fuse(1) = run.state.algorithm.Fuse(3) = "A";
  run.Pack();
  EXPECT_EQ(run.state.free.NFREE, 2);
  TrialEvaluator evaluator(run.state, run.objective);
  evaluator.EvaluateTrial({7, 8});
  EXPECT_EQ(seen, (Array1<double>{7, 8, 7}));
}

TEST(EvaluateTrial, PassesTheRunningCountToTheModel) {
  FunctionRun run({1}, [](Array1<double>&) { return 0.0; });
  run.Pack();
  TrialEvaluator evaluator(run.state, run.objective);
  evaluator.EvaluateTrial({1});
  evaluator.EvaluateTrial({2});
  Array1<double> whole{3};
  evaluator.Evaluate(whole, 1);
  evaluator.EvaluateTrial({4});
  EXPECT_THAT(run.Codes(), ElementsAre(1, 2, 1, 3));
  EXPECT_EQ(evaluator.NF, 3);
  EXPECT_EQ(evaluator.calls, 4);
}

TEST(EvaluateTrial, AddsThePriorOfTheVectorThatTheModelLeft) {
  FunctionRun run({1}, [](Array1<double>& x) {
    x(1) = std::fabs(x(1));
    return 100.0;
  });
  run.state.flags.BayesOn = true;
  run.objective.priorTerm = [](const Array1<double>& x) { return x(1); };
  run.Pack();
  TrialEvaluator evaluator(run.state, run.objective);
  EXPECT_EQ(evaluator.EvaluateTrial({-3}), 103);
}

TEST(EvaluateTrial, APointThatCannotBeEvaluatedCountsAsOneE30) {
  FunctionRun run({1}, [](Array1<double>& x) { return Divide(1, x(1)); });
  run.Pack();
  TrialEvaluator evaluator(run.state, run.objective);
  EXPECT_EQ(evaluator.EvaluateTrial({0}), 1E+30);
  EXPECT_EQ(evaluator.EvaluateTrial({HUGE_VAL}), 1E+30);
  EXPECT_EQ(evaluator.EvaluateTrial({4}), 0.25);
  Array1<double> whole{0};
  EXPECT_EQ(evaluator.Evaluate(whole, 1), 1E+30);
  EXPECT_EQ(evaluator.unevaluated, 3);
  EXPECT_EQ(evaluator.NF, 3);
}

TEST(EvaluateTrial, AStartingPointThatCannotBeEvaluatedIsTold) {
  FunctionRun run({1}, [](Array1<double>& x) { return Divide(1, x(1)); });
  run.Pack();
  TrialEvaluator evaluator(run.state, run.objective);
  EXPECT_EQ(evaluator.EvaluateStart({4}), 0.25);
  try {
    evaluator.EvaluateStart({0});
    FAIL();
  } catch (const ArithmeticFailure& failure) {
    EXPECT_STREQ(failure.what(), "the starting point cannot be evaluated: division by zero");
  }
  EXPECT_EQ(evaluator.unevaluated, 0);
}

TEST(EvaluateTrial, APointThatCannotBeEvaluatedIsWorseThanAnyStart) {
  FunctionRun run({1}, [](Array1<double>& x) { return 1E+39 * Divide(1, x(1)); });
  run.Pack();
  TrialEvaluator evaluator(run.state, run.objective);
  const double start = evaluator.EvaluateStart({4});
  EXPECT_GT(evaluator.EvaluateTrial({0}), start);
  TrialEvaluator resumed(run.state, run.objective);
  resumed.GoOnFrom(start);
  EXPECT_GT(resumed.EvaluateTrial({0}), start);
}

TEST(EvaluateTrial, AFailureThatNoOtherPointCanMendIsPassedOn) {
  FunctionRun run({1}, [](Array1<double>&) -> double { throw RuntimeFailure("the file is gone"); });
  run.Pack();
  TrialEvaluator evaluator(run.state, run.objective);
  EXPECT_THROW(evaluator.EvaluateTrial({0}), RuntimeFailure);
}

}  // namespace
}  // namespace merlane::test
