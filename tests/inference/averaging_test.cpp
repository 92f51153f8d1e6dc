#include "inference/averaging.h"

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

}  // namespace
}  // namespace merlane
