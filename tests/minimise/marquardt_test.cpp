#include "minimise/marquardt.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/arithmetic_failure.h"
#include "support/function_run.h"
#include "support/textbook.h"

namespace merlane::test {
namespace {

/// Writes down what a run tells.
class MarquardtRecorder : public MarquardtWatch {
 public:
  std::vector<double> lambdas;            // at each pass
  std::vector<std::int16_t> trialCounts;  // at each pass
  std::vector<double> accepted;           // FTrial of accepted trials
  std::vector<double> secondDerivatives;  // the first of those shown, as each trial is accepted
  std::vector<int> axialImprovements;
  int rejectedConvergences = 0;
  int interruptAtPass = 0;
  MarquardtInterrupt answer = MarquardtInterrupt::QuitAfterStep;
  std::optional<MarquardtProgress> atEnd;

  void OnPass(const MarquardtProgress& now) override {
    lambdas.push_back(now.Lambda);
    trialCounts.push_back(now.TrialCount);
  }
  MarquardtInterrupt Interrupt() override {
    return static_cast<int>(lambdas.size()) == interruptAtPass ? answer : MarquardtInterrupt::None;
  }
  void OnAccepted(const MarquardtProgress& now) override {
    accepted.push_back(now.FTrial);
    secondDerivatives.push_back(now.HessianShown(1, 1));
  }
  void OnAxialImprovement(int parameter) override { axialImprovements.push_back(parameter); }
  void OnRejectedConvergence() override { ++rejectedConvergences; }
  void OnEnd(MarquardtEnding, const MarquardtProgress& now) override { atEnd = now; }
};

MarquardtResult Minimise(FunctionRun& run, MarquardtWatch& watch, DerivativeMode mode = DerivativeMode::Numerical) {
  run.Pack();
  return MinimiseMarquardt(run.state, run.objective, mode, watch);
}

/// One parameter at 1 whose objective follows a script instead of a formula: 10 at the start; 0.5 more on either side,
/// so that derivatives can be had; then the trials from a list, the last for ever; and one value for all axial calls.
class ScriptedTrials {
 public:
  ScriptedTrials(std::vector<double> trials, double axial)
      : run({1.0}, [this, trials = std::move(trials), axial](Array1<double>& x) {
          const std::int32_t code = run.calls.back().NF;
          if (code == 1) return run.calls.size() == 1 ? current = 10.0 : axial;
          const double base = run.state.algorithm.Value(1);
          if (x(1) == base + base * 0.001 || x(1) == base - base * 0.001) return current + (x(1) > base ? 0.5 : 0.4);
          const double F = trials[std::min(trialsMade, trials.size() - 1)];
          ++trialsMade;
          if (F <= current) current = F;
          return F;
        }) {
    run.state.algorithm.Tolerance = 1e-3;
  }

