// Batch files and algorithm files that were changed at random, always in the same way: whatever they hold, the runner
// ends by itself with one of its exit statuses.

#include <chrono>
#include <functional>
#include <random>

#include "batch/golden_batch.h"
#include "batch/replay.h"

namespace merlane {
namespace {

constexpr auto TimeForEach = std::chrono::seconds(20);
constexpr int MutationsEach = 500;

/// Changes texts, the same way for the same seed.
class Mutator {
 public:
  explicit Mutator(std::uint64_t seed) : engine_(seed) {}

  std::string Mutated(std::string text) {
    const int changes = 1 + Below(4);
    for (int i = 0; i < changes; ++i) ChangeOnce(text);
    return text;
  }

  /// As text, but with lines left out, doubled or exchanged.
  std::string Shuffled(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) lines.push_back(line);
    for (int i = 1 + Below(3); i > 0 && !lines.empty(); --i) {
      const auto at = lines.begin() + Below(static_cast<int>(lines.size()));
      const auto other = lines.begin() + Below(static_cast<int>(lines.size()));
      switch (Below(3)) {
        case 0:
          lines.erase(at);
          break;
        case 1:
          std::iter_swap(at, other);
          break;
        default:
          lines.insert(at, std::string(*other));
      }
    }
    std::string shuffled;
    for (const std::string& line : lines) shuffled += line + "\n";
    return shuffled;
  }

 private:
  int Below(int limit) { return static_cast<int>(engine_() % static_cast<std::uint64_t>(limit)); }

  void ChangeOnce(std::string& text) {
    static const std::vector<std::string> pieces{"-",
                                                 "0",
                                                 "9",
                                                 "1E999",
                                                 "-1E-300",
                                                 "\"",
                                                 "\\",
                                                 "\n",
                                                 "\r",
                                                 "\t",
                                                 "#",
                                                 " ",
                                                 "~",
                                                 "ZZ",
                                                 "65536",
                                                 "nan",
                                                 ".",
                                                 "E",
                                                 std::string(1, '\0'),
                                                 "\xFF"};
    const auto at = static_cast<std::size_t>(Below(static_cast<int>(text.size()) + 1));
    const std::string& piece = pieces[static_cast<std::size_t>(Below(static_cast<int>(pieces.size())))];
    switch (Below(3)) {
      case 0:
        text.insert(at, piece);
        break;
      case 1:
        text.erase(at, static_cast<std::size_t>(1 + Below(20)));
        break;
      default:
        text.replace(at, piece.size(), piece);
    }
  }

  std::mt19937_64 engine_;
};

/// Reads the data, loads `alg` and makes one function call.
std::string AnalysisBy(const std::string& alg) {
  return "clock 2024-06-01 10:30:00\nseed 1\n"
         "press frmMenu.cmdInitialize\npress frmInitialize.cmdLoadData\nfile " +
         InQuotes(golden + "single_individuals.dat") +
         "\nset frmInitialize.cboStartYear 1995\npress frmInitialize.cmdDone\n"
         "press frmMenu.cmdLoadAlg\nreply yes at \"Load algorithm data\"\nfile " +
         InQuotes(alg) +
         "\npress frmMenu.cmdOneFunction\nclose frmOneFunction\nshow frmMenu\nexport parameters p.csv\n"
         "press frmMenu.cmdQuit\nreply yes\nreply no\n";
}

void ExpectAnEnd(const Replay& replay, const std::string& text) {
  EXPECT_THAT(replay.status, testing::AllOf(testing::Ge(0), testing::Le(4))) << text;
  ASSERT_FALSE(replay.lines.empty());
  EXPECT_TRUE(replay.lines.back().contains("end")) << text;
  EXPECT_EQ(replay.errors.empty(), replay.status != 1 && replay.status != 3) << text;
}

/// Plays what `batchOf` makes of many changed texts of `sound`, for some seconds at most.
void PlayChanged(const std::string& sound, const std::function<std::string(const std::string& changed)>& batchOf) {
  const auto start = std::chrono::steady_clock::now();
  for (std::uint64_t seed = 1; seed <= MutationsEach; ++seed) {
    if (std::chrono::steady_clock::now() - start > TimeForEach) break;
    Mutator mutator(seed);
    const std::string text = seed % 2 == 0 ? mutator.Mutated(sound) : mutator.Shuffled(sound);
    ExpectAnEnd(Replay(batchOf(text)), text);
  }
}

/// The same with changed files at `path`, which `analysis` reads.
void PlayChangedFiles(const std::string& path, const std::string& sound, const std::string& analysis) {
  PlayChanged(sound, [&](const std::string& changed) {
    WriteFile(path, changed);
    return analysis;
  });
  std::filesystem::remove(path);
}

TEST(Mutations, ChangedBatchFilesEndWithOneOfTheStatuses) {
  PlayChanged(AnalysisBy(golden + "single_individuals.alg"), [](const std::string& changed) { return changed; });
}

TEST(Mutations, ChangedAlgorithmFilesEndWithOneOfTheStatuses) {
  const std::string path = testing::TempDir() + "merlane_mutated.alg";
  PlayChangedFiles(path, ReadFile(golden + "single_individuals.alg"), AnalysisBy(path));
}

TEST(Mutations, ChangedDataFilesEndWithOneOfTheStatuses) {
  const std::string path = testing::TempDir() + "merlane_mutated.dat";
  std::string analysis = AnalysisBy(golden + "single_individuals.alg");
  analysis.replace(analysis.find(golden), golden.size() + std::string("single_individuals.dat").size(), path);
  PlayChangedFiles(path, ReadFile(golden + "single_individuals.dat"), analysis);
}

}  // namespace
}  // namespace merlane
