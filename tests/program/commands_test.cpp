// The commands that calculate, from the menu to their end.
#include <gmock/gmock.h>

#include "platform/files.h"
#include "program/analysis.h"

namespace merlane {
namespace {

using test::Analysis;
using test::Golden;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

struct CommandsTest : ::testing::Test, Analysis {};

// ---- One function call

TEST_F(CommandsTest, OneCallShowsItsWindowAndLeavesTheMenuUnloaded) {
  Ready("juveniles_only");
  windows.events.clear();
  desk.Press(menu.cmdOneFunction);
  EXPECT_THAT(windows.events, ElementsAre("unloaded frmMenu", "shown frmOneFunction",
                                          "status stbMain5 1 One moment please...", "status stbMain5 1 "));
  EXPECT_TRUE(ApplicationMenuUsable());
  EXPECT_FALSE(state.flags.OneCallRun);
  desk.Close(program.frmOneFunction);
  EXPECT_EQ(Usable().size(), 13U);
}

TEST_F(CommandsTest, OneCallWithAllStepsZeroStillEvaluatesAndShows) {
  Initialize({.path = Golden("juveniles_only.dat")});
  LoadDefaults();
  desk.Press(menu.cmdOneFunction);
  EXPECT_EQ(state.free.NFREE, 0);
  EXPECT_THAT(program.frmOneFunction.rtbOneFunction.text, HasSubstr("Current minimum of "));
}

TEST_F(CommandsTest, MenuCanBeCalledForWhileTheWindowOfACallIsOpenAndTheNextCommandClosesIt) {
  Ready("juveniles_only");
  desk.Press(menu.cmdOneFunction);
  desk.Press(program.frmMain.mnuMenu);
  windows.CancelFile();
  desk.Press(menu.cmdSaveAlg);
  EXPECT_FALSE(program.frmOneFunction.Loaded());
}

// ---- Simplex

TEST_F(CommandsTest, SimplexAnsweredNoChangesNothing) {
  Ready("juveniles_only");
  desk.Press(menu.cmdOneFunction);
  desk.Press(program.frmMain.mnuMenu);
  windows.No("Just checking");
  desk.Press(menu.cmdSimplex);
  EXPECT_EQ(windows.LastText(), "Have you run '1 Function Call' as required?");
  EXPECT_TRUE(program.frmOneFunction.Visible());
  EXPECT_EQ(Usable().size(), 13U);
}

TEST_F(CommandsTest, SimplexWithoutAStepHasNothingToDoAndKeepsTheApplicationMenuShut) {
  Initialize({.path = Golden("juveniles_only.dat")});
  LoadDefaults();
  windows.Yes("Just checking");
  desk.Press(menu.cmdSimplex);
  EXPECT_EQ(windows.messages.back().title, "There is nothing to do");
  EXPECT_EQ(windows.messages.back().text, "All step sizes are zero");
  EXPECT_EQ(windows.messages.back().style, style::Exclamation);
  EXPECT_TRUE(menu.Visible());
  EXPECT_FALSE(ApplicationMenuUsable());
  OneFunction();
  EXPECT_TRUE(ApplicationMenuUsable()) << "the next command that ends normally enables it";
}

// ---- Marquardt

TEST_F(CommandsTest, MarquardtCancelledAtTheChoiceOfDerivativesKeepsTheApplicationMenuShut) {
  Ready("juveniles_only");
  windows.Yes("Just checking");
  windows.Reply(Answer::Cancel, "Marquardt minimization");
  desk.Press(menu.cmdMarquardt);
  EXPECT_TRUE(menu.Visible());
  EXPECT_FALSE(program.frmMarquardt.Loaded());
  EXPECT_FALSE(ApplicationMenuUsable());
}

TEST_F(CommandsTest, MarquardtWithoutAStepHasNothingToDo) {
  Initialize({.path = Golden("juveniles_only.dat")});
  LoadDefaults();
  windows.Yes("Just checking");
  windows.No("Marquardt minimization");
  windows.No("Marquardt minimization");
  desk.Press(menu.cmdMarquardt);
  EXPECT_EQ(windows.messages.back().title, "There is nothing to do");
  EXPECT_FALSE(ApplicationMenuUsable());
  EXPECT_TRUE(menu.Visible());
}

TEST_F(CommandsTest, MarquardtLeavesTheTerminalFrequencyAndNoSimplex) {
  Ready("juveniles_only");
  OneFunction();
  state.algorithm.TerminalFreq = 7;
  program.simplex.left = program.objective.Present();
  windows.Yes("Just checking");
  windows.No("Marquardt minimization");
  windows.No("Marquardt minimization");
  desk.Press(menu.cmdMarquardt);
  EXPECT_EQ(state.algorithm.TerminalFreq, 7);
  EXPECT_FALSE(program.simplex.ResumesAt(program.objective.Present()));
}

// ---- Covariances

TEST_F(CommandsTest, CovarianceCancelledBringsTheMenuBackAndMarksNothing) {
  Ready("juveniles_only");
  windows.Reply(Answer::Cancel, "Covariance calculator");
  desk.Press(menu.cmdCovariance);
  EXPECT_FALSE(program.covariances.basis);
  EXPECT_TRUE(ApplicationMenuUsable());
  EXPECT_EQ(Usable().size(), 13U);
}

TEST_F(CommandsTest, CovariancesCanBeViewedAgainWithoutACalculation) {
  Ready("juveniles_only");
  program.covariances.CovBaseValue = state.algorithm.Value;
  program.covariances.basis = program.objective.Present();
  windows.Yes("Covariance");
  desk.Press(menu.cmdCovariance);
  EXPECT_EQ(windows.LastText(), "View the last set of calculated covariance results?");
  EXPECT_TRUE(program.frmCovDisplay.Visible());
  EXPECT_FALSE(menu.Loaded());
  desk.Close(program.frmCovDisplay);
  EXPECT_EQ(Usable().size(), 13U);
  EXPECT_TRUE(ApplicationMenuUsable());
}

// ---- Priors

TEST_F(CommandsTest, PriorsHideTheMenuUntilTheyAreDone) {
  Ready("juveniles_only");
  desk.Press(menu.cmdBayesian);
  EXPECT_TRUE(program.frmLoadPriors.Visible());
  EXPECT_THAT(Usable(), IsEmpty());
  desk.Press(program.frmLoadPriors.cmdCancel);
  EXPECT_EQ(Usable().size(), 13U);
  EXPECT_FALSE(state.flags.BayesOn);
}

TEST_F(CommandsTest, FirstPriorsFileCountsOnlyAfterTheChooserWasOpenedOnceMore) {
  Ready("juveniles_only");
  LoadPriors(Golden("priors.pri"));
  EXPECT_FALSE(state.flags.BayesOn);
  OpenAndCancelPriors();
  EXPECT_TRUE(state.flags.BayesOn);
  EXPECT_EQ(state.flags.ObjectiveConstant, 2);
  EXPECT_EQ(program.frmMain.stbMain1.Get(2), "Bayesian priors file: priors");
}

TEST_F(CommandsTest, InitialisationForgetsThePriors) {
  Ready("juveniles_only");
  LoadPriors(Golden("priors.pri"));
  OpenAndCancelPriors();
  windows.No("Initialize");
  Initialize({.path = Golden("eggs_only.dat")});
  EXPECT_FALSE(state.flags.BayesOn || program.priors.AnySet());
  EXPECT_EQ(state.flags.PriorFileName, "");
  EXPECT_EQ(program.frmMain.stbMain1.Get(2), "Bayesian priors file: ");
}

TEST_F(CommandsTest, WhilePriorsAreEditedTheMenuCanBeLookedAtButBeginsNothing) {
  Ready("juveniles_only");
  desk.Press(menu.cmdBayesian);
  windows.Yes("Setting Bayesian Priors");
  desk.Press(program.frmLoadPriors.cmdSet);
  EXPECT_FALSE(program.frmLoadPriors.Loaded());
  desk.Press(program.frmSetPriors.mnuMenu);
  EXPECT_TRUE(menu.Visible());
  EXPECT_THAT(Usable(), IsEmpty());
  desk.Press(program.frmSetPriors.mnuFinished);
  EXPECT_EQ(Usable().size(), 13U);
}

TEST_F(CommandsTest, ConstantBehindThePriorsThatCannotBeReadIsAskedForAgain) {
  Ready("juveniles_only");
  desk.Press(menu.cmdBayesian);
  windows.Yes("Setting Bayesian Priors");
  desk.Press(program.frmLoadPriors.cmdSet);
  for (const char* term : {"0.05", "0.001"}) windows.Enter(term, "Gaussian (i.e., Normal)");
  desk.Press(program.frmSetPriors.mnuN);
  windows.No("Save Bayesian priors");
  for (const char* constant : {"1e400", "0.5"}) windows.Enter(constant, "Enter constant");
  desk.Press(program.frmSetPriors.mnuFinished);
  EXPECT_TRUE(state.flags.BayesOn);
  EXPECT_EQ(state.flags.ObjectiveConstant, 2) << "priors without it would count for nothing";
}

// ---- Descriptions

TEST_F(CommandsTest, WhatAFunctionCallNotesOfAParameterIsNotToldOfDataLoadedBehindItInWhichItIsFree) {
  Ready("beta_binomial");
  const Array1<std::string> plain = state.algorithm.ParName;
  state.algorithm.Value(3) = state.algorithm.Value(4) = 1;
  for (const int i : {3, 4, 5, 6, 7, 8}) state.algorithm.Step(i) = 0;
  for (const int i : {5, 6, 7, 8}) state.algorithm.Value(i) = 0;
  OneFunction();
  ASSERT_THAT(state.algorithm.ParName(5), HasSubstr("DO NOT ESTIMATE"));
  LoadAlg(Golden("beta_binomial.alg"));
  EXPECT_EQ(state.algorithm.ParName(5), plain(5));
}

TEST_F(CommandsTest, WhatAFunctionCallNotesOfAParameterIsTakenBackWhereTheEditorSetsItFreeAndElsewhereStands) {
  Ready("beta_binomial");
  const std::string plain = state.algorithm.ParName(5);
  state.algorithm.Value(3) = state.algorithm.Value(4) = 1;
  for (const int i : {3, 4, 5, 6, 7, 8}) state.algorithm.Step(i) = 0;
  for (const int i : {5, 6, 7, 8}) state.algorithm.Value(i) = 0;
  OneFunction();
  desk.Press(menu.cmdEditAlg);
  FrmAlgo& editor = program.frmAlgo;
  desk.DoubleClick(editor.grdVS, 5, 2);
  desk.Enter(editor.grdVS, 5, 2, "0.1");
  desk.Press(editor.cmdFinish);
  EXPECT_EQ(state.algorithm.ParName(5), plain);
  EXPECT_THAT(state.algorithm.ParName(6), HasSubstr("DO NOT ESTIMATE"));
}

// ---- Results and simulation

TEST_F(CommandsTest, SummaryRestsOnAnEvaluationAtThePresentValues) {
  Ready("juveniles_only");
  double passed = 0;
  program.model.writeResults = [&](ModelCall& call) {
    EXPECT_EQ(call.NF, -1);
    passed = call.F;
    EXPECT_FALSE(menu.Loaded());
  };
  windows.events.clear();
  desk.Press(menu.cmdUserSummary);
  EXPECT_EQ(passed, nlohmann::json::parse(ReadWholeFile(Golden("juveniles_only.json")))["F"].get<double>());
  EXPECT_THAT(windows.events, ElementsAre("unloaded frmMenu",
                                          "status stbMain5 1 One moment please while one function call is executed...",
                                          "status stbMain5 1 "));
  EXPECT_TRUE(ApplicationMenuUsable());
}

TEST_F(CommandsTest, FreshSimulationWithAllValuesZeroMakesNoFirstCall) {
  InitializeSimulation();
  LoadDefaults();
  state.algorithm.Value.Fill(0);
  bool simulated = false;
  program.model.simulate = [&](ModelCall&) { simulated = true; };
  windows.events.clear();
  desk.Press(menu.cmdUserSummary);
  EXPECT_TRUE(simulated);
  EXPECT_THAT(windows.events, ElementsAre("unloaded frmMenu")) << "no call, so no message about one";
}

TEST_F(CommandsTest, AnalyticalDerivativesLeaveEverythingAsItWas) {
  Ready("juveniles_only");
  state.Gradient.Dimension(2, 7);
  EXPECT_EQ(program.objective.Call(state.algorithm.Value, -2, 3), 3);
  EXPECT_EQ(state.Gradient, Array1<double>(2, 7));
}

}  // namespace
}  // namespace merlane
