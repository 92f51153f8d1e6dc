#include "uncertainty/covariance_dialogue.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "base/text.h"
#include "control/frm_edit_vs.h"
#include "control/frm_menu.h"
#include "platform/files.h"
#include "support/function_run.h"
#include "support/scripted_host.h"
#include "uncertainty/covariance_report.h"

namespace merlane {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

/// The covariance command over F = 10 + 4 x^2 + 3 y^2 (twice a -ln[L]), started by the menu's button.
struct CovarianceDialogueTest : ::testing::Test {
  CovarianceDialogueTest() {
    t.state.flags.ObjectiveConstant = 0;
    t.state.flags.ObjectiveHint = 0.5;
    desk.Show(main);
    desk.Show(menu);
    menu.cmdCovariance.enabled = true;
    menu.cmdCovariance.onClick = [this] {
      desk.Unload(menu);
      const auto command = desk.charge.LongCommand();
      calculated = dialogue.CalculateCovariances();
      if (!*calculated) desk.Show(menu);
    };
    desk.onFailed = [this](Form&) { desk.Show(menu); };
  }

  /// Runs the command to its end.
  void Run() { ASSERT_TRUE(desk.Press(menu.cmdCovariance)); }

  void CloseEditorWhenWaiting() {
    host.windows.AtWait([this] { EXPECT_TRUE(desk.Press(algo.cmdFinish)); });
  }
  void AnswerUpToFactors() {
    host.windows.No("Covariance calculator");
    host.windows.Reply(Answer::Ok, "Covariance calculator");
    CloseEditorWhenWaiting();
  }
  void AnswerFactors() {
    for (const char* factor : {"1.000E+00", "1.000E-01", "1.000E-02"})
      host.windows.Enter(factor, "Covariance calculator");
    host.windows.Yes("Covariance calculator");
  }
  void AnswerConstant() { host.windows.Enter("0.500", "Enter constant"); }
  void RunNumerically() {
    AnswerUpToFactors();
    AnswerFactors();
    AnswerConstant();
    host.windows.No("Calculate optimistic SEs only?");
    Run();
  }
  /// What an initialisation does to the run.
  void BecomeAnotherModel(std::int16_t NPAR) {
    AlgorithmData& a = t.state.algorithm;
    a.NPAR = NPAR;
    a.Value.Dimension(NPAR);
    a.Step.Dimension(NPAR);
    a.Fuse.Dimension(NPAR, "~");
    a.ParName.Dimension(NPAR, "of another model");
    a.AlgName.clear();
    t.objective.Call(a.Value, 0);
  }
  std::string Status(int panel) const { return main.stbMain5.Get(panel); }

