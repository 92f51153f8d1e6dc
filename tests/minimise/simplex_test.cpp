#include "minimise/simplex.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/arithmetic_failure.h"
#include "minimise/marquardt.h"
#include "support/function_run.h"
#include "support/textbook.h"

namespace merlane::test {
namespace {

using testing::ElementsAre;

/// Writes down what a run tells, and answers what a test has prepared.
class SimplexRecorder : public SimplexWatch {
 public:
  int built = 0, minima = 0, zeroValues = 0, ends = 0, limitQuestions = 0;
  int unevaluated = -1;  // as the end told it
  double startOfColumn1 = 0;
  std::vector<int> terminalReports, fileReports, restarts, axialCalls;
  std::vector<SimplexProgress> progress;  // at the terminal reports
  std::vector<int> restartParameters;
  bool continueAtLimit = false;
  int haltAfter = 0;  // iterations; 0: never
  int turns = 0;
  std::optional<bool> reportAtHalt;

  void OnBuilding() override { ++built; }
  void OnStart(const SimplexState& simplex) override { startOfColumn1 = simplex.Simplex(1)(1); }
  void OnTerminalReport(const SimplexState&, const SimplexProgress& now) override {
    terminalReports.push_back(now.Iterations);
    progress.push_back(now);
  }
  void OnFileReport(const SimplexState&, const SimplexProgress& now) override { fileReports.push_back(now.Iterations); }
  bool ContinueBeyondCallLimit() override {
    ++limitQuestions;
    return continueAtLimit;
  }
  void OnAxialCall(int call, int) override { axialCalls.push_back(call); }
  void OnRestart(int number, int parameter) override {
    restarts.push_back(number);
    restartParameters.push_back(parameter);
  }
  void OnMinimum(const SimplexState&, const SimplexProgress&) override { ++minima; }
  void OnZeroValue() override { ++zeroValues; }
  SimplexInterrupt Turn() override {
    ++turns;
    if (haltAfter > 0 && turns >= haltAfter) return {true, reportAtHalt};
    return {};
  }
  void OnEnd(SimplexEnding, const SimplexProgress& now) override {
    ++ends;
    unevaluated = now.unevaluated;
  }
};

/// Runs on objective values from a list, whatever the point; the last value goes on for ever.
class SimplexOnValues {
 public:
  explicit SimplexOnValues(std::vector<double> values, int NPAR = 1)
      : run(std::vector<double>(static_cast<std::size_t>(NPAR), 0.0), [this, values](Array1<double>& x) {
          points.push_back(x);
          return values[std::min(points.size(), values.size()) - 1];
        }) {
    run.state.algorithm.TerminalFreq = 1;
    run.state.algorithm.Tolerance = 1e-9;
    run.Pack();
  }

  SimplexResult Minimise() { return MinimiseSimplex(run.state, run.objective, simplex, watch); }
  SimplexResult OneIteration() {
    watch.haltAfter = 1;
    return Minimise();
  }

