#include "inference/averaging.h"

#include <gmock/gmock.h>

#include "inference/ranking.h"

namespace merlane {
namespace {

CovarianceFile File(const std::vector<double>& values, const std::vector<CovarianceFile::Row>& rows) {
  CovarianceFile file;
  file.values.Dimension(static_cast<int>(values.size()));
  std::ranges::copy(values, file.values.begin());
  file.rows.Dimension(static_cast<int>(rows.size()));
  std::ranges::copy(rows, file.rows.begin());
  return file;
}

TEST(AverageModels, AWeightOfOneOnOneModelGivesItsValuesAndErrors) {
  const auto result = AverageModels(
      {File({1, 2}, {{1, {0.1, 0.2, 0.3}}, {2, {0.4, 0.5, 0.6}}}), File({5, 6}, {{1, {9, 9, 9}}, {2, {9, 9, 9}}})},
      {1, 0}, 1);
  EXPECT_EQ(result.AveragedValue(1), 1);
  EXPECT_EQ(result.AveragedValue(2), 2);
  EXPECT_DOUBLE_EQ(result.AveragedSE[0](1), 0.1);
  EXPECT_DOUBLE_EQ(result.AveragedSE[2](2), 0.6);
}

TEST(AverageModels, OneMissingErrorInGridTwoSetsTheWholeOfGridTwoAndLeavesTheOthers) {
  const auto result =
      AverageModels({File({1, 2}, {{1, {0.1, -1, 0.3}}}), File({1, 2}, {{1, {0.1, 0.2, 0.3}}})}, {0.5, 0.5}, 1);
  EXPECT_EQ(result.AveragedSE[1](1), -1);
  EXPECT_EQ(result.AveragedSE[1](2), -1);
  EXPECT_DOUBLE_EQ(result.AveragedSE[0](1), 0.1);
  EXPECT_DOUBLE_EQ(result.AveragedSE[2](1), 0.3);
}

TEST(AverageModels, ACHatOfOneReducesToTheRootOfSquaredErrorPlusSquaredDistance) {
  const auto result = AverageModels({File({1}, {{1, {3, 3, 3}}}), File({9}, {{1, {3, 3, 3}}})}, {0.5, 0.5}, 1);
  EXPECT_DOUBLE_EQ(result.AveragedValue(1), 5);
  EXPECT_DOUBLE_EQ(result.AveragedSE[0](1), 5);  // each model: sqrt(9 + 16)
}

TEST(AverageModels, ACHatAboveOneMultipliesTheSquaredErrors) {
  const auto result = AverageModels({File({1}, {{1, {3, 3, 3}}})}, {1}, 4);
  EXPECT_DOUBLE_EQ(result.AveragedSE[0](1), 6);
}

TEST(AverageModels, AParameterWithoutARowContributesItsDistanceAlone) {
  const auto result = AverageModels({File({0}, {}), File({4}, {})}, {0.5, 0.5}, 1);
  EXPECT_DOUBLE_EQ(result.AveragedSE[0](1), 2);
}

// The regressions of Hald's cement data that hold the first constituent, as K. P. Burnham and D. R. Anderson, Model
// Selection and Multimodel Inference (2002), chapter 4, average its coefficient: 1.4561 with an unconditional standard
// error of 0.1755, where the best model alone has 0.1213. They weigh with weights of three decimals; with all digits
// the error is 0.1756.
TEST(AverageModels, AveragesTheFirstCoefficientOfTheCementData) {
  struct Regression {
    double meanSquare;  // RSS / n
    int K;
    double estimate, error;
  };
  const Regression regressions[] = {{4.4542, 4, 1.4683, 0.1213}, {3.6902, 5, 1.4519, 0.1170},
                                    {3.7011, 5, 1.6959, 0.2046}, {5.7509, 4, 1.4400, 0.1384},
                                    {3.9103, 5, 1.0519, 0.2237}, {3.6818, 6, 1.5511, 0.7448}};
  const int n = 13;
  Ranking ranking;
  std::vector<CovarianceFile> files;
  for (const Regression& one : regressions) {  // the best first, as they will rank
    ranking.Add();
    Competitor& model = ranking.entered.back();
    model.RankNegLnL = n / 2.0 * std::log(one.meanSquare);
    model.RankK = static_cast<std::int16_t>(one.K);
    model.sampleSize = n;
    ranking.SetCriteria(model);
    files.push_back(File({one.estimate}, {{1, {one.error, one.error, one.error}}}));
  }
  ranking.Rank();
  std::vector<double> weights;
  for (std::size_t j = 0; j < files.size(); ++j) {
    EXPECT_EQ(ranking.ranked[j].RankOrder, static_cast<int>(j) + 1);
    weights.push_back(ranking.ranked[j].RankAICWt.value());
  }
  const AveragedEstimates result = AverageModels(files, weights, 1);
  EXPECT_NEAR(result.AveragedValue(1), 1.4561, 0.00005);
  for (const Array1<double>& errors : result.AveragedSE) EXPECT_NEAR(errors(1), 0.1755, 0.00015);

  const std::vector<double> rounded = {0.566 / 0.992, 0.119 / 0.992, 0.116 / 0.992,
                                       0.107 / 0.992, 0.081 / 0.992, 0.003 / 0.992};
  const AveragedEstimates published = AverageModels(files, rounded, 1);
  EXPECT_NEAR(published.AveragedValue(1), 1.4561, 0.00005);
  EXPECT_NEAR(published.AveragedSE[0](1), 0.1755, 0.00005);
}

TEST(AveragingReport, HasALineForEachParameter) {
  const auto result = AverageModels({File({0.25, -3}, {{1, {0.1, 0.2, -1}}})}, {1}, 1);
  EXPECT_EQ(AveragingReport(result),
            "Parameter estimates and their SEs resulting from averaging across all ranked models.\r\n"
            "Each model contributes to the reported averages according to its AIC Weight.\r\n"
            "SEs will report a value of -1 if any model is missing an estimate for SE.\r\n"
            "\r\n"
            "Parameter_#  Parameter_Value     SEs_Grid_#1     SEs_Grid_#2     SEs_Grid_#3\r\n"
            "          1       2.5000E-01      1.0000E-01      2.0000E-01     -1.0000E+00\r\n"
            "          2      -3.0000E+00      0.0000E+00      0.0000E+00     -1.0000E+00");
}

TEST(AveragingReport, SaysBesideTheTableThatARowOfAFollowerHasNoErrorOfItsOwn) {
  CovarianceFile file = File({0.25, 0.25}, {{1, {0.1, 0.2, 0.3}}});
  file.fuses.Dimension(2, "A");
  EXPECT_THAT(
      AveragingReport(AverageModels({file}, {1}, 1)),
      testing::EndsWith("0.0000E+00\r\n\r\nA fused parameter has the SEs of the first of its group: its own row "
                        "leaves them out."));
}

}  // namespace
}  // namespace merlane
