#include "platform/passing_folder.h"

#include <gmock/gmock.h>

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

}  // namespace
}  // namespace merlane
