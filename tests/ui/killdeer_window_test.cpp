// Nests as they are published, a line for each, with semicolons and decimal commas: from choosing the file to the
// published minimum, with mouse and keys.
#include <gmock/gmock.h>

#include "ui/batch_player.h"

namespace merlane {
namespace {

TEST(KilldeerWindowTest, NestsOfOneLineEachGiveThePublishedMinimum) {
  const std::string folder = testing::TempDir() + "merlane_ui_killdeer";
  std::filesystem::remove_all(folder);
  std::filesystem::create_directories(folder);
  test::Desktop desktop(folder);
  test::BatchPlayer player(desktop, MERLANE_TEST_INPUTS_DIR "/import", folder);
  player.Play(
      "press frmMenu.cmdInitialize\n"
      "press frmInitialize.cmdLoadData\nfile killdeer.csv\n"  // no data file: the import opens by itself
      "press frmImport.cmdDone\nreply yes at \"Import\"\n"
      "press frmInitialize.cmdFit\nset frmInitialize.cboBroodCovs 0\n"
      "press frmInitialize.cmdDone\n"
      "press frmMenu.cmdLoadAlg\nreply no at \"Load algorithm data\"\n"
      "press frmMenu.cmdEditAlg\n"
      "type frmAlgo.grdVS 3 1 1\ntype frmAlgo.grdVS 3 2 0\n"
      "type frmAlgo.grdVS 4 1 1\ntype frmAlgo.grdVS 4 2 0\n"
      "type frmAlgo.grdVS 15 1 0.05\n"
      "press txtAbsRel\nreply no\nenter 1E-06\n"
      "press frmAlgo.cmdFinish\n"
      "press frmMenu.cmdOneFunction\nclose frmOneFunction\n"
      "press frmMenu.cmdOneFunction\nclose frmOneFunction\n"
      "press frmMenu.cmdSimplex\nreply yes at \"Just checking\"\n");
  EXPECT_TRUE(desktop.hand.Done());
  EXPECT_TRUE(std::filesystem::exists(folder + "/killdeer.csv.dat"));
  ASSERT_NE(desktop.hand.Window("frmSimplex"), nullptr);
  EXPECT_THAT(
      desktop.hand.Find<QPlainTextEdit>("frmSimplex", "rtbSimplex")->toPlainText().toStdString(),
      testing::AllOf(testing::HasSubstr("Minimum of 42.510280 found"), testing::HasSubstr("015)  2.8125000E-02")));
  std::filesystem::remove_all(folder);
}

}  // namespace
}  // namespace merlane
