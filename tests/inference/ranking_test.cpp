#include "inference/ranking.h"

#include "base/runtime_failure.h"
#include "base/text.h"
#include "inference/multi_model_file.h"

namespace merlane {
namespace {

void AddModel(Ranking& ranking, const std::string& file, double negLnL, int K, int n) {
  ranking.Add();
  Competitor& model = ranking.entered.back();
  model.RankAlgFile = file;
  model.RankCovFile = NoCovarianceFile;
  model.RankNegLnL = negLnL;
  model.RankK = static_cast<std::int16_t>(K);
  model.sampleSize = n;
  model.constant = 1;
  ranking.SetCriteria(model);
  ranking.VoidWeights();
}

std::vector<std::string> Files(const std::vector<Competitor>& models) {
  std::vector<std::string> files;
  for (const Competitor& model : models) files.push_back(model.RankAlgFile);
  return files;
}

// Hald's data on the heat that hardening cement gives off (13 mixes, four constituents), with which K. P. Burnham and
// D. R. Anderson, Model Selection and Multimodel Inference (2002), section 3.2, work through ranking: -ln[L] = n/2
// ln(RSS/n) of the least-squares fits, K with the intercept and the variance. The weights round to theirs.
TEST(Ranking, WeighsTheRegressionsOfTheCementData) {
  Ranking ranking;
  const int n = 13;
  AddModel(ranking, "1234", n / 2.0 * std::log(3.6818), 6, n);
  AddModel(ranking, "124", n / 2.0 * std::log(3.6902), 5, n);
  AddModel(ranking, "14", n / 2.0 * std::log(5.7509), 4, n);
  AddModel(ranking, "12", n / 2.0 * std::log(4.4542), 4, n);
  AddModel(ranking, "123", n / 2.0 * std::log(3.7011), 5, n);
  AddModel(ranking, "134", n / 2.0 * std::log(3.9103), 5, n);
  AddModel(ranking, "234", n / 2.0 * std::log(5.6780), 5, n);
  ranking.Rank();
  EXPECT_THAT(Files(ranking.ranked), testing::ElementsAre("12", "124", "123", "14", "134", "234", "1234"));
  const double weights[] = {0.566, 0.119, 0.116, 0.107, 0.081, 0.007, 0.003};
  const double deltas[] = {0, 3.12, 3.16, 3.32, 3.88, 8.73, 10.52};
  EXPECT_NEAR(ranking.ranked[0].RankAICc, 32.42, 0.005);
  for (std::size_t j = 0; j < 7; ++j) {
    EXPECT_NEAR(ranking.ranked[j].RankAICWt.value(), weights[j], 0.0006) << j;
    EXPECT_NEAR(ranking.ranked[j].RankDeltaAICc.value(), deltas[j], 0.006) << j;
  }
}

TEST(Ranking, TwoModelsWithEqualAiccRankByOrderOfEntry) {
  Ranking ranking;
  AddModel(ranking, "first", 50, 3, 100);
  AddModel(ranking, "second", 50, 3, 100);
  ranking.Rank();
  EXPECT_THAT(Files(ranking.ranked), testing::ElementsAre("first", "second"));
}

TEST(Ranking, OneModelGetsPositionOneAndNoDeltaOrWeight) {
  Ranking ranking;
  AddModel(ranking, "only", 50, 3, 100);
  ranking.Rank();
  EXPECT_EQ(ranking.ranked[0].RankOrder, 1);
  EXPECT_FALSE(ranking.ranked[0].RankDeltaAICc);
  EXPECT_FALSE(ranking.ranked[0].RankAICWt);
}

TEST(Ranking, TwoModelsWithADeltaOfTwoGetWeightsOf07311And02689) {
  Ranking ranking;
  AddModel(ranking, "worse", 51, 3, 100);
  AddModel(ranking, "better", 50, 3, 100);
  ranking.Rank();
  EXPECT_EQ(ranking.ranked[1].RankDeltaAICc.value(), 2);
  EXPECT_NEAR(ranking.ranked[0].RankAICWt.value(), 0.7311, 0.00005);
  EXPECT_NEAR(ranking.ranked[1].RankAICWt.value(), 0.2689, 0.00005);
}

TEST(Ranking, ACHatOfTwoHalvesTheLikelihoodTermAndLeavesThePenaltyTerm) {
  Ranking ranking;
  ranking.CHat = 2;
  AddModel(ranking, "model", 50, 3, 100);
  const double penalty = 2.0 * 3 * 100 / (100 - 3 - 1);
  EXPECT_EQ(ranking.entered[0].RankAICc, penalty + 100);
  EXPECT_EQ(ranking.entered[0].RankQAICc, penalty + 50);
}

TEST(Ranking, AnotherModelAfterARankingVoidsAllDeltasAndWeights) {
  Ranking ranking;
  AddModel(ranking, "a", 50, 3, 100);
  AddModel(ranking, "b", 51, 3, 100);
  ranking.Rank();
  AddModel(ranking, "c", 52, 3, 100);
  for (const Competitor& model : ranking.entered) {
    EXPECT_FALSE(model.RankDeltaAICc);
    EXPECT_FALSE(model.RankAICWt);
  }
}

TEST(Ranking, EntryNumbersStayWithTheirModelsThroughTwoRankings) {
  Ranking ranking;
  AddModel(ranking, "c", 52, 3, 100);
  AddModel(ranking, "a", 50, 3, 100);
  ranking.Rank();
  EXPECT_EQ(ranking.entered[0].RankOrder, 2);
  ranking.Rank();
  EXPECT_EQ(ranking.ranked[0].RankOrder, 2);
  EXPECT_EQ(ranking.ranked[1].RankOrder, 1);
}

TEST(Ranking, ACriterionThatIsNotPositiveFailsAndChangesNothing) {
  Ranking ranking;
  AddModel(ranking, "a", 50, 3, 100);
  AddModel(ranking, "b", -50, 3, 100);
  EXPECT_THROW(ranking.Rank(), RuntimeFailure);
  EXPECT_THAT(Files(ranking.entered), testing::ElementsAre("a", "b"));
  EXPECT_THAT(Files(ranking.ranked), testing::ElementsAre("", ""));
}

TEST(Ranking, NoDegreesOfFreedomFail) {
  Ranking ranking;
  EXPECT_THROW(AddModel(ranking, "a", 50, 3, 4), RuntimeFailure);
}

TEST(Ranking, FewerThanNoDegreesOfFreedomPenaliseNegativelyWithoutAWord) {
  Ranking ranking;
  AddModel(ranking, "a", 50, 5, 4);
  EXPECT_EQ(ranking.entered[0].RankAICc, 2.0 * 5 * 4 / (4 - 5 - 1) + 100);
}

TEST(Ranking, ADeletedModelLeavesTheRestUndefined) {
  Ranking ranking;
  for (const char* file : {"a", "b", "c"}) AddModel(ranking, file, 50, 3, 100);
  ranking.Rank();
  ranking.Delete(2);
  EXPECT_THAT(Files(ranking.entered), testing::ElementsAre("a", "c"));
  EXPECT_THAT(Files(ranking.ranked), testing::ElementsAre("a", "c"));
  EXPECT_FALSE(ranking.ranked[0].RankAICWt);
}

TEST(MultiModelFile, HasALineOfFixedFieldsForEachModel) {
  Ranking ranking;
  AddModel(ranking, "worse.alg", 50, 4, 100);
  AddModel(ranking, "better.alg", 51, 3, 100);
  ranking.entered[0].RankNotes = "a note";
  ranking.entered[1].RankCovFile = "better.cov";
  ranking.Rank();
  const std::vector<std::string> lines = Lines(MultiModelText(ranking, ""));
  ASSERT_EQ(lines.size(), 4U);
  EXPECT_EQ(lines[0], "     2 < Number of models ranked");
  EXPECT_EQ(lines[1],
            " Model     -nln[L] #Prms        AICc       dAICc      AIC Wt                            Algorithm file"
            "                           Covariance file  Notes>");
  const auto field = [](const char* text) { return "  " + RightSet(text, 40); };
  EXPECT_EQ(lines[2], "     1  5.1000E+01     3  1.0825E+02  0.0000E+00     0.52137" + field("better.alg") +
                          field("better.cov") + "  ");
  EXPECT_EQ(lines[3], "     2  5.0000E+01     4  1.0842E+02  1.7105E-01     0.47863" + field("worse.alg") +
                          field("No covariance file found") + "  a note");
}

TEST(Ranking, CHatThatMeetsNoDegreesOfFreedomFailsAndChangesNothing) {
  Ranking ranking;
  AddModel(ranking, "a", 50, 2, 4);
  AddModel(ranking, "b", 51, 2, 4);
  ranking.entered[1].RankK = 3;
  ranking.Rank();
  EXPECT_THROW(ranking.Correct(2), RuntimeFailure);
  EXPECT_EQ(ranking.CHat, 1);
  EXPECT_EQ(ranking.entered[0].RankQAICc, 0);
  EXPECT_TRUE(ranking.ranked[0].RankAICWt);
}

TEST(Ranking, AnotherConstantBringsAllModelsToItsScaleWithThePriorAsItIs) {
  Ranking ranking;
  for (const double objective : {80, 90}) {
    ranking.Add();
    Competitor& model = ranking.entered.back();
    model.objective = objective;
    model.prior = 5;
    model.sampleSize = 100;
    ranking.Scale(model, 2);
  }
  EXPECT_EQ(ranking.entered[0].RankNegLnL, 45);
  ranking.Rank();
  EXPECT_FALSE(ranking.ScaleAll(2));
  EXPECT_TRUE(ranking.ranked[0].RankAICWt);
  EXPECT_TRUE(ranking.ScaleAll(4));
  EXPECT_EQ(ranking.entered[0].RankNegLnL, 25);
  EXPECT_EQ(ranking.entered[1].RankAICc, 2 * 27.5);
  EXPECT_EQ(ranking.ranked[1].RankNegLnL, 27.5);
  EXPECT_FALSE(ranking.ranked[0].RankAICWt);
}

TEST(Ranking, AnotherScaleVoidsTheWeightsOfACHatThatIsNoLongerEntered) {
  Ranking ranking;
  for (const double objective : {80, 90}) {
    ranking.Add();
    Competitor& model = ranking.entered.back();
    model.objective = objective;
    model.prior = 5;
    model.sampleSize = 100;
    ranking.Scale(model, 2);
  }
  ranking.Correct(2);
  ranking.Rank();
  ASSERT_TRUE(ranking.ranked[1].RankQAICWt);
  ranking.Correct(1);
  EXPECT_TRUE(ranking.ScaleAll(4));
  EXPECT_FALSE(ranking.ranked[1].RankDeltaQAICc);
  EXPECT_FALSE(ranking.ranked[1].RankQAICWt);
}

TEST(Ranking, CHatLeavesEachModelItsOwnSampleSize) {
  Ranking ranking;
  AddModel(ranking, "a", 50, 3, 100);
  AddModel(ranking, "b", 50, 3, 200);
  ranking.Correct(2);
  EXPECT_EQ(ranking.entered[0].RankQAICc, 2.0 * 3 * 100 / (100 - 3 - 1) + 50);
  EXPECT_EQ(ranking.entered[1].RankQAICc, 2.0 * 3 * 200 / (200 - 3 - 1) + 50);
}

TEST(MultiModelFile, NamesTooLongForTheirFieldKeepTheirFirstCharacters) {
  Ranking ranking;
  const std::string name = "survival_of_clutches_and_broods_in_1995_and_1996.alg";
  AddModel(ranking, name, 50, 3, 100);
  ranking.entered[0].RankCovFile = "shorter.cov";
  ranking.entered[0].RankNotes = std::string(50, 'n');
  ranking.Rank();
  EXPECT_THAT(
      Lines(MultiModelText(ranking, ""))[2],
      testing::EndsWith("  " + name.substr(0, 40) + "  " + RightSet("shorter.cov", 40) + "  " + std::string(50, 'n')));
}

TEST(MultiModelFile, WhatIsSaidBehindANameIsNeverCut) {
  Ranking ranking;
  const std::string name = "survival_of_clutches_and_broods_in_1995_and_1996.alg";
  AddModel(ranking, name, 50, 3, 100);
  ranking.entered[0].sinceSaved = " (changed since)";
  ranking.Rank();
  EXPECT_THAT(
      Lines(MultiModelText(ranking, ""))[2],
      testing::EndsWith("  " + name.substr(0, 40) + " (changed since)  " + RightSet(NoCovarianceFile, 40) + "  "));
}

TEST(MultiModelFile, TellsTheCHatAndHoldsTheAveragingBehindAnEmptyLine) {
  Ranking ranking;
  ranking.CHat = 1.5;
  AddModel(ranking, "a.alg", 50, 3, 100);
  ranking.Rank();
  const std::vector<std::string> lines = Lines(MultiModelText(ranking, "averages"));
  EXPECT_EQ(lines[0], "     1 < Number of models ranked; C-hat for QAICc calculation: 1.500");
  EXPECT_THAT(lines[2], testing::HasSubstr("   undefined   undefined"));
  EXPECT_EQ(lines[3], "");
  EXPECT_EQ(lines[4], "averages");
}

}  // namespace
}  // namespace merlane