  test::ScriptedHost host;
  Desk desk{host.Get()};
  test::FunctionRun t{
      {0, 0}, {0.1, 0.1}, [](const Array1<double>& v) { return 10 + 4 * v(1) * v(1) + 3 * v(2) * v(2); }};
  LogFile log;
  FrmMain main{desk};
  FrmMenu menu{desk, t.state};
  FrmAlgo algo{desk, t.state, log, main};
  FrmEditVS editValues{desk, t.state, algo};
  Covariances covariances;
  FrmCovData data{desk};
  FrmCovDisplay display{desk, t.state, t.objective, covariances, main, data};
  CovarianceDialogue dialogue{desk, t.state, t.objective, covariances, main, algo, data, display};
  std::optional<bool> calculated;
};

TEST_F(CovarianceDialogueTest, CancelAtTheFirstQuestionReturnsToTheMenu) {
  host.windows.Reply(Answer::Cancel, "Covariance calculator");
  Run();
  EXPECT_EQ(calculated, false);
  EXPECT_TRUE(menu.Visible());
  EXPECT_EQ(t.calls.size(), 0U);
  EXPECT_EQ(host.windows.messages[0].style, 35);
  EXPECT_EQ(host.windows.LastText(),
            "Do you want to calculate covariances analytically or numerically?  Numerical covariances are provided "
            "automatically, whereas for analytical covariances you must have provided analytical derivatives in your "
            "model code (i.e., in that section of Sub MODEL() accessed when NF=-2).\r\n\r\n"
            "WARNING: Analytical covariances will fail if Bayesian prior probabilities contribute to the likelihood "
            "function.\r\n\r\n"
            "DO NOT USE ANALYTICAL COVARIANCES IN CONJUNCTION WITH BAYESIAN PRIOR DISTRIBUTIONS!\r\n"
            "               THE PRIOR DISTRIBUTION FOR ALL PARAMETERS MUST BE UNIFORM-UNBOUNDED!\r\n\r\n"
            "Choose 'Yes' if you have provided ANALYTICAL derivatives; else 'No' to calculate covariances "
            "NUMERICALLY");
}

TEST_F(CovarianceDialogueTest, WithNothingFreeItIsRefusedInOneBoxBeforeAnyQuestion) {
  t.state.algorithm.Step.Fill(0);
  Run();
  ASSERT_EQ(host.windows.messages.size(), 1U);
  EXPECT_EQ(host.windows.messages[0].title, "There is nothing to do");
  EXPECT_EQ(host.windows.messages[0].text, "All step sizes are zero");
  EXPECT_EQ(host.windows.messages[0].style, style::Exclamation);
  EXPECT_EQ(calculated, false);
  EXPECT_TRUE(menu.Visible());
  EXPECT_TRUE(t.calls.empty());
}

TEST_F(CovarianceDialogueTest, WithNothingLeftFreeInTheEditorItIsRefusedBeforeTheConstant) {
  host.windows.No("Covariance calculator");
  host.windows.Reply(Answer::Ok, "Covariance calculator");
  host.windows.AtWait([this] {
    t.state.algorithm.Step.Fill(0);
    EXPECT_TRUE(desk.Press(algo.cmdFinish));
  });
  AnswerFactors();
  Run();
  EXPECT_EQ(host.windows.LastText(), "All step sizes are zero");
  EXPECT_EQ(calculated, false);
  EXPECT_TRUE(menu.Visible());
}

TEST_F(CovarianceDialogueTest, AFactorsProposalLeftAsItStandsKeepsItsHiddenDigits) {
  AnswerUpToFactors();
  for (const char* factor : {"0.123456", "1.000E-01", "1.000E-02"}) host.windows.Enter(factor, "Covariance calculator");
  host.windows.No("Covariance calculator");
  for (const char* factor : {"1.235E-01", "1.000E-01", "1.000E-02"})
    host.windows.Enter(factor, "Covariance calculator");
  host.windows.Yes("Covariance calculator");
  AnswerConstant();
  host.windows.No("Calculate optimistic SEs only?");
  Run();
  EXPECT_EQ(covariances.grid(1).GridFactor, 0.123456);
}

TEST_F(CovarianceDialogueTest, CancelAtTheNoticeReturnsToTheMenu) {
  host.windows.No("Covariance calculator");
  host.windows.Reply(Answer::Cancel, "Covariance calculator");
  Run();
  EXPECT_EQ(calculated, false);
  EXPECT_TRUE(menu.Visible());
  EXPECT_FALSE(algo.Loaded());
  EXPECT_EQ(host.windows.messages[1].style, 65);
  EXPECT_EQ(host.windows.LastText(),
            "A covariance matrix is calculated by inverting the numerically calculated Hessian matrix of second "
            "partial derivatives of the likelihood function.  Three grids are used to calculate the derivatives.  "
            "Each grid is formed using the current parameter values and (non-zero) step sizes. Three scale factors "
            "are required. The initial steps will be multiplied by these scale factors to adjust the size of the "
            "grid.\r\n\r\n"
            "When interpreting the three grid results under the multinormal assumption, the standard deviations of "
            "the -ln[likelihood] should span a range from near zero for the smallest step to about 5 for the largest "
            "step.  This should reassure the user that the multinormal assumption holds over the entire posterior "
            "distributions of the parameters if the model is parsimonious, 'close-to linear', and there are no "
            "extraordinarily high correlations.\r\n\r\n"
            "You can now edit the parameter values and step sizes (if so desired); realizing that for meaningful "
            "results you might have to carefully choose step sizes.\r\n");
}

TEST_F(CovarianceDialogueTest, EmptyFactorReturnsToTheMenuAndKeepsTheEdits) {
  host.windows.No();
  host.windows.Reply(Answer::Ok);
  host.windows.AtWait([this] {
    t.state.algorithm.Step(2) = 0.7;
    desk.Press(algo.cmdFinish);
  });
  host.windows.Enter("1");
  host.windows.CancelInput("Covariance calculator");
  Run();
  EXPECT_EQ(calculated, false);
  EXPECT_TRUE(menu.Visible());
  EXPECT_EQ(t.state.algorithm.Step(2), 0.7);
  EXPECT_EQ(t.calls.size(), 0U);
}

TEST_F(CovarianceDialogueTest, EditorOffersValuesAndStepsAlone) {
  host.windows.No();
  host.windows.Reply(Answer::Ok);
  host.windows.AtWait([this] {
    EXPECT_TRUE(algo.Visible());
    EXPECT_TRUE(algo.Marks().Offered(EditItem::Values));
    EXPECT_TRUE(algo.Marks().Offered(EditItem::Steps));
    EXPECT_FALSE(algo.Marks().Offered(EditItem::Fuses));
    EXPECT_FALSE(algo.Marks().Offered(EditItem::Tolerance));
    EXPECT_FALSE(algo.Marks().Offered(EditItem::Log));
    desk.Press(algo.cmdFinish);
  });
  host.windows.CancelInput();
  Run();
}

TEST_F(CovarianceDialogueTest, FactorsAreAskedAgainUntilTheyPlease) {
  AnswerUpToFactors();
  host.windows.Enter("2", "Covariance calculator");
  host.windows.Enter("-3", "Covariance calculator");    // not positive: stays
  host.windows.Enter("none", "Covariance calculator");  // no number: stays
  host.windows.No("Covariance calculator");
  host.windows.Enter("4");
  host.windows.Enter("0");
  host.windows.Enter("0.05");
  host.windows.Yes("Covariance calculator");
  AnswerConstant();
  host.windows.No();
  Run();
  EXPECT_EQ(calculated, true);
  EXPECT_EQ(host.windows.inputs[0].prompt,
            "Default grid factor for Grid 1 :\r\n\r\n Currently:   1) 1     2) 0.1     3) 0.01\r\n\r\nValue must be "
            "positive for all factors");
  EXPECT_EQ(host.windows.inputs[0].defaultText, "1.000E+00");
  EXPECT_THAT(host.windows.inputs[1].prompt,
              HasSubstr("Grid 2 :\r\n\r\n Currently:   1) 2     2) 0.1     3) 0.01\r\n"));
  EXPECT_EQ(host.windows.inputs[3].defaultText, "2.000E+00");
  EXPECT_EQ(covariances.grid(1).GridFactor, 4);
  EXPECT_EQ(covariances.grid(2).GridFactor, 0.1);
  EXPECT_EQ(covariances.grid(3).GridFactor, 0.05);
  const Message& confirmation = host.windows.messages[4];
  EXPECT_EQ(confirmation.text, "Are these default grid factors OK?\r\n\r\n 1) 4     2) 0.1     3) 0.05");
  EXPECT_EQ(confirmation.style, 36);
}

TEST_F(CovarianceDialogueTest, NumericalCalculationTellsItsCourseAndOpensTheDisplay) {
  RunNumerically();
  EXPECT_EQ(calculated, true);
  EXPECT_EQ(t.state.flags.ObjectiveConstant, 2);
  EXPECT_EQ(covariances.CovConstantInverse, 2);
  EXPECT_FALSE(covariances.OptimisticSE);
  // Differences on the first grid: .04 .04 .07 .07 .03 .03.
  EXPECT_THAT(data.rtbCovData.text, StartsWith("Now calculating -ln[likelihood] on grid #1\r\n"
                                               "Average: 5.0233333E+00; Standard deviation: 8.4983659E-03\r\n"
                                               "Now calculating Hessian matrix #1\r\n"
                                               "Now inverting Hessian matrix #1\r\n"
                                               "Determinant of covariance matrix: 8.3333333E-02\r\n\r\n"
                                               "Now calculating -ln[likelihood] on grid #2\r\n"
                                               "Average: 5.0002333E+00; Standard deviation: 8.4983659E-05\r\n"));
  EXPECT_TRUE(display.Visible());
  EXPECT_EQ(display.lblCovDisplay.text, "Calculation completed. Do you wish to:");
  EXPECT_TRUE(display.cmdScreen.enabled);
  EXPECT_FALSE(display.cmdFile.enabled);
  EXPECT_FALSE(menu.Loaded());
  EXPECT_THAT(host.windows.events, Contains("status stbMain5 1 One moment please..."));
  EXPECT_THAT(host.windows.events, Contains("status stbMain5 1 Hessian function call 1 of 6"));
  EXPECT_EQ(Status(1), "Hessian function call 6 of 6");
  EXPECT_EQ(Status(2), "");
  const Message& choice = host.windows.messages.back();
  EXPECT_EQ(choice.title, "Calculate optimistic SEs only?");
  EXPECT_EQ(choice.style, 292);
  EXPECT_EQ(choice.text,
            "Choose the quicker option to calculate under-estimated conditional SEs?\r\n"
            "Each SE estimate assumes the SE of all other parameters to be zero (0).\r\n"
            "(This is not recommended for final analyses, but can be a time-efficient way \r\n"
            "to rapidly assess relative parameter uncertainty in preliminary analyses).");
}

TEST_F(CovarianceDialogueTest, SumOfSquaresHasItsConstantFromItsDegreesOfFreedom) {
  t.state.flags.NOBS = 23;
  AnswerUpToFactors();
  AnswerFactors();
  host.windows.No("Calculate optimistic SEs only?");
  Run();
  EXPECT_EQ(calculated, true);
  EXPECT_EQ(covariances.CovConstantInverse, t.state.flags.ObjectiveConstant);
  EXPECT_EQ(host.windows.inputs.size(), 3U);
}

TEST_F(CovarianceDialogueTest, SumOfSquaresWithoutDegreesOfFreedomReturnsToTheMenu) {
  t.state.flags.NOBS = 3;
  AnswerUpToFactors();
  AnswerFactors();
  Run();
  EXPECT_EQ(calculated, false);
  EXPECT_EQ(host.windows.messages.back().title, "Insufficient degrees of freedom");
  EXPECT_TRUE(menu.Visible());
  EXPECT_FALSE(data.Loaded());
}

TEST_F(CovarianceDialogueTest, DisplayExplainsItself) {
  RunNumerically();
  EXPECT_EQ(display.txtExplain.text,
            "If the results for numerically calculated SEs etc. are similar for all three grids, then the model's "
            "behaviour can be considered to be 'close-to-linear' and the uncertainty around the parameter estimates "
            "can be considered to be represented by a normal distribution.  Else the SEs etc. are probably inaccurate "
            "and parameter uncertainty is more difficult to interpret.  This problem tends to diminish as sample size "
            "increases and the central limit theorem starts to apply.  Alternatively, you can choose the option "
            "'Evaluate estimates' from the Main Menu, then use maximum-likelihood or Bayesian utilities to evaluate "
            "parameter uncertainty.");
  EXPECT_EQ(display.cmdFile.toolTip, "Saves the (possibly edited) covariance output");
}

TEST_F(CovarianceDialogueTest, ObjectiveIsCalledBeforeTheConstantIsAsked) {
  AnswerUpToFactors();
  AnswerFactors();
  t.function = [this](const Array1<double>&) {
    EXPECT_THAT(host.windows.inputs.size(), t.calls.size() == 1 ? 3U : 4U);
    return 10.0 + static_cast<double>(t.calls.size());
  };
  AnswerConstant();
  host.windows.No();
  Run();
}

TEST_F(CovarianceDialogueTest, AnotherConstantWeighsThePriorAtTheBasePointAsOnTheGrids) {
  t.state.flags.BayesOn = true;
  t.objective.priorTerm = [this](const Array1<double>& v) {
    return t.state.flags.ObjectiveConstant * (7 + v(1) * v(1));
  };
  t.state.flags.ObjectiveConstant = 8;  // of the editor of the priors
  RunNumerically();
  EXPECT_EQ(covariances.CovF0, 10 + 2 * 7);
  const double curvature = (4 + 2 * 1) / 2.0 * 2;  // of -ln[L]
  EXPECT_NEAR(covariances.grid(2).standardErrors(1), std::sqrt(1 / curvature), 1e-6);
}

TEST_F(CovarianceDialogueTest, TimeRemainingIsForAllThreeGrids) {
  t.function = [this](const Array1<double>& v) {
    host.clock.now.second += 5;
    while (host.clock.now.second >= 60) {
      host.clock.now.second -= 60;
      ++host.clock.now.minute;
    }
    return 4 * v(1) * v(1) + 3 * v(2) * v(2);
  };
  RunNumerically();
  const std::string text = "status stbMain5 2 Estimated time remaining for all three grids (m:s): ";
  EXPECT_THAT(host.windows.events, Contains(text + "1:25"));  // 17 calls of 5 s after the first
  EXPECT_THAT(host.windows.events, Contains(text + "0:55"));  // 11 after the first of the second grid
  EXPECT_THAT(host.windows.events, Contains(text + "0:05"));
  EXPECT_THAT(host.windows.events, Contains(text + "0:00"));
}

TEST_F(CovarianceDialogueTest, TimeRemainingCountsTheFullCallsInOptimisticModeToo) {
  t.function = [this](const Array1<double>& v) {
    host.clock.now.second += 1;
    return 4 * v(1) * v(1) + 3 * v(2) * v(2);
  };
  AnswerUpToFactors();
  AnswerFactors();
  AnswerConstant();
  host.windows.Yes("Calculate optimistic SEs only?");
  Run();
  EXPECT_TRUE(covariances.OptimisticSE);
  EXPECT_THAT(host.windows.events,
              Contains("status stbMain5 2 Estimated time remaining for all three grids (m:s): 0:17"));
  EXPECT_THAT(host.windows.events, Contains("status stbMain5 1 Hessian function call 6 of 6"));
}

TEST_F(CovarianceDialogueTest, InterruptAnsweredYesAbandonsTheGrid) {
  AnswerUpToFactors();
  AnswerFactors();
  AnswerConstant();
  host.windows.No();
  t.function = [this](const Array1<double>& v) {
    if (t.calls.size() == 3) {
      EXPECT_TRUE(desk.Press(data.cmdStop));
      EXPECT_FALSE(data.cmdStop.enabled);
    }
    return 4 * v(1) * v(1) + 3 * v(2) * v(2);
  };
  host.windows.Yes("Covariance calculations");
  Run();
  EXPECT_EQ(host.windows.LastText(), "Interrupt received. Do you want to quit calculating this grid?");
  EXPECT_TRUE(data.cmdStop.enabled);
  EXPECT_EQ(covariances.grid(1).ending, GridEnding::Abandoned);
  EXPECT_EQ(covariances.grid(2).ending, GridEnding::Calculated);
  EXPECT_THAT(
      data.rtbCovData.text,
      HasSubstr("Now calculating -ln[likelihood] on grid #1\r\nNow calculating -ln[likelihood] on grid #2\r\n"));
}

TEST_F(CovarianceDialogueTest, InterruptAnsweredNoGoesOn) {
  AnswerUpToFactors();
  AnswerFactors();
  AnswerConstant();
  host.windows.No();
  t.function = [this](const Array1<double>& v) {
    if (t.calls.size() == 3) desk.Press(data.cmdStop);
    return 4 * v(1) * v(1) + 3 * v(2) * v(2);
  };
  host.windows.No("Covariance calculations");
  Run();
  EXPECT_EQ(covariances.grid(1).ending, GridEnding::Calculated);
  EXPECT_EQ(t.calls.size(), 19U);
}

TEST_F(CovarianceDialogueTest, FailedTestNamesItsParameter) {
  t.function = [](const Array1<double>& v) { return v(1) * v(1); };
  RunNumerically();
  const std::string told =
      "Now calculating Hessian matrix #3\r\n"
      "Sorry, this Hessian matrix is not positive-definite; a valid covariance matrix cannot be created.\r\n\r\n"
      "Possible reasons: (1) you're not at a tight enough global minimum, or you're at a local minimum\r\n"
      "                  (2) your model contains statistically dead parameters, i.e., the -ln[L] versus a parameter "
      "is flat\r\n"
      "                  (3) there is at least one parameter pair that is very highly correlated (e.g., ABS(rho) > "
      "0.99)\r\n"
      "                  (4) the likelihood profile is dramatically asymmetrical, perhaps due to a penalty "
      "function\r\n"
      "It might help you to know that the test for positive-definitiveness failed at parameter # 2\r\n\r\n";
  EXPECT_EQ(Rightmost(data.rtbCovData.text, static_cast<int>(told.size())), told);
}

TEST_F(CovarianceDialogueTest, AnalyticalCalculationAsksForNoFactorsButForTheChoice) {
  host.windows.Yes("Covariance calculator");
  AnswerConstant();
  host.windows.Yes("Calculate optimistic SEs only?");
  Run();
  EXPECT_EQ(calculated, true);
  EXPECT_EQ(covariances.mode, CovarianceMode::Analytical);
  EXPECT_THAT(host.windows.events, Contains("status stbMain5 1 One moment please while one function call is executed"));
  EXPECT_EQ(Status(1), "Calculating covariances, one moment please...");
  EXPECT_THAT(data.rtbCovData.text, HasSubstr("failed at parameter # 1\r\n"));
  EXPECT_THAT(data.rtbCovData.text, Not(HasSubstr("Now calculating")));
}

TEST_F(CovarianceDialogueTest, FailureKeepsTheResultsOfBefore) {
  RunNumerically();
  const double kept = covariances.grid(1).standardErrors(1);
  EXPECT_TRUE(desk.Press(display.cmdFinish));
  menu.cmdCovariance.enabled = true;
  t.function = [](const Array1<double>&) { return std::nan(""); };
  AnswerUpToFactors();
  AnswerFactors();
  host.windows.ExpectFailure("overflow");
  Run();
  EXPECT_EQ(covariances.grid(1).standardErrors(1), kept);
  EXPECT_TRUE(menu.Visible());
  EXPECT_FALSE(data.Loaded()) << "it would offer to interrupt what does not run";
}

TEST_F(CovarianceDialogueTest, ResultsOfBeforeCanBeShownOnceMoreBehindAFailure) {
  RunNumerically();
  EXPECT_TRUE(desk.Press(display.cmdScreen));
  menu.cmdCovariance.enabled = true;
  desk.Show(menu);
  t.function = [](const Array1<double>&) { return std::nan(""); };
  AnswerUpToFactors();
  AnswerFactors();
  host.windows.ExpectFailure("overflow");
  Run();
  EXPECT_TRUE(desk.Press(display.cmdScreen));
  EXPECT_EQ(data.rtbCovData.text, CovarianceReport(covariances));
}

TEST_F(CovarianceDialogueTest, ScreenShowsTheReportOnce) {
  RunNumerically();
  EXPECT_TRUE(desk.Press(display.cmdScreen));
  EXPECT_FALSE(display.cmdScreen.enabled);
  EXPECT_TRUE(display.cmdFile.enabled);
  EXPECT_EQ(data.rtbCovData.text, CovarianceReport(covariances));
  EXPECT_EQ(data.cmdStop.text,
            "To save these results [restore or minimize this form then] choose 'Save covariance results as...'");
  EXPECT_THAT(host.windows.events,
              Contains("status stbMain5 1 Please be patient while covariance output is collated..."));
  EXPECT_EQ(Status(1), "");
  EXPECT_EQ(host.windows.events.back(), "front frmCovDisplay");
  EXPECT_FALSE(desk.Press(display.cmdScreen));
}

TEST_F(CovarianceDialogueTest, DisplaySaysWhichFitItShows) {
  RunNumerically();
  EXPECT_EQ(display.lblFit.text,
            "Covariances of 2 free parameters of function.alg, where the objective was 10.000000.");
}

TEST_F(CovarianceDialogueTest, AnEditOrANewFitIsToldBesideTheOldCovariances) {
  RunNumerically();
  t.state.algorithm.Value(1) = 0.5;
  t.objective.BeginSearch();
  EXPECT_TRUE(desk.Press(display.cmdScreen));
  EXPECT_THAT(display.lblFit.text,
              EndsWith(" Since then parameter values have been changed, another minimization has been run."));
}

TEST_F(CovarianceDialogueTest, DisplayLeftOpenOverAModelOfFewerParametersShowsItsOwn) {
  RunNumerically();
  const std::string report = CovarianceReport(covariances);
  BecomeAnotherModel(1);
  EXPECT_TRUE(desk.Press(display.cmdScreen));
  EXPECT_EQ(data.rtbCovData.text, report);
  EXPECT_THAT(report, HasSubstr("Parameter 2"));
  EXPECT_THAT(display.lblFit.text, HasSubstr("of function.alg"));
  t.state.algorithm.AlgShortName = "another";
  host.windows.CancelFile("Save covariance results as...");
  EXPECT_TRUE(desk.Press(display.cmdFile));
  EXPECT_THAT(host.windows.files.back().filter, HasSubstr("(function.*)"));
  EXPECT_THAT(display.lblFit.text, HasSubstr("Since then other data have been read"));
}

TEST_F(CovarianceDialogueTest, DisplayLeftOpenOverAModelOfMoreParametersReadsNothingBeyondItsOwn) {
  RunNumerically();
  const std::string report = CovarianceReport(covariances);
  BecomeAnotherModel(5);
  EXPECT_TRUE(desk.Press(display.cmdScreen));
  EXPECT_EQ(data.rtbCovData.text, report);
}

TEST_F(CovarianceDialogueTest, ValuesThatACallHasWrittenAsTheModelReadsThemAreTheSameEstimates) {
  t.function = [](Array1<double>& v) {
    v(1) = std::fabs(v(1));
    return 10 + 4 * v(1) * v(1) + 3 * v(2) * v(2);
  };
  t.state.algorithm.Value(1) = -0.001;
  RunNumerically();
  EXPECT_TRUE(covariances.AreOf(t.objective.Present()));
  t.objective(t.state.algorithm.Value, 1);
  EXPECT_EQ(t.state.algorithm.Value(1), 0.001);
  EXPECT_TRUE(covariances.AreOf(t.objective.Present()));
  t.state.algorithm.Value(1) = 0.002;
  EXPECT_FALSE(covariances.AreOf(t.objective.Present()));
}

TEST_F(CovarianceDialogueTest, FinishClosesBothFormsAndShowsTheMenu) {
  RunNumerically();
  EXPECT_TRUE(desk.Press(display.cmdFinish));
  EXPECT_FALSE(display.Loaded());
  EXPECT_TRUE(main.mnuApplication.enabled);
  EXPECT_FALSE(data.Loaded());
  EXPECT_TRUE(menu.Visible());
  EXPECT_EQ(Status(1), "");
}

TEST_F(CovarianceDialogueTest, FrameOfTheDisplayClosesLikeFinish) {
  RunNumerically();
  EXPECT_TRUE(desk.Close(display));
  EXPECT_FALSE(data.Loaded());
  EXPECT_TRUE(menu.Visible());
}

TEST_F(CovarianceDialogueTest, StopButtonOfAReportClosesTheDisplay) {
  RunNumerically();
  desk.Press(display.cmdScreen);
  EXPECT_TRUE(desk.Press(data.cmdStop));
  EXPECT_FALSE(display.Loaded());
  EXPECT_FALSE(data.Loaded());
  EXPECT_EQ(data.cmdStop.text, "&Interrupt these calculations");
}

TEST_F(CovarianceDialogueTest, ClosingThePaneLeavesNothingToSave) {
  RunNumerically();
  desk.Press(display.cmdScreen);
  EXPECT_TRUE(desk.Close(data));
  EXPECT_FALSE(display.cmdFile.enabled);
  EXPECT_EQ(data.cmdStop.text, "&Interrupt these calculations");
  EXPECT_TRUE(display.Visible());
}

TEST_F(CovarianceDialogueTest, LastResultsAreOfferedAgain) {
  RunNumerically();
  desk.Press(display.cmdScreen);
  const std::string report = data.rtbCovData.text;
  desk.Press(display.cmdFinish);
  display.OpenAgain();
  EXPECT_FALSE(main.mnuApplication.enabled) << "until the display closes";
  EXPECT_FALSE(menu.TakesInput());
  EXPECT_EQ(display.lblCovDisplay.text, "Do you wish to:");
  EXPECT_FALSE(display.cmdFile.enabled);
  EXPECT_TRUE(desk.Press(display.cmdScreen));
  EXPECT_EQ(data.rtbCovData.text, report);
}

TEST_F(CovarianceDialogueTest, DisplayThatIsStillOpenIsMadeReadyAgain) {
  RunNumerically();
  desk.Press(display.cmdScreen);
  desk.Show(menu);
  menu.cmdCovariance.enabled = true;
  RunNumerically();
  EXPECT_EQ(display.lblCovDisplay.text, "Calculation completed. Do you wish to:");
  EXPECT_FALSE(display.cmdFile.enabled) << "the pane holds no report";
  EXPECT_TRUE(desk.Press(display.cmdScreen));
}

TEST_F(CovarianceDialogueTest, InterruptBehindTheLastCallIsForgotten) {
  data.OpenForCalculation();
  EXPECT_TRUE(desk.Press(data.cmdStop));
  data.OpenForReport();
  EXPECT_TRUE(data.cmdStop.enabled) << "to close the display";
  RunNumerically();
  EXPECT_EQ(covariances.grid(1).ending, GridEnding::Calculated);
}

struct SavedReportTest : CovarianceDialogueTest {
  SavedReportTest() {
    RunNumerically();
    desk.Press(display.cmdScreen);
    report = data.rtbCovData.text;
  }
  ~SavedReportTest() override { std::filesystem::remove(path); }

