#include "inference/frm_rank.h"

#include <gmock/gmock.h>

#include <filesystem>

#include "base/number_text.h"
#include "base/runtime_failure.h"
#include "base/text.h"
#include "control/frm_edit_vs.h"
#include "inference/multi_model_file.h"
#include "platform/files.h"
#include "support/scripted_host.h"

namespace merlane {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

constexpr std::int16_t NPAR = 6;

/// The form among those that it opens, over a model whose objective is its first parameter.
struct FrmRankTest : ::testing::Test {
  test::ScriptedHost host;
  test::ScriptedWindows& windows = host.windows;
  Desk desk{host.Get()};
  RunState state;
  Priors priors;
  LogFile log;
  std::int32_t sampleSize = 50;
  Objective objective{state, [this](ModelCall& call) {
                        call.F = call.X(1);
                        call.K = sampleSize;
                        if (call.X(1) == 13) throw RuntimeFailure("overflow");
                      }};
  FrmMain main{desk};
  FrmMenu menu{desk, state};
  AlgorithmCommands algorithm{desk, state, main, menu, [] { return "data"; }};
  FrmAlgo editor{desk, state, log, main};
  FrmEditVS editAll{desk, state, editor};
  PriorsCommands priorsCommands{desk, state, main, priors};
  FrmSetPriors setPriors{desk, state, objective, main, priors, priorsCommands};
  FrmLoadPriors loadPriors{desk, state, main, priors, priorsCommands, setPriors};
  FrmRank form{desk, state, objective, main, algorithm, editor, loadPriors};
  std::string folder = ::testing::TempDir() + "merlane_frm_rank/";

  FrmRankTest() {
    std::filesystem::remove_all(folder);
    std::filesystem::create_directories(folder);
    state.algorithm.NPAR = NPAR;
    SetDefaultAlgorithm(state.algorithm);
    state.algorithm.ParName.Dimension(NPAR, "a parameter");
    state.flags.ObjectiveHint = 0.5;
    priors.Reset(NPAR);
    desk.Show(form);
    windows.events.clear();
  }
  ~FrmRankTest() override { std::filesystem::remove_all(folder); }

