// One batch file from the data to the averages: what four_models.batch fits and saves, ranking.batch ranks and averages
// in the same run, with the files that were written a moment ago.

#include "batch/replay.h"

namespace merlane {
namespace {

TEST(FourModels, AreFittedRankedAndAveragedInOneRun) {
  const std::filesystem::path analyses = std::filesystem::path(MERLANE_SOURCE_DIR) / "tests/batch/analyses";
  std::string fits = ReadFile(analyses / "four_models.batch");
  for (const std::string file : {"spanning_random.dat", "spanning_random.alg"})
    fits = Replaced(fits, "../../golden/" + file, InQuotes(MERLANE_GOLDEN_DIR "/" + file));
  const std::string ranking = ReadFile(analyses / "ranking.batch");
  const std::string comparison =
      Replaced(ranking.substr(ranking.find("press frmMenu.cmdRank")), "four_models.kept/", "");
  const Replay replay(fits + "\n" + comparison);
  ASSERT_EQ(replay.status, 0) << replay.errors;
  for (const char* file : {"ranking.mms", "averages.txt", "overdispersed.mms"})
    EXPECT_EQ(replay.File(file), ReadFile(analyses / "ranking.kept" / file)) << file;
}

}  // namespace
}  // namespace merlane
