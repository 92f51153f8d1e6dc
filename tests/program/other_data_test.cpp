// Estimates and covariances that come back from files, where they were calculated with other data.
#include <gmock/gmock.h>

#include <utility>

#include "platform/files.h"
#include "program/analysis.h"

namespace merlane {
namespace {

using test::Analysis;
using test::Folder;
using test::Golden;
using ::testing::Contains;
using ::testing::HasSubstr;
using ::testing::Not;

struct OtherDataTest : ::testing::Test {
  Folder folder{"other_data"};
  std::string text = ReadWholeFile(Golden("juveniles_only.dat"));

  OtherDataTest() {
    WriteWholeFile(folder / "all.dat", text);
    // A count that was mistyped: one young more is lost at the last visit of the first brood.
    const std::string lastVisit = "      34,       2";
    text.replace(text.find(lastVisit), lastVisit.size(), "      34,       1");
    WriteWholeFile(folder / "mended.dat", text);
  }

  void Fit(Analysis& analysis) const {
    analysis.LoadAlg(Golden("juveniles_only.alg"));
    analysis.OneFunction();
    analysis.Simplex();
  }
  void Save(Analysis& analysis, const std::string& file) const {
    analysis.windows.File(folder / file);
    ASSERT_TRUE(analysis.desk.Press(analysis.menu.cmdSaveAlg));
  }
  void SaveCovariances(Analysis& analysis, const std::string& file,
                       const std::vector<std::string>& factors = {"1", "0.1", "0.01"}) const {
    analysis.Covariances(factors);
    FrmCovDisplay& display = analysis.program.frmCovDisplay;
    ASSERT_TRUE(analysis.desk.Press(display.cmdScreen));
    analysis.windows.File(folder / file);
    ASSERT_TRUE(analysis.desk.Press(display.cmdFile));
    ASSERT_TRUE(analysis.desk.Press(display.cmdFinish));
  }
  /// Ranks the saved models with the data in the run.
  void Rank(Analysis& analysis, const std::vector<std::string>& files) const {
    ASSERT_TRUE(analysis.desk.Press(analysis.menu.cmdRank));
    bool first = true;
    for (const std::string& file : files) {
      analysis.windows.File(folder / file, "Open algorithm data file");
      ASSERT_TRUE(analysis.desk.Press(analysis.program.frmRank.cmdLoadAlg));
      if (std::exchange(first, false)) analysis.windows.Enter("0.5", "Enter constant");
      ASSERT_TRUE(analysis.desk.Press(analysis.program.frmRank.cmdAICc));
    }
    ASSERT_TRUE(analysis.desk.Press(analysis.program.frmRank.cmdRank));
  }
};

TEST_F(OtherDataTest, CovariancesOfAnEarlierSessionWithOtherDataAreAskedAboutBeforeTheyAreAveraged) {
  {
    Analysis earlier;
    earlier.Initialize({.path = folder / "all.dat"});
    Fit(earlier);
    Save(earlier, "a.alg");
    Save(earlier, "b.alg");
    SaveCovariances(earlier, "a.cov");
    std::filesystem::copy_file(folder / "a.cov", folder / "b.cov");
  }
  for (const std::string& data : {folder / "all.dat", folder / "mended.dat"}) {
    Analysis now;
    now.Initialize({.path = data});
    Rank(now, {"a.alg", "b.alg"});
    const bool others = data == folder / "mended.dat";
    if (others) now.windows.No("Covariances of another model");
    ASSERT_TRUE(now.desk.Press(now.program.frmRank.cmdAverage));
    EXPECT_EQ(now.program.frmRank.AveragedFlag, !others);
    if (!others) continue;
    EXPECT_THAT(now.windows.LastText(), HasSubstr("a.cov is not of a.alg as it is ranked: -ln[L] at its values was "));
    EXPECT_THAT(now.windows.LastText(), HasSubstr("it was calculated with other data, or with other priors"));
  }
}

TEST_F(OtherDataTest, EstimatesFittedToOtherDataInThisSessionAreToldWhereTheyAreRanked) {
  Analysis session;
  session.Initialize({.path = folder / "all.dat"});
  Fit(session);
  Save(session, "a.alg");
  session.windows.No("Initialize");
  session.Initialize({.path = folder / "mended.dat"});
  Fit(session);
  Save(session, "b.alg");
  session.windows.messages.clear();
  Rank(session, {"a.alg", "b.alg"});
  ASSERT_EQ(session.windows.messages.size(), 1U);
  EXPECT_THAT(session.windows.LastText(),
              HasSubstr("The estimates of a.alg were fitted to other data, those of all.dat. "));
}

TEST_F(OtherDataTest, CovariancesOfOtherDataInThisSessionAreAskedAboutWhateverTheirGrids) {
  Analysis session;
  session.Initialize({.path = folder / "all.dat"});
  Fit(session);
  Save(session, "a.alg");
  Save(session, "b.alg");
  SaveCovariances(session, "a.cov", {"0.1", "0.1", "0.1"});
  std::filesystem::copy_file(folder / "a.cov", folder / "b.cov");
  session.windows.No("Initialize");
  session.Initialize({.path = folder / "mended.dat"});
  Rank(session, {"a.alg", "b.alg"});
  session.windows.No("Covariances of another model");
  ASSERT_TRUE(session.desk.Press(session.program.frmRank.cmdAverage));
  EXPECT_FALSE(session.program.frmRank.AveragedFlag);
  EXPECT_THAT(session.windows.LastText(),
              HasSubstr("a.cov is not of a.alg as it is ranked: it was calculated with other data, those of all.dat"));
}

TEST_F(OtherDataTest, EstimatesFittedUnderPriorsAreToldWhereTheyAreRankedWithoutAndNotWhereTheyAreRankedWith) {
  Analysis session;
  session.Initialize({.path = folder / "all.dat"});
  session.LoadAlg(Golden("juveniles_only.alg"));
  ASSERT_TRUE(session.desk.Press(session.menu.cmdBayesian));
  session.windows.Yes("Setting Bayesian Priors");
  ASSERT_TRUE(session.desk.Press(session.program.frmLoadPriors.cmdSet));
  FrmSetPriors& editor = session.program.frmSetPriors;
  ASSERT_TRUE(session.desk.Click(editor.grdPriors, 18, 0));
  for (const char* term : {"0.100012", "0.001"}) session.windows.Enter(term, "Gaussian (i.e., Normal)");
  ASSERT_TRUE(session.desk.Press(editor.mnuN));
  session.windows.Yes("Save Bayesian priors");
  session.windows.File(folder / "p.pri");
  session.windows.Enter("0.5", "Enter constant");
  ASSERT_TRUE(session.desk.Press(editor.mnuFinished));
  Fit(session);
  Save(session, "a.alg");
  session.LoadPriors(folder / "p.pri");
  session.windows.messages.clear();
  Rank(session, {"a.alg"});
  EXPECT_THAT(session.windows.Titles(), Not(Contains("Estimates of other priors"))) << "they have been rounded alone";
  ASSERT_TRUE(session.desk.Press(session.program.frmRank.cmdBayesian));
  ASSERT_TRUE(session.desk.Press(session.program.frmLoadPriors.cmdUniform));
  session.windows.File(folder / "a.alg", "Open algorithm data file");
  ASSERT_TRUE(session.desk.Press(session.program.frmRank.cmdLoadAlg));
  ASSERT_TRUE(session.desk.Press(session.program.frmRank.cmdAICc));
  EXPECT_THAT(session.windows.Titles(), Contains("Estimates of other priors"));
}

TEST_F(OtherDataTest, TheSameDataReadAgainAreNoOther) {
  Analysis session;
  session.Initialize({.path = folder / "all.dat"});
  Fit(session);
  Save(session, "a.alg");
  session.windows.No("Initialize");
  session.Initialize({.path = Golden("juveniles_only.dat")});
  Rank(session, {"a.alg", "a.alg"});
  EXPECT_THAT(session.windows.Titles(), Not(Contains("Estimates of other data")));
}

TEST_F(OtherDataTest, EstimatesThatWereFittedToBothAreNotOfOtherData) {
  Analysis session;
  session.Initialize({.path = folder / "all.dat"});
  Fit(session);
  Save(session, "a.alg");
  session.windows.No("Initialize");
  session.Initialize({.path = folder / "mended.dat"});
  session.LoadAlg(folder / "a.alg");
  session.Simplex();
  Save(session, "a.alg");
  Rank(session, {"a.alg", "a.alg"});
  EXPECT_THAT(session.windows.Titles(), Not(Contains("Estimates of other data")));
}

}  // namespace
}  // namespace merlane