  /// Makes the model of that file the present one: its -ln[L] and its number of free parameters. The first parameter's
  /// value is twice the former, all others have the value given.
  void Present(const std::string& file, double negLnL, int K, double value = 0) {
    state.algorithm.AlgName = folder + file;
    state.algorithm.Value.Fill(value);
    state.algorithm.Value(1) = 2 * negLnL;
    for (int i = 1; i <= NPAR; ++i) state.algorithm.Step(i) = i <= K ? 0.1 : 0;
  }
  void Add(const std::string& file, double negLnL, int K, double value = 0) {
    Present(file, negLnL, K, value);
    if (form.Models().ModelCount() == 0) windows.Enter("0.5", "Enter constant");
    ASSERT_TRUE(desk.Press(form.cmdAICc));
  }
  void Add(int count) {
    for (int i = 1; i <= count; ++i) Add("m" + std::to_string(i) + ".alg", 100 - i, 2);
  }
  void SetCHat(const std::string& reply) {
    windows.Enter(reply, "Overdispersion correction");
    ASSERT_TRUE(desk.Press(form.cmdQAICc));
  }
  /// A covariance file by its columns, of a model as Add makes it: its K parameters have these errors.
  void WriteCovariances(const std::string& file, double negLnL, int K, double value, double error,
                        double errorOnGrid2) const {
    std::string text(4, '\n');
    for (int i = 1; i <= NPAR; ++i)
      text += Format(i, " 000) ") + RightSet(Format(i == 1 ? 2 * negLnL : value, "0.0000000E+00"), 14) + "\n";
    text += std::string(15, '\n');
    const auto field = [](double x, int width) { return RightSet(Format(x, "0.0000000E+00"), width); };
    for (int i = 1; i <= K; ++i)
      text += RightSet(std::to_string(i), 3) + field(error, 35) + field(errorOnGrid2, 18) + field(error, 18) + "\n";
    WriteWholeFile(folder + file, text);
  }
  /// Lets a covariance file tell of its grids, with these three means.
  void TellGrids(const std::string& file, const std::string& means) const {
    std::string text = ReadWholeFile(folder + file);
    const std::string::size_type between = text.find("\n\n", 10);
    text.replace(
        between + 1, 2,
        "Factors:              1) 1.0000000E+00  2) 1.0000000E-01  3) 1.0000000E-02\n   Mean:                 " +
            means + "\n");
    WriteWholeFile(folder + file, text);
  }
  /// Lets a covariance file tell the steps and fuses of its parameters.
  void TellFuses(const std::string& file, const std::vector<std::string>& fuses) const {
    std::vector<std::string> lines = Lines(ReadWholeFile(folder + file));
    for (std::size_t i = 0; i < fuses.size(); ++i) lines[4 + i] += "   1.0000000E-01  " + fuses[i] + "  a parameter";
    std::string text;
    for (const std::string& line : lines) text += line + "\n";
    WriteWholeFile(folder + file, text);
  }
  /// Two models with covariance files, ranked.
  void RankTwo(double errorOnGrid2 = 0.5) {
    WriteCovariances("m1.cov", 99, 2, 1, 0.5, errorOnGrid2);
    WriteCovariances("m2.cov", 98, 2, 2, 0.5, 0.5);
    Add("m1.alg", 99, 2, 1);
    Add("m2.alg", 98, 2, 2);
    ASSERT_TRUE(desk.Press(form.cmdRank));
  }
  void ExpectAveraged() {
    desk.Press(form.cmdAverage);
    EXPECT_TRUE(form.AveragedFlag);
  }
  /// Averaging asks whether it shall go on despite this doubt, and does not when the answer is No.
  void ExpectAskedAndNotAveraged(const std::string& doubt) {
    windows.No("Covariances of another model");
    desk.Press(form.cmdAverage);
    EXPECT_EQ(windows.LastText(), doubt + "\r\n\r\nAverage with them nevertheless?");
    EXPECT_FALSE(form.AveragedFlag || form.txtAverage.visible);
  }
  std::string Text(int row, int column) const { return form.grdRank.At(row, column).text; }
  Colour Fore(int row, int column) const { return form.grdRank.At(row, column).fore; }
  std::vector<std::string> Column(int column) const {
    std::vector<std::string> texts;
    for (int row = 1; row < form.grdRank.Rows(); ++row) texts.push_back(Text(row, column));
    return texts;
  }
};

// ---- Opening

TEST_F(FrmRankTest, OpensInAiccModeWithAnEmptyTable) {
  EXPECT_EQ(form.title, "Model selection, ranking and averaging");
  const char* headings[] = {
      "Random",           "-ln[L]", "K", "AICc", "dAICc", "AIC Wt", "Algorithm file name", "Covariance file name",
      "Priors file name", "Notes:"};
  for (int column = 0; column < 10; ++column) EXPECT_EQ(Text(0, column), headings[column]);
  EXPECT_EQ(form.txtCHat.text, "C-hat: 1.000");
  EXPECT_EQ(form.txtCHat.fore, Colour::Green);
  EXPECT_FALSE(form.cmdAverage.enabled || form.txtAverage.visible || form.lblAverage.visible);
}

TEST_F(FrmRankTest, OpenedAgainForgetsModelsCHatAndAverages) {
  RankTwo();
  desk.Press(form.cmdAverage);
  SetCHat("2");
  desk.Press(form.cmdFinish);
  desk.Show(form);
  EXPECT_EQ(form.Models().ModelCount(), 0);
  EXPECT_EQ(form.Models().CHat, 1);
  EXPECT_EQ(form.txtCHat.text, "C-hat: 1.000");
  EXPECT_EQ(form.txtCHat.fore, Colour::Green);
  EXPECT_EQ(Text(0, 3), "AICc");
  EXPECT_FALSE(form.AveragedFlag || form.cmdAverage.enabled || form.txtAverage.visible);
}

TEST_F(FrmRankTest, LabelsTellWhatADoubleClickDoes) {
  EXPECT_EQ(form.lblDelete.text, "Double-click a selected model's 'Ramdom/Ranked' cell to delete that model");
  EXPECT_EQ(form.lblCovariance.text,
            "Double-click a selected model's 'Covariance file name' cell to change the covariance file");
  EXPECT_EQ(form.lblNotes.text, "Double-click a selected model's 'Notes' cell to annotate that model");
  EXPECT_EQ(form.lblAverage.text, "Averaging results >");
}

// ---- Adding models

TEST_F(FrmRankTest, FirstModelAsksForTheConstantBehindTheHiddenFormAndLaterOnesDoNot) {
  Add("first.alg", 40, 3);
  EXPECT_THAT(windows.events,
              ElementsAre("status stbMain5 1 One moment please while one function is executed...", "status stbMain5 1 ",
                          "hidden frmRank", "input Enter constant", "shown frmRank"));
  windows.events.clear();
  Add("second.alg", 41, 2);
  EXPECT_THAT(windows.events, ElementsAre("status stbMain5 1 One moment please while one function is executed...",
                                          "status stbMain5 1 "));
}

TEST_F(FrmRankTest, ModelStandsInItsRowWithItsFilesAndItsCriterion) {
  WriteWholeFile(folder + "lake.cov", "");
  state.flags.PriorsKnownAs = folder + "lake.pri";
  state.flags.BayesOn = true;
  objective.priorTerm = [](const Array1<double>&) { return 0.0; };
  Add("lake.alg", 40, 3);
  const double aicc = 2.0 * 3 * 50 / (50 - 3 - 1) + 80;
  const std::string cells[] = {
      "   1)    1", "4.0000E+01", "3", Format(aicc, "0.0000E+00"), "undefined", "undefined", "lake.alg",
      "lake.cov",   "lake.pri",   ""};
  for (int column = 0; column < 10; ++column) {
    EXPECT_EQ(Text(1, column), cells[column]) << column;
    EXPECT_EQ(Fore(1, column), Colour::LightRed) << column;
  }
  EXPECT_EQ(Text(0, 0), "Random");
  EXPECT_EQ(Fore(0, 0), Colour::LightRed);
}

TEST_F(FrmRankTest, ModelWithoutCovarianceFileOrPriorsSaysSo) {
  Add("lake.alg", 40, 3);
  EXPECT_EQ(Text(1, 7), "No covariance file found");
  EXPECT_EQ(Text(1, 8), "No Priors loaded");
}

TEST_F(FrmRankTest, FolderInPlaceOfACovarianceFileIsNone) {
  std::filesystem::create_directories(folder + "lake.cov");
  Add("lake.alg", 40, 3);
  EXPECT_EQ(Text(1, 7), "No covariance file found");
}

TEST_F(FrmRankTest, FollowersOfAFuseDoNotCountSinceTheirStepsAreTakenAway) {
  state.algorithm.Fuse(2) = state.algorithm.Fuse(3) = "A";
  Add("fused.alg", 40, 3);
  EXPECT_EQ(Text(1, 2), "2");
}

TEST_F(FrmRankTest, PriorTermOfTheFirstModelIsZeroWhileNoConstantIsKnown) {
  state.flags.BayesOn = true;
  objective.priorTerm = [this](const Array1<double>&) { return 10 * state.flags.ObjectiveConstant; };
  Add("first.alg", 40, 3);
  Add("second.alg", 40, 3);
  EXPECT_EQ(form.Models().entered[0].RankNegLnL, 40);
  EXPECT_EQ(form.Models().entered[1].RankNegLnL, 50);
}

TEST_F(FrmRankTest, AConstantEnteredBetweenTwoModelsBringsTheFirstToItsScaleAndIsTold) {
  Add("first.alg", 40, 3);
  state.flags.ObjectiveConstant = 4;  // as the editor of the priors sets it
  Add("second.alg", 60, 3);
  EXPECT_THAT(Column(1), ElementsAre("2.0000E+01", "3.0000E+01"));
  EXPECT_EQ(Text(1, 3), Format(form.Models().entered[0].RankAICc, "0.0000E+00"));
  EXPECT_EQ(windows.messages.back().title, "Another constant");
  EXPECT_THAT(windows.LastText(), HasSubstr("The constant 0.25 has been entered"));
}

TEST_F(FrmRankTest, TheFirstModelsPriorIsOnTheScaleOfTheConstantThatIsEnteredForIt) {
  state.flags.BayesOn = true;
  state.flags.ObjectiveConstant = 8;
  objective.priorTerm = [this](const Array1<double>&) { return 10 * state.flags.ObjectiveConstant; };
  Add("first.alg", 40, 3);
  EXPECT_EQ(form.Models().entered[0].RankNegLnL, 50);
}

TEST_F(FrmRankTest, FileWithoutAFolderEndsTheCommandWithItsRowAdded) {
  Present("", 40, 3);
  state.algorithm.AlgName = "06011030.alg";
  windows.Enter("0.5", "Enter constant");
  desk.Press(form.cmdAICc);
  EXPECT_EQ(form.Models().ModelCount(), 1);
  EXPECT_THAT(Column(0), ElementsAre(""));
  EXPECT_EQ(form.Models().entered[0].RankAlgFile, "");
}

TEST_F(FrmRankTest, HundredthModelGivesTheMessageAndAddsNothing) {
  Add(99);
  EXPECT_THAT(windows.messages, IsEmpty());
  Add("hundredth.alg", 1, 1);
  ASSERT_EQ(windows.messages.size(), 1U);
  EXPECT_EQ(windows.messages[0].title, "Model limit reached");
  EXPECT_EQ(windows.messages[0].text, "Sorry, no more than 99 models can be ranked");
  EXPECT_EQ(windows.messages[0].style, 0);
  EXPECT_EQ(form.Models().ModelCount(), 99);
  EXPECT_EQ(form.grdRank.Rows(), 100);
}

TEST_F(FrmRankTest, AnotherModelAfterARankingVoidsAllDeltasAndWeights) {
  Add(2);
  desk.Press(form.cmdRank);
  EXPECT_EQ(Text(1, 4), "0.0000E+00");
  Add("third.alg", 50, 2);
  EXPECT_THAT(Column(4), ElementsAre("undefined", "undefined", "undefined"));
  EXPECT_THAT(Column(5), ElementsAre("undefined", "undefined", "undefined"));
  EXPECT_EQ(Text(0, 0), "Random");
  EXPECT_EQ(Fore(0, 0), Colour::LightRed);
  EXPECT_EQ(Fore(1, 6), Colour::Default) << "rows that were ranked keep their colour";
  EXPECT_EQ(Fore(3, 6), Colour::LightRed);
}

TEST_F(FrmRankTest, NoDegreeOfFreedomEndsTheCommandWithItsRowHalfDone) {
  sampleSize = 4;
  windows.ExpectFailure("division by zero");
  Add("small.alg", 40, 3);
  EXPECT_EQ(form.Models().ModelCount(), 1);
  EXPECT_TRUE(desk.Usable(form.cmdAICc));
  desk.DoubleClick(form.grdRank, 1, 0);
  EXPECT_EQ(form.Models().ModelCount(), 0) << "the row can be taken out";
}

TEST_F(FrmRankTest, EvaluationThatFailsLeavesTheFormUsable) {
  Add(2);
  Present("bad.alg", 6.5, 2);
  windows.ExpectFailure("frmRank.cmdAICc: overflow");
  desk.Press(form.cmdAICc);
  EXPECT_TRUE(desk.Usable(form.cmdAICc));
  desk.DoubleClick(form.grdRank, 3, 0);
  desk.Press(form.cmdRank);
  EXPECT_THAT(Column(6), ElementsAre("m2.alg", "m1.alg"));
}

TEST_F(FrmRankTest, CommandThatFailsLeavesTheTableWholeUpToItsRowAndNoLongerRanked) {
  Add(2);
  desk.Press(form.cmdRank);
  SetCHat("1");
  const auto cells = [this](int row) {
    std::vector<std::string> texts;
    for (int column = 0; column < 10; ++column) texts.push_back(Text(row, column));
    return texts;
  };
  const auto heading = cells(0), first = cells(1), second = cells(2);
  desk.Press(form.cmdRank);
  Present("bad.alg", 6.5, 2);
  windows.ExpectFailure("frmRank.cmdAICc: overflow");
  desk.Press(form.cmdAICc);
  sampleSize = 4;
  windows.ExpectFailure("frmRank.cmdAICc: division by zero");
  Add("small.alg", 40, 3);
  EXPECT_EQ(cells(0), heading);
  EXPECT_EQ(heading[0], "Random");
  for (int column = 1; column < 10; ++column) {
    EXPECT_EQ(Text(1, column), first[static_cast<std::size_t>(column)]);
    EXPECT_EQ(Text(2, column), second[static_cast<std::size_t>(column)]);
    if (column == 4 || column == 5) continue;  // undefined
    EXPECT_EQ(Text(3, column) + Text(4, column), "");
  }
  EXPECT_FALSE(desk.Usable(form.cmdAverage));
}

TEST_F(FrmRankTest, AHalfDoneModelDoesNotCompeteUnderAnotherCHatEither) {
  Present("bad.alg", 100, 2);
  windows.Enter("9e307", "Enter constant");
  windows.ExpectFailure("frmRank.cmdAICc: overflow");
  desk.Press(form.cmdAICc);
  windows.Enter("0.5", "Enter constant");
  Present("good.alg", 99, 2);
  desk.Press(form.cmdAICc);
  SetCHat("2");
  for (const int column : {1, 2, 3, 6, 7, 8}) EXPECT_EQ(Text(1, column), "") << "no figures are made up for it";
  windows.ExpectFailure("frmRank.cmdRank: all values of the criterion must be positive for a ranking");
  desk.Press(form.cmdRank);
  EXPECT_EQ(Text(0, 0), "Random");
}

TEST_F(FrmRankTest, FirstModelThatFailsLeavesTheConstantToTheNext) {
  Present("bad.alg", 6.5, 2);
  windows.ExpectFailure("frmRank.cmdAICc: overflow");
  desk.Press(form.cmdAICc);
  EXPECT_THAT(windows.inputs, IsEmpty());
  Present("good.alg", 40, 2);
  windows.Enter("0.5", "Enter constant");
  desk.Press(form.cmdAICc);
  EXPECT_EQ(Text(2, 1), "4.0000E+01");
}

TEST_F(FrmRankTest, FirstModelThatFailsLeavesTheConstantToTheNextAlsoWhereAnEarlierCommandHadOne) {
  state.flags.ObjectiveConstant = 1;
  Present("bad.alg", 6.5, 2);
  windows.ExpectFailure("frmRank.cmdAICc: overflow");
  desk.Press(form.cmdAICc);
  Present("good.alg", 40, 2);
  windows.Enter("0.5", "Enter constant");
  desk.Press(form.cmdAICc);
  EXPECT_EQ(Text(2, 1), "4.0000E+01");
}

TEST_F(FrmRankTest, PriorsThatAreNotInForceAreNotNamed) {
  state.flags.PriorsKnownAs = folder + "some.pri";
  Add("first.alg", 40, 2);
  EXPECT_EQ(Text(1, 8), "No Priors loaded");
}

TEST_F(FrmRankTest, PriorsInNoFileAreNotGivenTheNameThatTheDialoguesPropose) {
  state.flags.PriorFileName = folder + "earlier.pri";
  state.flags.BayesOn = true;
  objective.priorTerm = [](const Array1<double>&) { return 0.0; };
  Add("first.alg", 40, 2);
  EXPECT_EQ(Text(1, 8), "Priors in no file");
}

TEST_F(FrmRankTest, NoModelIsAddedWhereDataAreSimulated) {
  state.flags.SimulationMode = true;
  Present("first.alg", 40, 2);
  windows.ExpectFailure("frmRank.cmdAICc: data are simulated here");
  desk.Press(form.cmdAICc);
  EXPECT_EQ(form.Models().ModelCount(), 0);
}

TEST_F(FrmRankTest, SavingATableThatHasChangedSinceItsRankingIsTold) {
  Add(2);
  windows.CancelFile("Save model ranking results in...");
  desk.Press(form.cmdSaveRank);
  EXPECT_THAT(windows.LastText(), HasSubstr("Rank the competing models first."));
  desk.Press(form.cmdRank);
  windows.messages.clear();
  windows.CancelFile("Save model ranking results in...");
  desk.Press(form.cmdSaveRank);
  EXPECT_THAT(windows.messages, IsEmpty());
}

TEST_F(FrmRankTest, ConstantThatIsTooLargeANumberIsToldAndAskedForAgain) {
  Present("first.alg", 40, 3);
  for (const char* constant : {"1e999", "0.5"}) windows.Enter(constant, "Enter constant");
  desk.Press(form.cmdAICc);
  EXPECT_THAT(windows.Titles(), ElementsAre("Enter constant"));
  EXPECT_EQ(Text(1, 1), "4.0000E+01");
}

// ---- C-hat

TEST_F(FrmRankTest, CHatAsksUntilItIsAtLeastOne) {
  windows.Enter("0.99", "Overdispersion correction");
  windows.Enter("none", "Overdispersion correction");
  SetCHat("1.5");
  EXPECT_EQ(windows.inputs.size(), 3U);
  EXPECT_EQ(windows.inputs[0].prompt,
            "Input a value for C-hat (1 or greater) to correct for unexplained overdispersion:");
  EXPECT_EQ(windows.inputs[0].defaultText, "1");
  EXPECT_EQ(form.txtCHat.text, "C-hat: 1.500");
  EXPECT_EQ(form.txtCHat.fore, Colour::Blue);
}

TEST_F(FrmRankTest, EmptyReplyCountsAsACHatOfOne) {
  SetCHat("2");
  SetCHat("");
  EXPECT_EQ(windows.inputs[1].defaultText, "2");
  EXPECT_EQ(form.txtCHat.text, "C-hat: 1.000");
  EXPECT_EQ(form.txtCHat.fore, Colour::Green);
}

TEST_F(FrmRankTest, CancelledCHatLeavesTheRankingAsItIs) {
  RankTwo();
  SetCHat("1.5");
  desk.Press(form.cmdRank);
  windows.CancelInput("Overdispersion correction");
  desk.Press(form.cmdQAICc);
  EXPECT_EQ(Text(0, 0), "Ranked");
  EXPECT_EQ(form.txtCHat.text, "C-hat: 1.500");
  EXPECT_NE(Text(1, 4), "undefined");
}

TEST_F(FrmRankTest, CHatAboveOneShowsQaiccUnderItsHeadingsAndBackAgain) {
  Add("a.alg", 40, 3);
  SetCHat("2");
  EXPECT_EQ(Text(0, 3), "QAICc");
  EXPECT_EQ(Text(0, 4), "dQAICc");
  EXPECT_EQ(Text(0, 5), "QAIC Wt");
  const double penalty = 2.0 * 3 * 50 / 46;
  EXPECT_EQ(Text(1, 3), Format(penalty + 40, "0.0000E+00"));
  EXPECT_EQ(Text(1, 4), "undefined");
  SetCHat("1");
  EXPECT_EQ(Text(0, 3), "AICc");
  EXPECT_EQ(Text(1, 3), Format(penalty + 80, "0.0000E+00"));
}

TEST_F(FrmRankTest, CHatThatFailsLeavesTheTableAsItWas) {
  Add("a.alg", 40, 2);
  sampleSize = 4;
  windows.ExpectFailure("division by zero");
  Add("small.alg", 40, 3);
  const std::string criterion = Text(1, 3);
  windows.ExpectFailure("frmRank.cmdQAICc: division by zero");
  SetCHat("2");
  EXPECT_EQ(form.Models().CHat, 1);
  EXPECT_EQ(form.txtCHat.text, "C-hat: 1.000");
  EXPECT_EQ(Text(0, 3), "AICc");
  EXPECT_EQ(Text(1, 3), criterion);
  desk.DoubleClick(form.grdRank, 2, 0);
  SetCHat("2");
  EXPECT_EQ(Text(0, 3), "QAICc");
}

TEST_F(FrmRankTest, CHatAfterARankingPutsTheLabelsBackInTheOrderOfTheTable) {
  Add(3);
  desk.Press(form.cmdRank);
  EXPECT_THAT(Column(0), ElementsAre("   1)    3", "   2)    2", "   3)    1"));
  SetCHat("1.2");
  EXPECT_EQ(Text(0, 0), "Random");
  EXPECT_THAT(Column(0), ElementsAre("   1)    1", "   2)    2", "   3)    3"));
  EXPECT_THAT(Column(6), ElementsAre("m3.alg", "m2.alg", "m1.alg"));
}

// ---- Ranking

TEST_F(FrmRankTest, RankedHeadingIsGreenByAiccAndBlueByQaicc) {
  Add(2);
  desk.Press(form.cmdRank);
  EXPECT_EQ(Text(0, 0), "Ranked");
  EXPECT_EQ(Fore(0, 0), Colour::Green);
  EXPECT_EQ(Fore(1, 6), Colour::Default);
  SetCHat("2");
  desk.Press(form.cmdRank);
  EXPECT_EQ(Text(0, 0), "Ranked");
  EXPECT_EQ(Fore(0, 0), Colour::Blue);
}

TEST_F(FrmRankTest, RowLabelsKeepTheirWidthFromTenOn) {
  Add(12);
  desk.Press(form.cmdRank);
  EXPECT_EQ(Text(1, 0), "   1)  12");
  EXPECT_EQ(Text(3, 0), "   3)  10");
  EXPECT_EQ(Text(4, 0), "   4)    9");
  EXPECT_EQ(Text(12, 0), " 12)    1");
}

TEST_F(FrmRankTest, OneModelRanksFirstWithoutDeltaOrWeight) {
  Add(1);
  desk.Press(form.cmdRank);
  EXPECT_EQ(Text(1, 0), "   1)    1");
  EXPECT_EQ(Text(1, 4), "undefined");
  EXPECT_EQ(Text(1, 5), "undefined");
  EXPECT_FALSE(form.cmdAverage.enabled);
}

TEST_F(FrmRankTest, CriterionThatIsNotPositiveEndsTheRankingAndChangesNothing) {
  Add("good.alg", 40, 2);
  Add("negative.alg", -40, 2);
  windows.ExpectFailure("must be positive");
  desk.Press(form.cmdRank);
  EXPECT_EQ(Text(0, 0), "Random");
  EXPECT_THAT(Column(6), ElementsAre("good.alg", "negative.alg"));
  EXPECT_TRUE(desk.Usable(form.cmdRank));
}

TEST_F(FrmRankTest, AveragingIsOfferedWhenMoreThanOneModelIsRankedAndAllHaveCovariances) {
  WriteCovariances("m1.cov", 99, 2, 1, 0.5, 0.5);
  Add(2);
  desk.Press(form.cmdRank);
  EXPECT_FALSE(form.cmdAverage.enabled);
  windows.Enter("m1.cov", "Choose an associated covariance file");
  desk.DoubleClick(form.grdRank, 1, 7);
  desk.Press(form.cmdRank);
  EXPECT_TRUE(form.cmdAverage.enabled);
}

// ---- Double-clicks

TEST_F(FrmRankTest, DoubleClicksElsewhereDoNothing) {
  Add(2);
  for (int column = 0; column < 10; ++column) desk.DoubleClick(form.grdRank, 0, column);
  for (const int column : {1, 2, 3, 4, 5, 6, 8}) desk.DoubleClick(form.grdRank, 1, column);
  EXPECT_FALSE(desk.DoubleClick(form.grdRank, 3, 0)) << "below the models";
  EXPECT_EQ(form.Models().ModelCount(), 2);
}

TEST_F(FrmRankTest, DoubleClickOnTheOrderDeletesTheModel) {
  RankTwo();
  Add("m3.alg", 90, 2);
  desk.Press(form.cmdRank);
  windows.Yes("Delete a model");
  desk.DoubleClick(form.grdRank, 1, 0);
  EXPECT_THAT(Column(6), ElementsAre("m2.alg", "m1.alg"));
  EXPECT_THAT(Column(0), ElementsAre("   1)    2", "   2)    1"));
  EXPECT_THAT(Column(4), ElementsAre("undefined", "undefined"));
  EXPECT_EQ(Text(0, 0), "Random");
  EXPECT_EQ(Fore(0, 0), Colour::LightRed);
  EXPECT_FALSE(form.cmdAverage.enabled);
  EXPECT_EQ(form.Models().ranked.size(), 2U);
}

TEST_F(FrmRankTest, RankedTableIsNotLostByADoubleClickWithoutAQuestion) {
  RankTwo();
  windows.No("Delete a model");
  desk.DoubleClick(form.grdRank, 1, 0);
  EXPECT_EQ(windows.LastText(), "m2.alg leaves the table, and the ranking is lost.\r\n\r\nDelete it?");
  EXPECT_EQ(Text(0, 0), "Ranked");
  EXPECT_EQ(form.Models().ModelCount(), 2);
}

TEST_F(FrmRankTest, EntryNumbersAreNotUsedAgainAfterADeletion) {
  Add(3);
  desk.DoubleClick(form.grdRank, 1, 0);
  Add("m4.alg", 50, 2);
  EXPECT_THAT(Column(0), ElementsAre("   1)    2", "   2)    3", "   3)    4"));
  desk.Press(form.cmdRank);
  EXPECT_THAT(Column(0), ElementsAre("   1)    4", "   2)    3", "   3)    2"));
}

TEST_F(FrmRankTest, DeletionMovesTheEntryNumbersUpAsTheyAreShown) {
  Add(3);
  desk.Press(form.cmdRank);
  SetCHat("1.2");
  desk.DoubleClick(form.grdRank, 1, 0);
  EXPECT_THAT(Column(0), ElementsAre("   1)    2", "   2)    3"));
  desk.Press(form.cmdRank);
  EXPECT_THAT(Column(0), ElementsAre("   1)    2", "   2)    1"));
}

TEST_F(FrmRankTest, DeletionLeavesAHalfDoneRowWithoutALabel) {
  Add(1);
  Present("bad.alg", 6.5, 2);
  windows.ExpectFailure("frmRank.cmdAICc: overflow");
  desk.Press(form.cmdAICc);
  desk.DoubleClick(form.grdRank, 1, 0);
  EXPECT_THAT(Column(0), ElementsAre(""));
  desk.DoubleClick(form.grdRank, 1, 0);
  EXPECT_EQ(form.Models().ModelCount(), 0);
}

TEST_F(FrmRankTest, DeletionClearsTheAverages) {
  RankTwo();
  ExpectAveraged();
  windows.Yes("Delete a model");
  desk.DoubleClick(form.grdRank, 2, 0);
  EXPECT_FALSE(form.AveragedFlag || form.txtAverage.visible);
  EXPECT_EQ(form.txtAverage.text, "");
}

TEST_F(FrmRankTest, CovarianceFileNamedByTheUserIsLookedForBesideTheAlgorithmFile) {
  WriteWholeFile(folder + "other.cov", "");
  Add(1);
  windows.Enter("other.cov", "Choose an associated covariance file");
  desk.DoubleClick(form.grdRank, 1, 7);
  EXPECT_EQ(windows.inputs.back().prompt, "Please input the desired covariance file name");
  EXPECT_EQ(windows.inputs.back().defaultText, "No covariance file found");
  EXPECT_EQ(Text(1, 7), "other.cov");
  windows.Enter("none.cov", "Choose an associated covariance file");
  desk.DoubleClick(form.grdRank, 1, 7);
  EXPECT_EQ(Text(1, 7), "No such file exists");
  EXPECT_EQ(form.Models().entered[0].RankCovFile, "No such file exists");
  EXPECT_EQ(form.Models().ranked[0].RankCovFile, "No such file exists");
}

TEST_F(FrmRankTest, CovarianceFileOfANameTooLongDoesNotExist) {
  Add(1);
  windows.Enter(std::string(300, 'x'), "Choose an associated covariance file");
  desk.DoubleClick(form.grdRank, 1, 7);
  EXPECT_EQ(Text(1, 7), "No such file exists");
}

TEST_F(FrmRankTest, NotesGoToTheCellAndIntoTheFile) {
  Add(2);
  desk.Press(form.cmdRank);
  windows.Enter("constant survival", "Model notes");
  desk.DoubleClick(form.grdRank, 2, 9);
  EXPECT_EQ(windows.inputs.back().prompt, "Enter your annotations concerning the selected model");
  EXPECT_EQ(windows.inputs.back().defaultText, "Add your notation here");
  EXPECT_EQ(Text(2, 9), "constant survival");
  windows.File(folder + "kept.mms");
  desk.Press(form.cmdSaveRank);
  EXPECT_THAT(Lines(ReadWholeFile(folder + "kept.mms"))[3], HasSubstr("  constant survival"));
}

TEST_F(FrmRankTest, CancelledBoxesChangeNothing) {
  Add(1);
  windows.Enter("a note", "Model notes");
  desk.DoubleClick(form.grdRank, 1, 9);
  windows.CancelInput("Model notes");
  desk.DoubleClick(form.grdRank, 1, 9);
  EXPECT_EQ(Text(1, 9), "a note");
  windows.CancelInput("Choose an associated covariance file");
  desk.DoubleClick(form.grdRank, 1, 7);
  EXPECT_EQ(Text(1, 7), "No covariance file found");
}

TEST_F(FrmRankTest, EmptyReplyEmptiesANoteAndTakesACovarianceFileAway) {
  RankTwo();
  windows.Enter("a note", "Model notes");
  desk.DoubleClick(form.grdRank, 1, 9);
  windows.Enter("", "Model notes");
  desk.DoubleClick(form.grdRank, 1, 9);
  EXPECT_EQ(Text(1, 9), "");
  EXPECT_EQ(form.Models().ranked[0].RankNotes, "");
  windows.Enter("", "Choose an associated covariance file");
  desk.DoubleClick(form.grdRank, 1, 7);
  EXPECT_EQ(Text(1, 7), "No such file exists");
}

// ---- Averaging

TEST_F(FrmRankTest, AveragesStandInThePaneUntilTheNextRanking) {
  RankTwo();
  EXPECT_TRUE(form.cmdAverage.enabled);
  desk.Press(form.cmdAverage);
  EXPECT_TRUE(form.AveragedFlag && form.txtAverage.visible && form.lblAverage.visible);
  const std::vector<std::string> lines = Lines(form.txtAverage.text);
  ASSERT_EQ(lines.size(), 5U + NPAR);
  // m2 lies 2 below m1: weights 0.7311 and 0.2689, values 2 and 1.
  EXPECT_THAT(lines[6], HasSubstr("      1.7311E+00"));
  desk.Press(form.cmdRank);
  EXPECT_FALSE(form.AveragedFlag || form.txtAverage.visible);
  EXPECT_EQ(form.txtAverage.text, "");
}

TEST_F(FrmRankTest, MissingErrorOnGridTwoOfOneModelSetsAllOfGridTwo) {
  RankTwo(-1);
  desk.Press(form.cmdAverage);
  const std::vector<std::string> lines = Lines(form.txtAverage.text);
  for (std::size_t line = 5; line < lines.size(); ++line) {
    EXPECT_EQ(lines[line].substr(44, 16), "     -1.0000E+00");
    EXPECT_NE(lines[line].substr(28, 16), "     -1.0000E+00");
  }
}

TEST_F(FrmRankTest, AveragesByQaiccTakeItsWeightsAndItsCHat) {
  WriteCovariances("a.cov", 40, 2, 1, 0.5, 0.5);
  WriteCovariances("b.cov", 41, 2, 3, 0.5, 0.5);
  Add("a.alg", 40, 2, 1);
  Add("b.alg", 41, 2, 3);
  SetCHat("4");
  desk.Press(form.cmdRank);
  desk.Press(form.cmdAverage);
  const double weight = 1 / (1 + std::exp(-0.25));  // of the better model; the difference of 2 is divided by 4
  EXPECT_NEAR(form.Models().ranked[0].RankQAICWt.value(), weight, 1e-12);
  const double average = weight * 1 + (1 - weight) * 3;
  const double error = weight * std::sqrt(0.25 * 4 + (1 - average) * (1 - average)) +
                       (1 - weight) * std::sqrt(0.25 * 4 + (3 - average) * (3 - average));
  EXPECT_THAT(Lines(form.txtAverage.text)[6],
              HasSubstr("      " + Format(average, "0.0000E+00") + "      " + Format(error, "0.0000E+00")));
}

TEST_F(FrmRankTest, CovarianceFileLostAfterTheRankingStopsTheAveraging) {
  RankTwo();
  windows.Enter("none.cov", "Choose an associated covariance file");
  desk.DoubleClick(form.grdRank, 2, 7);
  desk.Press(form.cmdAverage);
  EXPECT_EQ(windows.messages.back().title, "Can't average models");
  EXPECT_EQ(windows.messages.back().text, "Sorry, the covariance file is missing for at least one ranked model");
  EXPECT_EQ(windows.messages.back().style, 0);
  EXPECT_FALSE(form.cmdAverage.enabled || form.AveragedFlag);
}

TEST_F(FrmRankTest, AveragingIsNotOfferedForATableThatIsNoLongerRanked) {
  RankTwo();
  SetCHat("2");
  EXPECT_FALSE(desk.Usable(form.cmdAverage));
  desk.Press(form.cmdRank);
  ExpectAveraged();
}

TEST_F(FrmRankTest, CovarianceFileThatIsTooShortFailsAndLeavesTheFormUsable) {
  RankTwo();
  WriteWholeFile(folder + "m1.cov", "four\nlines\nand no\nmore\n");
  desk.Press(form.cmdAverage);
  EXPECT_EQ(windows.LastText(), "The covariance file m1.cov of m1.alg lists 0 parameters, but the models have 6");
  EXPECT_FALSE(form.AveragedFlag);
  EXPECT_TRUE(desk.Usable(form.cmdAverage));
}

TEST_F(FrmRankTest, CovarianceFileOfOtherEstimatesIsAveragedOnlyWhenTheUserWantsIt) {
  RankTwo();
  WriteCovariances("m1.cov", 99, 2, 1.25, 0.5, 0.5);
  ExpectAskedAndNotAveraged("m1.cov is not of m1.alg as it is ranked: parameter 2 is 1.25 in it and 1 in the model");
  windows.Yes("Covariances of another model");
  ExpectAveraged();
}

TEST_F(FrmRankTest, CovarianceFileOfAnotherConstantIsAskedAbout) {
  RankTwo();
  std::string text = ReadWholeFile(folder + "m1.cov");
  const std::string::size_type between = text.find("\n\n", 10);
  text.insert(between + 1, "Covariance constant: 1");
  WriteWholeFile(folder + "m1.cov", text);
  windows.No("Covariances of another model");
  desk.Press(form.cmdAverage);
  EXPECT_THAT(windows.LastText(), HasSubstr("its constant is 1, that of the model 0.5"));
  text.replace(text.find("constant: 1"), 11, "constant: 0.5");
  WriteWholeFile(folder + "m1.cov", text);
  ExpectAveraged();
}

TEST_F(FrmRankTest, CovarianceFileOfOtherDataIsAveragedOnlyWhenTheUserWantsIt) {
  RankTwo();
  TellGrids("m1.cov", "1.2010000E+02     1.2000100E+02     1.2000001E+02");
  ExpectAskedAndNotAveraged(
      "m1.cov is not of m1.alg as it is ranked: -ln[L] at its values was 120.0000, that of the model is 99.0000: "
      "it was calculated with other data, or with other priors");
  windows.Yes("Covariances of another model");
  ExpectAveraged();
}

TEST_F(FrmRankTest, CovarianceFileOfTheSameDataIsAveragedWithoutAQuestion) {
  RankTwo();
  TellGrids("m1.cov", "1.0000000E+02     9.9010000E+01     9.9000100E+01");
  ExpectAveraged();
}

TEST_F(FrmRankTest, CovarianceFileOfOtherFusesIsAveragedOnlyWhenTheUserWantsIt) {
  RankTwo();
  TellFuses("m1.cov", {"A", "~~", "A", "B", "B", "~~"});
  ExpectAskedAndNotAveraged(
      "m1.cov is not of m1.alg as it is ranked: parameter 3 is fused with others in it than in the model");
}

TEST_F(FrmRankTest, FusesThatMoveTheSameParametersAreTheSameWhateverTheyAreCalled) {
  state.algorithm.Fuse(2) = state.algorithm.Fuse(3) = "AB";
  RankTwo();
  TellFuses("m1.cov", {"~~", "B", "B", "C", "C", "~~"});  // 4 is not free, so that nothing follows it anywhere
  ExpectAveraged();
}

TEST_F(FrmRankTest, OptimisticStandardErrorsAreAveragedOnlyWhenTheUserWantsIt) {
  RankTwo();
  WriteWholeFile(folder + "m1.cov",
                 ReadWholeFile(folder + "m1.cov") +
                     "\nNote: The above SE estimates are optimistic (under-estimated) conditional estimates\n");
  ExpectAskedAndNotAveraged(
      "m1.cov is not of m1.alg as it is ranked: its standard errors are optimistic, each as if all other "
      "parameters were known");
}

TEST_F(FrmRankTest, StandardErrorOfTheOnlyFreeParameterIsNotOptimistic) {
  WriteCovariances("m1.cov", 99, 1, 1, 0.5, 0.5);
  WriteWholeFile(folder + "m1.cov",
                 ReadWholeFile(folder + "m1.cov") +
                     "\nNote: The above SE estimates are optimistic (under-estimated) conditional estimates\n");
  WriteCovariances("m2.cov", 98, 2, 2, 0.5, 0.5);
  Add("m1.alg", 99, 1, 1);
  Add("m2.alg", 98, 2, 2);
  desk.Press(form.cmdRank);
  ExpectAveraged();
}

TEST_F(FrmRankTest, CovariancesKnownToBeOfOtherPriorsAreAveragedOnlyWhenTheUserWantsIt) {
  RankTwo();
  form.calculatedOtherwise = [](const CovarianceFile& file, const Provenance& ofRow) {
    return file.values(2) == 1 && ofRow.priors.empty() ? "it was calculated with priors" : "";
  };
  ExpectAskedAndNotAveraged("m1.cov is not of m1.alg as it is ranked: it was calculated with priors");
}

TEST_F(FrmRankTest, EstimatesThatWereFittedUnderOtherPriorsAreToldWhereTheyAreAddedAndAskedAboutWhereTheyAreAveraged) {
  WriteCovariances("m1.cov", 99, 2, 1, 0.5, 0.5);
  WriteCovariances("m2.cov", 98, 2, 2, 0.5, 0.5);
  form.fittedUnderOtherPriors = [] { return "with priors, the model is ranked without"; };
  Add("m1.alg", 99, 2, 1);
  EXPECT_EQ(windows.messages.back().title, "Estimates of other priors");
  EXPECT_THAT(windows.LastText(),
              HasSubstr("The estimates of m1.alg were fitted with priors, the model is ranked without. "));
  form.fittedUnderOtherPriors = [] { return ""; };
  windows.messages.clear();
  Add("m2.alg", 98, 2, 2);
  EXPECT_THAT(windows.messages, IsEmpty());
  desk.Press(form.cmdRank);
  windows.No("Covariances of another model");
  desk.Press(form.cmdAverage);
  EXPECT_EQ(windows.LastText(),
            "The estimates of m1.alg were fitted with priors, the model is ranked without\r\n\r\n"
            "Average with them nevertheless?");
  EXPECT_FALSE(form.AveragedFlag);
}

TEST_F(FrmRankTest, ModelsThatAreJudgedByOtherNumbersOfIndividualsAreToldAndAskedAboutWhereTheyAreAveraged) {
  WriteCovariances("m1.cov", 99, 2, 1, 0.5, 0.5);
  WriteCovariances("m2.cov", 98, 2, 2, 0.5, 0.5);
  Add("m1.alg", 99, 2, 1);
  sampleSize = 40;
  windows.messages.clear();
  Add("m2.alg", 98, 2, 2);
  EXPECT_THAT(windows.Titles(), ElementsAre("Other visits"));
  EXPECT_THAT(windows.LastText(), HasSubstr("m2.alg is judged by 40 individuals, m1.alg by 50: "));
  desk.Press(form.cmdRank);
  windows.No("Covariances of another model");
  desk.Press(form.cmdAverage);
  EXPECT_EQ(windows.LastText(),
            "m1.alg is judged by 50 individuals, m2.alg by 40\r\n\r\n"
            "Average with them nevertheless?");
  EXPECT_FALSE(form.AveragedFlag);
}

TEST_F(FrmRankTest, EstimatesThatWereFittedToOtherDataAreToldWhereTheyAreAddedAndAskedAboutWhereTheyAreAveraged) {
  WriteCovariances("m1.cov", 99, 2, 1, 0.5, 0.5);
  WriteCovariances("m2.cov", 98, 2, 2, 0.5, 0.5);
  form.fittedToOtherData = [] { return "elsewhere.dat"; };
  Add("m1.alg", 99, 2, 1);
  EXPECT_EQ(windows.messages.back().title, "Estimates of other data");
  EXPECT_THAT(windows.LastText(),
              HasSubstr("The estimates of m1.alg were fitted to other data, those of elsewhere.dat. "));
  form.fittedToOtherData = [] { return ""; };
  windows.messages.clear();
  Add("m2.alg", 98, 2, 2);
  EXPECT_THAT(windows.messages, IsEmpty());
  desk.Press(form.cmdRank);
  ExpectAskedAndNotAveraged("The estimates of m1.alg were fitted to other data, those of elsewhere.dat");
}

TEST_F(FrmRankTest, CovarianceFileThatWasSavedTwiceIsAveraged) {
  RankTwo();
  const std::string saved = "Originally saved with the file name: m1.cov\n\n";
  const std::string text = ReadWholeFile(folder + "m1.cov");
  WriteWholeFile(folder + "m1.cov", saved + saved + text.substr(2));
  ExpectAveraged();
}

TEST_F(FrmRankTest, CovarianceFileOfOtherFreeParametersIsAskedAbout) {
  RankTwo();
  WriteCovariances("m2.cov", 98, 3, 2, 0.5, 0.5);
  windows.No("Covariances of another model");
  desk.Press(form.cmdAverage);
  EXPECT_THAT(windows.LastText(), HasSubstr("m2.cov is not of m2.alg as it is ranked: its free parameters are 1, 2, 3, "
                                            "those of the model 1, 2\r\n"));
}

TEST_F(FrmRankTest, CovarianceFileOfTheDigitsThatFilesKeepIsTheModels) {
  WriteCovariances("a.cov", 40, 2, 0.0123456781, 0.5, 0.5);
  WriteCovariances("b.cov", 41, 2, 0.0123456781, 0.5, 0.5);
  Add("a.alg", 40, 2, 0.0123456781);
  Add("b.alg", 41, 2, 0.0123456781);
  desk.Press(form.cmdRank);
  ExpectAveraged();
}

TEST_F(FrmRankTest, AveragesGoWithTheTableThatWasAveraged) {
  const auto averaged = [this] {
    ASSERT_TRUE(desk.Press(form.cmdRank));
    ASSERT_TRUE(desk.Press(form.cmdAverage));
    ASSERT_TRUE(form.AveragedFlag);
  };
  const auto expectGone = [this](const char* change) {
    EXPECT_FALSE(form.AveragedFlag || form.txtAverage.visible || form.lblAverage.visible) << change;
    EXPECT_EQ(form.txtAverage.text, "") << change;
  };
  RankTwo();
  averaged();
  SetCHat("2");
  expectGone("another C-hat");
  averaged();
  windows.Enter("m1.cov", "Choose an associated covariance file");
  desk.DoubleClick(form.grdRank, 2, 7);
  expectGone("another covariance file");
  averaged();
  Add("m3.alg", 97, 2);
  expectGone("another model");
}

TEST_F(FrmRankTest, SavedTableThatWasEnlargedHoldsNoAverages) {
  RankTwo();
  desk.Press(form.cmdAverage);
  Add("m3.alg", 97, 2);
  windows.File(folder + "kept.mms");
  desk.Press(form.cmdSaveRank);
  EXPECT_THAT(ReadWholeFile(folder + "kept.mms"), testing::Not(HasSubstr("Averag")));
}

// ---- Saving and closing

TEST_F(FrmRankTest, SaveProposesANameByTheClockAndWritesTheRankedTable) {
  Add(2);
  desk.Press(form.cmdRank);
  windows.File(folder + "kept.mms", "Save model ranking results in...");
  desk.Press(form.cmdSaveRank);
  EXPECT_EQ(windows.files.back().startName, "06011030.mms");
  EXPECT_EQ(windows.files.back().filter, "All files (*.*)|*.*|Multi-model statistics files (*.mms)|*.mms");
  const std::string text = ReadWholeFile(folder + "kept.mms");
  EXPECT_EQ(text, MultiModelText(form.Models(), ""));
  EXPECT_TRUE(text.ends_with("\r\n"));
}

TEST_F(FrmRankTest, AveragesAreSavedBehindAnEmptyLine) {
  RankTwo();
  desk.Press(form.cmdAverage);
  windows.File(folder + "kept.mms");
  desk.Press(form.cmdSaveRank);
  EXPECT_THAT(ReadWholeFile(folder + "kept.mms"), testing::EndsWith("\r\n\r\n" + form.txtAverage.text + "\r\n"));
}

TEST_F(FrmRankTest, CancelledSaveWritesNothingAndLeavesEverything) {
  RankTwo();
  desk.Press(form.cmdAverage);
  windows.CancelFile();
  desk.Press(form.cmdSaveRank);
  EXPECT_THAT(windows.writes, IsEmpty());
  EXPECT_TRUE(form.AveragedFlag);
  EXPECT_EQ(Text(0, 0), "Ranked");
}

TEST_F(FrmRankTest, UnrankedTableClosesWithoutAQuestion) {
  Add(2);
  desk.Press(form.cmdFinish);
  EXPECT_FALSE(form.Loaded());
  EXPECT_THAT(windows.messages, IsEmpty());
}

TEST_F(FrmRankTest, RankedTableAsksBeforeItIsClosedByButtonOrFrame) {
  Add(2);
  desk.Press(form.cmdRank);
  windows.No("What about ranking results!");
  desk.Press(form.cmdFinish);
  EXPECT_EQ(windows.LastText(), "Do you want to save ranking results?");
  EXPECT_FALSE(form.Loaded());
  desk.Show(form);
  Add(2);
  desk.Press(form.cmdRank);
  windows.Yes("What about ranking results!");
  windows.File(folder + "kept.mms");
  desk.Close(form);
  EXPECT_FALSE(form.Loaded());
  EXPECT_TRUE(std::filesystem::exists(folder + "kept.mms"));
}

TEST_F(FrmRankTest, CancelInTheSaveDialogueKeepsTheRankedTableOpen) {
  Add(2);
  desk.Press(form.cmdRank);
  const std::function<void()> closings[] = {[&] { desk.Press(form.cmdFinish); }, [&] { desk.Close(form); }};
  for (const auto& close : closings) {
    windows.Yes("What about ranking results!");
    windows.CancelFile("Save model ranking results in...");
    close();
    EXPECT_TRUE(desk.Usable(form.cmdSaveRank));
    EXPECT_EQ(form.Models().ModelCount(), 2);
  }
}

TEST_F(FrmRankTest, TableThatCannotBeSavedAtTheEndIsNotLost) {
  Add(2);
  desk.Press(form.cmdRank);
  windows.Yes("What about ranking results!");
  windows.File(folder + "none/kept.mms");
  windows.ExpectFailure("none/kept.mms");
  desk.Press(form.cmdFinish);
  EXPECT_TRUE(desk.Usable(form.cmdSaveRank));
  EXPECT_EQ(form.Models().ModelCount(), 2);
}

// ---- Algorithm data and priors

TEST_F(FrmRankTest, EditorOpensWithTheLogLockedAndGivesTheFormBack) {
  desk.Press(form.cmdEditAlg);
  EXPECT_TRUE(editor.Visible());
  EXPECT_FALSE(editor.cmdOpenLog.enabled || editor.txtFileName.visible);
  EXPECT_TRUE(editor.txtReduction.enabled);
  EXPECT_FALSE(desk.Usable(form.cmdAICc));
  windows.events.clear();
  desk.Press(editor.cmdFinish);
  EXPECT_TRUE(desk.Usable(form.cmdAICc));
  EXPECT_EQ(windows.events.back(), "front frmRank");
}

TEST_F(FrmRankTest, SavedAlgorithmDataKeepTwoLettersOfAFuse) {
  state.algorithm.Fuse(2) = state.algorithm.Fuse(3) = "AB";
  windows.File(folder + "kept.alg");
  desk.Press(form.cmdSaveAlg);
  windows.File(folder + "kept.alg", "Open algorithm data file");
  desk.Press(form.cmdLoadAlg);
  EXPECT_EQ(state.algorithm.Fuse(2), "AB");
  EXPECT_EQ(main.stbMain1.Get(1), "Algorithm file: kept");
}

TEST_F(FrmRankTest, AlgorithmFileThatFailsIsToldAndLeavesTheFormUsable) {
  WriteWholeFile(folder + "bad.alg", "     7\r\n");
  windows.File(folder + "bad.alg");
  desk.Press(form.cmdLoadAlg);
  EXPECT_EQ(windows.messages.back().title, "Algorithm file - information input failed");
  EXPECT_TRUE(desk.Usable(form.cmdLoadAlg));
  windows.ExpectFailure("vanished.alg");
  windows.File(folder + "vanished.alg");
  desk.Press(form.cmdLoadAlg);
  EXPECT_TRUE(desk.Usable(form.cmdLoadAlg));
}

TEST_F(FrmRankTest, ChooserOfPriorsClearsTheAveragesAndBringsTheFormBack) {
  RankTwo();
  desk.Press(form.cmdAverage);
  desk.Press(form.cmdBayesian);
  EXPECT_TRUE(loadPriors.Visible());
  EXPECT_FALSE(form.Visible() || form.AveragedFlag);
  EXPECT_EQ(form.txtAverage.text, "");
  desk.Press(loadPriors.cmdCancel);
  EXPECT_TRUE(form.Visible());
  EXPECT_FALSE(menu.Visible());
  EXPECT_EQ(Text(0, 0), "Ranked") << "the table stays";
}

TEST_F(FrmRankTest, AFileTellsTheCHatOfTheRankingThatMadeItsFiguresAndOneThatWasEnteredSinceBesideIt) {
  RankTwo();
  const auto saved = [this] {
    windows.File(folder + "kept.mms");
    desk.Press(form.cmdSaveRank);
    return Lines(ReadWholeFile(folder + "kept.mms"));
  };
  const std::vector<std::string> ranked = saved();
  SetCHat("1.5");
  const std::vector<std::string> entered = saved();
  EXPECT_EQ(entered[0], "     2 < Number of models ranked; C-hat entered since: 1.500");
  EXPECT_EQ(entered[1], ranked[1]) << "columns of AICc";
  EXPECT_EQ(entered[2].substr(0, 36), ranked[2].substr(0, 36)) << "its figures";
  desk.Press(form.cmdRank);
  EXPECT_EQ(saved()[0], "     2 < Number of models ranked; C-hat for QAICc calculation: 1.500");
  SetCHat("3");
  EXPECT_EQ(saved()[0],
            "     2 < Number of models ranked; C-hat for QAICc calculation: 1.500; C-hat entered since: 3.000");
}

}  // namespace
}  // namespace merlane
