// Each test program gets a temporary folder of its own, so that tests that run side by side do not meet in a file.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <stdexcept>

namespace {

class OwnTemporaryFolder : public testing::Environment {
 public:
  void SetUp() override {
    path_ = testing::TempDir() + "merlane_test_XXXXXX";
    if (::mkdtemp(path_.data()) == nullptr) throw std::runtime_error("no temporary folder");
    ::setenv("TEST_TMPDIR", (path_ + "/").c_str(), 1);
  }
  void TearDown() override { std::filesystem::remove_all(path_); }

 private:
  std::string path_;
};

const testing::Environment* const ownTemporaryFolder = testing::AddGlobalTestEnvironment(new OwnTemporaryFolder);

}  // namespace
