#include "results/detail_series.h"

#include <gmock/gmock.h>

#include <cmath>

#include "base/elementary.h"
#include "base/runtime_failure.h"
#include "control/algorithm_file.h"
#include "data/golden_case.h"
#include "likelihood/analysis.h"
#include "platform/files.h"

namespace merlane {
namespace {

using nlohmann::json;
using ::testing::Each;
using ::testing::ElementsAre;

/// The values of a variable of a page, from 1.
std::vector<double> Values(const PlotTable& page, int variable) {
  std::vector<double> values;
  for (int row = 1; row <= page.PlotData.Columns(); ++row) values.push_back(page.PlotData(variable, row));
  return values;
}

int Number(const PlotTable& page, const std::string& name) {
  for (int i = 1; i <= page.PlotVarName.Size(); ++i)
    if (page.PlotVarName(i) == name) return i;
  ADD_FAILURE() << "no variable is named " << name;
  return 1;
}

// ---- Kept tables

struct Kept {
  std::string table, name;
  int covariates;
  std::string format;
  int lastYear;
  std::optional<int> year;  // none: all years, or a brood
  bool brood = false;
};

class KeptSeries : public ::testing::TestWithParam<Kept> {};

TEST_P(KeptSeries, IsBuiltCellByCell) {
  const Kept& c = GetParam();
  test::Reading reading(1995, c.lastYear, c.covariates);
  reading.Of(ReadWholeFile(test::GoldenPath(c.name + ".dat")));
  const BroodData& data = reading.data;
  LikelihoodState state;
  state.Dimension(data);
  Likelihood likelihood(data);
  AlgorithmData a;
  a.NPAR = static_cast<std::int16_t>(ParameterCount(c.covariates));
  ReadAlgorithm(ReadWholeFile(test::GoldenPath(c.name + ".alg")), a);
  a.ParName.Dimension(a.NPAR);
  double F = 0;
  std::int32_t n = 0;
  EvaluationSetting setting;
  setting.tell = [](const Message&) {};
  setting.turn = [](long) {};
  likelihood.EvaluateObjective(setting, state, F, a.Value, a.Step, a.ParName, a.Fuse, a.NPAR, 1, n);
  likelihood.FillTables(state);
  SurvivalEstimates estimates;
  Simulation simulation;
  estimates.Preset(data);
  simulation.Preset(data);
  EstimateOneDaySurvival(data, state, false, {}, estimates);
  EstimateFledgingSurvival(data, state, false, state.parameters.FledgeAge, {}, estimates);

  const DetailSubject subject{data, state.best, estimates, simulation};
  const PlotTable page = c.brood ? BuildBroodPlot(subject, 0) : BuildYearPlot(subject, c.year);
  const json kept = test::GoldenJson("plots/" + c.table + ".json");
  EXPECT_EQ(page.PlotPageText, kept["page_text"].get<std::string>());
  EXPECT_EQ(page.PlotXName, kept["x_name"].get<std::string>());
  EXPECT_EQ(page.PlotXMin, kept["x_min"].get<double>());
  EXPECT_EQ(page.PlotXMax, kept["x_max"].get<double>());
  EXPECT_EQ(page.PlotXLabelMin, page.PlotXMin);
  EXPECT_EQ(page.PlotXLabelMax, page.PlotXMax);
  ASSERT_EQ(page.PlotData.Columns(), kept["rows"].get<int>());
  ASSERT_EQ(page.PlotVarName.Size(), static_cast<int>(kept["variables"].size()));
  for (int i = 1; i <= page.PlotVarName.Size(); ++i) {
    const json& variable = kept["variables"][static_cast<std::size_t>(i) - 1];
    EXPECT_EQ(page.PlotVarName(i), variable["name"].get<std::string>());
    EXPECT_EQ(page.PlotYMin(i), variable["y_min"].get<double>()) << page.PlotVarName(i);
    EXPECT_EQ(page.PlotYMax(i), variable["y_max"].get<double>()) << page.PlotVarName(i);
    for (int row = 1; row <= page.PlotData.Columns(); ++row) {
      const double value = variable["values"][static_cast<std::size_t>(row) - 1].get<double>();
      EXPECT_EQ(page.PlotData(i, row), value) << page.PlotVarName(i) << ", row " << row;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(
    Golden, KeptSeries,
    ::testing::Values(Kept{"series_hatch_day_brood", "hatch_day", 0, "O", 1995, {}, true},
                      Kept{"series_hatch_day_year", "hatch_day", 0, "O", 1995, 1995},
                      Kept{"series_covariates_original_brood", "covariates_original", 3, "O", 1996, {}, true},
                      Kept{"series_covariates_original_year", "covariates_original", 3, "O", 1996, 1995},
                      Kept{"series_covariates_original_all", "covariates_original", 3, "O", 1996, {}}),
    [](const auto& one) { return one.param.table; });

// ---- Edge cases

struct DetailSeriesTest : ::testing::Test {
  test::Analysis analysis;
  SurvivalEstimates estimates;
  Simulation simulation;

  void Evaluate(int covariates = 0) {
    analysis.Read(covariates);
    analysis.Value(15) = analysis.Value(17) = 0.05;
    analysis.Evaluate();
    estimates.Preset(analysis.reading.data);
    simulation.Preset(analysis.reading.data);
  }
  DetailSubject Subject() { return {analysis.reading.data, analysis.state.best, estimates, simulation}; }
};

TEST_F(DetailSeriesTest, ClutchWithoutJuvenilesHasAColumnOfMissingValuesOnly) {
  analysis.Visit("A", -10, 8).Visit("A", -5, 6);
  Evaluate();
  const PlotTable page = BuildBroodPlot(Subject(), 0);
  EXPECT_EQ(page.PlotVarName(4), "Observed # of juveniles in A 1995");
  EXPECT_THAT(Values(page, 4), Each(MissingPoint));
  EXPECT_THAT(Values(page, 3), ElementsAre(8, 6));
}

TEST_F(DetailSeriesTest, WithoutCovariatesABroodHas18VariablesAndAYear27) {
  analysis.Visit("A", -10, 8).Visit("A", -5, 6);
  Evaluate();
  EXPECT_EQ(BuildBroodPlot(Subject(), 0).PlotVarName.Size(), 18);
  EXPECT_EQ(BuildYearPlot(Subject(), 1995).PlotVarName.Size(), 27);
}

TEST_F(DetailSeriesTest, EachCovariateAddsAVariable) {
  analysis.Visit("A", -10, 8, "1.5").Visit("A", -5, 6, "1.5");
  Evaluate(1);
  const PlotTable page = BuildBroodPlot(Subject(), 0);
  EXPECT_EQ(page.PlotVarName.Size(), 19);
  EXPECT_EQ(page.PlotVarName(19), "Brood covariate # 1 in A 1995 (Covariate1)");
  EXPECT_THAT(Values(page, 19), ElementsAre(1.5, 1.5));
  EXPECT_EQ(BuildYearPlot(Subject(), {}).PlotVarName(28), "Brood covariate # 1 in ALL YEARS (Covariate1)");
}

TEST_F(DetailSeriesTest, TrueCovariateOf999OfEitherSignIsLost) {
  analysis.Visit("A", -10, 8, "999").Visit("A", -5, 6, "999").Visit("B", -10, 8, "-999").Visit("C", -10, 8, "998");
  Evaluate(1);
  EXPECT_THAT(Values(BuildBroodPlot(Subject(), 0), 19), Each(MissingPoint));
  EXPECT_THAT(Values(BuildBroodPlot(Subject(), 1), 19), Each(MissingPoint));
  EXPECT_THAT(Values(BuildBroodPlot(Subject(), 2), 19), Each(998));
}

TEST_F(DetailSeriesTest, VisitsThatNeverWereAreMissingAlsoInTheSignedColumns) {
  analysis.Visit("A", -10, 8).Visit("A", -5, 6).Visit("A", 3, 4).Visit("B", -10, 7).Visit("B", 3, 5);
  Evaluate();
  const PlotTable page = BuildBroodPlot(Subject(), 1);
  for (int i = 1; i <= 18; ++i) {
    const bool ofBrood = i >= 9 && i <= 12;
    EXPECT_EQ(page.PlotData(i, 3) == MissingPoint, !ofBrood) << page.PlotVarName(i);
  }
  EXPECT_EQ(page.PlotData(14, 1), -7);
}

TEST_F(DetailSeriesTest, BlankHatchDayIsAZeroAndIsPlotted) {
  analysis.WithoutHatchDay("A", 150, -10, 8);
  Evaluate();
  EXPECT_THAT(Values(BuildBroodPlot(Subject(), 0), 9), ElementsAre(0));
}

TEST_F(DetailSeriesTest, UnknownAgeIsMissing) {
  analysis.UnknownAge("A", 150, "-?", 8).UnknownAge("A", 155, "-?", 7);
  Evaluate();
  EXPECT_THAT(Values(BuildBroodPlot(Subject(), 0), 1), Each(MissingPoint));
  EXPECT_THAT(Values(BuildBroodPlot(Subject(), 0), 14), ElementsAre(-8, -7));
}

TEST_F(DetailSeriesTest, CountsRunFromZeroToTheLargestAndSignedOnesToBothSides) {
  analysis.Visit("A", -10, 7).Visit("A", 3, 4);
  Evaluate();
  const PlotTable page = BuildBroodPlot(Subject(), 0);
  EXPECT_EQ(page.PlotYMin(5), 0);
  EXPECT_EQ(page.PlotYMax(5), 8);
  EXPECT_EQ(page.PlotYMin(14), -8);
  EXPECT_EQ(page.PlotYMax(14), 8);
  for (const int i : {1, 2, 9}) EXPECT_TRUE(page.PlotYMin(i) == 0 && page.PlotYMax(i) == 0) << i;
}

TEST_F(DetailSeriesTest, DeviancesStandOnlyWhereThereIsAPrediction) {
  analysis.Visit("A", -10, 8).Visit("A", -5, 6);
  Evaluate();
  const PlotTable page = BuildYearPlot(Subject(), 1995);
  const int deviance = Number(page, "Deviances for 1995"), deviate = Number(page, "Pearson-deviates for 1995");
  EXPECT_EQ(page.PlotData(deviance, 1), MissingPoint);
  EXPECT_EQ(page.PlotData(deviate, 1), MissingPoint);
  const double P = Exp(-0.5 * page.PlotData(deviance, 2));
  EXPECT_EQ(page.PlotData(deviate, 2), (1 - P) / P);
}

TEST_F(DetailSeriesTest, DevianceBeyondAllProbabilityFails) {
  analysis.Visit("A", -10, 8).Visit("A", -5, 6);
  Evaluate();
  analysis.state.best.VisitDeviance[1] = 1500;
  EXPECT_THROW(BuildYearPlot(Subject(), 1995), RuntimeFailure);
}

TEST_F(DetailSeriesTest, SimulatedCountsAreMissingUntilTheSimulatorHasRun) {
  analysis.Visit("A", -10, 8).Visit("A", 3, 6);
  Evaluate();
  PlotTable page = BuildBroodPlot(Subject(), 0);
  EXPECT_THAT(Values(page, 13), Each(MissingPoint));
  EXPECT_THAT(Values(page, 18), Each(MissingPoint));
  simulation.SimCount = {8, 5};
  page = BuildBroodPlot(Subject(), 0);
  EXPECT_THAT(Values(page, 13), ElementsAre(8, 5));
  EXPECT_THAT(Values(page, 18), ElementsAre(-8, 5));
}

TEST(DetailSeries, AllYearsRunFromFirstToLastAndEmptyYearsTakeNoRows) {
  test::Reading reading(1994, 1997, 0);
  reading.Of(std::string(test::Header) + "\n" + test::Record(1995, "A", 150, 160, -10, 8) +
             test::Record(1997, "B", 150, 160, -10, 7) + test::Record(1997, "B", 153, 160, -7, 6));
  LikelihoodState state;
  state.Dimension(reading.data);
  SurvivalEstimates estimates;
  Simulation simulation;
  estimates.Preset(reading.data);
  simulation.Preset(reading.data);
  const DetailSubject subject{reading.data, state.best, estimates, simulation};
  const PlotTable page = BuildYearPlot(subject, {});
  EXPECT_EQ(page.PlotPageText, "Brood summaries for ALL YEARS");
  EXPECT_THAT(Values(page, 3), ElementsAre(8, MissingPoint, 7, 6));
  EXPECT_THAT(Values(BuildYearPlot(subject, 1997), 3), ElementsAre(7, 6));
  const PlotTable empty = BuildYearPlot(subject, 1996);
  EXPECT_EQ(empty.PlotData.Columns(), 0);
  EXPECT_EQ(empty.PlotXMax, 0);
}

}  // namespace
}  // namespace merlane
