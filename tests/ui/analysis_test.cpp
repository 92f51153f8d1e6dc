// The analyses that are kept for the batch runner, played against the real windows with mouse and keys: the files that
// they write must be the same, byte for byte.
#include <cstdlib>

#include "batch/replay.h"
#include "ui/batch_player.h"

namespace merlane {
namespace {

namespace fs = std::filesystem;

const fs::path source = MERLANE_SOURCE_DIR;

/// Written by the batch runner itself and not by the program.
bool IsTheRunners(const fs::path& file) {
  return file.filename() == "transcript.txt" || file.extension() == ".json" || file.extension() == ".svg";
}

class AnalysisTest : public testing::TestWithParam<fs::path> {
 protected:
  AnalysisTest() {
    std::string path = testing::TempDir() + "merlane_windows_XXXXXX";
    if (::mkdtemp(path.data()) == nullptr) throw std::runtime_error("no temporary folder");
    out_ = path;
  }
  ~AnalysisTest() override { fs::remove_all(out_); }

  fs::path out_;
};

TEST_P(AnalysisTest, WritesTheSameWithWindowsAsWithout) {
  const fs::path file = GetParam();
  test::Desktop desktop(out_.string());
  test::BatchPlayer player(desktop, file.parent_path().string(), out_.string());
  player.pictures = file.stem().string();
  player.Play(ReadFile(file));

  const fs::path kept = source / "tests/batch/analyses" / (file.stem().string() + ".kept");
  for (const auto& entry : fs::directory_iterator(kept)) {
    if (IsTheRunners(entry.path())) continue;
    std::string written = ReadFile(out_ / entry.path().filename());
    // A text that names where it was saved names a folder that is another one each time.
    for (std::size_t i; (i = written.find(out_.string())) != std::string::npos;)
      written.replace(i, out_.string().size(), "OUT");
    EXPECT_EQ(written, ReadFile(entry.path())) << entry.path().filename();
  }
}

INSTANTIATE_TEST_SUITE_P(All, AnalysisTest, testing::ValuesIn(KeptBatchFiles()),
                         [](const auto& one) { return one.param.stem().string(); });

}  // namespace
}  // namespace merlane
