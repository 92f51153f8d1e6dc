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
using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::StartsWith;

struct ReadingDialogueTest : testing::Test {
  ReadingDialogueTest() { data.FirstYear = data.LastYear = 1995; }
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

TEST_F(ReadingDialogueTest, WhatWasReadStandsInTheDetailsOfTheSuccess) {
  EXPECT_TRUE(ReadText(Record(1995, "A", 160, 170, -10, 5)));
  EXPECT_EQ(windows.messages.back().details,
            "1 record of 1 brood with 1 code: 1 with eggs, 0 with juveniles\r\n"
            "Years (broods): 1995 (1)\r\n"
            "Days 160 to 160; counted: 5 eggs, 0 juveniles; unknown ages: 0 of eggs, 0 of juveniles");
}

TEST_F(ReadingDialogueTest, WhatIsOddStandsBeforeItAndInTheStatusBar) {
  std::string status;
  reading.showStatus = [&](const std::string& text) { status = text; };
  EXPECT_TRUE(ReadText("1995,A,160,170,-10,5\n"));
  EXPECT_THAT(windows.messages.back().details,
              StartsWith("1 line does not fit the fixed columns (of 1): it may be another kind of file."));
  EXPECT_THAT(status, StartsWith("Look at the data: 1 line does not fit the fixed columns"));
  EXPECT_TRUE(ReadText(Record(1995, "A", 160, 170, -10, 5)));
  EXPECT_EQ(status, "");
}

TEST_F(ReadingDialogueTest, WhatIsOddStandsBehindTheReasonOfAFailureAndOfAFatalError) {
  EXPECT_FALSE(ReadText("1995,A,160,170,-10,5\n" + Record("1995", "B", "99999", "170", "-10", "5")));
  EXPECT_THAT(windows.messages.back().details,
              AllOf(StartsWith("line 3, columns 19 to 26: \"   99999\" is beyond the range"),
                    HasSubstr("\r\n1 line does not fit the fixed columns (of 2)")));
  EXPECT_THROW(ReadText(Record(1995, "A", 160, 170, -10, 5) + Record("1995", "A", "161", "170", "-9", "6x")),
               EndProgram);
  EXPECT_THAT(windows.messages.back().details,
              AllOf(StartsWith("line 3, code \"       A\": 6 behind 5 of line 2"), HasSubstr("read as 6")));
}

TEST_F(ReadingDialogueTest, AFileOfAnotherKindIsNamedAsWhatItIs) {
  const std::string path = testing::TempDir() + "reading_dialogue_test.dat";
  WriteWholeFile(path, "PK\x03\x04 ... xl/workbook.xml ... PK\x05\x06");
  EXPECT_FALSE(Read(path));
  EXPECT_EQ(windows.messages.back().title, "Problem finding data file or reading data");
  EXPECT_EQ(windows.messages.back().details,
            path + " is an Excel workbook of the new kind (.xlsx), not a text in fixed columns");
}

TEST_F(ReadingDialogueTest, WhatAWorksheetCouldNotKeepIsToldWithTheTextFile) {
  const std::string path = testing::TempDir() + "reading_dialogue_test.dat";
  WriteWholeFile(path, Header + "\n" + Record(1995, "A", 160, 170, -10, 5));
  reading.convertWorkbook = [&](const std::string&) {
    return FrmXlsWorksheets::Converted{path, "Lake", {"row 2, column 2 of worksheet Lake: \"AA\", written as \"A\""}};
  };
  EXPECT_TRUE(Read("/data/lake.xls"));
  EXPECT_THAT(windows.messages.back().details,
              AllOf(StartsWith("1 cell of the worksheet could not be written as it is:\r\n  row 2, column 2"),
                    HasSubstr("\r\nWorksheet \"Lake\", written as text to " + path)));
  EXPECT_EQ(windows.messages.back().offer, "Import...");
}

TEST_F(ReadingDialogueTest, TheImportIsOfferedWhereItMayBeAnotherKindOfFile) {
  EXPECT_TRUE(ReadText(Record(1995, "A", 160, 170, -10, 5)));
  EXPECT_EQ(windows.messages.back().offer, "");
  EXPECT_TRUE(ReadText("1995,A,160,170,-10,5\n"));
  EXPECT_EQ(windows.messages.back().offer, "Import...");
  EXPECT_FALSE(reading.ImportAsked());
  windows.TakeOffer("Analysis update");
  EXPECT_TRUE(ReadText("1995,A,160,170,-10,5\n"));
  EXPECT_TRUE(reading.ImportAsked());
  EXPECT_TRUE(ReadText(Record(1995, "A", 160, 170, -10, 5)));
  EXPECT_FALSE(reading.ImportAsked());
}

TEST_F(ReadingDialogueTest, AFailureOrAFatalErrorForWhichTheImportIsTakenIsNone) {
  windows.TakeOffer("Problem finding data file or reading data");
  EXPECT_FALSE(ReadText("1995,A,160,170,-10,5\n" + Record("1995", "B", "99999", "170", "-10", "5")));
  EXPECT_TRUE(reading.ImportAsked());
  EXPECT_EQ(windows.toldFailures, 0);
  windows.TakeOffer("Problem reading data - analysis stops");
  EXPECT_FALSE(
      ReadText("1995,A,160,170,-10,5\n" + Record(1995, "B", 160, 170, -10, 5) + Record(1995, "B", 161, 170, -9, 6)));
  EXPECT_TRUE(reading.ImportAsked());
  EXPECT_FALSE(data.ReadOK);
}

TEST_F(ReadingDialogueTest, AFileThatIsMissingOrNoTableHasNothingToImport) {
  EXPECT_FALSE(Read("/nowhere/lake.dat"));
  EXPECT_EQ(windows.messages.back().offer, "");
  const std::string path = testing::TempDir() + "reading_dialogue_test.dat";
  WriteWholeFile(path, "%PDF-1.7");
  EXPECT_FALSE(Read(path));
  EXPECT_EQ(windows.messages.back().offer, "");
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