  double current = 0;
  std::size_t trialsMade = 0;
  FunctionRun run;
  MarquardtRecorder watch;
};

TEST(MarquardtTrial, AValueEqualToTheBestIsAcceptedAndCountsAndPassesTheAbsoluteTest) {
  ScriptedTrials t({10.0}, 11.0);
  const MarquardtResult result = Minimise(t.run, t.watch);
  EXPECT_EQ(result.ending, MarquardtEnding::Minimum);
  EXPECT_EQ(result.Iterations, 1);
  EXPECT_EQ(result.verifications, 1);
  EXPECT_THAT(t.watch.accepted, testing::ElementsAre(10.0));
}

TEST(MarquardtTrial, ARejectionMultipliesTheDampingByTenAndAnAcceptanceDividesIt) {
  ScriptedTrials t({12, 12, 9, 8, 8}, 11.0);
  Minimise(t.run, t.watch);
  // Lambda as it stands when a pass begins: none yet; the first trial's; twice rejected; accepted; accepted.
  EXPECT_THAT(t.watch.lambdas, testing::ElementsAre(0, 0.001, 0.001 * 10, 0.001 * 10 * 10, 0.001 * 10 * 10 * 0.1,
                                                    0.001 * 10 * 10 * 0.1 * 0.1));
  EXPECT_THAT(t.watch.trialCounts, testing::ElementsAre(0, 1, 2, 3, 1, 1));
}

TEST(MarquardtTrial, DampingBeginsAnewBehindARejectedVerification) {
  ScriptedTrials t({12, 10}, 5.0);
  Minimise(t.run, t.watch);
  ASSERT_GT(t.watch.lambdas.size(), 4u);
  EXPECT_EQ(t.watch.lambdas[2], 0.01);
  EXPECT_EQ(t.watch.lambdas[3], 0.001);
  EXPECT_EQ(t.watch.rejectedConvergences, 1);
}

TEST(MarquardtTrial, ARejectionLeavesTheDerivativesToBeShownAsTheyWere) {
  ScriptedTrials t({12, 9, 9}, 11.0);
  Minimise(t.run, t.watch);
  EXPECT_EQ(t.watch.secondDerivatives[0], ((10.4 - 10) + (10.5 - 10)) / (0.001 * 0.001));
}

TEST(MarquardtFrustration, LambdaPassesItsLimitAtTrial24WhenNoStepWasAcceptedBefore) {
  ScriptedTrials t({20.0}, 11.0);
  const MarquardtResult result = Minimise(t.run, t.watch);
  EXPECT_EQ(result.ending, MarquardtEnding::FrustratedByLambda);
  EXPECT_EQ(t.watch.atEnd->TrialCount, 24);
  EXPECT_GT(t.watch.atEnd->Lambda, 1E+20);
  EXPECT_EQ(result.verifications, 0);
  EXPECT_EQ(result.F, 10);
  EXPECT_EQ(t.run.state.algorithm.Value(1), 1) << "rejections never leave the current point";
}

TEST(MarquardtFrustration, LambdaPassesItsLimitAtTrial25AfterOneAcceptedStep) {
  ScriptedTrials t({9.0, 20.0}, 11.0);
  const MarquardtResult result = Minimise(t.run, t.watch);
  EXPECT_EQ(result.ending, MarquardtEnding::FrustratedByLambda);
  EXPECT_EQ(t.watch.atEnd->TrialCount, 25);
  EXPECT_EQ(result.verifications, 0);
}

TEST(MarquardtFrustration, TwentyFiveRejectionsAreNoSuccessEvenWhenTheAxialSearchFindsNothing) {
  ScriptedTrials t({9.0, 8.0, 20.0}, 11.0);
  const MarquardtResult result = Minimise(t.run, t.watch);
  EXPECT_EQ(result.ending, MarquardtEnding::FrustratedByTrials);
  EXPECT_EQ(t.watch.atEnd->Lambda, 1E+20) << "which is not beyond the limit";
  EXPECT_EQ(result.verifications, 1);
  EXPECT_EQ(result.Iterations, 2);
  EXPECT_EQ(result.F, 8);
}

TEST(MarquardtFrustration, AtTheFifthVerificationTheImprovementStandsInValueAlone) {
  // Each trial equals the best, which passes the test; each verification improves on it.
  double best = 100;
  FunctionRun* that = nullptr;
  FunctionRun run({1.0}, [&](Array1<double>& x) {
    const std::int32_t code = that->calls.back().NF;
    const double base = that->state.algorithm.Value(1);
    if (code == 1 && that->calls.size() > 1) return x(1) > base ? best -= 1 : best + 50;
    return x(1) == base + base * 0.001 || x(1) == base - base * 0.001 ? best + 1 : best;
  });
  that = &run;
  MarquardtRecorder watch;
  const MarquardtResult result = Minimise(run, watch);
  EXPECT_EQ(result.ending, MarquardtEnding::FrustratedByVerifications);
  EXPECT_EQ(result.verifications, 5);
  EXPECT_EQ(watch.rejectedConvergences, 4);
  EXPECT_EQ(result.F, 95);
  EXPECT_DOUBLE_EQ(run.state.algorithm.Value(1), 1 + 5 * 0.01);
  EXPECT_DOUBLE_EQ(run.state.free.FreeValue(1), 1 + 4 * 0.01);
}

TEST(MarquardtFrustration, TheFifthVerificationMayFollowRejections) {
  // Two trials are accepted, 25 rejected, and the verification improves on the best; this over and over.
  double best = 100;
  int trials = 0;
  FunctionRun* that = nullptr;
  FunctionRun run({1.0}, [&](Array1<double>& x) {
    const double base = that->state.algorithm.Value(1);
    if (that->calls.size() == 1) return best;
    if (that->calls.back().NF == 1) return x(1) > base ? best -= 1 : best + 50;
    if (x(1) == base + base * 0.001 || x(1) == base - base * 0.001) return best + (x(1) > base ? 0.5 : 0.4);
    return trials++ % 27 < 2 ? best -= 1 : 1000.0;
  });
  that = &run;
  MarquardtRecorder watch;
  const MarquardtResult result = Minimise(run, watch);
  EXPECT_EQ(result.ending, MarquardtEnding::FrustratedByVerifications);
  EXPECT_EQ(result.verifications, 5);
  EXPECT_EQ(result.Iterations, 10);
  EXPECT_EQ(watch.rejectedConvergences, 4);
  EXPECT_EQ(result.F, 100 - 10 - 5);
}

TEST(MarquardtFrustration, InABootstrapVerificationMayBeRepeatedPracticallyWithoutLimit) {
  double best = 1000;
  int verified = 0;
  FunctionRun* that = nullptr;
  FunctionRun run({1.0}, [&](Array1<double>& x) {
    const std::int32_t code = that->calls.back().NF;
    const double base = that->state.algorithm.Value(1);
    if (code == 1 && that->calls.size() > 1) return x(1) > base && ++verified <= 40 ? best -= 1 : best + 50;
    return x(1) == base + base * 0.001 || x(1) == base - base * 0.001 ? best + 1 : best;
  });
  that = &run;
  run.state.flags.BootstrapMode = true;
  MarquardtRecorder watch;
  const MarquardtResult result = Minimise(run, watch);
  EXPECT_EQ(result.ending, MarquardtEnding::Minimum);
  EXPECT_EQ(result.verifications, 41);
}

TEST(MarquardtConvergence, WithAToleranceOfZeroNeitherTestCanPass) {
  FunctionRun run({-1.2, 1}, Rosenbrock);
  run.state.algorithm.Tolerance = 0;
  MarquardtRecorder watch;
  const MarquardtResult result = Minimise(run, watch);
  EXPECT_NE(result.ending, MarquardtEnding::Minimum);
  EXPECT_EQ(result.verifications, 0);
  FunctionRun limited({-1.2, 1}, Rosenbrock);
  limited.state.algorithm.Tolerance = 0;
  limited.state.algorithm.MaxCalls = 3;
  EXPECT_EQ(Minimise(limited, watch).ending, MarquardtEnding::Stopped);
}

TEST(MarquardtConvergence, TheRelativeTestAdmitsEqualityTheAbsoluteOneDoesNot) {
  // From 8 to 7: a change of 1, an eighth of the value before.
  const auto converged = [](double Tolerance) {
    ScriptedTrials t({8, 7, 7, 7}, 100.0);
    t.run.state.algorithm.Tolerance = Tolerance;
    t.run.state.algorithm.MaxCalls = 2;
    return Minimise(t.run, t.watch).ending == MarquardtEnding::Minimum;
  };
  EXPECT_TRUE(converged(-0.125));
  EXPECT_FALSE(converged(std::nextafter(-0.125, 0)));
  EXPECT_FALSE(converged(1));
  EXPECT_TRUE(converged(std::nextafter(1, 2)));
}

TEST(MarquardtConvergence, ABestValueOfZeroEndsTheRunUnderARelativeToleranceAlone) {
  const auto ending = [](double Tolerance) {
    ScriptedTrials t({0.0, -1.0}, 100.0);
    t.run.state.algorithm.Tolerance = Tolerance;
    t.run.state.algorithm.MaxCalls = 5;
    return Minimise(t.run, t.watch).ending;
  };
  EXPECT_EQ(ending(-1e-4), MarquardtEnding::ZeroValue);
  EXPECT_EQ(ending(1e-4), MarquardtEnding::Minimum);
  EXPECT_EQ(ending(0), MarquardtEnding::Stopped);
}

TEST(MarquardtConvergence, FromABestValueOfZeroAnyWayDownIsAnImprovement) {
  // An accepted 0, trials above it, and the axial search behind the rejections finds something below.
  ScriptedTrials t({5, 0, 1}, -1.0);
  t.run.state.algorithm.Tolerance = -1e-3;
  Minimise(t.run, t.watch);
  EXPECT_GT(t.watch.axialImprovements.size(), 0u);
}

TEST(MarquardtLimit, IterationsAreComparedForEqualityBehindTheConvergenceTest) {
  ScriptedTrials stopped({8, 7, 6}, 100.0);
  stopped.run.state.algorithm.MaxCalls = 2;
  const MarquardtResult result = Minimise(stopped.run, stopped.watch);
  EXPECT_EQ(result.ending, MarquardtEnding::Stopped);
  EXPECT_EQ(result.Iterations, 2);
  EXPECT_EQ(result.FBest, 8) << "left at the older value";
  EXPECT_EQ(result.FTrial, 7);
  EXPECT_EQ(result.F, 7) << "the objective of the point in Value";

  ScriptedTrials converged({10}, 100.0);
  converged.run.state.algorithm.MaxCalls = 1;
  EXPECT_EQ(Minimise(converged.run, converged.watch).ending, MarquardtEnding::Minimum);

  ScriptedTrials never({8, 7, 6, 6}, 100.0);
  never.run.state.algorithm.MaxCalls = 0;
  EXPECT_EQ(Minimise(never.run, never.watch).ending, MarquardtEnding::Minimum) << "0 never stops";
}

TEST(MarquardtInterrupts, QuittingTakesEffectAtTheNextAcceptedStep) {
  ScriptedTrials t({12, 12, 9, 8, 7}, 100.0);
  t.watch.interruptAtPass = 2;
  const MarquardtResult result = Minimise(t.run, t.watch);
  EXPECT_EQ(result.ending, MarquardtEnding::Stopped);
  EXPECT_EQ(result.Iterations, 1);
  EXPECT_EQ(result.F, 9);
}

TEST(MarquardtInterrupts, QuittingDoesNotSpoilAMinimum) {
  ScriptedTrials t({10}, 100.0);
  t.watch.interruptAtPass = 1;
  EXPECT_EQ(Minimise(t.run, t.watch).ending, MarquardtEnding::Minimum);
}

TEST(MarquardtInterrupts, QuittingEndsTheRunAtARejectedVerification) {
  ScriptedTrials accepted({10}, 5.0);
  accepted.watch.interruptAtPass = 1;
  EXPECT_EQ(Minimise(accepted.run, accepted.watch).ending, MarquardtEnding::Interrupted);

  ScriptedTrials trials({9.0, 8.0, 20.0}, 5.0);
  trials.watch.interruptAtPass = 20;
  const MarquardtResult result = Minimise(trials.run, trials.watch);
  EXPECT_EQ(result.ending, MarquardtEnding::InterruptedInTrials);
  EXPECT_EQ(result.F, 5) << "the improvement is kept";
}

TEST(MarquardtInterrupts, LeavingEndsTheRunAtOnce) {
  ScriptedTrials t({9, 8, 7, 6}, 100.0);
  t.watch.interruptAtPass = 3;
  t.watch.answer = MarquardtInterrupt::LeaveRun;
  const MarquardtResult result = Minimise(t.run, t.watch);
  EXPECT_EQ(result.ending, MarquardtEnding::Interrupted);
  EXPECT_EQ(result.Iterations, 1);
  EXPECT_EQ(result.F, 9);
}

TEST(MarquardtDerivatives, AParameterAtExactlyZeroIsMovedByAnAbsoluteThousandth) {
  std::vector<Array1<double>> points;
  FunctionRun run({0, 5}, [&](Array1<double>& x) {
    points.push_back(x);
    return Square(x(1) - 1) + Square(x(2) - 4) + 1;
  });
  MarquardtRecorder watch;
  Minimise(run, watch);
  EXPECT_EQ(points[1], (Array1<double>{0.001, 5}));
  EXPECT_EQ(points[2], (Array1<double>{-0.001, 5}));
  EXPECT_EQ(points[3], (Array1<double>{0.001, 5 + 5 * 0.001}));
  EXPECT_EQ(points[4], (Array1<double>{-0.001, 5 - 5 * 0.001}));
  EXPECT_EQ(points[5], (Array1<double>{0, 5 + 5 * 0.001}));
  EXPECT_EQ(points[6], (Array1<double>{0, 5 - 5 * 0.001}));
}

// As a profile leaves it: an improvement that ended in frustration stands in Value alone.
TEST(MarquardtDerivatives, AreTakenAtFreeValueThoughTheRunBeginsAtValue) {
  FunctionRun run({1}, [](Array1<double>& x) { return Square(x(1) - 3) + 1; });
  run.Pack();
  run.state.free.FreeValue(1) = 2;
  MarquardtRecorder watch;
  MinimiseMarquardt(run.state, run.objective, DerivativeMode::Numerical, watch);
  EXPECT_EQ(run.calls[0].X(1), 1);
  EXPECT_EQ(run.calls[1].X(1), 2 + 2 * 0.001);
  EXPECT_EQ(run.calls[2].X(1), 2 - 2 * 0.001);
}

TEST(MarquardtDerivatives, AFullSetTakesTheSquareOfTheParametersPlusTheirNumber) {
  FunctionRun run({-3, -1, -3, -1}, Wood);
  run.state.algorithm.MaxCalls = 1;
  run.state.algorithm.Tolerance = 0;
  MarquardtRecorder watch;
  const MarquardtResult result = Minimise(run, watch);
  ASSERT_EQ(result.Iterations, 1);
  EXPECT_EQ(result.NF, 1 + 4 * 5 + watch.trialCounts.back());
}

TEST(MarquardtDerivatives, AreThoseOfTheFunction) {
  FunctionRun run(
      {2, -3}, [](Array1<double>& x) { return 2 * x(1) * x(1) + 3 * x(1) * x(2) + 5 * x(2) * x(2) + 7 * x(1) + 100; });
  run.state.algorithm.MaxCalls = 1;
  run.state.algorithm.Tolerance = 0;
  MarquardtRecorder watch;
  Minimise(run, watch);
  EXPECT_NEAR(watch.atEnd->GradientShown(1), 4 * 2 + 3 * -3 + 7, 1e-8);
  EXPECT_NEAR(watch.atEnd->GradientShown(2), 3 * 2 + 10 * -3, 1e-8);
  EXPECT_NEAR(watch.atEnd->HessianShown(1, 1), 4, 1e-6);
  EXPECT_NEAR(watch.atEnd->HessianShown(1, 2), 3, 1e-6);
  EXPECT_NEAR(watch.atEnd->HessianShown(2, 1), 3, 1e-6);
  EXPECT_NEAR(watch.atEnd->HessianShown(2, 2), 10, 1e-6);
}

TEST(MarquardtAnalytical, AModelWithoutDerivativesEndsTheRun) {
  FunctionRun run({0, 0}, Quadratic);
  MarquardtRecorder watch;
  const MarquardtResult result = Minimise(run, watch, DerivativeMode::Analytical);
  EXPECT_EQ(result.ending, MarquardtEnding::DerivativesMissing);
  EXPECT_EQ(result.NF, 1);
  EXPECT_THAT(run.Codes(), testing::ElementsAre(1, -2));
}

TEST(MarquardtAnalytical, DerivativesBelowTheDiagonalAloneAreMissing) {
  FunctionRun run({0, 0}, Quadratic);
  run.derivatives = [](ModelCall& call) { call.G(1) = call.H(2, 1) = 1; };
  MarquardtRecorder watch;
  EXPECT_EQ(Minimise(run, watch, DerivativeMode::Analytical).ending, MarquardtEnding::DerivativesMissing);
}

TEST(MarquardtAnalytical, DerivativesAreTakenByTheNumbersOfTheParameters) {
  // Parameter 1 is fixed, 2 and 3 move; the model fills the derivatives of all.
  FunctionRun run({1, 0, 0}, {0, 0.1, 0.1},
                  [](Array1<double>& x) { return Square(x(1)) + Square(x(2) - 3) + 4 * Square(x(3) + 1) + 5; });
  run.derivatives = [](ModelCall& call) {
    const Array1<double>& x = call.X;
    call.G = {2 * x(1), 2 * (x(2) - 3), 8 * (x(3) + 1)};
    call.H(1, 1) = call.H(2, 2) = 2;
    call.H(3, 3) = 8;
  };
  run.state.algorithm.Tolerance = 1e-9;
  MarquardtRecorder watch;
  const MarquardtResult result = Minimise(run, watch, DerivativeMode::Analytical);
  EXPECT_EQ(result.ending, MarquardtEnding::Minimum);
  const Array1<double>& Value = run.state.algorithm.Value;
  EXPECT_EQ(Value(1), 1);
  EXPECT_NEAR(Value(2), 3, 1e-4);
  EXPECT_NEAR(Value(3), -1, 1e-4);
  EXPECT_EQ(result.NF, 1 + static_cast<int>(watch.lambdas.size()) - 1) << "derivatives cost no function calls";
}

TEST(MarquardtAnalytical, DerivativesAreAskedForWithFollowersBroughtAlong) {
  FunctionRun run({1, 5, 2}, [](Array1<double>& x) { return Square(x(1) + x(2) - 6) + Square(x(3) - 4) + 1; });
  run.state.algorithm.Fuse(1) = run.state.algorithm.Fuse(2) = "A";
  run.derivatives = [](ModelCall& call) {
    const Array1<double>& x = call.X;
    EXPECT_EQ(x(2), x(1));
    call.G = {4 * (x(1) + x(2) - 6), 0, 2 * (x(3) - 4)};
    call.H(1, 1) = 8;
    call.H(3, 3) = 2;
  };
  MarquardtRecorder watch;
  const MarquardtResult result = Minimise(run, watch, DerivativeMode::Analytical);
  EXPECT_EQ(result.ending, MarquardtEnding::Minimum);
  EXPECT_GT(result.Iterations, 1);
}

TEST(MarquardtMatrix, ADeadParameterMakesARowOfZeros) {
  FunctionRun run({1, 2}, [](Array1<double>& x) { return Square(x(1) - 3) + 1; });
  MarquardtRecorder watch;
  const MarquardtResult result = Minimise(run, watch);
  EXPECT_EQ(result.ending, MarquardtEnding::MatrixFailed);
  EXPECT_EQ(watch.atEnd->failedRow, 2);
  EXPECT_EQ(result.F, 5);
}

TEST(MarquardtAxial, CallsPassTheCodeOfAFirstCallAndAreNotCounted) {
  FunctionRun run({0, 0}, Quadratic);
  MarquardtRecorder watch;
  const MarquardtResult result = Minimise(run, watch);
  EXPECT_EQ(result.NF, 15);
  EXPECT_EQ(result.axialCalls, 4);
  EXPECT_EQ(result.calls, 15 + 4 + 1) << "the last is that of the success";
  const std::vector<std::int32_t> codes = run.Codes();
  EXPECT_EQ(std::count(codes.begin(), codes.end(), 1), 1 + 4 + 1);
  EXPECT_EQ(*std::max_element(codes.begin(), codes.end()), 15);
}

/// The first step of two parameters lands on the start's value; the axial calls then give these values: plus and minus
/// of parameter 1, then of 2.
struct AxialSearch {
  explicit AxialSearch(std::vector<double> axial)
      : run({1, 2}, [this, axial](Array1<double>& x) {
          const std::int32_t code = run.calls.back().NF;
          if (code == 1 && run.calls.size() > 1) return used < axial.size() ? axial[used++] : 50.0;
          if (code == 1 || code == 8) return 10.0;
          return used == axial.size() ? 7.0 : 10 + Square(x(1) - 1) + Square(x(2) - 2);
        }) {
    run.state.algorithm.MaxCalls = 1;
    result = Minimise(run, watch);
  }

