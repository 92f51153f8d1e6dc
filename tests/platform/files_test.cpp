#include "platform/files.h"

#include <gmock/gmock.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <chrono>
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

/// While it lives the program is a user who may not do everything; a folder of the test's is that user's.
class AnyUser {
 public:
  explicit AnyUser(const std::string& folder) {
    if (::geteuid() != 0) return;
    fs::permissions(fs::path(folder).parent_path(), fs::perms::group_exec | fs::perms::others_exec,
                    fs::perm_options::add);
    for (const auto& entry : fs::directory_iterator(folder)) Give(entry.path());
    Give(folder);
    EXPECT_EQ(::seteuid(Nobody), 0);
  }
  ~AnyUser() {
    if (::getuid() == 0) {
      EXPECT_EQ(::seteuid(0), 0);
    }
  }

 private:
  static constexpr uid_t Nobody = 65534;
  static void Give(const std::string& path) { EXPECT_EQ(::lchown(path.c_str(), Nobody, Nobody), 0); }
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

TEST_F(FilesTest, UnreadableFileIsTold) {
  WriteWholeFile(path, "x");
  fs::permissions(path, fs::perms::none);
  const AnyUser user(folder);
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

// ---- Where no temporary file can be made

struct ReadOnlyFolder : FilesTest {
  ReadOnlyFolder() {
    WriteWholeFile(path, "what was kept");
    ::chmod(path.c_str(), 0666);
    fs::permissions(folder, fs::perms::owner_read | fs::perms::owner_exec);
  }
  ~ReadOnlyFolder() override { fs::permissions(folder, fs::perms::owner_all); }
};

TEST_F(ReadOnlyFolder, AWritableFileInItIsWrittenOver) {
  const AnyUser user(folder);
  WriteWholeFile(path, "new and longer than before");
  EXPECT_EQ(ReadWholeFile(path), "new and longer than before");
  WriteWholeFile(path, "short");
  EXPECT_EQ(ReadWholeFile(path), "short");
}

TEST_F(ReadOnlyFolder, AFullDiskLeavesAFileThatIsWrittenOverAsItWas) {
  const AnyUser user(folder);
  {
    const FullDisk full(1000);
    EXPECT_THAT([&] { WriteWholeFile(path, std::string(100000, 'x')); },
                ThrowsMessage<RuntimeFailure>(HasSubstr("File too large")));
  }
  EXPECT_EQ(ReadWholeFile(path), "what was kept");
}

TEST_F(ReadOnlyFolder, AFileInItThatIsReadOnlyTooIsToldAndStays) {
  ::chmod(path.c_str(), 0444);
  const AnyUser user(folder);
  EXPECT_THAT([&] { WriteWholeFile(path, "new"); }, ThrowsMessage<RuntimeFailure>(HasSubstr("Permission denied")));
  EXPECT_EQ(ReadWholeFile(path), "what was kept");
}

TEST_F(ReadOnlyFolder, ANewFileInItIsTold) {
  const AnyUser user(folder);
  EXPECT_THAT([&] { WriteWholeFile(folder + "/new.alg", "x"); },
              ThrowsMessage<RuntimeFailure>(HasSubstr("Permission denied")));
}

TEST_F(FilesTest, AFolderThatCannotBeListedIsWrittenTo) {
  fs::permissions(folder, fs::perms::owner_write | fs::perms::owner_exec);
  {
    const AnyUser user(folder);
    WriteWholeFile(path, "old");
    WriteWholeFile(path, "new");
  }
  fs::permissions(folder, fs::perms::owner_all);
  EXPECT_EQ(ReadWholeFile(path), "new");
}

TEST_F(FilesTest, ANameAsLongAsTheSystemTakesIsSaved) {
  const std::string longest = folder + "/" + std::string(251, 'x') + ".alg";
  WriteWholeFile(longest, "old");
  WriteWholeFile(longest, "new");
  EXPECT_EQ(ReadWholeFile(longest), "new");
  const std::string longer = folder + "/" + std::string(252, 'x') + ".alg";
  EXPECT_THAT([&] { WriteWholeFile(longer, "x"); }, ThrowsMessage<RuntimeFailure>(HasSubstr("File name too long")));
  EXPECT_EQ(FileCount(), 1U);
}

// ---- Links, and what is no file

TEST_F(FilesTest, ASymbolicLinkStaysAndItsFileIsReplaced) {
  fs::create_directory(folder + "/elsewhere");
  WriteWholeFile(folder + "/elsewhere/file.alg", "old");
  fs::create_symlink("elsewhere/file.alg", folder + "/second");
  fs::create_symlink(folder + "/second", path);
  WriteWholeFile(path, "new");
  EXPECT_TRUE(fs::is_symlink(path) && fs::is_symlink(folder + "/second"));
  EXPECT_EQ(ReadWholeFile(folder + "/elsewhere/file.alg"), "new");
  EXPECT_FALSE(fs::is_symlink(folder + "/elsewhere/file.alg"));
}

TEST_F(FilesTest, ASymbolicLinkToNothingYetGetsItsFile) {
  fs::create_symlink("file.alg", path);
  WriteWholeFile(path, "new");
  EXPECT_TRUE(fs::is_symlink(path));
  EXPECT_EQ(ReadWholeFile(folder + "/file.alg"), "new");
}

TEST_F(FilesTest, SymbolicLinksInACircleAreTold) {
  fs::create_symlink("other", path);
  fs::create_symlink("kept.alg", folder + "/other");
  EXPECT_THAT([&] { WriteWholeFile(path, "x"); }, ThrowsMessage<RuntimeFailure>(HasSubstr("symbolic links")));
  EXPECT_THROW(ReadWholeFile(path), RuntimeFailure);
}

TEST_F(FilesTest, APipeIsRefusedInWordsAndStays) {
  ASSERT_EQ(::mkfifo(path.c_str(), 0666), 0);
  const auto refusal = ThrowsMessage<RuntimeFailure>(HasSubstr(path + ": it is a pipe between programs and no file"));
  EXPECT_THAT([&] { WriteWholeFile(path, "x"); }, refusal);
  EXPECT_THAT([&] { ReadWholeFile(path); }, refusal);
  EXPECT_TRUE(fs::is_fifo(path));
  EXPECT_EQ(FileCount(), 1U);
}

TEST_F(FilesTest, ADeviceIsRefusedInWordsAndStays) {
  if (::mknod(path.c_str(), S_IFCHR | 0666, makedev(1, 5)) != 0) GTEST_SKIP() << "only the superuser makes devices";
  const auto refusal = ThrowsMessage<RuntimeFailure>(HasSubstr(path + ": it is a device and no file"));
  EXPECT_THAT([&] { WriteWholeFile(path, "x"); }, refusal);
  EXPECT_THAT([&] { ReadWholeFile(path); }, refusal);
  EXPECT_TRUE(fs::is_character_file(path));
}

TEST_F(FilesTest, AnEndlessDeviceIsRefusedBeforeItIsRead) {
  EXPECT_THAT([] { ReadWholeFile("/dev/zero"); }, ThrowsMessage<RuntimeFailure>(HasSubstr("it is a device")));
}

TEST_F(FilesTest, ASizeThatCannotBeIsRefusedBeforeItIsRead) {
  WriteWholeFile(path, "x");
  fs::resize_file(path, std::uintmax_t{1} << 40);  // it takes no room on the disk
  EXPECT_THAT([&] { ReadWholeFile(path); },
              ThrowsMessage<RuntimeFailure>(
                  HasSubstr("it has 1099511627776 bytes, and no such file has more than 2147483648")));
  WriteWholeFile(path, "123456");
  EXPECT_EQ(ReadWholeFile(path, 6), "123456");
  EXPECT_THROW(ReadWholeFile(path, 5), RuntimeFailure);
}

// ---- What a program that was killed has left

struct StaleTemporaries : FilesTest {
  /// A file of that name that was written so many hours ago.
  std::string Left(const std::string& name, int hours) const {
    std::string file = folder + "/" + name;
    WriteWholeFile(file, "half", false);
    fs::last_write_time(file, fs::file_time_type::clock::now() - std::chrono::hours(hours));
    return file;
  }
};

TEST_F(StaleTemporaries, AreRemovedAtTheNextSaveWhenTheyAreADayOld) {
  const std::string old = Left(".merlane-4711-0.tmp", 25), young = Left(".merlane-4711-1.tmp", 23);
  WriteWholeFile(path, "x");
  EXPECT_FALSE(fs::exists(old));
  EXPECT_TRUE(fs::exists(young)) << "somebody may still write it";
}

TEST_F(StaleTemporaries, OfOthersStay) {
  const std::string another = Left(".other-4711-0.tmp", 25), kept = Left(".merlane-4711-0.alg", 25);
  fs::create_directory(folder + "/.merlane-folder.tmp");
  fs::last_write_time(folder + "/.merlane-folder.tmp", fs::file_time_type::clock::now() - std::chrono::hours(25));
  const std::string somebodys = Left(".merlane-4712-0.tmp", 25);
  const bool given = ::chown(somebodys.c_str(), 12345, 12345) == 0;  // the superuser's files can be given away
  WriteWholeFile(path, "x");
  EXPECT_TRUE(fs::exists(another) && fs::exists(kept) && fs::exists(folder + "/.merlane-folder.tmp"));
  EXPECT_EQ(fs::exists(somebodys), given);
}

}  // namespace
}  // namespace merlane
