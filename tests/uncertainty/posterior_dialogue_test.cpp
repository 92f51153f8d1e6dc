#include "uncertainty/posterior_dialogue.h"

#include <filesystem>

#include "base/text.h"
#include "platform/files.h"
#include "uncertainty/evaluation_forms.h"
#include "uncertainty/evaluation_table.h"

namespace merlane {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::StartsWith;

constexpr const char* PosteriorTitle = "Bayesian parameter estimate evaluation";
constexpr const char* GridPrompt = "Choose the number of data points for grid parameter:\r\n0 <= # points <= 1001";

/// The posterior over F = 20 + 4 (x - 3)^2 + 3 (y - 1)^2, of which x = 3 has the SE 0.5. Eight parameters, the rest
/// without effect.
struct PosteriorDialogueTest : test::EvaluationForms {
  PosteriorDialogueTest()
      : EvaluationForms({3, 1, 0, 0, 0, 0, 0, 0}, {0.25, 0.1, 0, 0, 0, 0, 0, 0}, [](Array1<double>& v) {
          return 20 + 4 * (v(1) - 3) * (v(1) - 3) + 3 * (v(2) - 1) * (v(2) - 1);
        }) {}

  void FreezeTheOther() { algorithm.Step(2) = 0; }
  void FreeThree() { algorithm.Step(3) = 0.1; }
  void AnswerUpToParameter() {
    windows.Yes(PosteriorTitle);
    windows.Enter("0.500", "Enter constant");
  }
  /// Up to the editor; no grid points where no other parameter is free.
  void AnswerSetup(const std::string& parameter, const std::string& points, const std::string& gridPoints = "") {
    AnswerUpToParameter();
    windows.Enter(parameter, PosteriorTitle);
    windows.Enter(points, PosteriorTitle);
    if (!gridPoints.empty()) windows.Enter(gridPoints, PosteriorTitle);
  }
  std::string LastBox() const { return windows.messages[windows.messages.size() - 2].text; }
};

TEST_F(PosteriorDialogueTest, TellsAndAsksInTheseWords) {
  windows.No(PosteriorTitle);
  Choose(frmParEvals.cmdBP);
  ASSERT_EQ(windows.messages.size(), 2U);
  EXPECT_EQ(windows.messages[0].style, 64);
  EXPECT_EQ(windows.messages[0].text,
            "This routine will create a series of plots, and if desired, save the x-y data. \r\n"
            "Choose plot 1 to get a likelihood profile plot. \r\n"
            "Choose plot 2 to get a Bayesian posterior distribution. \r\n"
            "Choose plot 3 to get a mode-centered confidence region plot. \r\n"
            "Choose plot 4 to get a mean-centered confidence region plot. \r\n"
            "Choose plot 5 to get a left to right ascending cumulative plot. \r\n"
            "Choose plot 6 to get a left to right descending cumulative plot. \r\n"
            "Choose plot 7 to get a mode-centered Gaussian distribution plot.\r\n\r\n"
            "If only two variables are evaluated a bivarate pdf plot is also generated");
  EXPECT_EQ(windows.messages[1].style, 36);
  EXPECT_EQ(
      windows.messages[1].text,
      "First choose the parameter to be evaluated, then the number of grid points. You may then wisely edit the "
      "mid-range parameter value and the step size for that parameter and those (maximum = 6) over which "
      "probabilities will be integrated. For a one dimensional example, if you choose 101 grid points then grid "
      "point 1 will be the parameter value - 50 * the step size, grid point 51 will be the point parameter value, "
      "and grid point 101 will be the parameter value + 50 * the step size. Parameters with a step size of zero "
      "will not be integrated into the BP distribution. We suggest you first build a covariance matrix for "
      "parameters with non-zero step sizes and thus let the statistical machinery determine approximate values "
      "for the step sizes. Be warned, however, that this choice will automatically change the values for step "
      "sizes in your algorithm data file.\r\n\r\nDo you want to continue?");
  ExpectBackAtMenu();
  EXPECT_THAT(run.calls, IsEmpty());
}

TEST_F(PosteriorDialogueTest, AnEmptyParameterEndsTheCommand) {
  AnswerUpToParameter();
  windows.Enter("9", PosteriorTitle);
  windows.CancelInput(PosteriorTitle);
  Choose(frmParEvals.cmdBP);
  EXPECT_EQ(windows.inputs.back().prompt,
            "Choose the parameter number to be evaluated or Quit: \r\n0 < parameter # <= 8");
  ExpectBackAtMenu();
}

TEST_F(PosteriorDialogueTest, QuitAtTheParameterEndsTheCommandAsThePromptSays) {
  AnswerUpToParameter();
  windows.Enter(" q ", PosteriorTitle);
  Choose(frmParEvals.cmdBP);
  EXPECT_EQ(windows.inputs.back().prompt,
            "Choose the parameter number to be evaluated or Quit: \r\n0 < parameter # <= 8");
  ExpectBackAtMenu();
}

TEST_F(PosteriorDialogueTest, WithNothingFreeItIsRefusedInOneBoxBeforeAnyQuestion) {
  algorithm.Step.Fill(0);
  Choose(frmParEvals.cmdBP);
  ASSERT_EQ(windows.messages.size(), 1U);
  EXPECT_EQ(windows.messages[0].title, "There is nothing to do");
  EXPECT_EQ(windows.messages[0].text, "All step sizes are zero");
  EXPECT_THAT(run.calls, IsEmpty());
  ExpectBackAtMenu();
}

TEST_F(PosteriorDialogueTest, OrdinatesThatAllVanishAreToldInPlaceOfAFlatCurve) {
  FreeThree();
  run.function = [](Array1<double>&) { return 2000; };  // far beyond what the reference of 0 can hold
  AnswerSetup("1", "3", "3");
  Edit();
  Choose(frmParEvals.cmdBP);
  EXPECT_THAT(LastBox(), StartsWith("The posterior vanishes at all points: "));
  EXPECT_FALSE(evaluation.series);
  EXPECT_FALSE(frmDistPlot.Loaded());
  EXPECT_FALSE(frmBayesian.Loaded());
  ExpectBackAtMenu();
}

TEST_F(PosteriorDialogueTest, APointCountBelowOneOrAbove1001IsAskedForAgain) {
  AnswerUpToParameter();
  windows.Enter("1", PosteriorTitle);
  for (const char* refused : {"0", "-3", "1002"}) windows.Enter(refused, PosteriorTitle);
  windows.CancelInput(PosteriorTitle);
  Choose(frmParEvals.cmdBP);
  EXPECT_EQ(windows.inputs.back().prompt,
            "Choose the number of data points for profile parameter:\r\n0 <= # points <= 1001");
  EXPECT_EQ(windows.inputs.back().defaultText, "25");
  ExpectBackAtMenu();
}

TEST_F(PosteriorDialogueTest, GridPointsAreAskedForByTheSameRules) {
  AnswerSetup("1", "2", "0");
  windows.Enter("1002", PosteriorTitle);
  windows.Enter("4", PosteriorTitle);
  Edit();
  SeePlots();
  windows.No("Bivariate plot");
  Choose(frmParEvals.cmdBP);
  EXPECT_EQ(windows.inputs.back().prompt, GridPrompt);
  EXPECT_EQ(evaluation.series->ProfileX.Size(), 3) << "2 became 3";
  EXPECT_EQ(evaluation.bivariate->Y.Size(), 5) << "4 became 5";
}

TEST_F(PosteriorDialogueTest, CancelAtTheGridPointsEndsTheCommand) {
  AnswerUpToParameter();
  windows.Enter("1", PosteriorTitle);
  windows.Enter("3", PosteriorTitle);
  windows.CancelInput(PosteriorTitle);
  Choose(frmParEvals.cmdBP);
  EXPECT_FALSE(frmAlgo.Loaded());
  ExpectBackAtMenu();
}

TEST_F(PosteriorDialogueTest, WithTheChosenParameterAloneFreeIsAPlainCurveWithoutABivariatePlot) {
  FreezeTheOther();
  AnswerSetup("1", "25");
  Edit();
  SeePlots([this] {
    EXPECT_TRUE(state.profile.IntegrationOn);
    EXPECT_FALSE(state.profile.ProfileOn);
    EXPECT_THAT(frmDistPlot.listVar.items, Contains("Bayesian Posterior Distribution"));
  });
  Choose(frmParEvals.cmdBP);
  EXPECT_EQ(run.calls.size(), 25U);
  EXPECT_EQ(windows.beeps, 1);
  EXPECT_FALSE(evaluation.bivariate);
  EXPECT_NEAR(evaluation.series->EstimatedSE, 0.5, 1e-6);
  EXPECT_EQ(evaluation.LastProfileKind, EvaluationKind::Posterior);
  EXPECT_EQ(state.profile.ProfileState, 1);
  EXPECT_THAT(Panel(3), IsEmpty());
  EXPECT_THAT(Panel(1), Contains("Calculating profile point 13 of 25, Value of parameter # 1 which is being profiled "
                                 "is: 3.0000E+00"));
  EXPECT_THAT(Panel(1), Contains("Function calls remaining: 12"));
  EXPECT_TRUE(frmBayesian.Visible());
  ExpectBackAtMenu();
}

TEST_F(PosteriorDialogueTest, TheParameterHasItsValueAndStepAgainWhileThePlotsAreOpenAndCountsAsFreeBehindThem) {
  AnswerSetup("1", "3", "3");
  Edit();
  SeePlots([this] {
    EXPECT_EQ(algorithm.Value(1), 3);
    EXPECT_EQ(algorithm.Step(1), 0.25);
    EXPECT_EQ(state.free.NFREE, 1);
  });
  windows.No("Bivariate plot");
  Choose(frmParEvals.cmdBP);
  EXPECT_EQ(state.free.NFREE, 2);
}

TEST_F(PosteriorDialogueTest, WithOneOtherFreeShowsItsProgressAndOffersABivariatePlot) {
  AnswerSetup("1", "3", "3");
  Edit();
  SeePlots([this] { EXPECT_EQ(frmMain.stbMain5.Get(3), "Integrations completed at 10:30:00"); });
  windows.No("Bivariate plot");
  Choose(frmParEvals.cmdBP);
  EXPECT_EQ(run.calls.size(), 10U) << "nine nodes, and the reference";
  EXPECT_THAT(std::vector<std::string>(windows.events.begin(), windows.events.end()),
              Contains("message Bivariate plot"));
  EXPECT_EQ(LastBox(), "Do you want to view a bivariate plot of parameters 1 and 2?");
  EXPECT_EQ(windows.messages[windows.messages.size() - 2].style, 36);
  EXPECT_THAT(windows.files, IsEmpty());
  const std::vector<std::string> panel1 = Panel(1);
  EXPECT_THAT(std::vector(panel1.begin(), panel1.begin() + 5),
              ElementsAre("Value of parameter being profiled: 2.7500E+00 (point 1 of 3)", "Parameter #2 (point 1 of 3)",
                          "Function calls remaining: 8", "Parameter #2 (point 2 of 3)", "Function calls remaining: 7"));
  EXPECT_THAT(Panel(2), ElementsAre("9 function calls required", "Estimated time remaining (m:s): 0:00"));
  EXPECT_THAT(Panel(3), ElementsAre("Started at 10:30:00", "Integrations completed at 10:30:00"));
  EXPECT_THAT(Panel(4), ElementsAre("Integrating probabilities for profile parameter #1"));
  EXPECT_THAT(frmBayesian.rtbTable.text, StartsWith("Bayesian posterior distribution data\n\n  Point       Value"));
  EXPECT_DOUBLE_EQ(evaluation.ReferenceF, 10);
  EXPECT_EQ(algorithm.Value(1), 3);
  EXPECT_EQ(algorithm.Step(1), 0.25);
  ExpectBackAtMenu();
}

TEST_F(PosteriorDialogueTest, TheBivariatePlotIsFollowedByTheGridFile) {
  const std::string path = ::testing::TempDir() + "merlane_posterior.grd";
  AnswerSetup("1", "3", "3");
  Edit();
  SeePlots();
  windows.Yes("Bivariate plot");
  windows.AtWait([this] {
    EXPECT_TRUE(frmBivarPlot.Visible());
    EXPECT_FALSE(frmBayesian.Loaded());
    EXPECT_EQ(frmBivarPlot.lblVar.text, "X - Axis: Values for parameter #1\nY - Axis: Values for parameter #2");
    desk.Press(frmBivarPlot.cmdDone);
  });
  windows.File(path, "Save grid values in...");
  Choose(frmParEvals.cmdBP);
  EXPECT_EQ(windows.files[0].filter, "All files (*.*)|*.*|Grid files (*.grd)|*.grd");
  EXPECT_EQ(windows.files[0].startName, "06011030.grd");
  EXPECT_EQ(ReadWholeFile(path),
            "Bivariate plot data for parameters 1 and 2 \r\n"
            "        X_Coord,        Y_Coord,  Prob_Density\r\n"
            "    2.7500E+000     9.0000E-001    8.6936E-001\r\n"
            "    2.7500E+000     1.0000E+000    8.8250E-001\r\n"
            "    2.7500E+000     1.1000E+000    8.6936E-001\r\n"
            "    3.0000E+000     9.0000E-001    9.8511E-001\r\n"
            "    3.0000E+000     1.0000E+000    1.0000E+000\r\n"
            "    3.0000E+000     1.1000E+000    9.8511E-001\r\n"
            "    3.2500E+000     9.0000E-001    8.6936E-001\r\n"
            "    3.2500E+000     1.0000E+000    8.8250E-001\r\n"
            "    3.2500E+000     1.1000E+000    8.6936E-001\r\n");
  EXPECT_TRUE(frmBayesian.Visible());
  std::filesystem::remove(path);
}

TEST_F(PosteriorDialogueTest, OneThatIsAskedForAgainAndCancelledLeavesTheConstantAndTheLastResults) {
  AnswerSetup("1", "3", "3");
  Edit();
  SeePlots();
  windows.No("Bivariate plot");
  Choose(frmParEvals.cmdBP);
  const double constant = state.flags.ObjectiveConstant;
  windows.Yes(PosteriorTitle);
  windows.Yes(PosteriorTitle);
  windows.Enter("50", "Enter constant");
  windows.Enter("1", PosteriorTitle);
  windows.Enter("3", PosteriorTitle);
  windows.CancelInput(PosteriorTitle);
  Choose(frmParEvals.cmdBP);
  EXPECT_EQ(state.flags.ObjectiveConstant, constant) << "priors weigh as before";
  windows.Yes(PosteriorTitle);
  windows.No(PosteriorTitle);
  SeePlots();
  windows.No("Bivariate plot");
  Choose(frmParEvals.cmdBP);
  EXPECT_TRUE(frmBayesian.Visible());
}

TEST_F(PosteriorDialogueTest, ACancelledGridFileLeavesNoneAndTheTableFollows) {
  AnswerSetup("1", "3", "3");
  Edit();
  SeePlots();
  windows.Yes("Bivariate plot");
  windows.AtWait([this] { desk.Close(frmBivarPlot); });
  windows.CancelFile("Save grid values in...");
  Choose(frmParEvals.cmdBP);
  EXPECT_THAT(windows.writes, IsEmpty());
  EXPECT_TRUE(frmBayesian.Visible());
  ExpectBackAtMenu();
}

TEST_F(PosteriorDialogueTest, NegativeNumbersHaveTheirSignInTheFirstColumnOfTheirField) {
  BivariateDensity density;
  density.X = {-1.5};
  density.Y = {-2};
  density.f.Dimension(1, 1, 0.25);
  EXPECT_THAT(GridFileText(density), HasSubstr("\n-    1.5000E+000-     2.0000E+000    2.5000E-001\n"));
}

TEST_F(PosteriorDialogueTest, TooManyFunctionCallsAreRefusedWithANumberThatIsNotTheOneTested) {
  FreeThree();
  algorithm.Step(4) = 0.1;
  AnswerSetup("1", "1001", "1001");  // 1001^3 x 1001
  windows.CancelInput(PosteriorTitle);
  Choose(frmParEvals.cmdBP);
  EXPECT_EQ(windows.messages.back().title, "Too many function calls");
  EXPECT_EQ(windows.messages.back().style, 48);
  EXPECT_EQ(windows.messages.back().text,
            "Required number of function calls exceeds the maximum allowed of 32767.\r\n"
            "Correct this by reducing the number of free parameters or the grid resolution");
  EXPECT_THAT(windows.inputs.back().prompt, StartsWith("Choose the parameter number"));
  ExpectBackAtMenu();
}

TEST_F(PosteriorDialogueTest, ThirtyThreeByThirtyThreeAtThreeFreeParametersPassesTheSizeTest) {
  FreeThree();
  AnswerSetup("1", "33", "33");
  Edit();
  SeePlots();
  Choose(frmParEvals.cmdBP);
  EXPECT_EQ(run.calls.size(), 33U * 33U * 33U);
  EXPECT_THAT(Panel(2), Contains("35937 function calls required"));
  EXPECT_THAT(windows.Titles(), Not(Contains("Too many function calls")));
  EXPECT_THAT(windows.Titles(), Not(Contains("Bivariate plot")));
}

TEST_F(PosteriorDialogueTest, SevenOtherFreeParametersStopAtTheSetupAndNotAtTheSizeTest) {
  algorithm.Step.Fill(0.1);
  AnswerSetup("1", "3", "3");  // 3^7 x 3
  Edit();
  Choose(frmParEvals.cmdBP);
  EXPECT_EQ(windows.messages[windows.messages.size() - 2].title, "Problem with setup");
  EXPECT_EQ(LastBox(), "Too many free parameters - maximum is 6");
  EXPECT_EQ(windows.messages[windows.messages.size() - 2].style, 48);
  EXPECT_THAT(run.calls, IsEmpty());
  EXPECT_EQ(algorithm.Step(1), 0.1);
  EXPECT_EQ(state.free.NFREE, 8);
  ExpectBackAtMenu();
}

TEST_F(PosteriorDialogueTest, SixOtherFreeParametersAreIntegrated) {
  algorithm.Step.Fill(0.1);
  algorithm.Step(8) = 0;
  AnswerSetup("1", "3", "3");
  Edit();
  SeePlots();
  Choose(frmParEvals.cmdBP);
  EXPECT_EQ(run.calls.size(), 2187U);
}

TEST_F(PosteriorDialogueTest, AStepOfZeroIsRefusedAndTheParameterAskedForAgain) {
  AnswerSetup("3", "3", "3");
  Edit();
  windows.CancelInput(PosteriorTitle);
  Choose(frmParEvals.cmdBP);
  EXPECT_EQ(windows.messages[windows.messages.size() - 2].title, "Problem with setup");
  EXPECT_EQ(LastBox(), "The parameter chosen has a step size of zero; please try again");
  EXPECT_EQ(windows.messages.back().title, "A friendly reminder");
  ExpectBackAtMenu();
}

TEST_F(PosteriorDialogueTest, StepsFromTheCovariancesSpanSevenErrorsOnTheGridAndEightOnTheProfile) {
  TakeCovariances({0.5, 0.1});
  AnswerSetup("1", "25", "15");
  windows.Enter("3", PosteriorTitle);
  Edit([this] {
    EXPECT_DOUBLE_EQ(algorithm.Step(1), 1.5 * 24 / (24 * 3));
    EXPECT_DOUBLE_EQ(algorithm.Step(2), 3 * 0.1 * 7 / 14);
  });
  SeePlots();
  windows.No("Bivariate plot");
  Choose(frmParEvals.cmdBP);
  EXPECT_TRUE(covariances.AreOf(run.objective.Present())) << "an integration leaves them";
  EXPECT_EQ(covariances.ChangesUntil(run.objective.Present()), "step sizes have been changed");
}

TEST_F(PosteriorDialogueTest, StepsTypedBehindThoseFromTheCovariancesAreOfAnotherRun) {
  TakeCovariances({0.5, 0.1});
  const Array1<double> calculatedWith = algorithm.Step;
  AnswerSetup("1", "25", "15");
  windows.Enter("3", PosteriorTitle);
  Edit([this] { algorithm.Step(2) *= 2; });
  SeePlots();
  windows.No("Bivariate plot");
  Choose(frmParEvals.cmdBP);
  EXPECT_FALSE(covariances.AreOf(run.objective.Present()));
  algorithm.Step = calculatedWith;
  EXPECT_TRUE(covariances.AreOf(run.objective.Present()));
  EXPECT_EQ(covariances.ChangesUntil(run.objective.Present()), "");
}

TEST_F(PosteriorDialogueTest, AGridThatFailedProposesNoNegativeSteps) {
  TakeCovariances({0.5, 0.1});
  covariances.grid(1).ending = GridEnding::Abandoned;
  covariances.grid(1).standardErrors.Fill(-1);
  const Array1<double> steps = algorithm.Step;
  AnswerSetup("1", "25", "15");
  windows.Enter("1", PosteriorTitle);
  windows.Enter("N", PosteriorTitle);
  Edit([&] { EXPECT_EQ(algorithm.Step, steps); });
  SeePlots();
  windows.No("Bivariate plot");
  Choose(frmParEvals.cmdBP);
}

TEST_F(PosteriorDialogueTest, TheReferenceOfOtherDataIsNotTaken) {
  evaluation.ReferenceF = 1e6;  // exp(1e6) is no number
  evaluation.ReferenceReading = state.reading + 1;
  FreezeTheOther();
  AnswerSetup("1", "3");
  Edit([this] {
    algorithm.Step(2) = 0.1;
    algorithm.Step(3) = 0.1;
  });
  windows.Enter("3", PosteriorTitle);
  SeePlots();
  Choose(frmParEvals.cmdBP);
  EXPECT_EQ(evaluation.ReferenceF, 0);
  EXPECT_TRUE(evaluation.series);
}

TEST_F(PosteriorDialogueTest, QuitAtTheStepsEndsTheCommand) {
  TakeCovariances({0.5, 0.1});
  AnswerSetup("1", "25", "15");
  windows.Enter("Q", PosteriorTitle);
  Choose(frmParEvals.cmdBP);
  EXPECT_FALSE(frmAlgo.Loaded());
  ExpectBackAtMenu();
}

TEST_F(PosteriorDialogueTest, ParametersFreedInTheEditorAreAskedTheirGridPoints) {
  FreezeTheOther();
  AnswerSetup("1", "3");
  Edit([this] { algorithm.Step(2) = 0.1; });
  windows.Enter("5", PosteriorTitle);
  SeePlots();
  windows.No("Bivariate plot");
  Choose(frmParEvals.cmdBP);
  EXPECT_EQ(windows.inputs.back().prompt, GridPrompt);
  EXPECT_EQ(evaluation.bivariate->Y.Size(), 5);
}

TEST_F(PosteriorDialogueTest, ParametersFixedInTheEditorNeedNoGrid) {
  AnswerSetup("1", "5", "3");
  Edit([this] { algorithm.Step(2) = 0; });
  SeePlots();
  Choose(frmParEvals.cmdBP);
  EXPECT_EQ(run.calls.size(), 5U);
}

TEST_F(PosteriorDialogueTest, FreeParametersAreCountedAfreshBeforeTheQuestions) {
  state.free.NFREE = 0;  // nothing has been packed since the data were loaded
  AnswerSetup("1", "3", "3");
  Edit();
  SeePlots();
  windows.No("Bivariate plot");
  Choose(frmParEvals.cmdBP);
  EXPECT_TRUE(evaluation.bivariate);
}

TEST_F(PosteriorDialogueTest, ANegativeStepComesBackWithItsSign) {
  FreezeTheOther();
  algorithm.Step(1) = -0.25;
  AnswerSetup("1", "3");
  Edit();
  SeePlots();
  Choose(frmParEvals.cmdBP);
  EXPECT_EQ((Array1<double>{2.75, 3, 3.25}), evaluation.series->ProfileX);
  EXPECT_EQ(algorithm.Step(1), -0.25);
}

TEST_F(PosteriorDialogueTest, AChosenParameterWhoseFirstPointIsLowestSkipsTheRegionOnTheMode) {
  FreezeTheOther();
  algorithm.Value(1) = 4;
  algorithm.Step(1) = 1;
  AnswerSetup("1", "3");
  Edit();
  SeePlots();
  Choose(frmParEvals.cmdBP);
  EXPECT_EQ(evaluation.series->ModeValue, 3);
  EXPECT_EQ(Array1<double>(3), evaluation.series->ProfileCIMode);
}

TEST_F(PosteriorDialogueTest, TheTimeRemainingIsThatOfAllNodesLeft) {
  const test::Function f = run.function;
  run.function = [this, f](Array1<double>& v) {
    host.clock.now.minute += 1;
    return f(v);
  };
  AnswerSetup("1", "3", "3");
  Edit();
  SeePlots();
  windows.No("Bivariate plot");
  Choose(frmParEvals.cmdBP);
  const auto left = [](const char* time) { return "Estimated time remaining (m:s): " + std::string(time); };
  EXPECT_THAT(Panel(2), ElementsAre("9 function calls required", left("8:00"), left("7:00"), left("6:00"), left("5:00"),
                                    left("4:00"), left("3:00"), left("2:00"), left("1:00"), left("0:00")))
      << "the call for the reference does not count";
}

// Earlier results.

TEST_F(PosteriorDialogueTest, EarlierResultsCanBeSeenAgainWithTheirJointDensity) {
  AnswerSetup("1", "3", "3");
  Edit();
  SeePlots();
  windows.No("Bivariate plot");
  Choose(frmParEvals.cmdBP);
  const std::size_t calls = run.calls.size();
  windows.Yes(PosteriorTitle);
  windows.No(PosteriorTitle);
  SeePlots([this] { EXPECT_EQ(algorithm.Step(1), 0); });
  windows.Yes("Bivariate plot");
  windows.AtWait([this] { desk.Close(frmBivarPlot); });
  windows.CancelFile();
  Choose(frmParEvals.cmdBP);
  EXPECT_EQ(windows.messages[windows.messages.size() - 2].text,
            "Do you want to perform integrations now?\r\nChoosing 'NO' will give you the previous BP plots");
  EXPECT_EQ(run.calls.size(), calls);
  EXPECT_EQ(algorithm.Step(1), 0.25);
  EXPECT_EQ(state.free.NFREE, 2);
  ExpectBackAtMenu();
}

TEST_F(PosteriorDialogueTest, TheReferenceOfOneRunServesTheNext) {
  AnswerSetup("1", "3", "3");
  Edit();
  SeePlots();
  windows.No("Bivariate plot");
  Choose(frmParEvals.cmdBP);
  EXPECT_DOUBLE_EQ(evaluation.ReferenceF, 10);
  FreeThree();
  run.Pack();
  run.function = [](Array1<double>& v) { return v(1) == 3 ? 20 : 24; };
  AnswerSetup("1", "3", "3");
  Edit();
  SeePlots();
  Choose(frmParEvals.cmdBP);
  EXPECT_DOUBLE_EQ(evaluation.ReferenceF, 10);
  EXPECT_DOUBLE_EQ(evaluation.series->ProfileF(1), 2);
  EXPECT_FALSE(evaluation.bivariate) << "and no joint density is left of the first";
}

// Interrupts.

TEST_F(PosteriorDialogueTest, AnInterruptKeepsThePointsDone) {
  AnswerSetup("1", "11", "3");
  // After the constant's turn, a node gives two.
  windows.AtTurn(1 + 2 * 3 * 8 + 1, [this] { EXPECT_TRUE(desk.Press(frmMain.mnuInterruptBayes)); });
  Edit();
  windows.Yes("Bayesian calculations");
  SeePlots();
  windows.No("Bivariate plot");
  Choose(frmParEvals.cmdBP);
  ASSERT_TRUE(evaluation.series);
  EXPECT_EQ(evaluation.series->ProfileX.Size(), 7) << "asked at point 9";
  EXPECT_THAT(windows.Titles(), Contains("Bayesian calculations"));
  EXPECT_FALSE(state.flags.InterruptBayes);
  EXPECT_EQ(algorithm.Value(1), 3);
  ExpectBackAtMenu();
}

TEST_F(PosteriorDialogueTest, TheJointDensityOfAnInterruptedPosteriorEndsWithThePointsKept) {
  const std::string path = ::testing::TempDir() + "merlane_interrupted.grd";
  AnswerSetup("1", "11", "3");
  windows.AtTurn(1 + 2 * 3 * 8 + 1, [this] { desk.Press(frmMain.mnuInterruptBayes); });
  Edit();
  windows.Yes("Bayesian calculations");
  SeePlots();
  windows.Yes("Bivariate plot");
  windows.AtWait([this] {
    EXPECT_EQ(frmBivarPlot.lblXYMax.text, "X-Max = 3.250E+00\nY-Max = 1.100E+00") << "point 7 of 11";
    desk.Close(frmBivarPlot);
  });
  windows.File(path);
  Choose(frmParEvals.cmdBP);
  EXPECT_EQ(evaluation.series->ProfileX.Size(), 7) << "asked at point 9";
  EXPECT_EQ(Lines(ReadWholeFile(path)).size(), 2U + 7 * 3);
  std::filesystem::remove(path);
}

TEST_F(PosteriorDialogueTest, NoAtTheInterruptGoesOn) {
  AnswerSetup("1", "3", "3");
  windows.AtTurn(5, [this] { desk.Press(frmMain.mnuInterruptBayes); });
  Edit();
  windows.No("Bayesian calculations");
  SeePlots();
  windows.No("Bivariate plot");
  Choose(frmParEvals.cmdBP);
  EXPECT_EQ(evaluation.series->ProfileX.Size(), 3);
}

TEST_F(PosteriorDialogueTest, ThePointsDoneBeforeAnInterruptThatIsTooEarlyAreShown) {
  FreezeTheOther();
  AnswerSetup("1", "11");
  windows.AtTurn(1 + 2, [this] { desk.Press(frmMain.mnuInterruptBayes); });
  Edit();
  windows.Yes("Bayesian calculations");
  Choose(frmParEvals.cmdBP);
  EXPECT_FALSE(evaluation.series);
  EXPECT_THAT(windows.messages[windows.messages.size() - 2].text,
              StartsWith("The posterior distribution was interrupted too early for a curve."));
  EXPECT_THAT(frmBayesian.rtbTable.text, StartsWith("Points of a posterior distribution that was interrupted\n"));
  EXPECT_THAT(Lines(frmBayesian.rtbTable.text), Contains(StartsWith("    1     1.7500E+000")));
  ExpectBackAtMenu();
}

TEST_F(PosteriorDialogueTest, AnInterruptOfAPlainCurveKeepsThePointsDone) {
  FreezeTheOther();
  AnswerSetup("1", "11");
  windows.AtTurn(1 + 9, [this] { desk.Press(frmMain.mnuInterruptBayes); });
  Edit();
  windows.Yes("Bayesian calculations");
  SeePlots();
  Choose(frmParEvals.cmdBP);
  EXPECT_EQ(LastBox(), "Interrupt received.  Quit calculations?");
  ASSERT_TRUE(evaluation.series);
  EXPECT_EQ(evaluation.series->ProfileX.Size(), 8) << "asked behind the call of point 10";
}

TEST_F(PosteriorDialogueTest, FewerThanThreePointsGiveNoPlots) {
  AnswerSetup("1", "11", "3");
  windows.AtTurn(10, [this] { desk.Press(frmMain.mnuInterruptBayes); });
  Edit();
  windows.Yes("Bayesian calculations");
  Choose(frmParEvals.cmdBP);
  EXPECT_FALSE(evaluation.series);
  EXPECT_FALSE(frmDistPlot.Loaded());
  ExpectBackAtMenu();
}

TEST_F(PosteriorDialogueTest, LikelihoodsThatHaveLostDigitsAreTold) {
  run.function = [](Array1<double>& v) { return 1450 + 4 * (v(1) - 3) * (v(1) - 3); };
  FreeThree();
  AnswerSetup("1", "3", "3");
  Edit();
  SeePlots();
  Choose(frmParEvals.cmdBP);
  EXPECT_THAT(windows.messages,
              Contains(testing::Field(
                  &Message::text,
                  testing::StartsWith("The likelihoods are so small that they have lost digits: do not trust"))));
}

TEST_F(PosteriorDialogueTest, ADensityThatOverflowsIsToldAndGivesTheParameterBack) {
  evaluation.ReferenceF = 7;
  evaluation.ReferenceReading = state.reading;
  run.function = [](Array1<double>& v) { return v(1) == 3 && v(2) == 1 ? 1e20 : 0.0; };
  AnswerSetup("1", "3", "3");
  Edit();
  windows.ExpectFailure("overflow: the likelihood around");
  Choose(frmParEvals.cmdBP);
  EXPECT_EQ(algorithm.Step(1), 0.25);
  EXPECT_FALSE(state.profile.IntegrationOn);
  EXPECT_EQ(evaluation.ReferenceF, 7) << "that of a run that failed serves nobody";
}

TEST_F(PosteriorDialogueTest, TableIsSavedUnderItsOwnTexts) {
  FreezeTheOther();
  AnswerSetup("1", "3");
  Edit();
  SeePlots();
  Choose(frmParEvals.cmdBP);
  windows.CancelFile("Save Bayesian posterior values in...");
  desk.Press(frmBayesian.cmdSave);
  EXPECT_EQ(windows.files.back().filter, "All files (*.*)|*.*|Bayesian posterior files (*.pos)|*.pos");
  EXPECT_EQ(windows.files.back().startName, "06011030.pos");
  EXPECT_EQ(frmBayesian.title, "Bayesian statistics");
  EXPECT_EQ(frmBayesian.cmdSave.name, "cmdSaveBayesian");
  EXPECT_EQ(frmBayesian.cmdSave.text, "&Save Bayesian posterior distribution data as...");
  EXPECT_EQ(frmBayesian.rtbTable.name, "rtbBayesian");
}

}  // namespace
}  // namespace merlane
