// The evaluation of estimates and the profile of priors, from the menu to the menu.
#include <gmock/gmock.h>

#include "control/algorithm_file.h"
#include "platform/files.h"
#include "priors/set_prior.h"
#include "program/analysis.h"

namespace merlane {
namespace {

using ::testing::Contains;
using ::testing::HasSubstr;
using ::testing::Not;

/// The juveniles at the minimum of a simplex.
struct EvaluationTest : ::testing::Test, test::Analysis {
  EvaluationTest() {
    Ready("juveniles_only");
    OneFunction();
    Simplex();
  }
  void Open() {
    ASSERT_TRUE(desk.Press(menu.cmdParEstimate));
    ASSERT_TRUE(program.frmParEvals.Visible());
  }
  /// A profile of parameter 17 by simplex, up to the editor.
  void AnswerProfile(const std::string& points) {
    windows.Yes("ML parameter estimate evaluation");
    windows.Enter("0.5", "Enter constant");
    windows.Enter("17", "ML parameter estimate evaluation");
    windows.Enter(points, "ML parameter estimate evaluation");
    windows.Yes("ML parameter estimate evaluation");
  }
  void FinishEditing() {
    windows.AtWait([this] { EXPECT_TRUE(desk.Press(program.frmAlgo.cmdFinish)); });
  }
  void ClosePlots() {
    windows.AtWait([this] { EXPECT_TRUE(desk.Press(program.frmDistPlot.cmdDone)); });
  }
  void ProfileShortly() {
    Open();
    AnswerProfile("3");
    FinishEditing();
    ClosePlots();
    ASSERT_TRUE(desk.Press(program.frmParEvals.cmdML));
  }
};

std::size_t FilesIn(const test::Folder& folder) {
  return static_cast<std::size_t>(
      std::distance(std::filesystem::directory_iterator(folder / ""), std::filesystem::directory_iterator()));
}

TEST_F(EvaluationTest, ComesBackToTheMenuWithEverythingThatCouldBePressed) {
  const auto before = Usable();
  ProfileShortly();
  EXPECT_EQ(Usable(), before);
  EXPECT_TRUE(ApplicationMenuUsable());
  EXPECT_TRUE(program.frmMaxLike.Visible());
  EXPECT_FALSE(state.profile.ProfileOn);
}

TEST_F(EvaluationTest, ClosesTheWindowOfTheMinimiser) {
  EXPECT_TRUE(program.frmSimplex.Visible());
  Open();
  EXPECT_FALSE(program.frmSimplex.Loaded());
}

TEST_F(EvaluationTest, NothingFollowsUponASummaryWhileTheEditorIsOpen) {
  FrmSummary& summary = program.frmSummary;
  windows.Enter("1", "More simulations improve the goodness-of-fit (GOF) estimate");
  windows.Yes("Choose among output options");
  ASSERT_TRUE(desk.Press(menu.cmdUserSummary));
  ASSERT_TRUE(desk.Press(program.frmMain.mnuMenu));
  Open();
  AnswerProfile("3");
  windows.AtWait([&] {
    EXPECT_FALSE(desk.Press(summary.cmdBootstrap));
    EXPECT_FALSE(desk.Press(summary.cmdPlots));
    EXPECT_FALSE(desk.Close(summary));
    EXPECT_TRUE(desk.Press(program.frmAlgo.cmdFinish));
  });
  ClosePlots();
  ASSERT_TRUE(desk.Press(program.frmParEvals.cmdML));
  EXPECT_TRUE(desk.Usable(summary.cmdBootstrap));
  EXPECT_TRUE(desk.Usable(summary.cmdPlots));
}

TEST_F(EvaluationTest, ChoiceClosedByItsFrameComesBackToTheMenu) {
  Open();
  EXPECT_TRUE(desk.Close(program.frmParEvals));
  EXPECT_TRUE(menu.Visible());
  EXPECT_TRUE(ApplicationMenuUsable());
}

TEST_F(EvaluationTest, NextSimplexBeginsAnew) {
  ProfileShortly();
  EXPECT_FALSE(program.simplex.ResumesAt(program.objective.Present()));
}

TEST_F(EvaluationTest, AnotherModelVoidsTheEarlierResults) {
  ProfileShortly();
  EXPECT_EQ(state.profile.ProfileState, 1);
  windows.No("Initialize");
  Ready("eggs_only");
  EXPECT_EQ(state.profile.ProfileState, 0);
  Open();
  windows.Yes("ML parameter estimate evaluation");
  windows.Enter("0.5", "Enter constant");
  windows.CancelInput("ML parameter estimate evaluation");
  EXPECT_TRUE(desk.Press(program.frmParEvals.cmdML)) << "is not asked whether the earlier plots shall be seen";
}

TEST_F(EvaluationTest, ProgramCanBeQuitWhileThePlotsAreOpen) {
  const double step = state.algorithm.Step(17);
  Open();
  AnswerProfile("3");
  FinishEditing();
  windows.AtWait([this] {
    windows.Yes("Exit Tolvane");
    windows.No("What about algorithm data?");
    desk.Close(program.frmMain);
  });
  desk.Press(program.frmParEvals.cmdML);
  EXPECT_EQ(windows.exitStatus, 0);
  EXPECT_EQ(state.algorithm.Step(17), step);
  EXPECT_FALSE(state.profile.ProfileOn);
}

TEST_F(EvaluationTest, AlgorithmDataSavedOnTheWayOutOfAnEvaluationHaveItsParameterFree) {
  const test::Folder folder("evaluation_quit");
  const double value = state.algorithm.Value(17), step = state.algorithm.Step(17);
  Open();
  AnswerProfile("3");
  FinishEditing();
  windows.AtWait([&] {
    EXPECT_EQ(state.algorithm.Step(17), 0);
    windows.Yes("Exit Tolvane");
    windows.Yes("What about algorithm data?");
    windows.File(folder / "left.alg");
    desk.Close(program.frmMain);
  });
  desk.Press(program.frmParEvals.cmdML);
  AlgorithmData left = state.algorithm;
  left.Step(17) = 0;
  ASSERT_EQ(ReadAlgorithm(ReadWholeFile(folder / "left.alg"), left).failure, AlgorithmReading::Failure::None);
  EXPECT_NEAR(left.Value(17), value, 1e-7 * value);
  EXPECT_NEAR(left.Step(17), step, 1e-7 * step);
}

/// All parameters as they stand in a file of algorithm data.
struct Estimates {
  std::vector<double> value, step;
};

Estimates EstimatesIn(const std::string& path, const AlgorithmData& like) {
  AlgorithmData file = like;
  file.Value.Fill(-1);
  file.Step.Fill(-1);
  EXPECT_EQ(ReadAlgorithm(ReadWholeFile(path), file).failure, AlgorithmReading::Failure::None);
  return {{file.Value.begin(), file.Value.end()}, {file.Step.begin(), file.Step.end()}};
}

/// Who leaves, or is left, in the middle of an evaluation keeps all that he evaluated: a profile has moved the other
/// parameters, too.
TEST_F(EvaluationTest, WhatIsSavedWhileAProfileRunsOrShowsItsPlotsAreTheEstimatesBeforeIt) {
  const test::Folder folder("profile_quit");
  windows.File(folder / "own.alg");
  desk.Press(menu.cmdSaveAlg);
  const Estimates own = EstimatesIn(folder / "own.alg", state.algorithm);
  int looked = 0;
  const auto nothingToSave = [&] {
    ++looked;
    EXPECT_NE(state.algorithm.Value(18), own.value[17]) << "the profile has moved it";
    EXPECT_THAT(program.SaveUnasked(), ::testing::IsEmpty());
    EXPECT_EQ(FilesIn(folder), 1U) << "beside the file, which holds all that is the user's";
  };
  Open();
  AnswerProfile("9");
  FinishEditing();
  AtEachAttempt("Minimizations remaining: 6", [&](int) { nothingToSave(); });
  windows.AtWait([&] {
    nothingToSave();
    windows.Yes("Exit Tolvane");
    windows.Yes("What about algorithm data?");
    windows.File(folder / "left.alg");
    desk.Close(program.frmMain);
  });
  desk.Press(program.frmParEvals.cmdML);
  EXPECT_EQ(looked, 2);
  EXPECT_EQ(windows.exitStatus, 0);
  const Estimates left = EstimatesIn(folder / "left.alg", state.algorithm);
  EXPECT_EQ(left.value, own.value);
  EXPECT_EQ(left.step, own.step);
}

TEST_F(EvaluationTest, WhatIsSavedWhileAPosteriorRunsAreTheEstimatesBeforeIt) {
  const test::Folder folder("posterior_quit");
  windows.File(folder / "own.alg");
  desk.Press(menu.cmdSaveAlg);
  const std::string own = ReadWholeFile(folder / "own.alg");
  Open();
  windows.Yes("Bayesian parameter estimate evaluation");
  windows.Enter("0.5", "Enter constant");
  for (const char* answer : {"17", "5", "5"}) windows.Enter(answer, "Bayesian parameter estimate evaluation");
  FinishEditing();
  windows.AtTurn(30, [&] {
    EXPECT_EQ(state.algorithm.Step(17), 0);
    EXPECT_THAT(program.SaveUnasked(), ::testing::IsEmpty());
    EXPECT_EQ(FilesIn(folder), 1U) << "what is in the file is what would be saved";
  });
  ClosePlots();
  windows.No("Bivariate plot");
  desk.Press(program.frmParEvals.cmdBP);
  EXPECT_EQ(ReadWholeFile(folder / "own.alg"), own);
}

TEST_F(EvaluationTest, TableAndPlotsOfAProfileSayWhichParametersItHasLeftElsewhere) {
  const std::string left =
      "Likelihood profile of parameter 17 of juveniles_only.alg (changed since). It has left parameter 18 at its last "
      "point, which is no fit.";
  Open();
  AnswerProfile("5");
  FinishEditing();
  windows.AtWait([&] {
    EXPECT_EQ(program.frmDistPlot.lblFit.text, left);
    desk.Press(program.frmDistPlot.cmdDone);
  });
  desk.Press(program.frmParEvals.cmdML);
  EXPECT_EQ(program.frmMaxLike.lblFit.text, left);
  LoadAlg(test::Golden("juveniles_only.alg"));
  EXPECT_THAT(program.frmMaxLike.lblFit.text, HasSubstr("Since then parameter values have been changed"));
}

/// 17 leads 21, and the profile holds both.
TEST_F(EvaluationTest, TheProfileOfAFusedParameterIsStillOfTheRunWhenItsPlotsAreClosed) {
  windows.No("Initialize");
  Ready("fuses");
  OneFunction();
  Simplex();
  const double value = state.algorithm.Value(17);
  std::string whilePlotsAreOpen;
  Open();
  AnswerProfile("5");
  FinishEditing();
  windows.AtWait([&] {
    whilePlotsAreOpen = program.frmDistPlot.lblFit.text;
    desk.Press(program.frmDistPlot.cmdDone);
  });
  desk.Press(program.frmParEvals.cmdML);
  EXPECT_THAT(whilePlotsAreOpen, HasSubstr("of fuses.alg (changed since). It has left parameters 11, "));
  EXPECT_EQ(program.frmMaxLike.lblFit.text, whilePlotsAreOpen);
  EXPECT_EQ(state.algorithm.Value(17), value);
  EXPECT_EQ(state.algorithm.Value(21), value) << "what is saved now has one value for both";
  Open();
  windows.Yes("ML parameter estimate evaluation");
  windows.No("ML parameter estimate evaluation");
  ClosePlots();
  desk.Press(program.frmParEvals.cmdML);
  EXPECT_EQ(program.frmMaxLike.lblFit.text, whilePlotsAreOpen) << "offered again";
}

TEST_F(EvaluationTest, AProfileThatFailsOnItsWayLeavesTheEstimates) {
  const Array1<double> own = state.algorithm.Value;
  Open();
  AnswerProfile("9");
  FinishEditing();
  AtEachAttempt("Minimizations remaining: 6", [&](int) {
    EXPECT_NE(state.algorithm.Value(18), own(18)) << "the profile has moved it";
    program.model.data.ReadOK = false;
  });
  windows.ExpectFailure("there are no data");
  desk.Press(program.frmParEvals.cmdML);
  EXPECT_EQ(state.algorithm.Value, own);
}

TEST_F(EvaluationTest, ProgramCanBeQuitWhileAProfileRuns) {
  Open();
  AnswerProfile("25");
  FinishEditing();
  windows.AtTurn(5000, [this] {
    windows.Yes("Exit Tolvane");
    windows.No("What about algorithm data?");
    desk.Close(program.frmMain);
  });
  desk.Press(program.frmParEvals.cmdML);
  EXPECT_EQ(windows.exitStatus, 0);
  EXPECT_EQ(state.algorithm.Value(17), 0.04954023599624641);
  EXPECT_NE(state.algorithm.Step(17), 0);
}

TEST_F(EvaluationTest, NothingOfTheMenuCanBePressedWhileAProfileRuns) {
  Open();
  AnswerProfile("3");
  FinishEditing();
  ClosePlots();
  windows.AtTurn(2000, [this] {
    EXPECT_FALSE(menu.Loaded());
    EXPECT_FALSE(desk.Press(program.frmMain.mnuMenu));
    EXPECT_FALSE(desk.Press(program.frmParEvals.cmdBP));
    EXPECT_FALSE(desk.Press(program.frmMain.mnuInterruptBayes));
    EXPECT_TRUE(state.profile.ProfileOn);
  });
  desk.Press(program.frmParEvals.cmdML);
}

TEST_F(EvaluationTest, AFailureLeavesTheMenu) {
  Open();
  AnswerProfile("3");
  windows.AtWait([this] {
    state.algorithm.Value(17) = 1e300;
    state.algorithm.Step(17) = 1e300;
    desk.Press(program.frmAlgo.cmdFinish);
  });
  windows.ExpectFailure("frmParEvals.cmdML");
  desk.Press(program.frmParEvals.cmdML);
  EXPECT_TRUE(menu.Visible());
  EXPECT_TRUE(ApplicationMenuUsable());
  EXPECT_FALSE(state.profile.ProfileOn);
  EXPECT_EQ(state.algorithm.Value(17), 1e300) << "what was typed stays";
  EXPECT_EQ(state.algorithm.Step(17), 1e300);
}

TEST_F(EvaluationTest, APosteriorIsReachedFromTheMenu) {
  Open();
  windows.Yes("Bayesian parameter estimate evaluation");
  windows.Enter("0.5", "Enter constant");
  for (const char* answer : {"17", "5", "5"}) windows.Enter(answer, "Bayesian parameter estimate evaluation");
  FinishEditing();
  ClosePlots();
  windows.No("Bivariate plot");
  EXPECT_TRUE(desk.Press(program.frmParEvals.cmdBP));
  EXPECT_TRUE(program.frmBayesian.Visible());
  EXPECT_TRUE(menu.Visible());
}

TEST_F(EvaluationTest, ANarrowPriorDrawsThePosteriorToItselfAndCountsOnce) {
  program.priors.PriorCode(17) = "N";
  program.priors.PriorFirstMean(17) = 0.03;
  program.priors.PriorFirstSD(17) = 0.00001;  // so narrow that the data hardly matter
  state.flags.BayesOn = true;
  state.algorithm.Step(18) = 0;
  state.algorithm.Value(17) = 0.03;
  state.algorithm.Step(17) = 0.000003;
  Open();
  windows.Yes("Bayesian parameter estimate evaluation");
  windows.Enter("0.5", "Enter constant");
  for (const char* answer : {"17", "41"}) windows.Enter(answer, "Bayesian parameter estimate evaluation");
  FinishEditing();
  ClosePlots();
  EXPECT_TRUE(desk.Press(program.frmParEvals.cmdBP));
  EXPECT_NEAR(program.evaluation.series->EstimatedSE, 0.00001, 1e-9);
}

TEST_F(EvaluationTest, ThePriorsOfTheEditorCanBeProfiled) {
  ASSERT_TRUE(desk.Press(menu.cmdBayesian));
  windows.Yes("Setting Bayesian Priors");
  ASSERT_TRUE(desk.Press(program.frmLoadPriors.cmdSet));
  desk.SelectRow(program.frmSetPriors.grdPriors, 18);
  windows.Enter("0.05", "Gaussian (i.e., Normal)");
  windows.Enter("0.01", "Gaussian (i.e., Normal)");
  desk.Press(program.frmSetPriors.mnuN);
  windows.Enter("17", "Evaluation of prior distributions");
  windows.Enter("101", "Evaluation of prior distributions");
  EXPECT_TRUE(desk.Press(program.frmSetPriors.mnuProfile));
  EXPECT_TRUE(program.frmDistPlot.Visible());
  EXPECT_THAT(program.frmPriorDists.rtbTable.text, HasSubstr("Expected Value:  5.0000E-002"));
  EXPECT_FALSE(menu.Visible()) << "the editor is still open";
  EXPECT_TRUE(desk.Press(program.frmDistPlot.cmdDone));
  EXPECT_THAT(windows.Titles(), Not(Contains("Bivariate plot")));
}

}  // namespace
}  // namespace merlane
