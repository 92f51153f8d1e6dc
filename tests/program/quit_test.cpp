// The ways out of the program, and what is asked on the way.
#include <gmock/gmock.h>

#include "program/analysis.h"

namespace merlane {
namespace {

using test::Analysis;
using test::Golden;
using ::testing::ElementsAre;

struct QuitTest : ::testing::Test, Analysis {};

TEST_F(QuitTest, RunWithoutParametersEndsAfterTwoQuestions) {
  windows.Yes("Exit Tolvane");
  windows.No("What about algorithm data?");
  desk.Press(menu.cmdQuit);
  EXPECT_THAT(windows.Titles(), ElementsAre("Exit Tolvane", "What about algorithm data?"));
  EXPECT_EQ(windows.messages[0].text, "Do you want to quit Tolvane?");
  EXPECT_EQ(windows.messages[0].style, 292);
  EXPECT_EQ(windows.messages[1].text, "Save algorithm data?");
  EXPECT_EQ(windows.messages[1].style, 36);
  EXPECT_EQ(windows.exitStatus, 0);
  EXPECT_TRUE(desk.Ended());
}

TEST_F(QuitTest, ButtonMenuEntryAndFrameAskAlikeAndNoKeepsTheProgram) {
  windows.No("Exit Tolvane");
  desk.Press(menu.cmdQuit);
  windows.No("Exit Tolvane");
  desk.Press(program.frmMain.mnuExit);
  windows.No("Exit Tolvane");
  desk.Close(program.frmMain);
  EXPECT_TRUE(program.frmMain.Visible());
  EXPECT_FALSE(desk.Ended());
}

TEST_F(QuitTest, FrameOfTheMainWindowEndsTheProgram) {
  windows.Yes("Exit Tolvane");
  windows.No("What about algorithm data?");
  desk.Close(program.frmMain);
  EXPECT_EQ(windows.exitStatus, 0);
}

TEST_F(QuitTest, EditorsExitIsTheSameDialogue) {
  Ready("juveniles_only");
  desk.Press(menu.cmdEditAlg);
  windows.Yes("Exit Tolvane");
  windows.No("What about algorithm data?");
  desk.Press(program.frmAlgo.mnuExit);
  EXPECT_EQ(windows.exitStatus, 0);
}

TEST_F(QuitTest, AlgorithmDataAreSavedOnTheWay) {
  const test::Folder folder("quit");
  Ready("juveniles_only");
  windows.Yes("Exit Tolvane");
  windows.Yes("What about algorithm data?");
  windows.File(folder / "kept.alg", "Save algorithm data in...");
  desk.Press(menu.cmdQuit);
  EXPECT_THAT(windows.writes, ElementsAre(folder / "kept.alg"));
  EXPECT_EQ(windows.exitStatus, 0);
}

TEST_F(QuitTest, CancelInASaveDialogueCancelsTheQuit) {
  Ready("juveniles_only");
  program.priors.PriorCode(17) = "N";
  windows.Yes("Exit Tolvane");
  windows.Yes("What about algorithm data?");
  windows.CancelFile("Save algorithm data in...");
  desk.Press(menu.cmdQuit);
  EXPECT_FALSE(desk.Ended());
  windows.Yes("Exit Tolvane");
  windows.No("What about algorithm data?");
  windows.Yes("What about Bayesian priors?");
  windows.CancelFile("Save Bayesian priors file in...");
  desk.Press(menu.cmdQuit);
  EXPECT_FALSE(desk.Ended());
  EXPECT_EQ(Usable().size(), 13U);
}

TEST_F(QuitTest, NothingIsNamedByAQuitThatWasCancelledBeforeThereWereData) {
  windows.Yes("Exit Tolvane");
  windows.Yes("What about algorithm data?");
  windows.CancelFile("Save algorithm data in...");
  desk.Press(menu.cmdQuit);
  EXPECT_EQ(state.algorithm.AlgName, "");
  EXPECT_THAT(Usable(), ElementsAre("cmdInitialize", "cmdQuit"));
}

TEST_F(QuitTest, FileThatCannotBeWrittenDoesNotEndTheCalculationThatRuns) {
  const test::Folder folder("quit_running");
  Ready("juveniles_only");
  OneFunction();
  windows.AtTurn(20, [&] { desk.Close(program.frmMain); });
  windows.Yes("Just checking");
  windows.Yes("Exit Tolvane");
  windows.Yes("What about algorithm data?");
  windows.File(folder / "missing/kept.alg", "Save algorithm data in...");
  windows.ExpectFailure("missing/kept.alg");
  desk.Press(menu.cmdSimplex);
  EXPECT_FALSE(desk.Ended());
  EXPECT_EQ(program.fit.minimisation->ending, "minimum");
}

TEST_F(QuitTest, SaveThatFailsKeepsTheProgramAndTheData) {
  const test::Folder folder("quit_fails");
  Ready("juveniles_only");
  const Array1<double> value = state.algorithm.Value;
  windows.Yes("Exit Tolvane");
  windows.Yes("What about algorithm data?");
  windows.File(folder / "missing/kept.alg", "Save algorithm data in...");
  windows.ExpectFailure("missing/kept.alg");
  desk.Press(menu.cmdQuit);
  EXPECT_FALSE(desk.Ended());
  EXPECT_EQ(state.algorithm.Value, value);
  EXPECT_EQ(Usable().size(), 13U);
}

TEST_F(QuitTest, PriorsAreAskedForWhenThereAreAny) {
  Ready("juveniles_only");
  program.priors.PriorCode(17) = "N";
  windows.Yes("Exit Tolvane");
  windows.No("What about algorithm data?");
  windows.No("What about Bayesian priors?");
  desk.Press(menu.cmdQuit);
  EXPECT_EQ(windows.LastText(), "Save Bayesian priors?");
  EXPECT_EQ(windows.exitStatus, 0);
}

TEST_F(QuitTest, EditorOfThePriorsAsksForThemInItsOwnWords) {
  Ready("juveniles_only");
  program.priors.PriorCode(17) = "N";
  desk.Press(menu.cmdBayesian);
  desk.Press(program.frmLoadPriors.cmdSet);
  windows.Yes("Exit Tolvane");
  windows.No("What about algorithm data?");
  windows.No("Save Bayesian priors");
  desk.Press(program.frmSetPriors.mnuExit);
  EXPECT_EQ(windows.LastText(), "Save Bayesian priors now?");
  EXPECT_EQ(windows.messages.back().style, style::YesNoQuestion);
  EXPECT_EQ(windows.exitStatus, 0);
}

TEST_F(QuitTest, PriorsAreSavedOnTheWay) {
  const test::Folder folder("quit_priors");
  Ready("juveniles_only");
  LoadPriors(Golden("priors.pri"));
  windows.Yes("Exit Tolvane");
  windows.No("What about algorithm data?");
  windows.Yes("What about Bayesian priors?");
  windows.File(folder / "kept.pri", "Save Bayesian priors file in...");
  desk.Press(menu.cmdQuit);
  EXPECT_THAT(windows.writes, ElementsAre(folder / "kept.pri"));
  EXPECT_EQ(windows.exitStatus, 0);
}

TEST_F(QuitTest, LogIsClosed) {
  const test::Folder folder("quit_log");
  program.log.Open(folder / "minimize.tvl");
  windows.Yes("Exit Tolvane");
  windows.No("What about algorithm data?");
  desk.Press(menu.cmdQuit);
  EXPECT_FALSE(program.log.IsOpen());
}

TEST_F(QuitTest, FrameDuringACalculationAsksAndUnwindsIt) {
  Ready("juveniles_only");
  OneFunction();
  const Array1<double> value = state.algorithm.Value;
  windows.AtTurn(20, [&] { EXPECT_FALSE(desk.Close(program.frmMain)); });
  windows.Yes("Just checking");
  windows.Yes("Exit Tolvane");
  windows.No("What about algorithm data?");
  desk.Press(menu.cmdSimplex);
  EXPECT_EQ(windows.exitStatus, 0);
  EXPECT_EQ(state.algorithm.Value, value) << "a minimiser writes its point when it finishes";
}

TEST_F(QuitTest, FrameWhileACommandWaitsForTheEditorUnwindsTheCommand) {
  Ready("juveniles_only");
  windows.No("Covariance calculator");
  windows.Reply(Answer::Ok, "Covariance calculator");
  windows.AtWait([&] {
    windows.Yes("Exit Tolvane");
    windows.No("What about algorithm data?");
    EXPECT_TRUE(desk.Close(program.frmMain));
  });
  desk.Press(menu.cmdCovariance);
  EXPECT_EQ(windows.exitStatus, 0);
  EXPECT_EQ(windows.waits, 1);
}

TEST_F(QuitTest, FrameDuringACalculationAnsweredNoGoesOn) {
  Ready("juveniles_only");
  OneFunction();
  windows.AtTurn(20, [&] { desk.Close(program.frmMain); });
  windows.Yes("Just checking");
  windows.No("Exit Tolvane");
  desk.Press(menu.cmdSimplex);
  EXPECT_FALSE(desk.Ended());
  EXPECT_EQ(program.fit.minimisation->minimiser, "simplex");
}

TEST_F(QuitTest, RankedTableIsOfferedToBeSavedAsWhereItsWindowIsClosed) {
  const test::Folder folder("quit_ranking");
  Ready("juveniles_only");
  desk.Press(menu.cmdRank);
  windows.Enter("0.5", "Enter constant");
  desk.Press(program.frmRank.cmdAICc);
  desk.Press(program.frmRank.cmdRank);
  windows.Yes("Exit Tolvane");
  windows.No("What about algorithm data?");
  windows.Yes("What about ranking results!");
  windows.CancelFile("Save model ranking results in...");
  desk.Close(program.frmMain);
  EXPECT_FALSE(desk.Ended()) << "who wants to save and chooses no file stays";
  windows.Yes("Exit Tolvane");
  windows.No("What about algorithm data?");
  windows.Yes("What about ranking results!");
  windows.File(folder / "kept.mms", "Save model ranking results in...");
  desk.Close(program.frmMain);
  EXPECT_EQ(windows.LastText(), "Do you want to save ranking results?");
  EXPECT_TRUE(std::filesystem::exists(folder / "kept.mms"));
  EXPECT_TRUE(desk.Ended());
}

TEST_F(QuitTest, RankingWhoseWindowHasBeenClosedIsNotAskedAboutAgain) {
  Ready("juveniles_only");
  desk.Press(menu.cmdRank);
  windows.Enter("0.5", "Enter constant");
  desk.Press(program.frmRank.cmdAICc);
  desk.Press(program.frmRank.cmdRank);
  windows.No("What about ranking results!");
  desk.Press(program.frmRank.cmdFinish);
  windows.Yes("Exit Tolvane");
  windows.No("What about algorithm data?");
  desk.Close(program.frmMain);
  EXPECT_TRUE(desk.Ended());
}

}  // namespace
}  // namespace merlane
