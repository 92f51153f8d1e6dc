#include "bootstrap/bootstrap.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>

#include "base/runtime_failure.h"
#include "bootstrap/bootstrap_reports.h"
#include "data/data_text.h"

namespace merlane {
namespace {

// ---- Figures over replicates

TEST(Spread, IsThePopulationFormOfTheStandardDeviation) {
  Spread spread;
  for (const double x : {1.0, 2.0, 3.0, 6.0}) spread.Add(x);
  EXPECT_EQ(spread.Mean(), 3);
  EXPECT_DOUBLE_EQ(spread.SD(), std::sqrt(3.5));
  EXPECT_EQ(spread.Minimum(), 1);
  EXPECT_EQ(spread.Maximum(), 6);
}

TEST(Spread, OfOneReplicateHasAnErrorOfZeroByTheSums) {
  Spread spread;
  spread.Add(0.1);
  EXPECT_EQ(spread.SD(), 0);
  EXPECT_EQ(spread.Mean(), 0.1);
}

TEST(Spread, OfNoReplicateIsZeroBetweenLimitsThatNothingHasMoved) {
  const Spread spread;
  EXPECT_EQ(spread.Mean(), 0);
  EXPECT_EQ(spread.SD(), 0);
  EXPECT_EQ(spread.Minimum(), 1e100);
  EXPECT_EQ(spread.Maximum(), -1e100);
}

TEST(Spread, OfEqualNumbersIsZeroWhereRoundingWouldTakeTheRootOfANegativeOne) {
  Spread spread;
  for (int i = 0; i < 3; ++i) spread.Add(0.1);
  EXPECT_GE(spread.SD(), 0);
  EXPECT_LT(spread.SD(), 1e-8);
}

/// Two free parameters of four, a record of a clutch and one of a brood.
struct BootstrapResultsTest : ::testing::Test {
  BootstrapResults results;
  Array1<double> Value{1, 0.25, 3, -0.5};
  SurvivalEstimates survival;
  test::Reading reading;