  std::size_t used = 0;
  FunctionRun run;
  MarquardtRecorder watch;
  MarquardtResult result;
};

TEST(MarquardtAxial, TakesTheBestOfAllDirections) {
  const AxialSearch last({9, 20, 20, 7});
  EXPECT_EQ(last.watch.rejectedConvergences, 1);
  EXPECT_DOUBLE_EQ(last.run.state.algorithm.Value(1), 1);
  EXPECT_DOUBLE_EQ(last.run.state.algorithm.Value(2), 2 - 0.1 * 0.1);
  EXPECT_THAT(last.watch.axialImprovements, testing::ElementsAre(1, 2));
  EXPECT_EQ(last.result.verifications, 1);

  const AxialSearch first({20, 7, 9, 20});
  EXPECT_DOUBLE_EQ(first.run.state.algorithm.Value(1), 1 - 0.1 * 0.1);
  EXPECT_DOUBLE_EQ(first.run.state.algorithm.Value(2), 2);
  EXPECT_THAT(first.watch.axialImprovements, testing::ElementsAre(1, 1)) << "the best so far is named";
}

TEST(MarquardtAxial, AnImprovementOfExactlyTheToleranceIsNone) {
  const auto improves = [](double Tolerance, double axial) {
    ScriptedTrials t({10}, axial);
    t.run.state.algorithm.Tolerance = Tolerance;
    t.watch.interruptAtPass = 1;  // so that an improvement ends the run
    return Minimise(t.run, t.watch).ending == MarquardtEnding::Interrupted;
  };
  EXPECT_FALSE(improves(2, 8));
  EXPECT_TRUE(improves(2, std::nextafter(8, 0)));
  EXPECT_FALSE(improves(-0.25, 7.5));
  EXPECT_TRUE(improves(-0.25, std::nextafter(7.5, 0)));
}

TEST(MarquardtAxial, AfterRejectionsSearchesAroundTheAcceptedPoint) {
  ScriptedTrials t({9.0, 8.0, 20.0}, 11.0);
  ASSERT_EQ(Minimise(t.run, t.watch).ending, MarquardtEnding::FrustratedByTrials);
  const std::size_t n = t.run.calls.size();
  const double accepted = t.run.state.algorithm.Value(1);
  EXPECT_EQ(t.run.calls[n - 2].X(1), accepted + 0.1 * 0.1);
  EXPECT_EQ(t.run.calls[n - 1].X(1), accepted - 0.1 * 0.1);
}

TEST(Marquardt, TakesOverWhatTheModelMadeOfTheTrialVector) {
  FunctionRun run({-0.5}, [](Array1<double>& x) {
    x(1) = std::fabs(x(1));
    return Square(x(1) - 0.7) + 1;
  });
  run.state.algorithm.Tolerance = 1e-9;
  MarquardtRecorder watch;
  Minimise(run, watch);
  EXPECT_NEAR(run.state.algorithm.Value(1), 0.7, 1e-3);
  EXPECT_EQ(run.state.free.FreeValue(1), run.state.algorithm.Value(1));
}

TEST(Marquardt, MovesFusedParametersTogether) {
  FunctionRun run({1, 5, 2}, [](Array1<double>& x) { return Square(x(1) + x(2) - 6) + Square(x(3) - 4) + 1; });
  run.state.algorithm.Fuse(1) = run.state.algorithm.Fuse(2) = "A";
  run.state.algorithm.Tolerance = 1e-9;
  MarquardtRecorder watch;
  const MarquardtResult result = Minimise(run, watch);
  EXPECT_EQ(run.state.free.NFREE, 2);
  EXPECT_NEAR(result.F, 1, 1e-6);
  EXPECT_NEAR(run.state.algorithm.Value(1), 3, 1e-3);
  EXPECT_NEAR(run.state.algorithm.Value(3), 4, 1e-3);
}

TEST(Marquardt, AStartThatIsNoNumberIsTold) {
  FunctionRun run({1}, [](Array1<double>&) { return std::nan(""); });
  MarquardtRecorder watch;
  EXPECT_THROW(Minimise(run, watch), ArithmeticFailure);
}

TEST(Marquardt, PointsThatCannotBeEvaluatedNeverEndTheSearch) {
  // The first steps go far beyond the edge.
  FunctionRun run({0.2}, [](Array1<double>& x) {
    if (x(1) <= 0.01) throw ArithmeticFailure("division by zero");
    return x(1) - 0.02 * std::log(x(1) - 0.01) + 10;
  });
  MarquardtRecorder watch;
  const MarquardtResult result = Minimise(run, watch);
  EXPECT_EQ(result.ending, MarquardtEnding::Minimum);
  EXPECT_NEAR(run.state.algorithm.Value(1), 0.03, 0.002);
  const auto beyond = std::ranges::count_if(run.calls, [](const FunctionRun::Call& call) { return call.X(1) <= 0.01; });
  EXPECT_GT(beyond, 0);
  EXPECT_EQ(watch.atEnd->unevaluated, beyond);
}

TEST(Marquardt, DerivativesAtTheEdgeOfWhatCanBeEvaluatedTurnTheSearchAway) {
  // The start's own grid reaches beyond the edge.
  FunctionRun run({1}, [](Array1<double>& x) {
    if (x(1) < 1) throw ArithmeticFailure("overflow");
    return Square(x(1) - 3) + 10;
  });
  MarquardtRecorder watch;
  const MarquardtResult result = Minimise(run, watch);
  EXPECT_EQ(result.ending, MarquardtEnding::Minimum);
  EXPECT_NEAR(run.state.algorithm.Value(1), 3, 0.05);
  EXPECT_GT(watch.atEnd->unevaluated, 0);
}

TEST(MarquardtEnding, HasAWordForTheFitFile) {
  EXPECT_STREQ(EndingText(MarquardtEnding::Minimum), "minimum");
  EXPECT_STREQ(EndingText(MarquardtEnding::ZeroValue), "zero value");
  EXPECT_STREQ(EndingText(MarquardtEnding::Stopped), "stopped");
  EXPECT_STREQ(EndingText(MarquardtEnding::Interrupted), "interrupted");
  EXPECT_STREQ(EndingText(MarquardtEnding::InterruptedInTrials), "interrupted");
  EXPECT_STREQ(EndingText(MarquardtEnding::FrustratedByTrials), "frustration: trials");
  EXPECT_STREQ(EndingText(MarquardtEnding::FrustratedByLambda), "frustration: lambda");
  EXPECT_STREQ(EndingText(MarquardtEnding::FrustratedByVerifications), "frustration: verifications");
  EXPECT_STREQ(EndingText(MarquardtEnding::MatrixFailed), "matrix decomposition failed");
  EXPECT_STREQ(EndingText(MarquardtEnding::DerivativesMissing), "analytical derivatives missing");
}

}  // namespace
}  // namespace merlane::test
