// Who may act: orders of commands that once put two of them in charge together.
#include <gmock/gmock.h>

#include "platform/files.h"
#include "program/analysis.h"

namespace merlane {
namespace {

using test::Analysis;
using test::Folder;
using test::Golden;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::StartsWith;

struct ChargeOrders : ::testing::Test, Analysis {
  FrmSummary& summary = program.frmSummary;

  void Summary() {
    windows.Enter("1", "More simulations improve the goodness-of-fit (GOF) estimate");
    windows.Yes("Choose among output options");
    ASSERT_TRUE(desk.Press(menu.cmdUserSummary));
    ASSERT_TRUE(desk.Press(program.frmMain.mnuMenu));
  }
  /// A profile of parameter 17 by simplex, up to the editor, which is closed as it stands.
  void AnswerProfile(const std::string& points) {
    const char* title = "ML parameter estimate evaluation";
    windows.Yes(title);
    windows.Enter("0.5", "Enter constant");
    windows.Enter("17", title);
    windows.Enter(points, title);
    windows.Yes(title);
    windows.AtWait([this] { EXPECT_TRUE(desk.Press(program.frmAlgo.cmdFinish)); });
  }
};

TEST_F(ChargeOrders, WhatFollowsUponASummaryRestsBesideTheOpenEditorAndSoDoesTheMenu) {
  Ready("juveniles_only");
  Summary();
  desk.Press(menu.cmdEditAlg);
  EXPECT_FALSE(desk.Press(summary.cmdPlots));
  EXPECT_FALSE(desk.Press(summary.cmdBootstrap));
  EXPECT_FALSE(desk.Close(summary));
  desk.Press(program.frmMain.mnuMenu);
  EXPECT_THAT(Usable(), IsEmpty()) << "a fit would be undone by the editor's table";
  desk.Press(program.frmAlgo.cmdFinish);
  EXPECT_TRUE(desk.Usable(summary.cmdPlots));
  EXPECT_EQ(Usable().size(), 13U);
}

TEST_F(ChargeOrders, ASummaryCanBeSavedBesideTheOpenEditor) {
  const Folder folder("charge_summary");
  Ready("juveniles_only");
  Summary();
  desk.Press(menu.cmdEditAlg);
  windows.File(folder / "kept.tvo", "Save results summary in (*.tvo)...");
  EXPECT_TRUE(desk.Press(summary.cmdSaveSummary));
  EXPECT_TRUE(std::filesystem::exists(folder / "kept.tvo"));
  EXPECT_THAT(Usable(), IsEmpty());
  EXPECT_TRUE(desk.Usable(program.frmAlgo.cmdFinish));
  desk.Press(program.frmAlgo.cmdFinish);
  EXPECT_EQ(Usable().size(), 13U);
}

TEST_F(ChargeOrders, AFailureEnablesNothingBesideTheEditor) {
  const Folder folder("charge_failure");
  Ready("juveniles_only");
  Summary();
  desk.Press(menu.cmdEditAlg);
  windows.File(folder / "missing/log", "Save minimization progress in...");
  windows.ExpectFailure("missing/log");
  desk.Press(program.frmAlgo.cmdOpenLog);
  EXPECT_TRUE(desk.Usable(program.frmAlgo.cmdFinish));
  EXPECT_THAT(Usable(), IsEmpty());
  EXPECT_FALSE(desk.Usable(summary.cmdPlots));
}

TEST_F(ChargeOrders, NoChooserOfPriorsIsLeftToBringTheRankingUpLater) {
  for (const bool uniform : {true, false}) {
    SCOPED_TRACE(uniform);
    Ready("juveniles_only");
    desk.Press(menu.cmdRank);
    desk.Press(program.frmRank.cmdBayesian);
    if (uniform) {
      desk.Press(program.frmLoadPriors.cmdUniform);
    } else {
      windows.Yes("Setting Bayesian Priors");
      desk.Press(program.frmLoadPriors.cmdSet);
      desk.Press(program.frmSetPriors.mnuFinished);
    }
    EXPECT_TRUE(desk.Usable(program.frmRank.cmdAICc));
    EXPECT_FALSE(program.frmLoadPriors.Loaded());
    desk.Press(program.frmRank.cmdFinish);
    windows.No("Initialize");
    Initialize({.path = Golden("juveniles_only.dat")});
    EXPECT_FALSE(program.frmRank.Visible());
    EXPECT_TRUE(menu.Visible());
  }
}

TEST_F(ChargeOrders, WhileThePlotsOfAProfileAreOpenNothingElseCanBeginOrGoOn) {
  Ready("juveniles_only");
  desk.Press(menu.cmdOneFunction);
  desk.Press(program.frmMain.mnuMenu);
  desk.Press(menu.cmdParEstimate);
  AnswerProfile("3");
  windows.AtWait([this] {
    EXPECT_FALSE(ApplicationMenuUsable());
    for (Form* const form : desk.Forms())
      if (form != &program.frmDistPlot && form != &program.frmMain && form != &program.frmOneFunction &&
          form != &program.frmSimplex) {
        EXPECT_FALSE(form->Visible() && form->TakesInput()) << form->name;
      }
    desk.Close(program.frmSimplex);
    EXPECT_FALSE(menu.Visible());
    desk.Press(program.frmDistPlot.cmdDone);
  });
  desk.Press(program.frmParEvals.cmdML);
  EXPECT_EQ(Usable().size(), 13U);
}

TEST_F(ChargeOrders, ASummaryLeftOpenOverAnInitialisationEnablesNothingWhenItCloses) {
  Ready("juveniles_only");
  Summary();
  windows.No("Initialize");
  Initialize({.path = Golden("eggs_only.dat")});
  desk.Close(summary);
  EXPECT_THAT(Usable(), ElementsAre("cmdInitialize", "cmdLoadAlg", "cmdQuit"));
  EXPECT_THAT(std::vector<std::string>(state.algorithm.Fuse.begin(), state.algorithm.Fuse.end()), Each("~~"));
}

TEST_F(ChargeOrders, TheRankingBehindAFailedLoadEnablesNothingWhenItCloses) {
  const Folder folder("charge");
  WriteWholeFile(folder / "bad.alg", "             34\r\n rubbish\r\n");
  Initialize({.path = Golden("juveniles_only.dat")});
  desk.Press(menu.cmdRank);
  windows.File(folder / "bad.alg", "Open algorithm data file");
  desk.Press(program.frmRank.cmdLoadAlg);
  windows.CancelFile("Save algorithm data in...");
  desk.Press(program.frmRank.cmdSaveAlg);
  desk.Press(program.frmRank.cmdFinish);
  EXPECT_THAT(Usable(), ElementsAre("cmdInitialize", "cmdLoadAlg", "cmdQuit"));
}

TEST_F(ChargeOrders, AFailedCallIsNoOneCallAnyMoreWhateverElseWasOpened) {
  Ready("juveniles_only");
  desk.Press(menu.cmdRank);
  desk.Press(program.frmRank.cmdBayesian);
  desk.Press(program.frmLoadPriors.cmdUniform);
  desk.Press(program.frmRank.cmdFinish);
  windows.No("Initialize");
  Ready("juveniles_only");  // where a chooser left over once brought the ranking up
  state.algorithm.Value(5) = 1e200;
  state.algorithm.Step(17) = 0.1;
  windows.ExpectFailure("frmMenu.cmdOneFunction");
  desk.Press(menu.cmdOneFunction);
  EXPECT_FALSE(state.flags.OneCallRun) << "the repair would run inside covariances";
  EXPECT_FALSE(program.frmOneFunction.Loaded()) << "empty it would only stand in the way";
  EXPECT_EQ(Usable().size(), 13U);
}

TEST_F(ChargeOrders, WindowsOfResultsThatCloseBesideTheRankingLeaveTheMenuAway) {
  Ready("juveniles_only");
  desk.Press(menu.cmdOneFunction);
  desk.Press(program.frmMain.mnuMenu);
  desk.Press(menu.cmdRank);
  desk.Close(program.frmOneFunction);
  EXPECT_FALSE(menu.Visible());
  EXPECT_FALSE(ApplicationMenuUsable());
  EXPECT_TRUE(desk.Usable(program.frmRank.cmdAICc));
}

TEST_F(ChargeOrders, TheEditorThatAnEvaluationWaitsForIsNotTakenOverByAnotherCommand) {
  Ready("juveniles_only");
  desk.Press(menu.cmdParEstimate);
  const char* title = "ML parameter estimate evaluation";
  windows.Yes(title);
  windows.Enter("0.5", "Enter constant");
  windows.Enter("17", title);
  windows.Enter("3", title);
  windows.No(title);
  windows.AtWait([this] {
    EXPECT_TRUE(desk.Usable(program.frmAlgo.cmdFinish));
    EXPECT_FALSE(ApplicationMenuUsable());
    desk.Show(menu);
    EXPECT_THAT(Usable(), IsEmpty());
    desk.Unload(menu);
    desk.Press(program.frmAlgo.cmdFinish);
  });
  windows.Reply(Answer::Cancel, "Marquardt minimization");
  desk.Press(program.frmParEvals.cmdML);
  EXPECT_EQ(Usable().size(), 13U);
}

}  // namespace
}  // namespace merlane
