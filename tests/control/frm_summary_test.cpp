#include "control/frm_summary.h"

#include <filesystem>

#include "control/frm_main.h"
#include "forms/desk.h"
#include "platform/files.h"
#include "support/scripted_host.h"

namespace merlane {
namespace {

using testing::ElementsAre;
using testing::StartsWith;

class FrmSummaryTest : public testing::Test {
 protected:
  FrmSummaryTest() {
    std::filesystem::remove_all(folder_);
    std::filesystem::create_directories(folder_);
    state.algorithm.AlgName = "data/lake.alg";
    state.algorithm.AlgShortName = "lake";
    state.flags.ModelInitialised = true;
    desk.Show(main);
  }
  ~FrmSummaryTest() override { std::filesystem::remove_all(folder_); }
  std::string Path(const std::string& name) const { return (folder_ / name).string(); }

  std::filesystem::path folder_ =
      std::filesystem::path(testing::TempDir()) / testing::UnitTest::GetInstance()->current_test_info()->name();
  test::ScriptedHost host;
  Desk desk{host.Get()};
  RunState state;
  FrmMain main{desk};
  FrmMenu menu{desk, state};
  Objective objective{state, [](ModelCall&) {}};
  FrmSummary summary{desk, state, objective, menu};
};

TEST_F(FrmSummaryTest, SavesWhatStandsInThePaneWithTheNameOnTop) {
  summary.Open("first\nsecond\n");
  EXPECT_EQ(summary.title, "Brood survival results summary");
  EXPECT_EQ(summary.cmdSaveSummary.text, "Save results summary as...");
  EXPECT_EQ(summary.cmdSaveSummary.toolTip, "Saves the (possibly edited) output appearing in the textbox below");
  EXPECT_TRUE(summary.rtbOut.fixedPitch);
  ASSERT_TRUE(desk.SetText(summary.rtbOut, "edited\nsecond\n"));
  host.windows.File(Path("lake"), "Save results summary in (*.tvo)...");
  desk.Press(summary.cmdSaveSummary);
  const std::string name = Path("lake.tvo");
  EXPECT_EQ(ReadWholeFile(name), "Originally saved with the file name: " + name + "\r\n\r\nedited\r\nsecond\r\n");
  EXPECT_THAT(summary.rtbOut.text, StartsWith("Originally saved with the file name: " + name));
  EXPECT_EQ(host.windows.files[0].filter,
            "All Files (*.*)|*.*|Output files (*.tvo)|*.tvo|Named for algorithm file (lake.*)|lake.*|");
  EXPECT_EQ(host.windows.files[0].filterIndex, 2);
  EXPECT_EQ(host.windows.files[0].startName, "data/lake.tvo");
  EXPECT_THAT(host.windows.writes, ElementsAre(name));
}

TEST_F(FrmSummaryTest, SavedTwicePutsTwoLinesOnTop) {
  summary.Open("body");
  host.windows.File(Path("one.tvo"));
  desk.Press(summary.cmdSaveSummary);
  host.windows.File(Path("two.tvo"));
  desk.Press(summary.cmdSaveSummary);
  EXPECT_EQ(ReadWholeFile(Path("two.tvo")), "Originally saved with the file name: " + Path("two.tvo") +
                                                "\r\n\r\nOriginally saved with the file name: " + Path("one.tvo") +
                                                "\r\n\r\nbody");
}

TEST_F(FrmSummaryTest, ANameTypedWithItsExtensionIsNotExtended) {
  summary.Open("body");
  host.windows.File(Path("lake.tvo"));
  desk.Press(summary.cmdSaveSummary);
  EXPECT_TRUE(std::filesystem::exists(Path("lake.tvo")));
  EXPECT_FALSE(std::filesystem::exists(Path("lake.tvo.tvo")));
  EXPECT_EQ(host.windows.files[0].PathOf("lake"), "lake.tvo") << "what is asked whether to overwrite";
  EXPECT_EQ(host.windows.files[0].PathOf("lake.tvo"), "lake.tvo");
}

TEST_F(FrmSummaryTest, WithoutANameOfTheRunTheTimeIsProposed) {
  state.algorithm.AlgName.clear();
  summary.Open("body");
  host.windows.CancelFile();
  desk.Press(summary.cmdSaveSummary);
  EXPECT_EQ(host.windows.files[0].startName, "06011030.tvo");
}

TEST_F(FrmSummaryTest, SimulatedDataAlwaysGetTheirExtensionAdded) {
  state.flags.SimulationMode = true;
  summary.Open("Year\n1995\n");
  EXPECT_EQ(summary.cmdSaveSummary.text, "Save simulated data as...");
  host.windows.File(Path("lake.sim"), "Save simulated data in...");
  desk.Press(summary.cmdSaveSummary);
  EXPECT_EQ(ReadWholeFile(Path("lake.sim.sim")), "Year\r\n1995\r\n") << "no line on top";
  EXPECT_EQ(summary.rtbOut.text, "Year\n1995\n");
  EXPECT_EQ(host.windows.files[0].filter, "All Files (*.*)|*.*|Simulated data files (*.sim)|*.sim");
  EXPECT_EQ(host.windows.files[0].startName, "06011030");
  EXPECT_EQ(host.windows.files[0].PathOf("lake.sim"), "lake.sim.sim") << "what is asked whether to overwrite";
}

TEST_F(FrmSummaryTest, WhatIsShownIsSavedAsWhatItIsThoughTheRunHasBecomeAnother) {
  summary.Open("a summary");
  state.flags.SimulationMode = true;
  host.windows.File(Path("lake"), "Save results summary in (*.tvo)...");
  desk.Press(summary.cmdSaveSummary);
  EXPECT_TRUE(std::filesystem::exists(Path("lake.tvo")));
  summary.Open("data");
  EXPECT_EQ(summary.cmdSaveSummary.text, "Save simulated data as...");
  host.windows.File(Path("lake"), "Save simulated data in...");
  desk.Press(summary.cmdSaveSummary);
  EXPECT_EQ(ReadWholeFile(Path("lake.sim")), "data");
}

TEST_F(FrmSummaryTest, PlotsAndBootstrapFollowUponResultsThatAreStillThereAndNeverUponSimulatedData) {
  summary.Open("a summary");
  summary.ForgetResults();
  EXPECT_FALSE(desk.Usable(summary.cmdPlots) || desk.Usable(summary.cmdBootstrap));
  summary.Open("a summary of other data");
  EXPECT_TRUE(desk.Usable(summary.cmdPlots) && desk.Usable(summary.cmdBootstrap));
  state.flags.SimulationMode = true;
  summary.Open("data");
  EXPECT_FALSE(summary.cmdPlots.visible || summary.cmdBootstrap.visible);
}

TEST_F(FrmSummaryTest, ACancelledDialogueChangesNothing) {
  summary.Open("body");
  host.windows.CancelFile();
  desk.Press(summary.cmdSaveSummary);
  EXPECT_EQ(summary.rtbOut.text, "body");
  EXPECT_TRUE(host.windows.writes.empty());
}

TEST_F(FrmSummaryTest, AFileThatCannotBeWrittenLeavesThePaneAsItWas) {
  summary.Open("body");
  host.windows.File(Path("nowhere/lake"));
  host.windows.ExpectFailure("No such file or directory");
  desk.Press(summary.cmdSaveSummary);
  EXPECT_EQ(summary.rtbOut.text, "body");
}

TEST_F(FrmSummaryTest, ClosingBringsTheMenuBackReadyToAnalyse) {
  summary.Open("body");
  ASSERT_TRUE(desk.Close(summary));
  EXPECT_TRUE(menu.Visible());
  EXPECT_TRUE(menu.cmdSimplex.enabled);
  EXPECT_TRUE(menu.cmdUserSummary.enabled);
  EXPECT_EQ(menu.cmdUserSummary.text, "Single model res&ults summary");
  EXPECT_EQ(menu.cmdUserSummary.toolTip,
            "Produces a saveable summary (and perhaps plots) of model results for the current parameter estimates");
  EXPECT_EQ(menu.focus, &menu.cmdUserSummary);
}

TEST_F(FrmSummaryTest, ClosingInASimulationBringsTheMenuBackReadyToSimulate) {
  state.flags.SimulationMode = true;
  summary.Open("body");
  desk.Close(summary);
  EXPECT_FALSE(menu.cmdSimplex.enabled);
  EXPECT_FALSE(menu.cmdOneFunction.enabled);
  EXPECT_TRUE(menu.cmdEditAlg.enabled);
  EXPECT_EQ(menu.cmdUserSummary.text, "S&imulate a data set");
  EXPECT_EQ(menu.focus, &menu.cmdUserSummary);
}

}  // namespace
}  // namespace merlane
