#include "control/basis.h"

#include <gtest/gtest.h>

#include "support/function_run.h"

namespace merlane::test {
namespace {

/// A run of four parameters: the first two are fused, the last is not free.
struct BasisTest : ::testing::Test {
  FunctionRun run{{1, 1, 3, 4}, {0.1, 0, 0.1, 0}, [](Array1<double>&) { return 0.0; }};
  RunState& state = run.state;
  AlgorithmData& a = run.state.algorithm;
  std::string priors;

  BasisTest() {
    a.Fuse = {"A", "A", "~~", "~~"};
    run.objective.priorsInForce = [this] { return priors; };
  }

  Basis Now() const { return run.objective.Present(); }
  /// The parts of the run that `change` has changed, in words.
  template <class Change>
  std::string ChangesBy(Change change) {
    const Basis before = Now();
    change();
    return ChangesBetween(before, Now());
  }
};

TEST_F(BasisTest, NothingHasChangedWhileNothingHas) {
  EXPECT_TRUE(Now().SameEstimates(Now()));
  EXPECT_TRUE(Now().SameSearch(Now()));
  EXPECT_EQ(ChangesBy([] {}), "");
}

TEST_F(BasisTest, EachReadingOfDataIsAnother) {
  const Basis before = Now();
  Array1<double> vector = a.Value;
  run.objective.Call(vector, 1);
  EXPECT_TRUE(before.SameEstimates(Now())) << "an evaluation is no reading";
  run.objective.Call(vector, 0);
  EXPECT_FALSE(before.SameEstimates(Now()));
  EXPECT_EQ(ChangesBetween(before, Now()), "other data have been read");
}

TEST_F(BasisTest, AReadingBehindARunThatWasPutBackIsAnotherThanTheOneInBetween) {
  const RunState kept = state;
  run.objective.Call(a.Value, 0);
  const Basis between = Now();
  state = kept;
  run.objective.Call(a.Value, 0);
  EXPECT_FALSE(between.SameEstimates(Now()));
}

TEST_F(BasisTest, AValueOrAFuseOrAFreeParameterThatChangesIsTold) {
  EXPECT_EQ(ChangesBy([&] { a.Value(4) = 5; }), "parameter values have been changed") << "also of what is not free";
  EXPECT_EQ(ChangesBy([&] { a.Fuse(3) = "A"; }), "fuses have been changed, parameter values have been changed");
  EXPECT_EQ(ChangesBy([&] { a.Step(4) = 1; }), "other parameters are free");
}

TEST_F(BasisTest, AGroupThatIsCalledOtherwiseIsTheSame) {
  EXPECT_EQ(ChangesBy([&] { a.Fuse(1) = a.Fuse(2) = "B"; }), "");
}

TEST_F(BasisTest, AFusedParameterHasTheValueOfItsGroup) {
  EXPECT_EQ(ChangesBy([&] { a.Value(2) = 7; }), "") << "it follows the first at the next evaluation";
}

TEST_F(BasisTest, AStepThatStaysOneChangesTheSearchAlone) {
  const Basis before = Now();
  a.Step(3) = 0.2;
  EXPECT_TRUE(before.SameEstimates(Now()));
  EXPECT_FALSE(before.SameSearch(Now()));
  EXPECT_EQ(ChangesBetween(before, Now()), "step sizes have been changed");
}

TEST_F(BasisTest, AMinimisationThatLeftEverythingAsItWasIsAnotherSearch) {
  const Basis before = Now();
  run.objective.BeginSearch();
  EXPECT_TRUE(before.SameEstimates(Now()));
  EXPECT_FALSE(before.SameSearch(Now()));
  EXPECT_EQ(ChangesBetween(before, Now()), "another minimization has been run");
}

TEST_F(BasisTest, PriorsCountByTheirNumbersAndByTheConstantWhileTheyAreOn) {
  priors = "1: N 0.5 0.1";
  EXPECT_EQ(ChangesBy([&] { priors = "1: N 0.5 0.2"; }), "") << "switched off";
  EXPECT_EQ(ChangesBy([&] { state.flags.BayesOn = true; }), "the priors have been changed");
  EXPECT_EQ(ChangesBy([&] { priors = "1: N 0.5 0.3"; }), "the priors have been changed");
  EXPECT_EQ(ChangesBy([&] { state.flags.ObjectiveConstant = 3; }),
            "the priors have been changed, another constant has been entered");
}

TEST_F(BasisTest, TheConstantOfASumOfSquaresIsNoneThatWasEntered) {
  EXPECT_EQ(ChangesBy([&] { state.flags.ObjectiveConstant = 3; }), "another constant has been entered");
  EXPECT_TRUE(Now().SameEstimates(Now()));
  state.flags.NOBS = 10;
  EXPECT_EQ(ChangesBy([&] { state.flags.ObjectiveConstant = 4; }), "");
}

TEST_F(BasisTest, ANameAloneIsNoChange) {
  EXPECT_EQ(ChangesBy([&] { a.AlgName = "folder/another.alg"; }), "");
}

}  // namespace
}  // namespace merlane::test
