// Real data with a published answer: the killdeer nests that come with the R package RMark (J. Laake), analysed as in
// S. J. Dinsmore, G. C. White and F. L. Knopf, Advanced techniques for modeling avian nest survival, Ecology 83 (2002)
// 3476-3488. With a constant daily survival the minimum of -2 ln[L] is 42.510280 at a survival of 0.972267.

#include "batch/replay.h"

namespace merlane {
namespace {

/// Fits constant survival to the data that these lines choose, and finds what was published.
void ExpectThePublishedFit(const std::string& chooseData) {
  const Replay replay("press frmMenu.cmdInitialize\n" + chooseData +
                      "press frmInitialize.cmdDone\n"
                      "press frmMenu.cmdLoadAlg\nreply no at \"Load algorithm data\"\n"
                      "press frmMenu.cmdEditAlg\n"
                      "type frmAlgo.grdVS 3 1 1\ntype frmAlgo.grdVS 3 2 0\n"  // binomial, and held so
                      "type frmAlgo.grdVS 4 1 1\ntype frmAlgo.grdVS 4 2 0\n"
                      "type frmAlgo.grdVS 15 1 0.05\n"  // the daily rate of the eggs, free
                      "press txtAbsRel\nreply no\nenter 1E-06\n"
                      "press frmAlgo.cmdFinish\n"
                      "press frmMenu.cmdOneFunction\nclose frmOneFunction\n"
                      "press frmMenu.cmdOneFunction\nclose frmOneFunction\n"
                      "press frmMenu.cmdSimplex\nreply yes at \"Just checking\"\n"
                      "export fit fit.json\nexport parameters parameters.csv\n"
                      "press frmMenu.cmdCovariance\nreply no at \"Covariance calculator\"\nreply ok\n"
                      "press frmAlgo.cmdFinish\nenter 1\nenter 0.1\nenter 0.01\nreply yes\n"
                      "enter 0.5 at \"Enter constant\"\nreply no at \"Calculate optimistic SEs only?\"\n"
                      "press frmCovDisplay.cmdScreen\nsave-text frmCovData.rtbCovData covariances.txt\n");
  ASSERT_EQ(replay.status, 0) << replay.errors;
  const nlohmann::json fit = replay.Fit();
  EXPECT_EQ(fit["ending"], "minimum");
  EXPECT_EQ(fit["free_parameters"], 1);
  EXPECT_NEAR(fit["objective"].get<double>(), 42.510280, 1e-6);
  const double rate = std::stod(Csv(replay.File("parameters.csv"))[14].at("value"));
  EXPECT_NEAR(std::exp(-rate), 0.972267, 1e-6);

  const std::string report = replay.File("covariances.txt");
  std::istringstream row(report.substr(report.find("\n 15 ", report.find("Standard errors of the estimates"))));
  std::string number, coarse, middle, fine;
  ASSERT_TRUE(row >> number >> coarse >> middle >> fine);
  EXPECT_NEAR(std::exp(-rate) * std::stod(fine), 0.011168, 1e-6);
}

TEST(Killdeer, ConstantDailySurvivalIsThePublishedOne) {
  ExpectThePublishedFit("press frmInitialize.cmdLoadData\nfile " + InQuotes(MERLANE_GOLDEN_DIR "/real/killdeer.dat") +
                        "\n");
}

TEST(Killdeer, ALineForEachNestWithSemicolonsAndDecimalCommasGivesItToo) {
  ExpectThePublishedFit("press frmInitialize.cmdLoadData\nfile " +
                        InQuotes(MERLANE_TEST_INPUTS_DIR "/import/killdeer.csv") +
                        "\npress frmImport.cmdDone\nreply yes at \"Import\"\npress frmInitialize.cmdFit\n"
                        "set frmInitialize.cboBroodCovs 0\n");
}

}  // namespace
}  // namespace merlane
