#include "uncertainty/covariance_report.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/runtime_failure.h"
#include "base/text.h"
#include "control/save_pane.h"
#include "support/function_run.h"
#include "support/golden_covariances.h"

namespace merlane {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

/// A run of three parameters of which the first and third have results that are easily checked.
struct ReportTest : ::testing::Test {
  ReportTest() {
    c.CovFuse = {"~~", "A", "AB"};
    c.CovName = {"First parameter", "Second parameter", "Third parameter"};
    c.CovBaseValue = {0.5, 0, -1};
    c.CovStep = {0.1, 0, -0.25};
    c.CovCount = 2;
    c.CovIndex = {1, 3};
    c.CovF0 = 20;
    c.CovConstantInverse = 2;
    for (int g = 1; g <= 3; ++g) {
      CovarianceGrid& grid = c.grid(g);
      grid.GridFactor = g == 1 ? 1 : g == 2 ? 0.1 : 0.01;
      grid.GridMean = 20 + g;
      grid.GridSD = 0.5 * g;
      grid.ending = GridEnding::Calculated;
      grid.standardErrors = {0.25 * g, 0.5 * g};
      grid.covariances.Dimension(2, 2);
      grid.covariances(1, 1) = 0.0625 * g * g;
      grid.covariances(1, 2) = 0.0625 * g * g;
      grid.covariances(2, 1) = 99;  // only the upper triangle is shown
      grid.covariances(2, 2) = 0.25 * g * g;
      grid.determinant = 0.01 * g;
      grid.productOfVariances = 0.02 * g;
    }
  }

  /// Lines of the .cov file, counted from 1.
  std::vector<std::string> FileLines() const {
    std::vector<std::string> lines = Lines(SavedUnder("three.cov") + CovarianceReport(c));
    lines.insert(lines.begin(), "");
    return lines;
  }

  void Abandon(int g) {
    CovarianceGrid& grid = c.grid(g);
    grid.ending = GridEnding::Abandoned;
    grid.GridMean = grid.GridSD = grid.determinant = grid.productOfVariances = -1;
    grid.standardErrors.Fill(-1);
    grid.covariances.Dimension(2, 2, -1);
  }

