#include "data/reading_dialogue.h"

#include <gmock/gmock.h>

#include "base/runtime_failure.h"
#include "data/data_text.h"
#include "platform/files.h"
#include "support/scripted_host.h"

namespace merlane {
namespace {

using test::Header;
using test::Record;
using ::testing::ElementsAre;

struct ReadingDialogueTest : testing::Test {
  ReadingDialogueTest() {
    flags.ReadOriginalFile = true;
    data.FirstYear = data.LastYear = 1995;
  }
  bool Read(const std::string& path) {
    data.DataFileName = path;
    data.DataExt = Rightmost(path, 3);
    return reading.Read(data);
  }
  bool ReadText(const std::string& records) {
    const std::string path = testing::TempDir() + "reading_dialogue_test.dat";
    WriteWholeFile(path, Header + "\n" + records);
    return Read(path);
  }

  test::ScriptedHost host;
  test::ScriptedWindows& windows = host.windows;
  Desk desk{host.Get()};
  RunFlags flags;
  ReadingDialogue reading{desk, flags};
  BroodData data;
};

TEST_F(ReadingDialogueTest, ASuccessIsToldBehindWhatTheReaderTells) {
  EXPECT_TRUE(ReadText(Record("1995", "A", "160", "170", "?", "5")));
  EXPECT_EQ(windows.messages.size(), 2u);
  EXPECT_EQ(windows.messages.back().title, "Analysis update");
}

TEST_F(ReadingDialogueTest, AFailureIsToldInABoxAndThatOfAWorkbookInPassing) {
  EXPECT_FALSE(Read("/nowhere/lake.dat"));
  EXPECT_EQ(windows.messages.back().title, "Problem finding data file or reading data");
  reading.convertWorkbook = [](const std::string&) { return std::nullopt; };
  std::string status;
  reading.showStatus = [&](const std::string& text) { status = text; };
  EXPECT_FALSE(Read("/data/lake.xls"));
  EXPECT_EQ(status, "No data: no worksheet was chosen");
  EXPECT_EQ(windows.messages.size(), 1u);
}

TEST_F(ReadingDialogueTest, AFatalErrorIsToldAndEndsTheProgramWithStatus2) {
  try {
    ReadText(Record(1995, "A", 160, 170, -10, 5) + Record(1995, "A", 161, 170, -9, 6));
    FAIL() << "the program goes on";
  } catch (const EndProgram& end) {
    EXPECT_EQ(end.exitStatus, 2);
  }
  EXPECT_THAT(windows.Titles(), ElementsAre("Problem reading data - analysis stops"));
}

}  // namespace
}  // namespace merlane
