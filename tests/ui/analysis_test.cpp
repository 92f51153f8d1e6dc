// Whole analyses, played against the real windows with mouse and keys. The same lines are replayed without windows;
// what both write must be the same, byte for byte.
#include <gmock/gmock.h>

#include "batch/replay.h"
#include "ui/batch_player.h"

namespace merlane {
namespace {

class AnalysisTest : public testing::Test {
 protected:
  AnalysisTest() : folder_(NewFolder()) {}
  ~AnalysisTest() override { std::filesystem::remove_all(folder_); }

  /// Plays the batch both ways and compares the files.
  void Compare(const std::string& batch, const std::string& readingFolder, const std::string& pictures) {
    const std::string windows = folder_ + "/windows", headless = folder_ + "/headless";
    std::filesystem::create_directories(windows);
    test::Desktop desktop(windows);
    test::BatchPlayer player(desktop, readingFolder, windows);
    player.pictures = pictures;
    player.Play(batch);
    exitStatus = desktop.ended;
    titles = desktop.hand.titles;

    WriteFile(folder_ + "/analysis.batch", batch);
    std::ostringstream out, errors;
    // The batch file stands elsewhere, so its paths are given whole.
    EXPECT_EQ(RunBatch({folder_ + "/analysis.batch", headless, true}, out, errors), 0) << errors.str();
    for (const auto& entry : std::filesystem::directory_iterator(headless)) {
      const std::string name = entry.path().filename().string();
      if (name == "fit.json") continue;  // of the batch runner alone
      EXPECT_EQ(ReadFile(windows + "/" + name), ReadFile(entry.path())) << name;
      ++filesCompared;
    }
  }

  int exitStatus = -1;
  int filesCompared = 0;
  std::vector<std::string> titles;

 private:
  static std::string NewFolder() {
    std::string path = testing::TempDir() + "merlane_windows_XXXXXX";
    if (::mkdtemp(path.data()) == nullptr) throw std::runtime_error("no temporary folder");
    return path;
  }

  const std::string folder_;
};

TEST_F(AnalysisTest, FitWithAnInterruptIsTheSameWithWindowsAndWithout) {
  const std::string golden = MERLANE_GOLDEN_DIR "/";
  Compare(
      "clock 2024-06-01 10:30:00\n"
      "press frmMenu.cmdInitialize\n"
      "press frmInitialize.cmdLoadData\n"
      "file " +
          InQuotes(golden + "eggs_only.dat") +
          " at \"Load brood survival data file\"\n"
          "set frmInitialize.cboStartYear 1995\n"
          "set frmInitialize.cboEndYear 1995\n"
          "press frmInitialize.cmdDone\n"
          "press frmMenu.cmdLoadAlg\n"
          "reply yes at \"Load algorithm data\"\n"
          "file " +
          InQuotes(golden + "eggs_only.alg") +
          " at \"Open algorithm data file\"\n"
          "press frmMenu.cmdOneFunction\n"
          "save-text frmOneFunction.rtbOneFunction one.txt\n"
          "close frmOneFunction\n"
          "interrupt frmSimplex.cmdStop at 40\n"
          "press frmMenu.cmdSimplex\n"
          "reply yes at \"Just checking\"\n"
          "reply yes at \"Simplex interrupt\"\n"
          "export parameters interrupted.csv\n"
          "press frmMenu.cmdSimplex\n"
          "reply yes at \"Just checking\"\n"
          "save-text frmSimplex.rtbSimplexInitial initial.txt\n"
          "save-text frmSimplex.rtbSimplex simplex.txt\n"
          "export parameters estimates.csv\n"
          "export visits visits.csv\n"
          "press frmMenu.cmdSaveAlg\n"
          "file saved.alg\n"
          "press frmMenu.cmdQuit\n"
          "reply yes at \"Exit Tolvane\"\n"
          "reply no at \"What about algorithm data?\"\n",
      golden, "analysis");
  EXPECT_EQ(exitStatus, 0);
  EXPECT_EQ(filesCompared, 7);
}

}  // namespace
}  // namespace merlane
