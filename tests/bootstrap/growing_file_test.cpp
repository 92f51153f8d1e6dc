#include "bootstrap/growing_file.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <new>

#include "platform/files.h"
#include "support/counted_memory.h"

namespace merlane {
namespace {

struct GrowingFileTest : ::testing::Test {
  GrowingFileTest() { std::filesystem::create_directories(folder); }
  ~GrowingFileTest() override { std::filesystem::remove_all(folder); }

  const std::string folder = ::testing::TempDir() + "merlane_growing_file";
  const std::string name = "parameters_of_the_replicates.bpv";
};

TEST_F(GrowingFileTest, WithoutMemoryItKnowsWhatItHasMadeAndNothingElse) {
  WriteWholeFile(folder + "/" + name, "of another run");
  int failed = 0;
  for (bool failsYet = true; failsYet;) {
    GrowingFile file(folder, name);
    const std::string text = "a line";
    test::failing = test::allocations + 1 + failed;
    try {
      file.Append(text);
      failsYet = false;
    } catch (const std::bad_alloc&) {
      ++failed;
    }
    test::failing = -1;
    file.Remove();
    ASSERT_EQ(std::distance(std::filesystem::directory_iterator(folder), {}), 1) << "behind request " << failed;
    ASSERT_EQ(ReadWholeFile(folder + "/" + name), "of another run");
  }
  EXPECT_GT(failed, 2);
}

}  // namespace
}  // namespace merlane
