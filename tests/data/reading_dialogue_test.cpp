#include "data/reading_dialogue.h"

#include <gmock/gmock.h>

#include "base/runtime_failure.h"
#include "data/data_text.h"
#include "data/plain_reading.h"
#include "platform/files.h"
#include "support/scripted_host.h"

namespace merlane {
namespace {

using test::Header;
using test::Record;
using ::testing::ElementsAre;

/// Windows that look around while they show a message.
struct WatchingWindows : test::ScriptedWindows {
  Answer MsgBox(const Message& message) override {
    onMessage();
    return ScriptedWindows::MsgBox(message);
  }
  std::function<void()> onMessage = [] {};
};

struct ReadingDialogueTest : testing::Test {
  ReadingDialogueTest() {
    flags.ReadOriginalFile = true;
    data.FirstYear = data.LastYear = 1995;
    desk.Load(reading.frmMenu);
    desk.Load(reading.frmInitialize);
    windows.onMessage = [this] { EXPECT_FALSE(reading.frmMenu.enabled || reading.frmInitialize.enabled); };
  }
  bool Read(const std::string& path) {
    data.DataFileName = path;
    data.DataExt = Rightmost(path, 3);
    return reading.dialogue.Read(data);
  }
  bool ReadText(const std::string& records) {
    const std::string path = testing::TempDir() + "reading_dialogue_test.dat";
    WriteWholeFile(path, Header + "\n" + records);
    return Read(path);
  }

  test::ScriptedHost host;
  WatchingWindows windows;
  Desk desk{{windows, host.clock, host.random, host.workbooks}};
  RunFlags flags;
  test::PlainReading reading{desk, flags};
  BroodData data;
};

TEST_F(ReadingDialogueTest, BothFormsAreInactiveWhileAMessageIsShownAndOnlyTheMenuIsActiveBehindTheLast) {
  EXPECT_TRUE(ReadText(Record("1995", "A", "160", "170", "?", "5")));
  EXPECT_EQ(windows.messages.size(), 2u);
  EXPECT_TRUE(reading.frmMenu.enabled);
  EXPECT_FALSE(reading.frmInitialize.enabled) << "it is about to close";
}

TEST_F(ReadingDialogueTest, AFailedReadActivatesBothForms) {
  EXPECT_FALSE(Read("/nowhere/lake.dat"));
  EXPECT_TRUE(reading.frmMenu.enabled && reading.frmInitialize.enabled);
}

TEST_F(ReadingDialogueTest, BothFormsAreInactiveWhileAWorksheetIsChosen) {
  reading.dialogue.convertWorkbook = [this](const std::string&) -> std::optional<FrmXlsWorksheets::Converted> {
    EXPECT_FALSE(reading.frmMenu.enabled || reading.frmInitialize.enabled);
    return std::nullopt;
  };
  std::string status;
  reading.dialogue.showStatus = [&](const std::string& text) { status = text; };
  EXPECT_FALSE(Read("/data/lake.xls"));
  EXPECT_EQ(status, "No data: no worksheet was chosen");
  EXPECT_TRUE(reading.frmMenu.enabled && reading.frmInitialize.enabled);
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
