// A data set that is simulated, saved, read back, fitted by both minimisers and summarised, in one batch file.

#include "base/text.h"
#include "batch/golden_batch.h"

namespace merlane {
namespace {

/// Simulates with these parameters and fits what comes out from a start away from them.
std::string Cycle(int seed, const std::string& alg) {
  std::string text = "seed " + std::to_string(seed) + "\n" +
                     "press frmMenu.cmdInitialize\nchoose frmInitialize.optSimulate\n"
                     "set frmInitialize.cboInitBroodAge -12\nset frmInitialize.cboFinalBroodAge 25\n"
                     "set frmInitialize.cboNClutchesBroods 60\nset frmInitialize.cboSampFreq1 2\n"
                     "set frmInitialize.cboSampFreq2 5\npress frmInitialize.cmdDone\n"
                     "press frmMenu.cmdLoadAlg\nreply yes\nfile " +
                     InQuotes(golden + alg) +
                     "\npress frmMenu.cmdUserSummary\npress frmSummary.cmdSaveSummary\nfile nests\nclose frmSummary\n";
  text +=
      "press frmMenu.cmdInitialize\nreply no\npress frmInitialize.cmdLoadData\nfile nests.sim\n"
      "set frmInitialize.cboStartYear 1\nset frmInitialize.cboEndYear 1\npress frmInitialize.cmdDone\n"
      "press frmMenu.cmdLoadAlg\nreply yes\nfile " +
      InQuotes(golden + alg) +
      "\npress frmMenu.cmdEditAlg\ntype frmAlgo.grdVS 17 1 0.05\npress frmAlgo.cmdFinish\n"
      "press frmMenu.cmdOneFunction\nclose frmOneFunction\n"
      "press frmMenu.cmdSimplex\nreply yes at \"Just checking\"\nexport fit simplex.json\n"
      "press frmMenu.cmdMarquardt\nreply yes at \"Just checking\"\nreply no at \"Marquardt minimization\"\n"
      "reply no at \"Marquardt minimization\"\nexport fit fit.json\nexport parameters parameters.csv\n"
      "press frmMenu.cmdCovariance\nreply no at \"Covariance calculator\"\nreply ok\npress frmAlgo.cmdFinish\n"
      "enter 1\nenter 0.1\nenter 0.01\nreply yes\nenter 0.5 at \"Enter constant\"\n"
      "reply no at \"Calculate optimistic SEs only?\"\npress frmCovDisplay.cmdScreen\n"
      "save-text frmCovData.rtbCovData covariances.txt\npress frmCovDisplay.cmdFinish\n"
      "press frmMenu.cmdUserSummary\nenter 50\nreply no\nsave-text frmSummary.rtbOut summary.txt\n";
  return text;
}

TEST(SimulationCycle, SameSeedSameBytes) {
  const std::string text = Cycle(99, "spanning_random.alg");
  const Replay first(text), second(text), other(Cycle(100, "spanning_random.alg"));
  ASSERT_EQ(first.status, 0) << first.errors;
  for (const char* file : {"nests.sim", "parameters.csv", "covariances.txt", "summary.txt"}) {
    EXPECT_EQ(first.File(file), second.File(file));
    EXPECT_NE(first.File(file), other.File(file));
    EXPECT_GT(first.File(file).size(), 500u);
  }
}

TEST(SimulationCycle, BothMinimisersFindTheSameMinimumAndTheModelFitsItsData) {
  const Replay replay(Cycle(1, "spanning_random.alg"));
  ASSERT_EQ(replay.status, 0) << replay.errors;
  const nlohmann::json simplex = nlohmann::json::parse(replay.File("simplex.json"));
  EXPECT_NEAR(simplex["objective"].get<double>(), replay.Fit()["objective"].get<double>(), 0.01);
  for (const std::string& line : Lines(replay.File("summary.txt"))) {
    const std::string label = "A deviance-based estimate of c-hat is: ";
    if (line.starts_with(label)) {
      EXPECT_NEAR(std::stod(line.substr(label.size())), 1, 0.15);
    }
  }
}

}  // namespace
}  // namespace merlane