  Covariances c;
};

TEST_F(ReportTest, IsTheseLines) {
  EXPECT_THAT(
      FileLines(),
      ElementsAre("", "Originally saved with the file name: three.cov", "",
                  "Parameter values, step sizes, link codes, and definitions for numerically calculated covariances:",
                  "", " 001)  5.0000000E-01   1.0000000E-01  ~~  First parameter",
                  " 002)  0.0000000E+00   0.0000000E+00   A  Second parameter",
                  " 003) -1.0000000E+00  -2.5000000E-01  AB  Third parameter", "",
                  "Reliable numerical covariance results should be similar among three grids with quite different grid "
                  "factors",
                  "", "Covariance constant: 0.5", "",
                  "                               Grid #1           Grid #2           Grid #3", "",
                  "Factors:              1) 1.0000000E+00  2) 1.0000000E-01  3) 1.0000000E-02", "",
                  "Likelihood function value summary:",
                  "   Mean:                 1.0500000E+01     1.1000000E+01     1.1500000E+01",
                  "   Std Dev:              2.5000000E-01     5.0000000E-01     7.5000000E-01",
                  "   Coef of Var:              0.0238095         0.0454545         0.0652174", "",
                  "Par#                               Standard errors of the estimates",
                  "  1                      2.5000000E-01     5.0000000E-01     7.5000000E-01",
                  "  3                      5.0000000E-01     1.0000000E+00     1.5000000E+00", "",
                  "Par#               Probabilities that the estimates do not differ from 0, then 1",
                  "  1                     0.0458  0.0458    0.3176  0.3176    0.5052  0.5052",
                  "  3                     0.0458 <0.0001    0.3176  0.0458    0.5052  0.1828", "",
                  "Par#,Par#                                   Correlations",
                  "  1    3                     0.5000000         0.5000000         0.5000000", "",
                  "Par#,Par#                                   Covariances",
                  "  1    1                 6.2500000E-02     2.5000000E-01     5.6250000E-01",
                  "  1    3                 6.2500000E-02     2.5000000E-01     5.6250000E-01",
                  "  3    3                 2.5000000E-01     1.0000000E+00     2.2500000E+00", "",
                  "                                            Determinants",
                  "Covariance Matrix:       1.0000000E-02     2.0000000E-02     3.0000000E-02",
                  "Correlation Matrix:      5.0000000E-01     5.0000000E-01     5.0000000E-01"));
}

TEST_F(ReportTest, LinesEndWithCarriageReturnAndLineFeed) {
  const std::string text = CovarianceReport(c);
  EXPECT_EQ(text, WithCrLf(text));
  EXPECT_EQ(Rightmost(text, 2), "\r\n");
}

TEST_F(ReportTest, FifteenLinesStandBetweenParametersAndStandardErrors) {
  const std::vector<std::string> lines = FileLines();
  EXPECT_EQ(lines[5 + 3], "");
  EXPECT_EQ(lines[19 + 3], "Par#                               Standard errors of the estimates");
  EXPECT_EQ(Columns(lines[20 + 3], 25, 38), " 2.5000000E-01");
  EXPECT_EQ(Columns(lines[20 + 3], 43, 56), " 5.0000000E-01");
  EXPECT_EQ(Columns(lines[20 + 3], 61, 74), " 7.5000000E-01");
}

TEST_F(ReportTest, AnalyticalColumnsAreAlike) {
  c.mode = CovarianceMode::Analytical;
  for (int g = 1; g <= 3; ++g) {
    c.grid(g) = c.grid(1);
    c.grid(g).GridFactor = 0;
    c.grid(g).GridMean = c.grid(g).GridSD = -1;
  }
  const std::vector<std::string> lines = FileLines();
  EXPECT_EQ(lines[3],
            "Parameter values, step sizes, link codes, and definitions for analytically calculated covariances:");
  EXPECT_EQ(lines[9],
            "Analytical covariance results are redundant for all grids; likelihood function value summary is "
            "meaningless");
  EXPECT_EQ(lines[15], "Factors:              1) 0.0000000E+00  2) 0.0000000E+00  3) 0.0000000E+00");
  EXPECT_EQ(lines[18], "   Mean:                 1.0000000E+01     1.0000000E+01     1.0000000E+01");
  EXPECT_EQ(lines[19], "   Std Dev:             -1.0000000E+00    -1.0000000E+00    -1.0000000E+00");
  EXPECT_EQ(lines[20], "   Coef of Var:             -1.0000000        -1.0000000        -1.0000000");
  EXPECT_EQ(lines[23], "  1                      2.5000000E-01     2.5000000E-01     2.5000000E-01");
}

TEST_F(ReportTest, AbandonedGridIsShownAsMinusOne) {
  Abandon(2);
  const std::vector<std::string> lines = FileLines();
  EXPECT_EQ(lines[18], "   Mean:                 1.0500000E+01    -1.0000000E+00     1.1500000E+01");
  EXPECT_EQ(lines[19], "   Std Dev:              2.5000000E-01    -1.0000000E+00     7.5000000E-01");
  EXPECT_EQ(lines[20], "   Coef of Var:              0.0238095        -1.0000000         0.0652174");
  EXPECT_EQ(lines[23], "  1                      2.5000000E-01    -1.0000000E+00     7.5000000E-01");
  EXPECT_EQ(lines[27], "  1                     0.0458  0.0458   -1.0000 -1.0000    0.5052  0.5052");
  EXPECT_EQ(lines[31], "  1    3                     0.5000000        -1.0000000         0.5000000");
  EXPECT_EQ(lines[34], "  1    1                 6.2500000E-02    -1.0000000E+00     5.6250000E-01");
  EXPECT_EQ(lines[39], "Covariance Matrix:       1.0000000E-02    -1.0000000E+00     3.0000000E-02");
  EXPECT_EQ(lines[40], "Correlation Matrix:      5.0000000E-01    -1.0000000E+00     5.0000000E-01");
}

TEST_F(ReportTest, GridThatIsNotPositiveDefiniteKeepsItsSummary) {
  Abandon(1);
  c.grid(1).ending = GridEnding::NotPositiveDefinite;
  c.grid(1).GridMean = 21;
  c.grid(1).GridSD = 0.5;
  const std::vector<std::string> lines = FileLines();
  EXPECT_EQ(lines[18], "   Mean:                 1.0500000E+01     1.1000000E+01     1.1500000E+01");
  EXPECT_EQ(lines[23], "  1                     -1.0000000E+00     5.0000000E-01     7.5000000E-01");
}

TEST_F(ReportTest, EstimateOfZeroDoesNotDifferFromZero) {
  c.CovBaseValue(1) = 0;
  EXPECT_THAT(FileLines()[27], HasSubstr("1                     1.0000 <0.0001"));
}

TEST_F(ReportTest, TwentyStandardErrorsAreBelowOneInTenThousand) {
  c.CovBaseValue(1) = 5;
  EXPECT_THAT(FileLines()[27], HasSubstr("1                    <0.0001 <0.0001"));
}

TEST_F(ReportTest, SmallestProbabilityIsTwoInTenThousand) {
  c.CovBaseValue(1) = 3.8 * 0.25;
  EXPECT_EQ(Columns(FileLines()[27], 21, 30), "    0.0002");
}

TEST_F(ReportTest, NegativeStandardErrorIsTestedByItsDistance) {
  c.grid(1).standardErrors(1) = -0.25;
  const std::vector<std::string> lines = FileLines();
  EXPECT_EQ(Columns(lines[23], 25, 38), "-2.5000000E-01");
  EXPECT_EQ(Columns(lines[27], 21, 38), "    0.0458  0.0458");
}

TEST_F(ReportTest, CoefficientOfAZeroMeanIsMinusOne) {
  c.grid(1).GridMean = 0;
  EXPECT_EQ(FileLines()[20], "   Coef of Var:             -1.0000000         0.0454545         0.0652174");
}

TEST_F(ReportTest, DeterminantOfCorrelationsWithoutAProductIsMinusOne) {
  c.grid(1).productOfVariances = 0;
  c.grid(2).productOfVariances = -1;
  EXPECT_EQ(FileLines()[40], "Correlation Matrix:     -1.0000000E+00    -1.0000000E+00     5.0000000E-01");
}

TEST_F(ReportTest, OptimisticReportHasANoteInPlaceOfCorrelations) {
  c.OptimisticSE = true;
  const std::vector<std::string> lines = FileLines();
  EXPECT_EQ(lines[29], "");
  EXPECT_EQ(lines[30], "Note: The above SE estimates are optimistic (under-estimated) conditional estimates");
  EXPECT_EQ(lines[31], "");
  EXPECT_EQ(lines[32], "                                            Determinants");
}

TEST_F(ReportTest, ConstantIsInShortestForm) {
  c.CovConstantInverse = 1;
  EXPECT_EQ(FileLines()[11], "Covariance constant: 1");
  c.CovConstantInverse = 3;
  EXPECT_EQ(FileLines()[11], "Covariance constant: 0.3333333333333333");
}

TEST_F(ReportTest, NumbersTooLongForTheirColumnsMoveTheRest) {
  const std::string before = FileLines()[6];
  c.CovBaseValue(2) = -2e-100;
  EXPECT_EQ(FileLines()[6], before.substr(0, 6) + "-2.0000000E-100" + before.substr(20));
}

TEST_F(ReportTest, CoefficientTooLargeForItsColumnIsShownWhole) {
  c.grid(1).GridMean = 1e-10;
  c.grid(1).GridSD = 1e7;
  EXPECT_THAT(FileLines(), ::testing::Contains(::testing::HasSubstr("Coef of Var:     100000000000000000.0000000")));
}

TEST_F(ReportTest, GivesATurnForEachParameter) {
  int turns = 0;
  CovarianceReport(c, [&] { ++turns; });
  EXPECT_EQ(turns, 2);
}

TEST_F(ReportTest, ReadsBackWhatItWrote) {
  Abandon(2);
  const std::string text = SavedUnder("three.cov") + CovarianceReport(c);
  const CovarianceFile file = ReadCovarianceFile(text, 3, 2);
  EXPECT_EQ(file.values, (Array1<double>{0.5, 0, -1}));
  ASSERT_EQ(file.rows.Size(), 2);
  EXPECT_EQ(file.rows(1).parameter, 1);
  EXPECT_THAT(file.rows(1).standardErrors, ElementsAre(0.25, -1, 0.75));
  EXPECT_EQ(file.rows(2).parameter, 3);
  EXPECT_THAT(file.rows(2).standardErrors, ElementsAre(0.5, -1, 1.5));
  EXPECT_EQ(file.fuses, (Array1<std::string>{"~~", "A", "AB"}));
  EXPECT_FALSE(file.optimistic);
}

TEST_F(ReportTest, OptimisticErrorsReadBackAsSuch) {
  c.OptimisticSE = true;
  EXPECT_TRUE(ReadCovarianceFile(SavedUnder("three.cov") + CovarianceReport(c), 3, 2).optimistic);
}

TEST_F(ReportTest, FusesBehindLongNumbersReadBackAndShortLinesTellNone) {
  c.CovBaseValue(2) = -2e-100;
  c.CovStep(2) = -1e-123;
  std::string text = SavedUnder("three.cov") + CovarianceReport(c);
  EXPECT_EQ(ReadCovarianceFile(text, 3, 2).fuses, (Array1<std::string>{"~~", "A", "AB"}));
  const std::string::size_type third = text.find(" 003) ");
  text.erase(third + 20, text.find("\r\n", third) - third - 20);
  EXPECT_EQ(ReadCovarianceFile(text, 3, 2).fuses.Size(), 0);
}

TEST_F(ReportTest, TheObjectiveAtTheValuesIsBoundedByTheMeansOfTheGrids) {
  CovarianceFile file;
  EXPECT_EQ(file.NegLnLAtValues(), std::nullopt) << "nothing is told";
  file.grids = {{0.01, 100.01}};
  EXPECT_EQ(file.NegLnLAtValues(), std::nullopt) << "one grid does not tell how far away it is";
  file.grids = {{1, 200}, {0.1, 101}, {0.01, 100.01}};
  ASSERT_TRUE(file.NegLnLAtValues());
  EXPECT_DOUBLE_EQ(file.NegLnLAtValues()->low, 100.01 - 0.99 / 9);
  EXPECT_DOUBLE_EQ(file.NegLnLAtValues()->high, 100.01 + 0.99 / 9);
  file.grids = {{0, 100}, {0, 100}, {0, 100}};
  ASSERT_TRUE(file.NegLnLAtValues());
  EXPECT_EQ(file.NegLnLAtValues()->low, 100) << "analytical derivatives are of the values themselves";
}

TEST_F(ReportTest, ThreeDigitExponentsReadBackRight) {
  c.CovBaseValue(2) = -2e-100;
  const std::string text = SavedUnder("three.cov") + CovarianceReport(c);
  EXPECT_EQ(ReadCovarianceFile(text, 3, 2).values, (Array1<double>{0.5, -2e-100, -1}));
}

TEST_F(ReportTest, FileSavedAgainIsReadLikeOneThatWasSavedOnce) {
  const std::string text =
      SavedUnder("third.cov") + SavedUnder("again.cov") + SavedUnder("three.cov") + CovarianceReport(c);
  const CovarianceFile file = ReadCovarianceFile(text, 3, 2);
  EXPECT_EQ(file.values, (Array1<double>{0.5, 0, -1}));
  EXPECT_EQ(file.rows(2).parameter, 3);
}

TEST_F(ReportTest, FileThatEndsTooSoonIsAFailure) {
  const std::string text = SavedUnder("three.cov") + CovarianceReport(c);
  EXPECT_THROW(ReadCovarianceFile(text, 3, 30), RuntimeFailure);
  EXPECT_THROW(ReadCovarianceFile(text, 34, 2), RuntimeFailure);
  EXPECT_THROW(ReadCovarianceFile("", 3, 2), RuntimeFailure);
}

TEST_F(ReportTest, RowThatNamesNoParameterIsAFailure) {
  const std::string text = SavedUnder("three.cov") + CovarianceReport(c);
  EXPECT_THROW(ReadCovarianceFile(text, 3, 3), RuntimeFailure);  // the row behind the last is empty
  std::string beyond = text;
  beyond.replace(beyond.find("\r\n  3       ") + 2, 3, "  4");
  EXPECT_THROW(ReadCovarianceFile(beyond, 3, 2), RuntimeFailure);
}

TEST_F(ReportTest, FieldsAreReadLeniently) {
  std::string text = SavedUnder("three.cov") + CovarianceReport(c);
  text.replace(text.find(" 5.0000000E-01"), 14, "         0.25x");
  EXPECT_EQ(ReadCovarianceFile(text, 3, 2).values(1), 0.25);
}

TEST_F(ReportTest, HostileBytesAreFailuresAndNothingWorse) {
  const std::string text = SavedUnder("three.cov") + CovarianceReport(c);
  for (std::size_t i = 0; i < text.size(); ++i)
    for (const char byte : {'\0', '\n', '9', 'E', '-', '\xff'}) {
      std::string broken = text;
      broken[i] = byte;
      for (const std::string& bytes : {broken, broken.substr(0, i)}) {
        try {
          const CovarianceFile file = ReadCovarianceFile(bytes, 3, 2);
          for (const CovarianceFile::Row& row : file.rows) EXPECT_TRUE(row.parameter >= 1 && row.parameter <= 3);
        } catch (const RuntimeFailure&) {
        }
      }
    }
}

// The kept reports, rebuilt from the kept figures.
class KeptReport : public ::testing::TestWithParam<test::GoldenCovariances> {};

TEST_P(KeptReport, ComesOutByteForByte) {
  const test::GoldenCovariances& kept = GetParam();
  EXPECT_EQ(SavedUnder(kept.name + ".cov") + CovarianceReport(kept.covariances), kept.report);
}

TEST_P(KeptReport, IsReadBack) {
  const test::GoldenCovariances& kept = GetParam();
  const Covariances& c = kept.covariances;
  const CovarianceFile file = ReadCovarianceFile(kept.report, c.CovBaseValue.Size(), c.CovCount);
  for (int i = 1; i <= c.CovBaseValue.Size(); ++i)
    EXPECT_NEAR(file.values(i), c.CovBaseValue(i), std::fabs(c.CovBaseValue(i)) * 5e-8);
  const double negLnL = c.CovF0 / c.CovConstantInverse;
  ASSERT_TRUE(file.NegLnLAtValues());
  EXPECT_LE(file.NegLnLAtValues()->low, negLnL + 1e-5);
  EXPECT_GE(file.NegLnLAtValues()->high, negLnL - 1e-5);
  EXPECT_LT(file.NegLnLAtValues()->high - file.NegLnLAtValues()->low, 1);
  for (int a = 1; a <= c.CovCount; ++a) {
    EXPECT_EQ(file.rows(a).parameter, c.CovIndex(a));
    for (int g = 1; g <= 3; ++g) {
      const double se = c.grid(g).standardErrors(a);
      EXPECT_NEAR(file.rows(a).standardErrors[static_cast<std::size_t>(g) - 1], se, std::fabs(se) * 5e-8);
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Golden, KeptReport, ::testing::ValuesIn(test::KeptReports()),
                         [](const auto& kept) { return kept.param.name; });

}  // namespace
}  // namespace merlane
