// What is said beside the name of an algorithm file where the name does not tell whose values are shown.
#include <gmock/gmock.h>

#include "platform/files.h"
#include "program/analysis.h"

namespace merlane {
namespace {

using test::Analysis;
using test::Folder;
using test::Golden;
using ::testing::HasSubstr;

struct KnownNameTest : ::testing::Test, Analysis {
  Folder folder{"known_name"};
  FrmSummary& summary = program.frmSummary;
  FrmRank& rank = program.frmRank;

  void SetUp() override { Ready("juveniles_only"); }
  void Save() {
    windows.File(folder / "fit.alg");
    ASSERT_TRUE(desk.Press(menu.cmdSaveAlg));
  }
  void Summarise() {
    windows.Enter("1", "More simulations improve the goodness-of-fit (GOF) estimate");
    windows.Yes("Choose among output options");
    ASSERT_TRUE(desk.Press(menu.cmdUserSummary));
  }
  void ExpectSummaryOf(const std::string& name) {
    EXPECT_EQ(summary.lblFit.text, "Results summary of " + name + ".");
    windows.File(folder / "kept.tvo");
    ASSERT_TRUE(desk.Press(summary.cmdSaveSummary));
    const std::string saved = ReadWholeFile(folder / "kept.tvo"),
                      note = "\r\nNote: Results summary of " + name + ".\r\n";
    EXPECT_EQ(saved.ends_with(note), name != "fit.alg") << "beside a name that tells all nothing is said";
  }
  void Profile() {
    ASSERT_TRUE(desk.Press(menu.cmdParEstimate));
    windows.Yes("ML parameter estimate evaluation");
    windows.Enter("0.5", "Enter constant");
    windows.Enter("17", "ML parameter estimate evaluation");
    windows.Enter("3", "ML parameter estimate evaluation");
    windows.Yes("ML parameter estimate evaluation");
    windows.AtWait([this] { desk.Press(program.frmAlgo.cmdFinish); });
    windows.AtWait([this] { desk.Press(program.frmDistPlot.cmdDone); });
    ASSERT_TRUE(desk.Press(program.frmParEvals.cmdML));
    ASSERT_TRUE(desk.Close(program.frmMaxLike));
  }
  void Fit() {
    OneFunction();
    Simplex();
  }
  void FitUnderPriors() {
    program.priors.PriorCode(17) = "N";
    program.priors.PriorFirstMean(17) = 0.09;
    program.priors.PriorFirstSD(17) = 0.001;
    state.flags.BayesOn = true;
    state.flags.ObjectiveConstant = 2;
    Fit();
  }
  void AddToRanking(const std::string& constant) {
    if (!constant.empty()) windows.Enter(constant, "Enter constant");
    ASSERT_TRUE(desk.Press(rank.cmdAICc));
  }
};

TEST_F(KnownNameTest, WhatAProfileLeavesIsNotSummarisedAsTheFitOfTheFile) {
  Fit();
  Save();
  Summarise();
  ExpectSummaryOf("fit.alg");
  desk.Close(summary);
  Profile();
  Summarise();
  ExpectSummaryOf("fit.alg (changed since)");
}

TEST_F(KnownNameTest, WhatAProfileLeavesIsNotRankedAsTheFitOfTheFile) {
  Fit();
  Save();
  Profile();
  desk.Press(menu.cmdRank);
  AddToRanking("0.5");
  EXPECT_EQ(rank.grdRank.At(1, RankTable::AlgorithmFile).text, "fit.alg (changed since)");
  ASSERT_TRUE(desk.Press(rank.cmdRank));
  windows.File(folder / "kept.mms");
  ASSERT_TRUE(desk.Press(rank.cmdSaveRank));
  EXPECT_THAT(ReadWholeFile(folder / "kept.mms"), HasSubstr("  fit.alg (changed since)  "));
}

TEST_F(KnownNameTest, AnEditedModelIsNotRankedAsAnotherOneOfTheFile) {
  Save();
  desk.Press(menu.cmdRank);
  AddToRanking("0.5");
  state.algorithm.Step(18) = 0;
  AddToRanking("");
  EXPECT_EQ(rank.Models().entered[0].Name(), "fit.alg");
  EXPECT_EQ(rank.Models().entered[1].Name(), "fit.alg (changed since)");
  EXPECT_EQ(rank.Models().entered[1].RankCovFile, rank.Models().entered[0].RankCovFile);
}

TEST_F(KnownNameTest, StepsOfAnotherSizeAreNoOtherModel) {
  Save();
  state.algorithm.Step(17) *= 2;
  Summarise();
  ExpectSummaryOf("fit.alg");
}

TEST_F(KnownNameTest, AFileThatDoesNotExistHoldsNoFit) {
  Save();
  std::filesystem::remove(folder / "fit.alg");
  Summarise();
  ExpectSummaryOf("fit.alg (not saved)");
}

TEST_F(KnownNameTest, CovariancesSayThatTheyAreNotThoseOfTheFile) {
  Fit();
  Save();
  state.algorithm.Value(17) *= 1.001;
  Covariances();
  EXPECT_THAT(program.frmCovDisplay.lblFit.text, HasSubstr(" of fit.alg (changed since), where the objective was "));
}

TEST_F(KnownNameTest, EstimatesFittedUnderPriorsAreNotSummarisedAsAMinimumWithoutThem) {
  FitUnderPriors();
  Save();
  Summarise();
  ExpectSummaryOf("fit.alg");
  desk.Close(summary);
  ASSERT_TRUE(desk.Press(menu.cmdBayesian));
  ASSERT_TRUE(desk.Press(program.frmLoadPriors.cmdUniform));
  Summarise();
  ExpectSummaryOf("fit.alg (its estimates were fitted with priors, these results are without)");
}

TEST_F(KnownNameTest, EstimatesFittedToOtherDataAreNotSummarisedAsAMinimum) {
  Fit();
  Save();
  std::string text = ReadWholeFile(Golden("juveniles_only.dat"));
  const std::string lastVisit = "      34,       2";
  text.replace(text.find(lastVisit), lastVisit.size(), "      34,       1");
  WriteWholeFile(folder / "mended.dat", text);
  windows.No("Initialize");
  Initialize({.path = folder / "mended.dat"});
  LoadAlg(folder / "fit.alg");
  Summarise();
  ExpectSummaryOf("fit.alg (its estimates were fitted to other data, those of juveniles_only.dat)");
}

}  // namespace
}  // namespace merlane
