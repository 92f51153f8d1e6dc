#include "platform/passing_folder.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "base/runtime_failure.h"

namespace merlane {
namespace {

TEST(PassingFolderTest, GoesWithAllThatIsInIt) {
  std::string path;
  {
    const PassingFolder folder, other;
    path = folder.Path();
    EXPECT_NE(path, other.Path());
    std::filesystem::create_directories(path + "/below");
    std::ofstream(path + "/below/file") << "text";
    EXPECT_TRUE(std::filesystem::exists(path + "/below/file"));
  }
  EXPECT_FALSE(std::filesystem::exists(path));
}

TEST(PassingFolderTest, APlaceForItThatIsNotThereIsToldInWords) {
  const char* const before = std::getenv("TMPDIR");
  const std::string kept = before != nullptr ? before : "";
  for (const char* place : {"/nonexistent", "/proc"}) {
    ::setenv("TMPDIR", place, 1);
    EXPECT_THROW(PassingFolder(), RuntimeFailure) << place;
  }
  before != nullptr ? ::setenv("TMPDIR", kept.c_str(), 1) : ::unsetenv("TMPDIR");
}

}  // namespace
}  // namespace merlane