  std::vector<Array1<double>> points;  // where the objective was evaluated
  FunctionRun run;
  SimplexState simplex;
  SimplexRecorder watch;
};

// With one free parameter the vertices are 0 and 0.1; the second is better in these tests, so the centroid is 0.1 and
// the reflected point 0.2.

TEST(SimplexStep, WithOneFreeParameterTwoImprovedMeansExtension) {
  SimplexOnValues t({10, 8, 5, 4});
  t.OneIteration();
  EXPECT_EQ(t.watch.progress[0].ImprovedCount, 2);
  EXPECT_STREQ(t.watch.progress[0].ActionAccepted, "Extension             ");
  EXPECT_EQ(t.simplex.Simplex(1)(1), 2 * 0.2 - 0.1);
  EXPECT_EQ(t.simplex.SimplexF(1), 4);
  EXPECT_EQ(t.watch.progress[0].NF, 4);
}

TEST(SimplexStep, WithOneFreeParameterOneImprovedMeansContractionFromTheReflectedPoint) {
  SimplexOnValues t({10, 8, 9, 8.5});
  t.OneIteration();
  EXPECT_EQ(t.watch.progress[0].ImprovedCount, 1);
  EXPECT_STREQ(t.watch.progress[0].ActionAccepted, "Reflection-Contraction");
  EXPECT_EQ(t.simplex.Simplex(1)(1), 0.5 * 0.2 + 0.5 * 0.1);
  EXPECT_EQ(t.simplex.SimplexF(1), 8.5);
}

TEST(SimplexStep, WithOneFreeParameterNoneImprovedMeansContractionFromTheWorstVertex) {
  SimplexOnValues t({10, 8, 11, 9});
  t.OneIteration();
  EXPECT_EQ(t.watch.progress[0].ImprovedCount, 0);
  EXPECT_STREQ(t.watch.progress[0].ActionAccepted, "Contraction           ");
  EXPECT_EQ(t.simplex.Simplex(1)(1), 0.5 * 0 + 0.5 * 0.1);
}

TEST(SimplexStep, ATieBetweenTheReflectedValueAndAVertexIsNotAnImprovement) {
  SimplexOnValues worst({10, 8, 10, 9});
  worst.OneIteration();
  EXPECT_EQ(worst.watch.progress[0].ImprovedCount, 0);
  SimplexOnValues best({10, 8, 8, 7});
  best.OneIteration();
  EXPECT_EQ(best.watch.progress[0].ImprovedCount, 1);
}

TEST(SimplexStep, AnExtensionThatOnlyEqualsTheReflectionIsRefused) {
  SimplexOnValues t({10, 8, 5, 5});
  t.OneIteration();
  EXPECT_STREQ(t.watch.progress[0].ActionAccepted, "Reflection            ");
  EXPECT_EQ(t.simplex.Simplex(1)(1), 2 * 0.1 - 0.0);
}

TEST(SimplexStep, ReflectionAloneCostsOneCall) {
  // Vertices 10, 9, 8; a reflected 8.5 beats two of three.
  SimplexOnValues t({10, 9, 8, 8.5}, 2);
  t.OneIteration();
  EXPECT_EQ(t.watch.progress[0].ImprovedCount, 2);
  EXPECT_STREQ(t.watch.progress[0].ActionAccepted, "Reflection            ");
  EXPECT_EQ(t.watch.progress[0].NF, 4);
}

TEST(SimplexStep, AContractionThatOnlyEqualsTheWorstReducesAllVerticesButTheBest) {
  // Worst is vertex 1 at (0, 0), best vertex 3 at (0, 0.1); reflected 12 and contracted 10 are refused.
  SimplexOnValues t({10, 9, 8, 12, 10, 7, 6}, 2);
  t.OneIteration();
  EXPECT_STREQ(t.watch.progress[0].ActionAccepted, "Reduction             ");
  EXPECT_EQ(t.watch.progress[0].NF, 3 + 2 + 2);
  EXPECT_EQ(t.simplex.Simplex(1), (Array1<double>{0, (0 - 0.1) * 0.5 + 0.1}));
  EXPECT_EQ(t.simplex.Simplex(2), (Array1<double>{(0.1 - 0) * 0.5 + 0, (0 - 0.1) * 0.5 + 0.1}));
  EXPECT_EQ(t.simplex.Simplex(3), (Array1<double>{0, 0.1}));
  EXPECT_EQ(t.simplex.SimplexF, (Array1<double>{7, 6, 8, 0}));
}

TEST(SimplexStep, ARejectedContractionLeavesTheReflectedPointToBeShrunkToo) {
  // The reflected 9.5 beats the worst alone and enters; the contracted 9.5 is refused against it.
  SimplexOnValues t({10, 9, 8, 9.5, 9.5, 7, 6}, 2);
  t.OneIteration();
  EXPECT_STREQ(t.watch.progress[0].ActionAccepted, "Reflection-Reduction  ");
  const double R = 2 * 0.05 - 0;
  EXPECT_EQ(t.simplex.Simplex(1), (Array1<double>{(R - 0) * 0.5 + 0, (R - 0.1) * 0.5 + 0.1}));
}

TEST(SimplexStart, MovesByTheFullStepAndCostsOneCallMoreThanFreeParameters) {
  SimplexOnValues t({10, 9, 8, 8.5}, 2);
  t.run.state.algorithm.StepReduction = 0.01;
  t.OneIteration();
  EXPECT_EQ(t.points[0], (Array1<double>{0, 0}));
  EXPECT_EQ(t.points[1], (Array1<double>{0.1, 0}));
  EXPECT_EQ(t.points[2], (Array1<double>{0, 0.1}));
}

TEST(SimplexStart, ATieOfVerticesStaysWithTheLowerColumn) {
  SimplexOnValues t({8, 8, 8, 9, 9, 9, 9}, 2);
  t.watch.haltAfter = 1;
  t.run.state.algorithm.Tolerance = 0;
  t.Minimise();
  EXPECT_EQ(t.simplex.ILow, 1);
}

TEST(SimplexStart, ATieOfWorstVerticesStaysWithTheLowerColumn) {
  SimplexOnValues t({10, 10, 8, 9}, 2);
  t.OneIteration();
  EXPECT_EQ(t.simplex.SimplexF(1), 9) << "the reflected point took its place";
  EXPECT_EQ(t.simplex.SimplexF(2), 10);
}

TEST(SimplexConvergence, ADifferenceOfExactlyTheToleranceIsNotConverged) {
  // After the first step the vertices hold 8.5 and 8.
  SimplexOnValues exact({10, 8, 9, 8.5});
  exact.run.state.algorithm.Tolerance = 0.5;
  exact.OneIteration();
  EXPECT_EQ(exact.watch.minima, 0);
  SimplexOnValues above({10, 8, 9, 8.5});
  above.run.state.algorithm.Tolerance = std::nextafter(0.5, 1);
  above.OneIteration();
  EXPECT_EQ(above.watch.minima, 1);
}

TEST(SimplexConvergence, ARelativeToleranceDividesByTheBestValueAndIsStrict) {
  SimplexOnValues exact({10, 8, 9, 8.5});
  exact.run.state.algorithm.Tolerance = -0.0625;
  exact.OneIteration();
  EXPECT_EQ(exact.watch.minima, 0);
  SimplexOnValues above({10, 8, 9, 8.5});
  above.run.state.algorithm.Tolerance = -0.0626;
  above.OneIteration();
  EXPECT_EQ(above.watch.minima, 1);
}

TEST(SimplexConvergence, AToleranceOfZeroCanNeverBeMet) {
  FunctionRun run({0}, [](Array1<double>&) { return 7.0; });
  run.state.algorithm.Tolerance = 0;
  run.state.algorithm.MaxCalls = 500;
  run.Pack();
  SimplexState simplex;
  SimplexRecorder watch;
  const SimplexResult result = MinimiseSimplex(run.state, run.objective, simplex, watch);
  EXPECT_EQ(result.ending, SimplexEnding::CallLimit);
  EXPECT_EQ(watch.minima, 0);
  EXPECT_GT(result.NF, 500);
}

TEST(SimplexConvergence, ABestValueOfZeroUnderARelativeToleranceEndsTheRunAndLeavesValueAlone) {
  SimplexOnValues t({10, 8, 0, 0});
  t.run.state.algorithm.Tolerance = -1e-4;
  t.run.state.algorithm.Value(1) = 0;
  const SimplexResult result = t.Minimise();
  EXPECT_EQ(result.ending, SimplexEnding::ZeroValue);
  EXPECT_EQ(t.watch.zeroValues, 1);
  EXPECT_EQ(result.Iterations, 1);
  EXPECT_EQ(t.run.state.algorithm.Value(1), 0);
  EXPECT_EQ(t.watch.turns, 0);
  EXPECT_EQ(t.watch.ends, 1);
}

TEST(SimplexReports, ComeAtOneAndEveryFrequencyBehindIt) {
  FunctionRun run({-1.2, 1}, Rosenbrock);
  run.state.algorithm.TerminalFreq = 3;
  run.state.algorithm.FileFreq = 4;
  run.Pack();
  SimplexState simplex;
  SimplexRecorder watch;
  watch.haltAfter = 10;
  MinimiseSimplex(run.state, run.objective, simplex, watch);
  EXPECT_THAT(watch.terminalReports, ElementsAre(1, 4, 7, 10));
  EXPECT_THAT(watch.fileReports, ElementsAre(1, 5, 9));
}

TEST(SimplexReports, AFrequencyOfZeroGivesNone) {
  FunctionRun run({-1.2, 1}, Rosenbrock);
  run.state.algorithm.TerminalFreq = 0;
  run.state.algorithm.FileFreq = 0;
  run.Pack();
  SimplexState simplex;
  SimplexRecorder watch;
  watch.haltAfter = 10;
  watch.reportAtHalt = true;
  MinimiseSimplex(run.state, run.objective, simplex, watch);
  EXPECT_TRUE(watch.terminalReports.empty());
  EXPECT_TRUE(watch.fileReports.empty());
}

TEST(SimplexReports, AHaltBetweenReportsMakesOneMore) {
  const auto reports = [](int haltAfter, std::int16_t TerminalFreq) {
    FunctionRun run({-1.2, 1}, Rosenbrock);
    run.state.algorithm.TerminalFreq = TerminalFreq;
    run.Pack();
    SimplexState simplex;
    SimplexRecorder watch;
    watch.haltAfter = haltAfter;
    watch.reportAtHalt = true;
    MinimiseSimplex(run.state, run.objective, simplex, watch);
    return watch.terminalReports;
  };
  EXPECT_THAT(reports(5, 3), ElementsAre(1, 4, 5));
  EXPECT_THAT(reports(4, 3), ElementsAre(1, 4)) << "none since the report of the same iteration";
  EXPECT_THAT(reports(3, 1), ElementsAre(1, 2, 3)) << "with a frequency of 1 every iteration has had its report";
}

TEST(SimplexReports, AMinimumBetweenReportsMakesNone) {
  FunctionRun run({-1.2, 1}, Rosenbrock);
  run.state.algorithm.TerminalFreq = 5;
  run.Pack();
  SimplexState simplex;
  SimplexRecorder watch;
  EXPECT_EQ(MinimiseSimplex(run.state, run.objective, simplex, watch).Iterations, 78);
  EXPECT_EQ(watch.terminalReports.back(), 76);
}

TEST(SimplexReports, TheCallLimitMakesOneMore) {
  FunctionRun run({-1.2, 1}, Rosenbrock);
  run.state.algorithm.TerminalFreq = 1000;
  run.state.algorithm.MaxCalls = 20;
  run.Pack();
  SimplexState simplex;
  SimplexRecorder watch;
  const SimplexResult result = MinimiseSimplex(run.state, run.objective, simplex, watch);
  EXPECT_THAT(watch.terminalReports, ElementsAre(1, result.Iterations));
}

TEST(SimplexCallLimit, YesAndAHaltInTheSameIterationReportNoCalls) {
  SimplexOnValues t({10, 8, 9, 8.5});
  t.run.state.algorithm.MaxCalls = 4;
  t.run.state.algorithm.TerminalFreq = 3;
  t.watch.continueAtLimit = true;
  t.watch.haltAfter = 2;
  t.watch.reportAtHalt = true;
  EXPECT_EQ(t.Minimise().NF, 0);
  EXPECT_THAT(t.watch.terminalReports, ElementsAre(1, 2));
  EXPECT_EQ(t.watch.progress.back().NF, 0);
}

TEST(SimplexCallLimit, YesStartsTheCountAgainFromOne) {
  FunctionRun run({-1.2, 1}, Rosenbrock);
  run.state.algorithm.MaxCalls = 20;
  run.Pack();
  SimplexState simplex;
  SimplexRecorder watch;
  watch.continueAtLimit = true;
  const SimplexResult result = MinimiseSimplex(run.state, run.objective, simplex, watch);
  EXPECT_EQ(result.ending, SimplexEnding::Minimum);
  EXPECT_EQ(result.Iterations, 78) << "the questions change nothing in the run";
  EXPECT_EQ(result.calls, 145);
  EXPECT_GT(watch.limitQuestions, 3);
  EXPECT_LT(result.NF, 25);
  const std::vector<std::int32_t> codes = run.Codes();
  EXPECT_EQ(std::count(codes.begin(), codes.end(), 1), watch.limitQuestions + 1)
      << "each new count begins with the code of a first call";
}

TEST(SimplexCallLimit, IsPassedOnlyByMoreCallsThanTheLimit) {
  SimplexOnValues at({10, 8, 9, 8.5});
  at.run.state.algorithm.MaxCalls = 4;
  at.OneIteration();
  EXPECT_EQ(at.watch.limitQuestions, 0);
  SimplexOnValues above({10, 8, 9, 8.5});
  above.run.state.algorithm.MaxCalls = 3;
  EXPECT_EQ(above.OneIteration().ending, SimplexEnding::CallLimit);
  EXPECT_EQ(above.watch.limitQuestions, 1);
}

TEST(SimplexCallLimit, NoEndsTheRunUnverifiedEvenWhenTheToleranceIsMet) {
  SimplexOnValues t({10, 8, 9, 8.5});
  t.run.state.algorithm.Tolerance = 1;
  t.run.state.algorithm.MaxCalls = 3;
  const SimplexResult result = t.Minimise();
  EXPECT_EQ(result.ending, SimplexEnding::CallLimit);
  EXPECT_EQ(result.NF, 4);
  EXPECT_TRUE(t.watch.axialCalls.empty());
  EXPECT_EQ(t.run.state.algorithm.Value(1), 0.1) << "the best vertex is written back";
}

TEST(SimplexVerification, TriesBothSidesOfEachParameterAndMayChangeTheLastBitOfTheBestVertex) {
  // Vertices (0, 0), (0.1, 0), (0, 0.1) with values 8, 9, 10, of which the first is best.
  SimplexOnValues t({8, 9, 10, 9.5, 9.2, 8.5}, 2);
  t.run.state.algorithm.Value(1) = t.run.state.free.FreeValue(1) = 2;
  t.run.state.algorithm.Tolerance = 5;
  const SimplexResult result = t.Minimise();
  EXPECT_EQ(result.ending, SimplexEnding::Minimum);
  EXPECT_THAT(t.watch.axialCalls, ElementsAre(1, 2, 3, 4));
  const std::size_t n = t.points.size();
  const double s = 0.1 * 0.1;
  double x = 2;
  x += s;
  EXPECT_EQ(t.points[n - 4](1), x);
  x -= 2 * 0.1 * 0.1;
  EXPECT_EQ(t.points[n - 3](1), x);
  x += s;
  EXPECT_EQ(t.run.state.algorithm.Value(1), x);
  EXPECT_NE(x, 2) << "there and back again has cost a bit, or this test shows nothing";
}

TEST(SimplexVerification, AnImprovementOfExactlyTheToleranceIsNone) {
  const auto restarts = [](double axialF) {
    SimplexOnValues t({10, 8, 9, 8.5, axialF, 100});
    t.run.state.algorithm.Tolerance = 1;
    t.watch.haltAfter = 1;
    return t.Minimise().Restarts;
  };
  EXPECT_EQ(restarts(7), 0);
  EXPECT_EQ(restarts(std::nextafter(7, 0)), 1);
}

TEST(SimplexVerification, ARelativeMarginOfANegativeValueIsNegative) {
  // Best -8, tolerance -0.5: the margin is -4, so that even -4.5 counts as better.
  SimplexOnValues t({-6, -8, -7, -7.5, -4.5, -1});
  t.run.state.algorithm.Tolerance = -0.5;
  t.watch.haltAfter = 1;
  EXPECT_EQ(t.Minimise().Restarts, 1);
}

TEST(SimplexRestart, ABestVertexOtherThanTheFirstKeepsItsSteppedPlaceUntilItsDiagonalMove) {
  // One iteration of two parameters: vertices 10, 9, 8 at (0, 0), (0.1, 0), (0, 0.1); the reflected 8.5 at (0.1, 0.1)
  // takes column 1. Column 3 is best; its first axial call gives 1, an improvement on parameter 1.
  SimplexOnValues t({10, 9, 8, 8.5, 1, 5, 6, 7}, 2);
  t.run.state.algorithm.Tolerance = 2;
  t.watch.haltAfter = 1;
  const SimplexResult result = t.Minimise();
  EXPECT_EQ(result.Restarts, 1);
  EXPECT_THAT(t.watch.restarts, ElementsAre(1));
  EXPECT_THAT(t.watch.restartParameters, ElementsAre(1));
  const double s = 0.1 * 0.1;
  EXPECT_EQ(t.simplex.Simplex(1), (Array1<double>{s, 0.1})) << "the improved point";
  EXPECT_EQ(t.simplex.Simplex(2), (Array1<double>{0.1 + s, 0})) << "keeps its place but for its own reduced step";
  EXPECT_EQ(t.simplex.Simplex(3), (Array1<double>{s, 0.1 + s})) << "stepped on the axis, then on its diagonal";
  EXPECT_EQ(t.simplex.SimplexF, (Array1<double>{5, 6, 7, 0})) << "all computed afresh";
  EXPECT_EQ(t.run.state.algorithm.Value, (Array1<double>{s, 0.1}));
}

TEST(SimplexRestart, IsCountedAndTheRunGoesOnToASecondVerification) {
  FunctionRun run({3, 3}, [](Array1<double>& x) { return 100 * Square(x(1) - x(2)) + Square(x(1) + x(2)); });
  run.state.algorithm.Tolerance = 0.05;
  run.Pack();
  SimplexState simplex;
  SimplexRecorder watch;
  const SimplexResult result = MinimiseSimplex(run.state, run.objective, simplex, watch);
  EXPECT_EQ(result.Restarts, 1);
  EXPECT_THAT(watch.restarts, ElementsAre(1));
  EXPECT_EQ(watch.minima, 1);
  EXPECT_EQ(result.ending, SimplexEnding::Minimum);
}

TEST(SimplexRestart, MoreThanAnI16CanCountIsARuntimeFailure) {
  // Each verification finds at once something better than all there was.
  struct AlwaysBetter : SimplexRecorder {
    void OnVerifying() override { level -= 1; }
    double level = 0;
  } watch;
  FunctionRun run({0}, [&](Array1<double>&) { return watch.level; });
  run.state.algorithm.TerminalFreq = 0;
  run.state.algorithm.MaxCalls = 1000000;
  run.Pack();
  SimplexState simplex;
  EXPECT_THROW(MinimiseSimplex(run.state, run.objective, simplex, watch), RuntimeFailure);
  EXPECT_EQ(watch.restarts.size(), 32767u);
}

TEST(SimplexResumed, GoesOnFromTheSimplexThatStands) {
  FunctionRun run({-1.2, 1}, Rosenbrock);
  run.Pack();
  SimplexState simplex;
  SimplexRecorder first;
  first.haltAfter = 30;
  const SimplexResult stopped = MinimiseSimplex(run.state, run.objective, simplex, first);
  EXPECT_EQ(stopped.ending, SimplexEnding::Interrupted);
  const double column1 = simplex.Simplex(1)(1);

  run.state.free.FreeValue.Fill(1e6);  // would be seen if it were used
  SimplexRecorder second;
  const SimplexResult result = MinimiseSimplex(run.state, run.objective, simplex, second);
  EXPECT_EQ(second.built, 0);
  EXPECT_EQ(second.startOfColumn1, column1);
  EXPECT_EQ(result.Iterations, 78 - 30) << "counted from zero";
  EXPECT_EQ(result.NF, 145 - stopped.NF);
  EXPECT_NEAR(result.F, 6.958010389912404e-05, 1e-16);
}

/// A polytope that was interrupted on its way down a bowl of three parameters, of which the last is not free.
struct SimplexResumedElsewhere : ::testing::Test {
  SimplexResumedElsewhere() {
    run.objective.priorTerm = [this](const Array1<double>& x) { return pull * Square(x(1)); };
    run.objective.priorsInForce = [this] { return std::to_string(pull); };
    SimplexRecorder first;
    first.haltAfter = 5;
    Minimise(first);
  }
  SimplexResult Minimise(SimplexWatch& watch) {
    run.Pack();
    return MinimiseSimplex(run.state, run.objective, simplex, watch);
  }
  /// The next run builds its own polytope and reaches the minimum of what the run is now.
  void ExpectBuiltAfresh(double F) {
    SimplexRecorder watch;
    const SimplexResult result = Minimise(watch);
    EXPECT_EQ(watch.built, 1);
    EXPECT_EQ(result.ending, SimplexEnding::Minimum);
    EXPECT_NEAR(result.F, F, 1e-3);
  }

