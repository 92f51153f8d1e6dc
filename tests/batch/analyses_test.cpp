// Whole analyses: each NAME.batch in tests/batch/analyses and in examples is replayed, and its transcript and the files
// it writes must be those kept in tests/batch/analyses/NAME.kept, byte for byte, by one thread, two and five. Where a
// change of them is wanted, run this test with MERLANE_KEEP=1 in the environment and look at the difference.

#include <cstdlib>

#include "batch/replay.h"

namespace merlane {
namespace {

namespace fs = std::filesystem;

const fs::path source = MERLANE_SOURCE_DIR;

/// The files of a folder with their bytes.
std::map<std::string, std::string> Contents(const fs::path& folder) {
  std::map<std::string, std::string> contents;
  for (const auto& entry : fs::directory_iterator(folder)) contents[entry.path().filename()] = ReadFile(entry.path());
  return contents;
}

class Analysis : public testing::TestWithParam<fs::path> {
 protected:
  void ReplayBy(int cores) const;
};

TEST_P(Analysis, LeavesTheTranscriptAndTheFilesThatAreKept) {
  for (const int cores : {1, 2, 5}) {
    SCOPED_TRACE(cores);
    ReplayBy(cores);
  }
}

void Analysis::ReplayBy(int cores) const {
  const fs::path file = GetParam();
  const fs::path kept = source / "tests/batch/analyses" / (file.stem().string() + ".kept");
  std::string out = testing::TempDir() + "merlane_analysis_XXXXXX";
  ASSERT_NE(::mkdtemp(out.data()), nullptr);

  // From its own folder, so that no path in the transcript depends on the machine.
  const fs::path before = fs::current_path();
  fs::current_path(file.parent_path());
  std::ostringstream transcript, errors;
  const int status = RunBatch({file.filename(), out, false, cores}, transcript, errors);
  fs::current_path(before);
  const bool failed = transcript.str().find("\n      failure ") != std::string::npos;  // of a command, and meant to
  EXPECT_EQ(status, failed ? 4 : 0) << errors.str();
  WriteFile(fs::path(out) / "transcript.txt", transcript.str());
  // Texts that name where they were saved name a folder that is another one each time.
  for (const auto& entry : fs::directory_iterator(out))
    WriteFile(entry.path(), Replaced(ReadFile(entry.path()), out, "OUT"));

  if (std::getenv("MERLANE_KEEP") != nullptr) {
    fs::remove_all(kept);
    fs::copy(out, kept, fs::copy_options::recursive);
  }
  const auto written = Contents(out), wanted = Contents(kept);
  fs::remove_all(out);
  for (const auto& [name, bytes] : wanted) {
    ASSERT_TRUE(written.contains(name)) << name << " was not written";
    EXPECT_EQ(written.at(name), bytes) << name;
  }
  for (const auto& [name, bytes] : written) EXPECT_TRUE(wanted.contains(name)) << name << " is not kept";
}

INSTANTIATE_TEST_SUITE_P(All, Analysis, testing::ValuesIn(KeptBatchFiles()),
                         [](const auto& one) { return one.param.stem().string(); });

}  // namespace
}  // namespace merlane
