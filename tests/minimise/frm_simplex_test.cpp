#include "minimise/frm_simplex.h"

#include <fmt/format.h>
#include <gmock/gmock.h>

#include "base/arithmetic_failure.h"
#include "minimise/forms_fixture.h"
#include "minimise/simplex_report.h"

namespace merlane::test {
namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

class FrmSimplexTest : public MinimiserForms {
 protected:
  /// The values that an objective takes one after the other, the last for ever.
  void OpenOnValues(std::vector<double> values, double Tolerance, int NPAR = 1) {
    Open(std::vector<double>(static_cast<std::size_t>(NPAR), 0.0),
         [this, values](Array1<double>&) { return values[std::min(run->calls.size(), values.size()) - 1]; });
    run->state.algorithm.Tolerance = Tolerance;
  }
  void Minimise() {
    Command([this] { result = frmSimplex->Minimise(); });
  }
  SimplexResult result;
};

TEST_F(FrmSimplexTest, LooksAsItIsDescribed) {
  Open({0, 0}, Quadratic);
  EXPECT_EQ(frmSimplex->name, "frmSimplex");
  EXPECT_EQ(
      frmSimplex->title,
      "Simplex minimization (uses geometry; works best for models whose behaviour is markedly non-linear; initial "
      "progress is sensitive to step sizes)");
  EXPECT_EQ(frmSimplex->cmdStop.toolTip, "Click here to interrupt the current minimization");
  EXPECT_TRUE(frmSimplex->rtbSimplex.fixedPitch);
  EXPECT_TRUE(frmSimplex->rtbSimplexInitial.fixedPitch);
}

TEST_F(FrmSimplexTest, AnObjectiveThatIsNotThatOfOneCallIsToldAsOne) {
  Open({0, 0}, Quadratic);
  OpenLog();
  Array1<double> asked;
  frmSimplex->carriedOver = [&asked](const Array1<double>& values) {
    asked = values;
    return CarriedOver{7.5, "      in the model's words\n"};
  };
  Minimise();
  const std::string note =
      "is the objective of this search alone: one function call at these values gives 7.500000\n      in the model's "
      "words\n";
  EXPECT_THAT(frmSimplex->rtbSimplex.text, HasSubstr(note));
  EXPECT_THAT(windows().messages.back().details, HasSubstr(note));
  EXPECT_THAT(LogText(), HasSubstr("function call at these values gives 7.500000"));
  EXPECT_NEAR(asked(1), run->state.algorithm.Value(1), 1e-12) << "at the minimum, which does not yet stand in Value";
}

TEST_F(FrmSimplexTest, AnObjectiveThatIsNotThatOfOneCallIsToldAtTheLimitOfCallsToo) {
  Open({0, 0}, Quadratic);
  frmSimplex->carriedOver = [](const Array1<double>&) { return CarriedOver{UnevaluatedF, ""}; };
  run->state.algorithm.MaxCalls = 5;
  windows().No("Simplex minimization");
  Minimise();
  EXPECT_THAT(frmSimplex->rtbSimplex.text, EndsWith("one function call at these values cannot be evaluated\n"));
}

TEST_F(FrmSimplexTest, AnObjectiveThatIsThatOfOneCallNeedsNoWord) {
  Open({0, 0}, Quadratic);
  frmSimplex->carriedOver = [this](const Array1<double>& values) {
    return CarriedOver{Quadratic(values) + 1e-9, "in the model's words"};
  };
  Minimise();
  EXPECT_THAT(frmSimplex->rtbSimplex.text, Not(HasSubstr("one function call")));
}

TEST_F(FrmSimplexTest, AMinimumThatIsAPenaltyIsToldAsOne) {
  const std::string note =
      "Note: 4.0000000E+00 of this minimum is a penalty: these values lie outside what the model can do\n";
  Open({0, 0}, Quadratic);
  OpenLog();
  frmSimplex->bestPenalty = [] { return 4.0; };  // of 5
  Minimise();
  EXPECT_EQ(windows().messages[0].text, "Minimum found using Simplex!");
  EXPECT_EQ(windows().messages[0].details, note);
  EXPECT_THAT(frmSimplex->rtbSimplex.text, testing::EndsWith(note));
  EXPECT_THAT(LogText(), testing::EndsWith("outside what the model can do\r\n"));
  frmSimplex->bestPenalty = [] { return 0.1; };
  Minimise();
  EXPECT_EQ(windows().messages[1].details, "") << "a fit at the edge of what the model can do";
}

TEST_F(FrmSimplexTest, AMinimumIsToldAndReported) {
  Open({0, 0}, Quadratic);
  OpenLog();
  Minimise();
  EXPECT_EQ(result.ending, SimplexEnding::Minimum);
  ASSERT_EQ(windows().messages.size(), 1u);
  EXPECT_EQ(windows().messages[0].title, "Simplex minimum");
  EXPECT_EQ(windows().messages[0].text, "Minimum found using Simplex!");
  EXPECT_EQ(windows().messages[0].style, 80);
  EXPECT_EQ(frmSimplex->rtbSimplexInitial.text,
            "Initial Simplex: Starting function value> 1.8000000E+01 Max> 1.8840000E+01 Min> 1.7410000E+01\n"
            "\n"
            "Initial parameter values:\n"
            "\n"
            "    001)  0.0000000E+00  ~~  \n"
            "    002)  0.0000000E+00  ~~  \n");
  EXPECT_THAT(frmSimplex->rtbSimplex.text, StartsWith("Minimum of 5.000027 found at these 2 adjusted"));
  EXPECT_THAT(frmSimplex->rtbSimplex.text,
              testing::EndsWith("\nThis result required 26 iterations, 57 function calls, and 0 restarts\n"));
  EXPECT_TRUE(simplex.ResumesAt(run->objective.Present()));
  ExpectPanelsEmpty();

  // The log: initial report, 26 reports, final report, lines ended by CR LF.
  const std::string text = LogText();
  EXPECT_THAT(text, StartsWith("\r\n\r\nInitial parameter values:\r\n\r\n    001)  0.0000000E+00    002)  0.0000000E+00"
                               "\r\n\r\n\r\nInitial Simplex: Starting function value> 1.8000000E+01 Max> "));
  EXPECT_THAT(text, testing::HasSubstr("\r\n\r\nNote: 26 iterations, 53 function calls, and 0 restarts\r\nNumber of"));
  EXPECT_THAT(text, testing::HasSubstr("\r\n\r\n\r\nMinimum of 5.000027 found at these 2 adjusted parameter values:"));
}

TEST_F(FrmSimplexTest, FrequenciesOfZeroGiveNeitherPanesNorLog) {
  Open({0, 0}, Quadratic);
  OpenLog();
  run->state.algorithm.TerminalFreq = 0;
  run->state.algorithm.FileFreq = 0;
  std::string shown;
  windows().AtTurn(20, [&] { shown = frmSimplex->rtbSimplexInitial.text + frmSimplex->rtbSimplex.text; });
  Minimise();
  EXPECT_EQ(shown, "");
  EXPECT_EQ(LogText(), "");
  EXPECT_THAT(frmSimplex->rtbSimplex.text, StartsWith("Minimum of ")) << "the final report has no frequency";
}

TEST_F(FrmSimplexTest, StatusPanelsFollowTheRun) {
  OpenOnValues({10, 8, 9, 8.5}, 1);
  Minimise();
  EXPECT_THAT(Panel(1), ElementsAre("Building initial simplex...", "",
                                    "Verifying convergence by performing an axial search", ""));
  EXPECT_THAT(Panel(2), ElementsAre("Axial function call 1 of 2", "Axial function call 2 of 2", " ", ""));
}

TEST_F(FrmSimplexTest, ARestartNamesTheParameterAndASecondOneWarns) {
  // Each of the first two verifications finds something better at its first call.
  OpenOnValues({10, 8, 9, 8.5, 6, 6, 6.5, 6.4, 6.3, 4, 4, 4.5, 4.4, 4.3, 5}, 1);
  Minimise();
  EXPECT_EQ(result.Restarts, 2);
  EXPECT_THAT(Panel(3), testing::Contains("Last failure of convergence verification caused by parameter # 1"));
  EXPECT_THAT(Panel(4), testing::Contains("Multiple restarts indicate a tuning problem!"));
}

TEST_F(FrmSimplexTest, OneRestartIsNoTuningProblem) {
  OpenOnValues({10, 8, 9, 8.5, 6, 6, 6.5, 6.4, 6.3, 7}, 1);
  Minimise();
  EXPECT_EQ(result.Restarts, 1);
  EXPECT_THAT(Panel(4), testing::IsEmpty());
}

TEST_F(FrmSimplexTest, ANewSimplexMakesItsButtonAndPanelsReady) {
  OpenOnValues({10, 8, 9, 8.5}, 1);
  windows().AtTurn(2, [&] { desk.Press(frmSimplex->cmdStop); });
  Minimise();
  EXPECT_FALSE(frmSimplex->cmdStop.enabled) << "the interrupt was swallowed";
  simplex.Forget();
  frmMain.stbMain5.Set(2, "something");
  windows().AtTurn(1, [&] {
    EXPECT_TRUE(frmSimplex->cmdStop.enabled);
    EXPECT_EQ(frmMain.stbMain5.Get(1), "Building initial simplex...");
    EXPECT_EQ(frmMain.stbMain5.Get(2), "");
  });
  Minimise();
}

TEST_F(FrmSimplexTest, TheCallLimitAsksAndNoEndsTheRun) {
  Open({-1.2, 1}, Rosenbrock);
  run->state.algorithm.MaxCalls = 20;
  windows().No("Simplex minimization");
  Minimise();
  EXPECT_EQ(result.ending, SimplexEnding::CallLimit);
  ASSERT_EQ(windows().messages.size(), 1u);
  EXPECT_EQ(windows().messages[0].text, "Maximum number of function calls reached, do you want to continue?");
  EXPECT_EQ(windows().messages[0].style, 36);
  EXPECT_THAT(Panel(1), testing::Contains("One moment please..."));
  ExpectPanelsEmpty();
  EXPECT_EQ(run->state.algorithm.Value(1), simplex.Simplex(simplex.ILow)(1));
}

TEST_F(FrmSimplexTest, AnEndThatIsAskedForEmptiesThePanelsWhileItComes) {
  Open({-1.2, 1}, Rosenbrock);
  run->state.algorithm.MaxCalls = 20;
  windows().AtTurn(2, [&] {
    for (int panel = 2; panel <= 4; ++panel) frmMain.stbMain5.Set(panel, "something");
  });
  windows().No("Simplex minimization");
  Minimise();
  EXPECT_THAT(std::vector<std::string>(windows().events.end() - 5, windows().events.end()),
              ElementsAre("status stbMain5 1 One moment please...", "status stbMain5 2 ", "status stbMain5 3 ",
                          "status stbMain5 4 ", "status stbMain5 1 "));
}

TEST_F(FrmSimplexTest, EachRunBeginsWithEmptyPanes) {
  Open({0, 0}, Quadratic);
  Minimise();
  simplex.Forget();
  run->state.algorithm.TerminalFreq = 0;
  windows().AtTurn(1, [&] {
    EXPECT_EQ(frmSimplex->rtbSimplexInitial.text, "");
    EXPECT_EQ(frmSimplex->rtbSimplex.text, "");
  });
  Minimise();
}

TEST_F(FrmSimplexTest, TheCallLimitOverriddenShowsTheCountFromOneAgain) {
  Open({-1.2, 1}, Rosenbrock);
  run->state.algorithm.MaxCalls = 100;
  windows().Yes("Simplex minimization");
  Minimise();
  EXPECT_EQ(result.ending, SimplexEnding::Minimum);
  EXPECT_EQ(result.calls, 145);
  EXPECT_THAT(frmSimplex->rtbSimplex.text,
              testing::EndsWith(fmt::format("78 iterations, {} function calls, and 0 restarts\n", result.NF)));
  EXPECT_LT(result.NF, 45);
}

TEST_F(FrmSimplexTest, InABootstrapTheCallLimitIsAskedAllTheSame) {
  Open({-1.2, 1}, Rosenbrock);
  run->state.flags.BootstrapMode = true;
  run->state.algorithm.MaxCalls = 20;
  windows().No("Simplex minimization");
  Minimise();
  EXPECT_EQ(result.ending, SimplexEnding::CallLimit);
}

TEST_F(FrmSimplexTest, AnInterruptAnsweredYesEndsTheRunWithOneMoreReport) {
  Open({-1.2, 1}, Rosenbrock);
  run->state.algorithm.TerminalFreq = 3;
  windows().AtTurn(7, [&] {  // two turns of the start, then one per iteration
    EXPECT_TRUE(desk.Press(frmSimplex->cmdStop));
    EXPECT_FALSE(frmSimplex->cmdStop.enabled);
    EXPECT_EQ(frmMain.stbMain5.Get(1), "Interrupt pending...");
    EXPECT_FALSE(desk.Press(frmSimplex->cmdStop)) << "once is enough";
  });
  windows().Yes("Simplex interrupt");
  Minimise();
  EXPECT_EQ(result.ending, SimplexEnding::Interrupted);
  EXPECT_EQ(result.Iterations, 5);
  EXPECT_EQ(windows().messages[0].text, "Interrupt received. Do you want to quit minimizing?");
  EXPECT_EQ(windows().messages[0].style, 36);
  EXPECT_THAT(frmSimplex->rtbSimplex.text, StartsWith("\nNote: 5 iterations, ")) << "the report due at 4 was the last";
  EXPECT_FALSE(frmSimplex->cmdStop.enabled) << "nothing runs that it could stop";
  ExpectPanelsEmpty();
}

TEST_F(FrmSimplexTest, BehindARunNothingCanBeInterruptedAndAPressTooLateDoesNotReachTheNextRun) {
  Open({-1.2, 1}, Rosenbrock);
  run->state.algorithm.MaxCalls = 3;
  windows().No("Simplex minimization");
  Minimise();
  EXPECT_FALSE(desk.Press(frmSimplex->cmdStop));
  // Pressed where nothing looks at it any more, in the turn of the last report.
  Open({10, 10}, [](Array1<double>&) { return 1.0; });
  int turns = 0;
  for (int turn = 1; turn <= 200; ++turn)
    windows().AtTurn(turn, [&] {
      ++turns;
      if (frmMain.stbMain5.Get(1).starts_with("Verifying")) desk.Press(frmSimplex->cmdStop);
    });
  Minimise();
  windows().messages.clear();
  Minimise();
  EXPECT_EQ(windows().Titles(), std::vector<std::string>{"Simplex minimum"}) << "not the question of an interrupt";
}

TEST_F(FrmSimplexTest, AResumedRunCanBeInterruptedToo) {
  Open({-1.2, 1}, Rosenbrock);
  run->state.algorithm.MaxCalls = 10;
  windows().No("Simplex minimization");
  Minimise();
  ASSERT_TRUE(simplex.ResumesAt(run->objective.Present()));
  run->state.algorithm.MaxCalls = 9999;
  bool offered = false;
  windows().AtTurn(2, [&] { offered = desk.Usable(frmSimplex->cmdStop); });
  Minimise();
  EXPECT_TRUE(offered);
}

TEST_F(FrmSimplexTest, AnInterruptAnsweredNoLetsTheRunGoOn) {
  Open({-1.2, 1}, Rosenbrock);
  run->state.algorithm.TerminalFreq = 100;
  windows().AtTurn(7, [&] { desk.Press(frmSimplex->cmdStop); });
  windows().AtTurn(8,
                   [&] { EXPECT_THAT(frmSimplex->rtbSimplex.text, StartsWith("\nNote: 1 ")) << "no report for it"; });
  windows().No("Simplex interrupt");
  Minimise();
  EXPECT_EQ(result.ending, SimplexEnding::Minimum);
  EXPECT_EQ(result.Iterations, 78);
  EXPECT_EQ(result.NF, 145);
}

TEST_F(FrmSimplexTest, AnInterruptInTheIterationThatSucceedsIsSwallowed) {
  OpenOnValues({10, 8, 9, 8.5}, 1);
  // The run's last turn before the success is that of the start.
  windows().AtTurn(2, [&] { desk.Press(frmSimplex->cmdStop); });
  Minimise();
  EXPECT_EQ(windows().Titles(), std::vector<std::string>{"Simplex minimum"});
}

TEST_F(FrmSimplexTest, AZeroUnderARelativeToleranceIsToldWhenNoReportIsDue) {
  OpenOnValues({10, 8, 0, 0}, -1e-4);
  run->state.algorithm.TerminalFreq = 0;
  Minimise();
  EXPECT_EQ(result.ending, SimplexEnding::ZeroValue);
  ASSERT_EQ(windows().messages.size(), 1u);
  EXPECT_EQ(windows().messages[0].title, "Simplex error");
  EXPECT_EQ(windows().messages[0].text,
            "A function value of zero has caused a division by zero error.\r\nReset the tolerance to ABSolute or "
            "otherwise correct model");
  EXPECT_EQ(windows().messages[0].style, 80);
  EXPECT_EQ(run->state.algorithm.Value(1), 0);
  ExpectPanelsEmpty();
}

TEST_F(FrmSimplexTest, AZeroUnderARelativeToleranceIsToldBehindAReportThatIsDueToo) {
  OpenOnValues({10, 8, 0, 0}, -1e-4);
  Minimise();
  EXPECT_EQ(result.ending, SimplexEnding::ZeroValue);
  EXPECT_EQ(windows().Titles(), std::vector<std::string>{"Simplex error"});
  EXPECT_NE(frmSimplex->rtbSimplex.text.find("Rel TC> undefined\n"), std::string::npos);
}

TEST_F(FrmSimplexTest, AnEndWithoutAMinimumTellsWhatCouldNotBeEvaluatedToo) {
  Open({3}, [](Array1<double>& x) {
    if (x(1) > 3) throw ArithmeticFailure("overflow");
    return x(1);
  });
  run->state.algorithm.MaxCalls = 20;
  windows().No("Simplex minimization");
  Minimise();
  EXPECT_EQ(result.ending, SimplexEnding::CallLimit);
  EXPECT_TRUE(frmSimplex->rtbSimplex.text.ends_with(
      "\nNote: The objective function could not be evaluated at 1 point, which counted as 1E+30\n"));
}

TEST_F(FrmSimplexTest, AResumedRunIsReportedFromTheOldFirstColumnAndBuildsNothing) {
  Open({-1.2, 1}, Rosenbrock);
  windows().AtTurn(12, [&] { desk.Press(frmSimplex->cmdStop); });
  windows().Yes("Simplex interrupt");
  Minimise();
  const std::string expected = SimplexInitialPane(run->state, simplex);
  windows().statuses.clear();
  Minimise();
  EXPECT_EQ(frmSimplex->rtbSimplexInitial.text, expected);
  EXPECT_THAT(Panel(1), testing::Not(testing::Contains("Building initial simplex...")));
  EXPECT_EQ(result.ending, SimplexEnding::Minimum);
}

TEST_F(FrmSimplexTest, InABootstrapAMinimumIsNotToldAndTheButtonSpeaksOfIt) {
  Open({0, 0}, Quadratic);
  run->state.flags.BootstrapMode = true;
  Minimise();
  EXPECT_TRUE(windows().messages.empty());
  EXPECT_EQ(frmSimplex->cmdStop.text,
            "&Interrupt this bootstrap, accept its current deviance and parameter estimates, then start the next "
            "bootstrap");
}

TEST_F(FrmSimplexTest, WithPriorsOnTheReviewFollowsTheMinimum) {
  Open({0, 0}, Quadratic);
  int reviews = 0;
  frmSimplex->reviewPriors = [&] {
    ++reviews;
    EXPECT_EQ(windows().messages.size(), 1u) << "behind the box";
    EXPECT_EQ(run->state.algorithm.Value(1), simplex.Simplex(simplex.ILow)(1)) << "of the estimates, not of the start";
  };
  Minimise();
  EXPECT_EQ(reviews, 0);
  windows().messages.clear();
  simplex.Forget();
  run->state.flags.BayesOn = true;
  run->objective.priorTerm = [](const Array1<double>&) { return 0.0; };
  Minimise();
  EXPECT_EQ(reviews, 1);
}

TEST_F(FrmSimplexTest, ClosingEmptiesThePanesAndBringsTheMenuBack) {
  Open({0, 0}, Quadratic);
  Minimise();
  frmMain.stbMain5.Set(2, "something");
  EXPECT_TRUE(desk.Close(*frmSimplex));
  EXPECT_EQ(frmSimplex->rtbSimplex.text, "");
  EXPECT_EQ(frmSimplex->rtbSimplexInitial.text, "");
  ExpectPanelsEmpty();
  EXPECT_TRUE(frmMenu->Visible());
}

TEST_F(FrmSimplexTest, ClosingUnderACommandLeavesTheMenuAlone) {
  Open({0, 0}, Quadratic);
  Minimise();
  const auto command = desk.charge.LongCommand();
  desk.Unload(*frmSimplex);
  EXPECT_FALSE(frmMenu->Visible());
}

TEST_F(FrmSimplexTest, DuringARunTheWindowStaysOpen) {
  Open({-1.2, 1}, Rosenbrock);
  windows().AtTurn(7, [&] { EXPECT_FALSE(desk.Close(*frmSimplex)); });
  Minimise();
  EXPECT_TRUE(frmSimplex->Visible());
}

class FrmSimplexInProfile : public FrmSimplexTest {
 protected:
  void OpenPoint() {
    Open({-1.2, 1, 7}, [](Array1<double>& x) { return Rosenbrock(x); });
    run->state.algorithm.Step(3) = 0;
    run->Pack();
    run->state.profile.ProfileOn = true;
    run->state.profile.ProfileParameter = 3;
    profile.ProfilePoint = 4;
    profile.ProfilePoints = 25;
  }
  /// Interrupts the fourth iteration, between reports: each report gives a turn, too.
  void InterruptAtIteration4() {
    run->state.algorithm.TerminalFreq = 100;
    windows().AtTurn(7, [&] { desk.Press(frmSimplex->cmdStop); });
  }
};

TEST_F(FrmSimplexInProfile, NamesThePointAtEachReportAndSaysNothingAtItsMinimum) {
  OpenPoint();
  Minimise();
  EXPECT_EQ(result.ending, SimplexEnding::Minimum);
  EXPECT_TRUE(windows().messages.empty());
  EXPECT_THAT(Panel(1), testing::Contains("Calculating profile point 4 of 25, Value of parameter # 3 which is being "
                                          "profiled is: 7.00000E+00"));
  EXPECT_THAT(frmSimplex->rtbSimplex.text, StartsWith("\nNote: 78 iterations")) << "no final report";
}

TEST_F(FrmSimplexInProfile, AnInterruptCanEndTheWholeProcedure) {
  OpenPoint();
  InterruptAtIteration4();
  windows().Yes("Simplex interrupt");
  Minimise();
  EXPECT_EQ(result.ending, SimplexEnding::Interrupted);
  EXPECT_TRUE(profile.QuitAsked);
  EXPECT_THAT(frmSimplex->rtbSimplex.text, StartsWith("\nNote: 4 iterations, ")) << "with one more report";
  EXPECT_EQ(windows().messages[0].text, "Interrupt received. Do you want to quit the ML procedure?");
  EXPECT_EQ(windows().messages[0].style, 36);
}

TEST_F(FrmSimplexInProfile, AnInterruptCanEndThisPointAlone) {
  OpenPoint();
  InterruptAtIteration4();
  windows().No("Simplex interrupt");
  windows().Yes("Simplex interrupt");
  Minimise();
  EXPECT_EQ(result.ending, SimplexEnding::Interrupted);
  EXPECT_FALSE(profile.QuitAsked);
  EXPECT_THAT(frmSimplex->rtbSimplex.text, StartsWith("\nNote: 1 iterations, ")) << "without another report";
  EXPECT_EQ(windows().messages[1].text, "Do you want to continue starting with the NEXT point?");
  EXPECT_EQ(windows().messages[1].style, 292);
}

TEST_F(FrmSimplexInProfile, AnInterruptTakenBackLetsThePointGoOn) {
  OpenPoint();
  InterruptAtIteration4();
  windows().No("Simplex interrupt");
  windows().No("Simplex interrupt");
  windows().AtTurn(9, [&] {
    EXPECT_THAT(frmSimplex->rtbSimplex.text, StartsWith("\nNote: 4 iterations, ")) << "reported in passing";
  });
  Minimise();
  EXPECT_EQ(result.ending, SimplexEnding::Minimum);
  EXPECT_EQ(result.Iterations, 78);
}

TEST_F(FrmSimplexInProfile, AnInterruptInTheIterationThatSucceedsIsAskedAllTheSame) {
  OpenOnValues({10, 8, 9, 8.5}, 1);
  run->state.profile.ProfileOn = true;
  run->state.profile.ProfileParameter = 1;
  windows().AtTurn(2, [&] { desk.Press(frmSimplex->cmdStop); });
  windows().No("Simplex interrupt");
  windows().No("Simplex interrupt");
  Minimise();
  EXPECT_EQ(result.ending, SimplexEnding::Minimum);
}

}  // namespace
}  // namespace merlane::test
