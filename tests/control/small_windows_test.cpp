#include <filesystem>

#include "control/frm_abort.h"
#include "control/frm_credits.h"
#include "control/frm_defaults.h"
#include "control/frm_help.h"
#include "control/frm_summary.h"
#include "control/frm_wisdom.h"
#include "forms/desk.h"
#include "platform/files.h"
#include "support/scripted_host.h"

namespace merlane {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

class SmallWindows : public testing::Test {
 protected:
  SmallWindows() {
    std::filesystem::remove_all(folder_);
    std::filesystem::create_directories(folder_);
    state.algorithm.AlgName = "data/lake.alg";
    state.algorithm.AlgShortName = "lake";
    state.flags.ModelInitialised = true;
    desk.Show(main);
  }
  ~SmallWindows() override { std::filesystem::remove_all(folder_); }
  std::string Path(const std::string& name) const { return (folder_ / name).string(); }

  std::filesystem::path folder_ =
      std::filesystem::path(testing::TempDir()) / testing::UnitTest::GetInstance()->current_test_info()->name();
  test::ScriptedHost host;
  Desk desk{host.Get()};
  RunState state;
  FrmMain main{desk};
  FrmMenu menu{desk, state};
  FrmSummary summary{desk, state, menu};
  FrmAbort abort{desk, state, main};
  FrmHelp help{desk};
  FrmDefaults defaults{desk};
  FrmWisdom wisdom{desk};
  FrmCredits credits{desk};
};

using Summary = SmallWindows;

TEST_F(Summary, SavesWhatStandsInThePaneWithTheNameOnTop) {
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

TEST_F(Summary, SavedTwicePutsTwoLinesOnTop) {
  summary.Open("body");
  host.windows.File(Path("one.tvo"));
  desk.Press(summary.cmdSaveSummary);
  host.windows.File(Path("two.tvo"));
  desk.Press(summary.cmdSaveSummary);
  EXPECT_EQ(ReadWholeFile(Path("two.tvo")), "Originally saved with the file name: " + Path("two.tvo") +
                                                "\r\n\r\nOriginally saved with the file name: " + Path("one.tvo") +
                                                "\r\n\r\nbody");
}

TEST_F(Summary, ANameTypedWithItsExtensionIsNotExtended) {
  summary.Open("body");
  host.windows.File(Path("lake.tvo"));
  desk.Press(summary.cmdSaveSummary);
  EXPECT_TRUE(std::filesystem::exists(Path("lake.tvo")));
  EXPECT_FALSE(std::filesystem::exists(Path("lake.tvo.tvo")));
}

TEST_F(Summary, SimulatedDataAlwaysGetTheirExtensionAdded) {
  state.flags.SimulationMode = true;
  summary.Open("Year\n1995\n");
  EXPECT_EQ(summary.cmdSaveSummary.text, "Save simulated data as...");
  host.windows.File(Path("lake.sim"), "Save simulated data in...");
  desk.Press(summary.cmdSaveSummary);
  EXPECT_EQ(ReadWholeFile(Path("lake.sim.sim")), "Year\r\n1995\r\n") << "no line on top";
  EXPECT_EQ(summary.rtbOut.text, "Year\n1995\n");
  EXPECT_EQ(host.windows.files[0].filter, "All Files (*.*)|*.*|Simulated data files (*.sim)|*.sim");
  EXPECT_EQ(host.windows.files[0].startName, "06011030");
}

TEST_F(Summary, WhatIsShownIsSavedAsWhatItIsThoughTheRunHasBecomeAnother) {
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

TEST_F(Summary, PlotsAndBootstrapFollowUponResultsThatAreStillThereAndNeverUponSimulatedData) {
  summary.Open("a summary");
  summary.ForgetResults();
  EXPECT_FALSE(desk.Usable(summary.cmdPlots) || desk.Usable(summary.cmdBootstrap));
  summary.Open("a summary of other data");
  EXPECT_TRUE(desk.Usable(summary.cmdPlots) && desk.Usable(summary.cmdBootstrap));
  state.flags.SimulationMode = true;
  summary.Open("data");
  EXPECT_FALSE(summary.cmdPlots.visible || summary.cmdBootstrap.visible);
}

TEST_F(Summary, ACancelledDialogueChangesNothing) {
  summary.Open("body");
  host.windows.CancelFile();
  desk.Press(summary.cmdSaveSummary);
  EXPECT_EQ(summary.rtbOut.text, "body");
  EXPECT_TRUE(host.windows.writes.empty());
}

TEST_F(Summary, AFileThatCannotBeWrittenLeavesThePaneAsItWas) {
  summary.Open("body");
  host.windows.File(Path("nowhere/lake"));
  host.windows.ExpectFailure("No such file or directory");
  desk.Press(summary.cmdSaveSummary);
  EXPECT_EQ(summary.rtbOut.text, "body");
}

TEST_F(Summary, ClosingBringsTheMenuBackReadyToAnalyse) {
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

TEST_F(Summary, ClosingInASimulationBringsTheMenuBackReadyToSimulate) {
  state.flags.SimulationMode = true;
  summary.Open("body");
  desk.Close(summary);
  EXPECT_FALSE(menu.cmdSimplex.enabled);
  EXPECT_FALSE(menu.cmdOneFunction.enabled);
  EXPECT_TRUE(menu.cmdEditAlg.enabled);
  EXPECT_EQ(menu.cmdUserSummary.text, "S&imulate a data set");
  EXPECT_EQ(menu.focus, &menu.cmdUserSummary);
}

using Abort = SmallWindows;

TEST_F(Abort, SetsTheFlagAndGoes) {
  abort.Open("Abort randomizations?");
  EXPECT_EQ(abort.title, "Abort randomizations?");
  desk.Press(abort.cmdAbort);
  EXPECT_TRUE(state.flags.AbortRun);
  EXPECT_FALSE(abort.Loaded());
  EXPECT_TRUE(host.windows.statuses.empty());
}

TEST_F(Abort, InABootstrapSaysThatThePresentReplicateFinishes) {
  state.flags.BootstrapMode = true;
  abort.Open("Abort all bootstraps?");
  desk.Press(abort.cmdAbort);
  EXPECT_TRUE(state.flags.AbortRun);
  EXPECT_EQ(main.stbMain2.Get(1), "Bootstrap procedure will stop when this bootstrap has completed!");
}

TEST_F(Abort, CanBePressedWhileACalculationRuns) {
  Button start{main, "cmdStart", ""};
  int rounds = 0;
  start.onClick = [&] {
    abort.Open("Abort randomizations?");
    while (!state.flags.AbortRun && rounds < 10) {
      ++rounds;
      desk.Turn();
    }
  };
  host.windows.AtTurn(3, [&] { EXPECT_TRUE(desk.Press(abort.cmdAbort)); });
  desk.Press(start);
  EXPECT_EQ(rounds, 3);
}

using Help = SmallWindows;

TEST_F(Help, ShowsTheTextOfItsCaller) {
  help.Open("one");
  EXPECT_EQ(help.title, "Help");
  EXPECT_EQ(help.rtbHelp.text, "one");
  EXPECT_TRUE(help.rtbHelp.readOnly);
  EXPECT_TRUE(help.rtbHelp.fixedPitch);
  help.Open("two");
  EXPECT_EQ(help.rtbHelp.text, "two");
}

using Information = SmallWindows;

TEST_F(Information, EachHidesTheMainWindowWhileItIsOpenAndOkBringsItBack) {
  for (FrmInformation* form : {static_cast<FrmInformation*>(&defaults), static_cast<FrmInformation*>(&wisdom),
                               static_cast<FrmInformation*>(&credits)}) {
    desk.Show(*form);
    EXPECT_FALSE(main.Visible()) << form->name;
    desk.Press(form->cmdOK);
    EXPECT_TRUE(main.Visible()) << form->name;
    EXPECT_FALSE(form->Loaded()) << form->name;
  }
}

TEST_F(Information, ClosingByTheFrameBringsTheMainWindowBackToo) {
  desk.Show(wisdom);
  desk.Close(wisdom);
  EXPECT_TRUE(main.Visible());
}

/// The paragraphs of a text, between blank lines.
std::vector<std::string> Paragraphs(const std::string& text) {
  std::vector<std::string> paragraphs;
  std::size_t start = 0;
  for (std::size_t end; (end = text.find("\r\n\r\n", start)) != std::string::npos; start = end + 4)
    paragraphs.push_back(text.substr(start, end - start));
  paragraphs.push_back(text.substr(start));
  return paragraphs;
}

TEST_F(Information, DefaultsInFiveParagraphs) {
  EXPECT_EQ(defaults.title, "Default names and values etc.");
  const std::vector<std::string> paragraphs = Paragraphs(defaults.txtDefaultNames.text);
  ASSERT_EQ(paragraphs.size(), 5U);
  EXPECT_EQ(paragraphs[1],
            "An unnamed file to which data are to be saved will be given a default, but changable, 8-digit time-date "
            "based name.  For example: 'mmddhhmm.alg' for an algorithm file.");
  EXPECT_EQ(
      paragraphs[2],
      "A value of -1 for standard errors and associated outputs in the covariance routine indicates that no "
      "reliable values for those outputs could be generated, i.e., the Hessian matrix was not positive-definite.  "
      "You might try the Bayesian or maximum-likelihood routines.");
}

TEST_F(Information, WisdomInNineParagraphsAndTwoReferences) {
  EXPECT_EQ(wisdom.title, "Patience and wisdom lead to satisfying results");
  const std::vector<std::string> paragraphs = Paragraphs(wisdom.txtWisdom.text);
  ASSERT_EQ(paragraphs.size(), 11U);
  EXPECT_EQ(paragraphs[5],
            "Extremely large values for the objective function are likely due to a penalty value that keeps parameter "
            "values within acceptable limits, e.g., 0<=p<=1.");
  EXPECT_EQ(
      paragraphs[8],
      "YOU ARE THUS WELL ADVISED TO GIVE CONSIDERABLE THOUGHT TO YOUR CHOICE OF INITIAL PARAMETER VALUES AND STEP "
      "SIZES!");
  EXPECT_THAT(paragraphs[9], HasSubstr("simplex"));
  EXPECT_THAT(paragraphs[10], HasSubstr("model selection"));
}

TEST_F(Information, CreditsSayWhatTheProgramIs) {
  EXPECT_THAT(credits.txtCredits.text, StartsWith("Merlane Survival Estimation Model, version "));
}

}  // namespace
}  // namespace merlane
