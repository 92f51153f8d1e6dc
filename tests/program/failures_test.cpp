// What becomes of the program when a command fails at run time: nothing is lost and the user can go on.
#include <gmock/gmock.h>

#include "platform/files.h"
#include "program/analysis.h"

namespace merlane {
namespace {

using test::Analysis;
using test::Golden;
using ::testing::ElementsAre;

struct FailuresTest : ::testing::Test, Analysis {
  /// Values at which the model overflows.
  void BreakTheModel() {
    state.algorithm.Value(5) = 1e200;
    state.algorithm.Step(17) = 0.1;
  }
  void ExpectUsable() {
    EXPECT_TRUE(menu.Visible());
    EXPECT_TRUE(ApplicationMenuUsable());
    EXPECT_EQ(Usable().size(), 13U);
    EXPECT_FALSE(state.flags.OneCallRun);
    for (int panel = 1; panel <= 4; ++panel) EXPECT_EQ(program.frmMain.stbMain5.Get(panel), "");
  }
};

TEST_F(FailuresTest, OneCallThatOverflowsBringsTheMenuBack) {
  Ready("juveniles_only");
  BreakTheModel();
  windows.ExpectFailure("frmMenu.cmdOneFunction");
  desk.Press(menu.cmdOneFunction);
  ExpectUsable();
  EXPECT_EQ(state.algorithm.AlgName, Golden("juveniles_only.alg"));
}

TEST_F(FailuresTest, OneCallThatOverflowsNamesTheParameter) {
  Ready("juveniles_only");
  state.algorithm.Value(9) = 40000;
  windows.ExpectFailure("parameter 9 at -40000: overflow: -40000 does not lie between -32768 and 32767");
  desk.Press(menu.cmdOneFunction);
  ExpectUsable();
}

TEST_F(FailuresTest, OneCallThatOverflowsNamesVisitAndBroodToo) {
  Ready("juveniles_only");
  state.algorithm.Value(24) = 1e308;  // times the hatch date
  windows.ExpectFailure(
      "visit 2 of brood C00001 in 1995: parameter 17 at 0.04: overflow by the effects that act on it");
  desk.Press(menu.cmdOneFunction);
  ExpectUsable();
}

TEST_F(FailuresTest, ASimplexGoesOnPastPointsThatCannotBeEvaluated) {
  Ready("juveniles_only");
  OneFunction();
  state.algorithm.Step(24) = 1e308;
  windows.Yes("Just checking");
  desk.Press(menu.cmdSimplex);
  EXPECT_THAT(windows.Titles(), ::testing::Contains("Simplex minimum"));
  EXPECT_THAT(program.frmSimplex.rtbSimplex.text,
              ::testing::HasSubstr("Note: The objective function could not be evaluated at "));
}

TEST_F(FailuresTest, MinimisersThatOverflowBringTheMenuBack) {
  Ready("juveniles_only");
  BreakTheModel();
  windows.Yes("Just checking");
  windows.ExpectFailure("frmMenu.cmdSimplex");
  desk.Press(menu.cmdSimplex);
  ExpectUsable();
  BreakTheModel();
  windows.Yes("Just checking");
  windows.No("Marquardt minimization");
  windows.No("Marquardt minimization");
  windows.ExpectFailure("frmMenu.cmdMarquardt");
  desk.Press(menu.cmdMarquardt);
  ExpectUsable();
}

TEST_F(FailuresTest, CovariancesWithoutAStepAreRefusedAndBringTheMenuBack) {
  Initialize({.path = Golden("juveniles_only.dat")});
  LoadDefaults();
  desk.Press(menu.cmdCovariance);
  EXPECT_EQ(windows.LastText(), "All step sizes are zero");
  EXPECT_FALSE(program.covariances.basis);
  ExpectUsable();
}

TEST_F(FailuresTest, VanishedAlgorithmFileLeavesTheRunAsItWas) {
  Ready("juveniles_only");
  const Array1<double> value = state.algorithm.Value;
  windows.ExpectFailure("vanished.alg");
  LoadAlg(Golden("vanished.alg"));
  EXPECT_EQ(state.algorithm.AlgName, Golden("juveniles_only.alg"));
  EXPECT_EQ(state.algorithm.Value, value);
  ExpectUsable();
}

TEST_F(FailuresTest, FolderInPlaceOfAnAlgorithmFileIsTold) {
  Ready("juveniles_only");
  windows.ExpectFailure("plots");
  LoadAlg(Golden("plots"));
  ExpectUsable();
}

TEST_F(FailuresTest, UnwritableFolderLosesNothing) {
  const test::Folder folder("unwritable");
  Ready("juveniles_only");
  windows.File(folder / "none/kept.alg");
  windows.ExpectFailure("none/kept.alg");
  desk.Press(menu.cmdSaveAlg);
  ExpectUsable();
  windows.File(folder / "kept.alg");
  desk.Press(menu.cmdSaveAlg);
  EXPECT_THAT(windows.writes, ElementsAre(folder / "kept.alg"));
}

TEST_F(FailuresTest, AlgorithmFileFullOfRubbishIsRefusedInWords) {
  const test::Folder folder("rubbish");
  WriteWholeFile(folder / "rubbish.alg", std::string("\0\xff\r\n\n\r34", 8));
  Initialize({.path = Golden("juveniles_only.dat")});
  LoadAlg(folder / "rubbish.alg");
  EXPECT_EQ(windows.messages.back().title, "Algorithm file - information input failed");
  EXPECT_THAT(Usable(), ElementsAre("cmdInitialize", "cmdLoadAlg", "cmdRank", "cmdQuit"));
}

TEST_F(FailuresTest, DataThatFailHalfwayLeaveTheFormToTryAgainAndNothingToCalculateFrom) {
  Ready("juveniles_only");
  windows.No("Initialize");
  windows.ExpectFailure("frmInitialize.cmdDone");
  Initialize({.path = Golden("constant_covariate.dat"), .covariates = "1", .format = "A"});
  EXPECT_TRUE(desk.Usable(program.frmInitialize.cmdDone));
  EXPECT_FALSE(menu.Visible());
  EXPECT_EQ(state.algorithm.Fuse.Size(), state.algorithm.NPAR);
  desk.Press(program.frmInitialize.cmdCancel);
  EXPECT_THAT(Usable(), ElementsAre("cmdInitialize", "cmdQuit"));
}

TEST_F(FailuresTest, DataThatFailHalfwayLeaveNoNamesAndNoPriorsOfTheRunBefore) {
  Ready("juveniles_only");
  LoadPriors(Golden("priors.pri"));
  OpenAndCancelPriors();
  windows.No("Initialize");
  windows.ExpectFailure("frmInitialize.cmdDone");
  Initialize({.path = Golden("constant_covariate.dat"), .covariates = "1", .format = "A"});
  EXPECT_FALSE(state.flags.BayesOn);
  EXPECT_EQ(program.frmMain.stbMain0.Get(1), "Brood data file name: ");
  EXPECT_EQ(program.frmMain.stbMain1.Get(2), "Bayesian priors file: ");
}

TEST_F(FailuresTest, DataThatFailHalfwayCanBeReadDifferently) {
  windows.ExpectFailure("frmInitialize.cmdDone");
  Initialize({.path = Golden("constant_covariate.dat"), .covariates = "1", .format = "A"});
  desk.SetText(program.frmInitialize.cboFormat, "O");
  desk.Press(program.frmInitialize.cmdDone);
  EXPECT_THAT(Usable(), ElementsAre("cmdInitialize", "cmdLoadAlg", "cmdRank", "cmdQuit"));
}

TEST_F(FailuresTest, QuitAfterAFailedReadFindsNothingToStumbleOver) {
  windows.ExpectFailure("frmInitialize.cmdDone");
  Initialize({.path = Golden("constant_covariate.dat"), .covariates = "1", .format = "A"});
  const test::Folder folder("after_failure");
  windows.Yes("Exit Tolvane");
  windows.Yes("What about algorithm data?");
  windows.File(folder / "kept.alg");
  desk.Close(program.frmMain);
  EXPECT_EQ(windows.exitStatus, 0);
}

TEST(TwoProgramsTest, ShareNothing) {
  test::Analysis first, second;
  first.Ready("juveniles_only");
  EXPECT_EQ(second.state.algorithm.NPAR, 0);
  EXPECT_THAT(second.Usable(), ElementsAre("cmdInitialize", "cmdQuit"));
  second.Ready("eggs_only");
  first.OneFunction();
  EXPECT_EQ(first.program.model.data.JuvTotal, 2537);
}

}  // namespace
}  // namespace merlane
