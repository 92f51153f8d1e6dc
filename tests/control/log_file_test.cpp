#include "control/log_file.h"

#include <filesystem>

#include "base/runtime_failure.h"
#include "platform/files.h"

namespace merlane {
namespace {

namespace fs = std::filesystem;

class LogFileTest : public testing::Test {
 protected:
  LogFileTest() {
    fs::remove_all(folder_);
    fs::create_directories(folder_);
    log_.onLost = [this](const std::string& text) { lost_.push_back(text); };
  }
  ~LogFileTest() override { fs::remove_all(folder_); }

  fs::path folder_ = fs::path(testing::TempDir()) / testing::UnitTest::GetInstance()->current_test_info()->name();
  std::string path_ = (folder_ / "minimize.tvl").string();
  LogFile log_;
  std::vector<std::string> lost_;
};

TEST_F(LogFileTest, ClosingALogWhenNothingWasWrittenLeavesAnEmptyFile) {
  log_.Open(path_);
  log_.Close();
  EXPECT_EQ(ReadWholeFile(path_), "");
}

TEST_F(LogFileTest, OpeningStartsTheFileEmpty) {
  WriteWholeFile(path_, "of an older run");
  log_.Open(path_);
  EXPECT_EQ(ReadWholeFile(path_), "");
}

TEST_F(LogFileTest, WhatIsWrittenStandsInTheFileAtOnceAndInOrder) {
  log_.Open(path_);
  log_.Write("one\n");
  EXPECT_EQ(ReadWholeFile(path_), "one\r\n");
  log_.Write("two\n");
  EXPECT_EQ(ReadWholeFile(path_), "one\r\ntwo\r\n");
}

TEST_F(LogFileTest, LinesEndWithCrLfHoweverTheTextWasMade) {
  log_.Open(path_);
  log_.Write("a\r\nb\nc\rd\r\n\r\n");
  EXPECT_EQ(ReadWholeFile(path_), "a\r\nb\r\nc\r\nd\r\n\r\n");
}

TEST_F(LogFileTest, KnowsWhetherItIsOpenAndWhere) {
  EXPECT_FALSE(log_.IsOpen());
  log_.Open(path_);
  EXPECT_TRUE(log_.IsOpen());
  EXPECT_EQ(log_.Path(), path_);
  log_.Close();
  EXPECT_FALSE(log_.IsOpen());
  EXPECT_EQ(log_.Path(), "");
}

TEST_F(LogFileTest, WritingWhileNoLogIsOpenDoesNothing) {
  log_.Write("lost on purpose");
  EXPECT_TRUE(lost_.empty());
}

TEST_F(LogFileTest, OpeningInAMissingFolderFailsAndLeavesNoLogOpen) {
  EXPECT_THROW(log_.Open((folder_ / "nowhere" / "minimize.tvl").string()), RuntimeFailure);
  EXPECT_FALSE(log_.IsOpen());
}

TEST_F(LogFileTest, AFullDiskIsToldOnceAndTheRunGoesOn) {
  log_.Open("/dev/full");
  log_.Write("one\n");
  log_.Write("two\n");
  ASSERT_EQ(lost_.size(), 1U);
  EXPECT_THAT(lost_[0], testing::HasSubstr("The log file /dev/full can no longer be written: No space left on device"));
}

TEST_F(LogFileTest, AFolderThatVanishesIsToldOnce) {
  log_.Open(path_);
  log_.Write("one\n");
  fs::remove_all(folder_);
  log_.Write("two\n");
  log_.Write("three\n");
  ASSERT_EQ(lost_.size(), 1U);
  EXPECT_THAT(lost_[0], testing::HasSubstr("it has been removed"));
}

TEST_F(LogFileTest, ALogOpenedAnewIsWrittenAgain) {
  log_.Open("/dev/full");
  log_.Write("one\n");
  log_.Open(path_);
  log_.Write("two\n");
  EXPECT_EQ(ReadWholeFile(path_), "two\r\n");
  EXPECT_EQ(lost_.size(), 1U);
}

}  // namespace
}  // namespace merlane