  double pull = 1;
  FunctionRun run{
      {5, 5, 2}, {0.5, 0.5, 0}, [](Array1<double>& x) { return Square(x(1) - 1) + Square(x(2) - 2) + Square(x(3)); }};
  SimplexState simplex;
};

TEST_F(SimplexResumedElsewhere, GoesOnWhereNothingHasChanged) {
  SimplexRecorder watch;
  Minimise(watch);
  EXPECT_EQ(watch.built, 0);
}

TEST_F(SimplexResumedElsewhere, IsBuiltAfreshWhenAParameterIsFreeNoMore) {
  run.state.algorithm.Step(1) = 0;  // as a repair of the hypothesis does
  run.state.algorithm.Value(1) = 0;
  ExpectBuiltAfresh(1 + 4);
}

TEST_F(SimplexResumedElsewhere, IsBuiltAfreshWhenItsOwnRunFrozeAParameterUnderWay) {
  run.state.algorithm.Value(2) = 3;
  run.function = [this](Array1<double>& x) {
    run.state.algorithm.Step(1) = 0;
    return Square(x(1) - 1) + Square(x(2) - 2);
  };
  SimplexRecorder first;
  Minimise(first);
  EXPECT_EQ(first.built, 1);
  EXPECT_EQ(run.state.free.NFREE, 2);
  ExpectBuiltAfresh(Square(run.state.algorithm.Value(1) - 1));
  EXPECT_EQ(run.state.free.NFREE, 1);
}

TEST_F(SimplexResumedElsewhere, IsBuiltAfreshWhenAnotherParameterIsFreeInstead) {
  run.state.algorithm.Step = {0.5, 0, 0.5};
  run.state.algorithm.Value(2) = 2;
  ExpectBuiltAfresh(0);
}

TEST_F(SimplexResumedElsewhere, IsBuiltAfreshWhenAFixedValueIsAnother) {
  run.state.algorithm.Value(3) = 1;
  ExpectBuiltAfresh(1);
}

TEST_F(SimplexResumedElsewhere, IsBuiltAfreshWhenParametersAreFused) {
  run.state.algorithm.Fuse = {"A", "A", "~~"};
  ExpectBuiltAfresh(0.5 + 4);
}

TEST_F(SimplexResumedElsewhere, IsBuiltAfreshWhenPriorsAreSwitchedOnAndOff) {
  run.state.flags.BayesOn = true;
  ExpectBuiltAfresh(0.5 + 4);
  run.state.flags.BayesOn = false;
  ExpectBuiltAfresh(4);
}

TEST_F(SimplexResumedElsewhere, IsBuiltAfreshWhenThePriorsAreOthers) {
  run.state.flags.BayesOn = true;
  ExpectBuiltAfresh(0.5 + 4);
  pull = 3;
  ExpectBuiltAfresh(0.75 + 4);
}

TEST_F(SimplexResumedElsewhere, IsBuiltAfreshOverOtherData) {
  run.objective.Call(run.state.algorithm.Value, 0);
  ExpectBuiltAfresh(4);
}

TEST_F(SimplexResumedElsewhere, IsBuiltAfreshFromAnotherStartAndWithOtherSteps) {
  run.state.algorithm.Value(1) = 3;
  ExpectBuiltAfresh(4);
  run.state.algorithm.Step(1) = 0.25;
  ExpectBuiltAfresh(4);
}

TEST_F(SimplexResumedElsewhere, IsBuiltAfreshBehindAMarquardtThatCouldNotImprove) {
  SimplexRecorder watch;
  Minimise(watch);
  MarquardtWatch nobody;
  const Array1<double> before = run.state.algorithm.Value;
  run.state.algorithm.MaxCalls = 0;
  MinimiseMarquardt(run.state, run.objective, DerivativeMode::Analytical, nobody);
  EXPECT_EQ(run.state.algorithm.Value, before);
  run.state.algorithm.MaxCalls = 9999;
  ExpectBuiltAfresh(4);
}

TEST(SimplexResumed, AfterARuntimeFailureTheSimplexIsBuiltAnew) {
  int calls = 0;
  FunctionRun run({0}, [&](Array1<double>& x) {
    if (++calls == 2) throw RuntimeFailure("overflow");
    return Square(x(1) - 1);
  });
  run.Pack();
  SimplexState simplex;
  SimplexRecorder watch;
  EXPECT_THROW(MinimiseSimplex(run.state, run.objective, simplex, watch), RuntimeFailure);
  MinimiseSimplex(run.state, run.objective, simplex, watch);
  EXPECT_EQ(watch.built, 2);
  EXPECT_NEAR(run.state.algorithm.Value(1), 1, 0.01);
}

TEST(Simplex, WritesItsOwnVertexBackAndNotWhatTheModelMadeOfIt) {
  // The model knows only the absolute value of its parameter, and says so by rewriting the trial vector.
  FunctionRun run({-0.5}, [](Array1<double>& x) {
    x(1) = std::fabs(x(1));
    return Square(x(1) - 0.7);
  });
  run.Pack();
  SimplexState simplex;
  SimplexWatch nobody;
  MinimiseSimplex(run.state, run.objective, simplex, nobody);
  EXPECT_NEAR(run.state.algorithm.Value(1), -0.7, 0.05);
}

TEST(Simplex, LeavesValueAloneUntilTheEnd) {
  std::vector<double> seen;
  FunctionRun* that = nullptr;
  FunctionRun run({0}, [&](Array1<double>& x) {
    seen.push_back(that->state.algorithm.Value(1));
    return Square(x(1) - 1);
  });
  that = &run;
  run.Pack();
  SimplexState simplex;
  SimplexWatch nobody;
  MinimiseSimplex(run.state, run.objective, simplex, nobody);
  EXPECT_THAT(seen, testing::Each(0));
  EXPECT_NE(run.state.algorithm.Value(1), 0);
}

TEST(Simplex, AStartThatIsNoNumberIsTold) {
  FunctionRun run({0}, [](Array1<double>&) { return std::nan(""); });
  run.Pack();
  SimplexState simplex;
  SimplexWatch nobody;
  EXPECT_THROW(MinimiseSimplex(run.state, run.objective, simplex, nobody), ArithmeticFailure);
  EXPECT_FALSE(simplex.left);
}

TEST(Simplex, PointsThatCannotBeEvaluatedNeverEndTheSearch) {
  // The whole half-plane x < 1 has no objective, and the minimum lies on its edge.
  FunctionRun run({3, 2}, [](Array1<double>& x) {
    if (x(1) < 1) throw ArithmeticFailure("logarithm of a number that is not positive");
    return Square(x(1) - 1) + Square(x(2) + 1);
  });
  run.state.algorithm.Step(1) = -2.5;  // so the first polytope has a vertex there
  run.Pack();
  SimplexState simplex;
  SimplexRecorder watch;
  const SimplexResult result = MinimiseSimplex(run.state, run.objective, simplex, watch);
  EXPECT_EQ(result.ending, SimplexEnding::Minimum);
  EXPECT_NEAR(run.state.algorithm.Value(1), 1, 0.02);
  EXPECT_NEAR(run.state.algorithm.Value(2), -1, 0.02);
  const auto beyond = std::ranges::count_if(run.calls, [](const FunctionRun::Call& call) { return call.X(1) < 1; });
  EXPECT_GT(beyond, 1);
  EXPECT_EQ(watch.unevaluated, beyond);
}

TEST(Simplex, AVertexBeyondAllNumbersIsARuntimeFailure) {
  FunctionRun run(
      {1e308}, [](Array1<double>& x) { return -x(1); }, 1e308);
  run.Pack();
  SimplexState simplex;
  SimplexWatch nobody;
  EXPECT_THROW(MinimiseSimplex(run.state, run.objective, simplex, nobody), RuntimeFailure);
}

TEST(SimplexEnding, HasAWordForTheFitFile) {
  EXPECT_STREQ(EndingText(SimplexEnding::Minimum), "minimum");
  EXPECT_STREQ(EndingText(SimplexEnding::CallLimit), "call limit");
  EXPECT_STREQ(EndingText(SimplexEnding::Interrupted), "interrupted");
  EXPECT_STREQ(EndingText(SimplexEnding::ZeroValue), "zero value");
}

}  // namespace
}  // namespace merlane::test
