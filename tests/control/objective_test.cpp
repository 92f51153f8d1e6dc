#include "control/objective.h"

#include "support/function_run.h"

namespace merlane::test {
namespace {

/// Two parameters, the second fused to the first; the model doubles its first.
struct ObjectiveTest : testing::Test {
  FunctionRun run{{1, 5}, [](Array1<double>& x) {
                    x(1) *= 2;
                    return x(1) + x(2);
                  }};
  Array1<double> vector{3, 5};

  ObjectiveTest() {
    run.state.algorithm.Fuse = {"A", "A"};
    run.Pack();
    run.objective.priorTerm = [](const Array1<double>& x) { return 100 * x(1); };
  }
};

TEST_F(ObjectiveTest, TheModelIsCalledWithTheFusesApplied) {
  EXPECT_EQ(run.objective(vector, 7), 6 + 3);
  EXPECT_EQ(run.calls[0].X, (Array1<double>{3, 3}));
  EXPECT_EQ(run.calls[0].NF, 7);
}

TEST_F(ObjectiveTest, PriorsAddTheTermOfTheVectorThatTheModelLeft) {
  run.state.flags.BayesOn = true;
  EXPECT_EQ(run.objective(vector, 1), 6 + 3 + 100 * 6);
}

TEST_F(ObjectiveTest, ACallOfTheModelAloneAppliesNeitherFusesNorPriors) {
  run.state.flags.BayesOn = true;
  vector = {3, 4};
  EXPECT_EQ(run.objective.Call(vector, 1), 6 + 4);
}

TEST_F(ObjectiveTest, CodeMinusTwoLeavesWhatTheModelLeaves) {
  run.state.Gradient = {7, 8};
  EXPECT_EQ(run.objective.Call(vector, -2, 5), 5);
  EXPECT_EQ(run.state.Gradient, (Array1<double>{7, 8}));
}

TEST_F(ObjectiveTest, AnOutcomeThatIsKnownIsTakenWithoutTheModel) {
  run.objective.known = [](ModelCall& call) {
    if (call.NF != 4) return false;
    call.F = 20;
    return true;
  };
  EXPECT_EQ(run.objective(vector, 4), 20);
  EXPECT_TRUE(run.calls.empty());
  EXPECT_EQ(run.objective(vector, 5), 6 + 3);
}

}  // namespace
}  // namespace merlane::test
