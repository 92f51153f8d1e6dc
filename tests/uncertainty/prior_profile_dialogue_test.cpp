#include "uncertainty/prior_profile_dialogue.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <nlohmann/json.hpp>

#include "base/text.h"
#include "platform/files.h"
#include "priors/priors_file.h"
#include "support/scripted_host.h"
#include "uncertainty/kept_plot.h"

namespace merlane {
namespace {

using nlohmann::json;
using ::testing::StartsWith;

constexpr const char* PriorProfileTitle = "Evaluation of prior distributions";

/// The profile of the priors, over those of the kept review.
struct PriorProfileDialogueTest : ::testing::Test {
  PriorProfileDialogueTest() {
    state.algorithm.NPAR = 9;
    state.algorithm.Value.Dimension(9, 0.5);
    priors = ReadPriorsText(KeptPlot("review")["file"].get<std::string>(), 9).priors;
    go.onClick = [this] { dialogue.ProfilePrior(4); };
    desk.Show(frmMain);
    desk.Show(editor);
    frmMain.ShowProgress("Note: Unset parameters in your Bayesian Priors file have the value '*'");
  }
  void Profile(const std::string& parameter, const std::string& points) {
    windows.Enter(parameter, PriorProfileTitle);
    windows.Enter(points, PriorProfileTitle);
    EXPECT_TRUE(desk.Press(go));
  }