  BootstrapResultsTest() {
    reading.Of(std::string(test::Header) + "\n" + test::Record(1995, "A", 150, 160, -10, 8) +
               test::Record(1995, "A", 165, 160, 5, 6));
    FreeParameters free;
    free.NFREE = 2;
    free.FreeIndex = {2, 4};
    results.TargetAge = 40;
    results.Tolerance = 0.0001;
    results.Begin(100, Value, free, reading.data.Visits());
    survival.Preset(reading.data);
  }
  void Keep(double F, double second) {
    Value(2) = second;
    survival.LiveDay[1] = second;
    results.Keep(F, Value, survival);
  }
  std::vector<std::string> SummaryLines() const { return Lines(BootstrapSummary(results)); }
};

TEST_F(BootstrapResultsTest, ReplicateAtOrAboveTheRealDevianceIsCounted) {
  Keep(99.5, 0.5);
  Keep(100, 0.5);
  Keep(101, 0.5);
  EXPECT_EQ(results.BootAboveObserved, 2);
  EXPECT_EQ(results.deviance.Minimum(), 99.5);
  EXPECT_THAT(SummaryLines(), ::testing::Contains("Cumulative p[Deviance]: 0.667"));
}

TEST_F(BootstrapResultsTest, OnlyFreeParametersAreKept) {
  Keep(99, 0.5);
  EXPECT_EQ(results.BootEstimates[0], Array1<double>({0.5, -0.5}));
  EXPECT_EQ(results.originalEstimates, Array1<double>({0.25, -0.5}));
  EXPECT_EQ(results.parameters, Array1<std::int16_t>({2, 4}));
}

TEST_F(BootstrapResultsTest, SurvivalIsKeptOverTheReplicatesThatHaveIt) {
  Keep(99, 0.5);
  survival.LiveDay[1] = Missing;
  results.Keep(99, Value, survival);
  EXPECT_EQ(results.survival[0][1].Count(), 1);
  EXPECT_EQ(results.survival[0][0].Count(), 0);
}

TEST_F(BootstrapResultsTest, RejectionsAreCountedAndToldBeyondFiveDigits) {
  for (int i = 0; i < 123456; ++i) ++results.BootPenaltyRejects;
  EXPECT_EQ(results.Rejects(), 123456);
  EXPECT_THAT(BootstrapSummary(results), ::testing::HasSubstr("added to the Deviance was 123456\r\n"));
}

TEST_F(BootstrapResultsTest, HeadsOfAnAgeOfFourDigitsAreWholeAndTheirColumnsAsWide) {
  Keep(99, 0.5);
  results.TargetAge = 1000;
  const std::vector<std::string> lines = Lines(BootstrapSurvivalText(results, reading.data));
  EXPECT_THAT(lines[0],
              ::testing::HasSubstr(",Mean p[Fledge(a;1000)]_R,  SE p[Fledge(a;1000)]_R, Min p[Fledge(a;1000)]_R"));
  EXPECT_THAT(lines[0], ::testing::EndsWith(", Max p[Fledge(0;1000)]_C"));
  ASSERT_EQ(lines.size(), 3U);
  for (const std::string& line : lines) EXPECT_EQ(line.size(), lines[0].size());
}

// ---- The lines in the summary

TEST_F(BootstrapResultsTest, AFreeAgeIsToldSinceDeviancesAreThenThoseOfSearches) {
  Keep(99, 0.5);
  EXPECT_THAT(BootstrapSummary(results), ::testing::Not(::testing::HasSubstr("an age at laying")));
  results.parameters(2) = 10;
  EXPECT_THAT(BootstrapSummary(results), ::testing::HasSubstr("\r\nNote: an age at laying or fledging was free: "));
}

TEST_F(BootstrapResultsTest, ZeroReplicatesPrintTheRejectionsAndNoMeaningfulMeans) {
  ++results.BootPenaltyRejects;
  ++results.BootPenaltyRejects;
  ++results.BootMatrixRejects;
  results.BootPenaltySum = 1.5e20;
  const std::vector<std::string> lines = SummaryLines();
  ASSERT_EQ(lines.size(), 18U);
  EXPECT_EQ(lines[1], "Results from execution of 0 parametric bootstraps:");
  EXPECT_EQ(lines[5], "Parameter # 002 estimate:    0.2500000   Mean:    0.0000000   SD:    0.0000000  ");
  EXPECT_EQ(lines[10], "Bootstrapped data Deviance (-2lnL) Mean: 0.00     SD: 0.00");
  EXPECT_THAT(lines[11],
              ::testing::StartsWith("Min:     1000000000000000015902891109759918046836080856394528138978132"));
  EXPECT_EQ(lines[13], "Cumulative p[Deviance]: Undefined");
  EXPECT_EQ(lines[14], "A parametric deviance-based estimate of c-hat is: Uncalculated");
  EXPECT_EQ(lines[15], "The number of bootstraps rejected due to a maxtrix inversion failure was 1");
  EXPECT_THAT(
      BootstrapSummary(results),
      ::testing::EndsWith("The number of bootstraps rejected due to a penalty being added to the Deviance was 2\r\n"
                          "The 'penalty rejected' bootstraps included penalties summing to 1.5000000E+20\r\n"));
}

TEST_F(BootstrapResultsTest, OneReplicateHasStandardDeviationsOfZero) {
  Keep(80, 0.5);
  const std::vector<std::string> lines = SummaryLines();
  EXPECT_EQ(lines[5], "Parameter # 002 estimate:    0.2500000   Mean:    0.5000000   SD:    0.0000000  ");
  EXPECT_EQ(lines[6], "Parameter # 004 estimate:   -0.5000000   Mean:   -0.5000000   SD:    0.0000000  ");
  EXPECT_EQ(lines[10], "Bootstrapped data Deviance (-2lnL) Mean: 80.00     SD: 0.00");
  EXPECT_EQ(lines[11], "Min:     80.00     Max: 80.00");
  EXPECT_EQ(lines[14], "A parametric deviance-based estimate of c-hat is: 1.25");
}

TEST_F(BootstrapResultsTest, MinimiserAndKindOfToleranceAreTold) {
  EXPECT_EQ(SummaryLines()[3], "Minimizer: Simplex;  Absolute tolerance for convergence: 0.000100");
  results.minimiser = BootstrapResults::Minimiser::Marquardt;
  results.Tolerance = -0.001;
  EXPECT_EQ(SummaryLines()[3], "Minimizer: Marquardt;  Relative tolerance for convergence: 0.001000");
}

// ---- The two files

TEST_F(BootstrapResultsTest, ParameterFileHasALineForEachReplicateAndNoCommaAtAnEnd) {
  Keep(80, 0.5);
  Keep(12345.67891, 1e-120);
  EXPECT_EQ(BootstrapParameterText(results),
            "Parameter # etc. >,       -2ln[L],           002,           004\r\n"
            "  Bootstrap #00001,       80.0000,  5.000000E-01, -5.000000E-01\r\n"
            "  Bootstrap #00002,    12345.6789, 1.000000E-120, -5.000000E-01\r\n");
}

TEST_F(BootstrapResultsTest, NumbersTooLongForTheirColumnsStandWhole) {
  results.originalEstimates(1) = -1234567890.5;
  EXPECT_EQ(SummaryLines()[5].substr(0, 46), "Parameter # 002 estimate: -1234567890.5000000 ");
  Keep(1234567890123.25, -1.5e-120);
  EXPECT_EQ(Lines(BootstrapParameterText(results))[1],
            "  Bootstrap #00001,1234567890123.2500,-1.500000E-120, -5.000000E-01");
}

TEST_F(BootstrapResultsTest, SurvivalFileHas41CommasInEveryLine) {
  Keep(80, 0.5);
  const std::vector<std::string> lines = Lines(BootstrapSurvivalText(results, reading.data));
  ASSERT_EQ(lines.size(), 3U);
  for (const std::string& line : lines) {
    EXPECT_EQ(std::count(line.begin(), line.end(), ','), 41);
    EXPECT_EQ(line.size(), lines[0].size()) << "columns are as wide as their headings";
  }
  EXPECT_THAT(lines[0], ::testing::EndsWith(" Max p[Fledge(0;040)]_C"));
  EXPECT_THAT(lines[2],
              ::testing::StartsWith(
                  "    1995,       A,     165,     160,       5,       6,               0.5000,               "
                  "0.0000,               0.5000,               0.5000,                     ,"));
}

TEST_F(BootstrapResultsTest, QuantityThatARecordLacksPrintsBlanks) {
  Keep(80, 0.5);
  const std::string clutch = Lines(BootstrapSurvivalText(results, reading.data))[1];
  EXPECT_EQ(clutch.substr(0, 53), "    1995,       A,     150,     160,     -10,       8");
  EXPECT_EQ(clutch.find_first_not_of(" ,", 53), std::string::npos);
}

TEST_F(BootstrapResultsTest, UnknownAgesPrintTheSignOfTheirStage) {
  reading.Of(std::string(test::Header) + "\n" + test::Record("1995", "A", "150", "160", "-?", "8") +
             test::Record("1995", "A", "165", "160", "?", "6"));
  const std::vector<std::string> lines = Lines(BootstrapSurvivalText(results, reading.data));
  EXPECT_EQ(lines[1].substr(36, 8), "      -?");
  EXPECT_EQ(lines[2].substr(36, 8), "       ?");
}

}  // namespace
}  // namespace merlane
