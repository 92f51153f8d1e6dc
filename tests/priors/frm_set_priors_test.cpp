#include "priors/frm_set_priors.h"

#include "priors/forms_fixture.h"

namespace merlane::test {
namespace {

using PriorsEditor = PriorsForms;

TEST_F(PriorsEditor, PlaysTheKeptSequenceOfCommands) {
  const Json kept = Kept("priors_commands");
  Begin(kept["npar"]);
  OpenEditor();
  for (const Json& step : kept["steps"]) {
    SCOPED_TRACE(step.dump());
    const int row = step["row"], i = row - 1;
    Select(i);
    windows.inputs.clear();
    windows.messages.clear();
    Choose(step["command"], step["replies"]);
    ASSERT_EQ(windows.inputs.size(), step["prompts"].size());
    for (std::size_t k = 0; k < windows.inputs.size(); ++k) {
      EXPECT_EQ(windows.inputs[k].title, step["prompts"][k]["title"].get<std::string>());
      EXPECT_EQ(windows.inputs[k].prompt, Told(step["prompts"][k]["text"]));
      EXPECT_EQ(windows.inputs[k].defaultText, "");
    }
    ASSERT_EQ(windows.messages.size(), step["messages"].size());
    for (std::size_t k = 0; k < windows.messages.size(); ++k) {
      EXPECT_EQ(windows.messages[k].title, step["messages"][k]["title"].get<std::string>());
      EXPECT_EQ(windows.messages[k].text, Told(step["messages"][k]["text"]));
      EXPECT_EQ(windows.messages[k].style, step["messages"][k]["style"]);
    }
    EXPECT_EQ(priors.PriorCode(i), step["stored"]["code"].get<std::string>());
    EXPECT_EQ(priors.PriorFirstMean(i), step["stored"]["first_mean"]);
    EXPECT_EQ(priors.PriorFirstSD(i), step["stored"]["first_sd"]);
    EXPECT_EQ(TermText(priors.PriorSecondMean(i)), TermText(step["stored"]["second_mean"]));
    EXPECT_EQ(TermText(priors.PriorSecondSD(i)), TermText(step["stored"]["second_sd"]));
    ExpectRow(row, step["cells_of_row"], step["colours_of_row"]);
  }
  Select(1);
  // The kept file cut the exponent of -30; it is written whole.
  std::string file = Kept("priors_file_edited")["file"].get<std::string>();
  file.replace(file.find("N- 3.000E+00 "), 12, "N- 3.000E+001");
  EXPECT_EQ(PriorsFileText(priors), file);
}

TEST_F(PriorsEditor, ARightFootBelowTheLeftFootRestartsAllFourPrompts) {
  Begin(3);
  OpenEditor();
  windows.inputs.clear();
  Choose("mnuT", {"5", "1", "3", "1", "1", "1", "3", "2"});
  EXPECT_EQ(windows.inputs.size(), 8U);
  EXPECT_EQ(priors.PriorCode(1), "T");
  EXPECT_EQ(windows.inputs[2].prompt, "Choose right foot of parameter #1, it must exceed left foot.");
}

TEST_F(PriorsEditor, ABetaOfMeanOneHalfAndSdSixTenthsReportsANegativeAAndStoresNothing) {
  Begin(1);
  OpenEditor();
  Choose("mnuB", {"0.5", "0.6"});
  EXPECT_EQ(windows.LastText(), "An unacceptable (< 0) value for 'a' of \u00DF (a,b) is: -0.1528");
  EXPECT_EQ(priors.PriorCode(1), "U");
}

TEST_F(PriorsEditor, AGammaWithSdEqualToTheMeanStoresNothingAndSaysNothing) {
  Begin(1);
  OpenEditor();
  const std::size_t told = windows.messages.size();
  Choose("mnuG", {"2", "2"});
  EXPECT_EQ(windows.messages.size(), told);
  EXPECT_EQ(priors.PriorCode(1), "U");
}

TEST_F(PriorsEditor, LeavingTheEditorWithAllCodesUSetsBayesOffAndOffersNoSaving) {
  Begin(1);
  OpenEditor();
  desk.Press(editor.mnuFinished);
  EXPECT_FALSE(state.flags.BayesOn);
  EXPECT_EQ(windows.LastText(), "Bayesian priors data, if changed, have been updated");
  EXPECT_TRUE(caller.Visible());
}

TEST_F(PriorsEditor, AnEmptyFirstReplyOfTheNormalStillAsksForTheSecond) {
  Begin(1);
  OpenEditor();
  windows.inputs.clear();
  Choose("mnuN", {"", "1"});
  EXPECT_EQ(windows.inputs.size(), 2U);
  EXPECT_EQ(priors.PriorCode(1), "U");
}

TEST_F(PriorsEditor, AMeanWithoutAnSdLeavesWhatWasThere) {
  Begin(1);
  OpenEditor();
  Choose("mnuL", {"3", "1"});
  Choose("mnuN", {"2", ""});
  EXPECT_EQ(priors.PriorCode(1), "L");
  EXPECT_EQ(priors.PriorFirstMean(1), 3);
  EXPECT_EQ(priors.PriorFirstSD(1), 1);
}

/// A command with replies of which one is no number.
struct BadReplies {
  const char* command;
  std::vector<std::string> replies;
};

struct PriorsStoredTogether : PriorsForms, testing::WithParamInterface<BadReplies> {};

TEST_P(PriorsStoredTogether, OrNotAtAll) {
  Begin(1);
  OpenEditor();
  Choose("mnuT", {"1", "0.5", "2", "0.25"});
  const std::size_t told = windows.messages.size();
  windows.ExpectFailure("is not a number");
  Choose(GetParam().command, GetParam().replies);
  EXPECT_EQ(priors.PriorCode(1), "T");
  EXPECT_EQ(priors.PriorFirstMean(1), 1);
  EXPECT_EQ(priors.PriorFirstSD(1), 0.5);
  EXPECT_EQ(priors.PriorSecondMean(1), PriorTerm("2"));
  EXPECT_EQ(priors.PriorSecondSD(1), PriorTerm(0.25));
  EXPECT_EQ(windows.messages.size(), told) << "nor is anything told of them";
}

INSTANTIATE_TEST_SUITE_P(Replies, PriorsStoredTogether,
                         testing::Values(BadReplies{"mnuN", {"2", "x"}}, BadReplies{"mnuN", {"x", "2"}},
                                         BadReplies{"mnuG", {"2", "1x"}}, BadReplies{"mnuE", {"2x"}},
                                         BadReplies{"mnuL", {"2", "1x"}}, BadReplies{"mnuB", {"0.3", "0.1x"}},
                                         BadReplies{"mnuB", {"0.3x", "0.1"}}, BadReplies{"MnuS", {"2", "x"}},
                                         BadReplies{"mnuR", {"2", "x"}}, BadReplies{"mnuT", {"1", "1", "5x", "1"}},
                                         BadReplies{"mnuT", {"1", "1", "5", "x"}},
                                         BadReplies{"mnuT", {"1", "x", "5", "1"}}));

TEST_F(PriorsEditor, ASelectionOnAHeaderRowMovesToTheFirstParameter) {
  Begin(2);
  OpenEditor();
  Select(2);
  desk.Click(editor.grdPriors, 0, 1);
  EXPECT_EQ(editor.grdPriors.selectedRow, 2);
  EXPECT_EQ(editor.grdPriors.At(2, 1).fore, Colour::Green);
}

// Closing.

TEST_F(PriorsEditor, AFileThatCannotBeWrittenOnTheWayOutKeepsTheEditorOpen) {
  Begin(1);
  OpenEditor();
  Choose("mnuE", {"2"});
  windows.Yes("Save Bayesian priors");
  windows.File(folder + "nowhere/set.pri");
  windows.ExpectFailure("nowhere/set.pri");
  desk.Press(editor.mnuFinished);
  EXPECT_TRUE(editor.Visible());
  EXPECT_FALSE(caller.Visible());
  EXPECT_EQ(priors.PriorCode(1), "E");
  EXPECT_EQ(frmMain.stbMain5.Get(1), "Note: Unset parameters in your Bayesian Priors file have the value '*'");
  windows.No("Save Bayesian priors");
  windows.Enter("0.5", "Enter constant");
  desk.Press(editor.mnuFinished);
  EXPECT_EQ(state.flags.ObjectiveConstant, 2);
  EXPECT_TRUE(caller.Visible());
}

TEST_F(PriorsEditor, ClosingOverASumOfSquaresTakesTheConstantFromItsDegreesOfFreedom) {
  Begin(1);
  state.algorithm.Value.Dimension(1);
  state.flags.NOBS = 13;
  state.free.NFREE = 2;
  OpenEditor();
  Choose("mnuE", {"2"});
  windows.No("Save Bayesian priors");
  windows.statuses.clear();
  desk.Press(editor.mnuFinished);
  EXPECT_EQ(calls, 1);
  EXPECT_EQ(state.flags.ObjectiveConstant, 10.0 / (20 + 20));
  ASSERT_EQ(windows.statuses.size(), 3U);
  EXPECT_EQ(windows.statuses[1].text, "One moment please...");
  EXPECT_EQ(windows.statuses[2].text, "");
  EXPECT_TRUE(caller.Visible());
}

TEST_F(PriorsEditor, ClosingOverASumOfSquaresWithoutADegreeOfFreedomEndsThereWithoutACall) {
  Begin(1);
  state.flags.NOBS = 3;
  state.free.NFREE = 2;
  OpenEditor();
  Choose("mnuE", {"2"});
  windows.No("Save Bayesian priors");
  desk.Press(editor.mnuFinished);
  EXPECT_EQ(windows.messages.back().title, "Insufficient degrees of freedom");
  EXPECT_EQ(calls, 0);
  EXPECT_EQ(frmMain.stbMain5.Get(1), "");
  EXPECT_TRUE(caller.Visible()) << "without the form that called there would be no way on";
}

TEST_F(PriorsEditor, TheMainMenuComesBackWithoutClosingTheEditor) {
  Begin(1);
  OpenEditor();
  EXPECT_FALSE(caller.Visible());
  desk.Press(editor.mnuMenu);
  EXPECT_TRUE(caller.Visible());
  EXPECT_TRUE(editor.Visible());
}

TEST_F(PriorsEditor, TheStatusTellsOfUnsetParametersWhileTheEditorIsOpen) {
  Begin(1);
  OpenEditor();
  EXPECT_EQ(frmMain.stbMain5.Get(1), "Note: Unset parameters in your Bayesian Priors file have the value '*'");
  desk.Press(editor.mnuFinished);
  EXPECT_EQ(frmMain.stbMain5.Get(1), "");
}

TEST_F(PriorsEditor, TheWindowMenuArrangesTheChildWindows) {
  Begin(1);
  OpenEditor();
  std::vector<Arrangement> asked;
  frmMain.onArrange = [&](Arrangement arrangement) { asked.push_back(arrangement); };
  desk.Press(editor.windowMenu.mnuTileVertical);
  desk.Press(editor.windowMenu.mnuArrangeIcons);
  EXPECT_THAT(asked, testing::ElementsAre(Arrangement::TileVertical, Arrangement::Icons));
}

}  // namespace
}  // namespace merlane::test
