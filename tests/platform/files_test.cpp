#include "platform/files.h"

#include <gmock/gmock.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>

#include "base/runtime_failure.h"

namespace merlane {
namespace {

namespace fs = std::filesystem;
using ::testing::HasSubstr;
using ::testing::ThrowsMessage;

struct FilesTest : ::testing::Test {
  FilesTest() {
    fs::remove_all(folder);
    fs::create_directories(folder);
  }
  ~FilesTest() override { fs::remove_all(folder); }
  std::size_t FileCount() const {
    return static_cast<std::size_t>(std::distance(fs::directory_iterator(folder), fs::directory_iterator()));
  }

  const std::string folder = ::testing::TempDir() + "merlane_files";
  const std::string path = folder + "/kept.alg";
};

TEST_F(FilesTest, BytesComeBackAsTheyWere) {
  const std::string bytes("a\r\nb\0c\xff", 7);
  WriteWholeFile(path, bytes);
  EXPECT_EQ(ReadWholeFile(path), bytes);
  WriteWholeFile(path, "");
  EXPECT_EQ(ReadWholeFile(path), "");
}

TEST_F(FilesTest, WriteReplacesAndLeavesNoTemporaryFile) {
  WriteWholeFile(path, std::string(1000, 'x'));
  WriteWholeFile(path, "short");
  EXPECT_EQ(ReadWholeFile(path), "short");
  EXPECT_EQ(FileCount(), 1U);
}

TEST_F(FilesTest, ReplacedFileIsANewFileSoThatAReaderKeepsTheOldOne) {
  WriteWholeFile(path, "old");
  fs::create_hard_link(path, folder + "/reader");
  WriteWholeFile(path, "new");
  EXPECT_EQ(ReadWholeFile(folder + "/reader"), "old");
}

TEST_F(FilesTest, PermissionsOfAReplacedFileStay) {
  WriteWholeFile(path, "old");
  fs::permissions(path, fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read);
  WriteWholeFile(path, "new");
  EXPECT_EQ(fs::status(path).permissions(), fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read);
}

TEST_F(FilesTest, NewFileGetsTheUsualPermissions) {
  const mode_t mask = ::umask(022);
  WriteWholeFile(path, "new");
  ::umask(mask);
  EXPECT_EQ(static_cast<int>(fs::status(path).permissions()), 0644);
}

TEST_F(FilesTest, MissingFolderIsTold) {
  const std::string lost = folder + "/missing/file.alg";
  EXPECT_THAT([&] { WriteWholeFile(lost, "x"); }, ThrowsMessage<RuntimeFailure>(HasSubstr(lost)));
}

TEST_F(FilesTest, FolderInPlaceOfAFileIsToldAndNothingIsLeft) {
  const std::string inside = folder + "/inside";
  fs::create_directories(inside + "/more");
  EXPECT_THROW(ReadWholeFile(inside), RuntimeFailure);
  EXPECT_THAT([&] { WriteWholeFile(inside, "x"); }, ThrowsMessage<RuntimeFailure>(HasSubstr(inside)));
  EXPECT_TRUE(fs::is_directory(inside));
  EXPECT_EQ(FileCount(), 1U);
}

TEST_F(FilesTest, FileInPlaceOfAFolderIsTold) {
  WriteWholeFile(path, "file");
  EXPECT_THROW(WriteWholeFile(path + "/below.alg", "x"), RuntimeFailure);
  EXPECT_EQ(ReadWholeFile(path), "file");
}

TEST_F(FilesTest, VanishedFileIsToldWithItsName) {
  EXPECT_THAT([&] { ReadWholeFile(path); }, ThrowsMessage<RuntimeFailure>(HasSubstr(path)));
}

TEST_F(FilesTest, FailedWriteLeavesTheOldFile) {
  if (::geteuid() == 0) GTEST_SKIP() << "nothing is unwritable for the superuser";
  WriteWholeFile(path, "old");
  fs::permissions(folder, fs::perms::owner_read | fs::perms::owner_exec);
  EXPECT_THROW(WriteWholeFile(path, "new"), RuntimeFailure);
  fs::permissions(folder, fs::perms::owner_all);
  EXPECT_EQ(ReadWholeFile(path), "old");
}

TEST_F(FilesTest, UnreadableFileIsTold) {
  if (::geteuid() == 0) GTEST_SKIP() << "nothing is unreadable for the superuser";
  WriteWholeFile(path, "x");
  fs::permissions(path, fs::perms::none);
  EXPECT_THROW(ReadWholeFile(path), RuntimeFailure);
}

/// While it lives no file may grow beyond a size, as on a disk that is full.
class FullDisk {
 public:
  explicit FullDisk(rlim_t bytes) : signal_(std::signal(SIGXFSZ, SIG_IGN)) {
    ::getrlimit(RLIMIT_FSIZE, &before_);
    const rlimit now{bytes, before_.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &now);
  }
  ~FullDisk() {
    ::setrlimit(RLIMIT_FSIZE, &before_);
    std::signal(SIGXFSZ, signal_);
  }

 private:
  rlimit before_{};
  void (*signal_)(int);
};

TEST_F(FilesTest, FullDiskLeavesTheOldFileAndNoTemporaryOne) {
  WriteWholeFile(path, "old");
  {
    const FullDisk full(1000);
    EXPECT_THAT([&] { WriteWholeFile(path, std::string(100000, 'x')); },
                ThrowsMessage<RuntimeFailure>(HasSubstr(path)));
  }
  EXPECT_EQ(ReadWholeFile(path), "old");
  EXPECT_EQ(FileCount(), 1U);
}

}  // namespace
}  // namespace merlane