  test::ScriptedHost host;
  test::ScriptedWindows& windows = host.windows;
  Desk desk{host.Get()};
  RunState state;
  Priors priors;
  FrmMain frmMain{desk};
  Form editor{desk, "frmSetPriors", ""};
  Button go{editor, "go", ""};
  FrmDistPlot frmDistPlot{desk};
  FrmDistributionTable frmPriorDists{desk, FrmDistributionTable::PriorDists};
  PriorProfileDialogue dialogue{desk, state, priors, frmMain, frmDistPlot, frmPriorDists};
};

TEST_F(PriorProfileDialogueTest, TellsAndAsksInTheseWords) {
  windows.Enter("1", PriorProfileTitle);
  windows.CancelInput(PriorProfileTitle);
  desk.Press(go);
  ASSERT_EQ(windows.messages.size(), 1U);
  EXPECT_EQ(windows.messages[0].text,
            "This routine will create a series of plots to evaluate prior distributions.\r\n"
            "If the prior distribution is uniform-unbounded (U) no plots will be generated.\r\n"
            "First choose the parameter to be profiled, then the number of data points.\r\n"
            "This routine uses the moments (mean and SD) to set the domain of the parameter.\r\n"
            "Choose plot 1 to get a likelihood profile plot. \r\n"
            "Choose plot 2 to get a Bayesian prior distribution. \r\n"
            "Choose plot 3 to get a mode-centered confidence region plot. \r\n"
            "Choose plot 4 to get a mean-centered confidence region plot. \r\n"
            "Choose plot 5 to get a left to right ascending cumulative plot. \r\n"
            "Choose plot 6 to get a left to right descending cumulative plot. \r\n"
            "Choose plot 7 to get a mode-centered Gaussian distribution plot. ");
  EXPECT_EQ(windows.inputs[0].prompt, "Choose the parameter number to be profiled.\r\n(0 < parameter # <= 9)");
  EXPECT_EQ(windows.inputs[0].defaultText, "4") << "the selected row";
  EXPECT_EQ(windows.inputs[1].prompt, "Choose the number of x-y data points per plot.\r\n(0 <= # points <= 1001)");
  EXPECT_EQ(windows.inputs[1].defaultText, "101");
  EXPECT_FALSE(frmDistPlot.Loaded()) << "cancelled";
}

TEST_F(PriorProfileDialogueTest, CancelAtTheParameterEndsTheCommand) {
  windows.Enter("10", PriorProfileTitle);
  windows.Enter("x", PriorProfileTitle);
  windows.CancelInput(PriorProfileTitle);
  desk.Press(go);
  EXPECT_FALSE(frmDistPlot.Loaded());
}

TEST_F(PriorProfileDialogueTest, AUniformUnboundedPriorHasNothingToPlot) {
  windows.Enter("9", PriorProfileTitle);
  desk.Press(go);
  EXPECT_EQ(windows.LastText(), "There is nothing to plot when the prior distribution is uniform-unbounded");
  EXPECT_EQ(windows.messages.back().style, 48);
  EXPECT_FALSE(frmDistPlot.Loaded());
}

TEST_F(PriorProfileDialogueTest, ShowsPlotsAndTable) {
  Profile("1", "21");
  EXPECT_TRUE(frmDistPlot.Visible());
  EXPECT_EQ(frmDistPlot.listVar.items[1], "Bayesian Prior Distribution");
  EXPECT_EQ(frmPriorDists.rtbTable.text, KeptPlot("prior_profile_normal")["pane"].get<std::string>());
  EXPECT_EQ(windows.formEvents.back(), (test::ScriptedWindows::Told{"frmDistPlot", FormEvent::Front}));
  desk.Select(frmDistPlot.listVar, 1);
  EXPECT_TRUE(desk.Press(frmDistPlot.cmdPlot));
  EXPECT_THAT(frmDistPlot.lblVar.text, StartsWith("Y: Bayesian Prior Distribution\nX: Values for parameter #1"));
}

TEST_F(PriorProfileDialogueTest, TellsItsPointsAndGivesTheStatusBack) {
  windows.statuses.clear();
  Profile("1", "3");
  ASSERT_EQ(windows.statuses.size(), 4U);
  EXPECT_EQ(windows.statuses[1].text,
            "Calculating profile point 2 of 3, Value of parameter # 1 which is being profiled is: 5.0000E-01");
  EXPECT_THAT(windows.statuses[3].text, StartsWith("Note: Unset parameters"));
}

TEST_F(PriorProfileDialogueTest, ZeroPointsAre101AndAnEvenNumberIsRaised) {
  Profile("1", "0");
  EXPECT_EQ(Lines(frmPriorDists.rtbTable.text).size(), 101U + 7);
  Profile("1", "2");
  EXPECT_EQ(Lines(frmPriorDists.rtbTable.text).size(), 3U + 7);
  Profile("1", "20");
  EXPECT_EQ(Lines(frmPriorDists.rtbTable.text).size(), 21U + 7);
}

TEST_F(PriorProfileDialogueTest, LeavesTheFiguresOfTheEstimatesAlone) {
  EvaluatePrior(state.algorithm.Value, 2, priors);
  const double total = priors.PriorTotal;
  const Array1<double> each = priors.PriorNegLnL;
  Profile("1", "11");
  EXPECT_EQ(priors.PriorTotal, total);
  EXPECT_EQ(priors.PriorNegLnL, each);
}

TEST_F(PriorProfileDialogueTest, LeavesTheEstimatesAlone) {
  Profile("3", "11");
  EXPECT_EQ(Array1<double>(9, 0.5), state.algorithm.Value);
}

TEST_F(PriorProfileDialogueTest, AnExponentialCanBePlottedButForAPercentage) {
  Profile("3", "101");
  EXPECT_TRUE(desk.Press(frmDistPlot.cmdPlot));
  desk.Select(frmDistPlot.listVar, 1);
  EXPECT_TRUE(desk.Press(frmDistPlot.cmdPlot));
  EXPECT_THAT(frmDistPlot.lblEstimateValues.text, ::testing::HasSubstr("\nundefined\n")) << "percent of a mode of 0";
  desk.Select(frmDistPlot.listVar, 2);
  EXPECT_TRUE(desk.Press(frmDistPlot.cmdPlot)) << "a region on the mode of zeros";
}

TEST_F(PriorProfileDialogueTest, AMeanOfZeroCostsThePercentageOfTheTable) {
  priors.PriorFirstMean(1) = 0;
  Profile("1", "3");
  EXPECT_THAT(frmPriorDists.rtbTable.text, ::testing::HasSubstr("Percent Diff:      undefined   \n"));
  EXPECT_TRUE(frmDistPlot.Visible());
}

TEST_F(PriorProfileDialogueTest, APriorThatCannotBeComputedIsToldAndGivesTheStatusBack) {
  priors.PriorFirstSD(1) = 0;
  windows.ExpectFailure("division by zero");
  Profile("1", "21");
  EXPECT_FALSE(frmDistPlot.Loaded());
  EXPECT_THAT(frmMain.stbMain5.Get(1), StartsWith("Note: Unset parameters"));
}

TEST_F(PriorProfileDialogueTest, TableIsSavedWithItsNameOnTop) {
  Profile("1", "21");
  const std::string path = ::testing::TempDir() + "merlane_prior.pdp";
  windows.File(path, "Save Bayesian prior values in...");
  EXPECT_TRUE(desk.Press(frmPriorDists.cmdSave));
  EXPECT_EQ(windows.files[0].filterIndex, 1);
  EXPECT_EQ(windows.files[0].filter, "Bayesian prior distribution files (*.pdp)|*.pdp");
  std::string kept = KeptPlot("prior_profile_normal")["file"];
  kept.replace(kept.find("prior.pdp"), 9, path);
  EXPECT_EQ(ReadWholeFile(path), kept);
  std::filesystem::remove(path);
  windows.CancelFile();
  desk.Press(frmPriorDists.cmdSave);
  EXPECT_EQ(windows.writes.size(), 1U);
}

}  // namespace
}  // namespace merlane