  std::string report;
  const std::string path = ::testing::TempDir() + "merlane_saved_report.cov";
};

TEST_F(SavedReportTest, FileHasItsNameOnTop) {
  host.windows.File(path);
  EXPECT_TRUE(desk.Press(display.cmdFile));
  EXPECT_EQ(ReadWholeFile(path), "Originally saved with the file name: " + path + "\r\n\r\n" + report);
  EXPECT_THAT(host.windows.writes, ElementsAre(path));
  const FileRequest& request = host.windows.files.back();
  EXPECT_EQ(request.kind, FileRequest::Kind::Save);
  EXPECT_EQ(request.filter,
            "All files (*.*)|*.*|Covariance files (*.cov)|*.cov|Named for algorithm file (function.*)|function.*|");
  EXPECT_EQ(request.startName, "06011030.cov");
}

TEST_F(SavedReportTest, FileCanBeReadBack) {
  host.windows.File(path);
  desk.Press(display.cmdFile);
  const CovarianceFile file = ReadCovarianceFile(ReadWholeFile(path), 2, 2);
  EXPECT_NEAR(file.rows(2).standardErrors[0], std::sqrt(1.0 / 3), 1e-7);
}

TEST_F(SavedReportTest, EditsOfThePaneAreSaved) {
  EXPECT_TRUE(desk.SetText(data.rtbCovData, "A note of mine\nand what I kept"));
  host.windows.File(path);
  desk.Press(display.cmdFile);
  EXPECT_EQ(ReadWholeFile(path),
            "Originally saved with the file name: " + path + "\r\n\r\nA note of mine\r\nand what I kept");
}

TEST_F(SavedReportTest, SavedTwiceHasTwoHeads) {
  host.windows.File(path);
  desk.Press(display.cmdFile);
  host.windows.File(path);
  desk.Press(display.cmdFile);
  const std::string head = "Originally saved with the file name: " + path + "\r\n\r\n";
  EXPECT_EQ(ReadWholeFile(path), head + head + report);
}

TEST_F(SavedReportTest, CancelledSaveIsIgnored) {
  host.windows.CancelFile();
  EXPECT_TRUE(desk.Press(display.cmdFile));
  EXPECT_EQ(data.rtbCovData.text, report);
  EXPECT_TRUE(host.windows.writes.empty());
}

TEST_F(SavedReportTest, FileThatCannotBeWrittenLeavesThePaneAsItWas) {
  host.windows.File("/no/such/folder/a.cov");
  host.windows.ExpectFailure("/no/such/folder/a.cov");
  desk.Press(display.cmdFile);
  EXPECT_EQ(data.rtbCovData.text, report);
}

}  // namespace
}  // namespace merlane
