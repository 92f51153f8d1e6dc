// Data from a workbook: the choice of a worksheet and its conversion, with kept workbooks.
#include <gmock/gmock.h>

#include "base/text.h"
#include "platform/files.h"
#include "platform/freexl_workbooks.h"
#include "program/analysis.h"

namespace merlane {
namespace {

using test::Folder;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using ::testing::StartsWith;

std::string Kept(const std::string& name) { return std::string(MERLANE_TEST_INPUTS_DIR) + "/workbooks/" + name; }

/// A program that can read workbooks and writes into a folder of its own.
struct WorkbookTest : ::testing::Test {
  Folder folder{"workbook_test"};
  test::ScriptedHost host;
  test::ScriptedWindows& windows = host.windows;
  FreexlWorkbooks workbooks;
  Program program{[this] {
    Host h = {windows, host.clock, host.random, workbooks};
    h.outputFolder = folder / "";
    h.outputFolder.pop_back();
    return h;
  }()};
  Desk& desk = program.desk;
  FrmXlsWorksheets& form = program.frmXLSworksheets;
  const BroodData& data = program.model.data;

  WorkbookTest() {
    host.random.SetSeed(12345);
    program.Start();
  }

  /// Chooses the workbook as the data file and presses Continue.
  void Read(const std::string& name, const std::string& covariates = "0") {
    ASSERT_TRUE(desk.Press(program.frmMenu.cmdInitialize));
    windows.File(Kept(name));
    ASSERT_TRUE(desk.Press(program.frmInitialize.cmdLoadData));
    ASSERT_TRUE(desk.SetText(program.frmInitialize.cboBroodCovs, covariates));
    ASSERT_TRUE(desk.Press(program.frmInitialize.cmdDone));
  }
  /// When the program waits for the worksheet: selects one, counted from 0, and presses OK.
  void Select(int item) {
    windows.AtWait([this, item] {
      ASSERT_TRUE(desk.Select(form.lstWorksheets, item));
      ASSERT_TRUE(desk.Press(form.cmdOK));
    });
  }
  std::vector<std::string> Files() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder / "")) names.push_back(entry.path().filename());
    return names;
  }
  const std::string& Status() const { return program.frmMain.stbMain5.Get(1); }
};

TEST_F(WorkbookTest, AWorksheetBecomesTheDataFileOfTheRun) {
  Select(0);
  Read("lake.xls", "1");
  EXPECT_TRUE(data.ReadOK);
  EXPECT_EQ(data.SheetName, "Lake");
  EXPECT_EQ(data.DataFileName, Kept("lake.xls"));
  EXPECT_THAT(Files(), ElementsAre("EXCEL_to_TEXT_DataFormat_837974.dat")) << "from the first draw of stream 1";
  EXPECT_EQ(data.TextFileName, folder / "EXCEL_to_TEXT_DataFormat_837974.dat");
  EXPECT_THAT(windows.writes, ElementsAre(data.TextFileName));
  EXPECT_THAT(program.frmMain.stbMain0.Get(1), HasSubstr("lake.xls"));
  EXPECT_THAT(windows.Titles(), Contains("Analysis update"));
}

TEST_F(WorkbookTest, TheChoiceOfAWorksheetIsModal) {
  windows.AtWait([this] {
    EXPECT_TRUE(form.TakesInput());
    for (Form* const other : desk.Forms())
      if (other != &form) {
        EXPECT_FALSE(other->TakesInput()) << other->name;
      }
    EXPECT_FALSE(desk.Close(program.frmMain));
    desk.Show(program.frmMenu);
    EXPECT_FALSE(desk.Press(program.frmMenu.cmdInitialize));
    ASSERT_TRUE(desk.Press(form.cmdCancel));
  });
  Read("lake.xls", "1");
  EXPECT_TRUE(desk.Usable(program.frmMenu.cmdLoadAlg));
}

TEST_F(WorkbookTest, WhyThereWereNoDataIsToldUntilThereAreSome) {
  windows.AtWait([this] { desk.Press(form.cmdCancel); });
  Read("lake.xls", "1");
  EXPECT_THAT(Status(), StartsWith("No data: "));
  EXPECT_EQ(program.frmMain.stbMain0.Get(1), "Brood data file name: ");
  Select(0);
  Read("lake.xls", "1");
  EXPECT_EQ(Status(), "Look at the data: 1 covariate is not as at the brood's first visit, which counts");
}

TEST_F(WorkbookTest, HeadingsNumbersAndUnknownAgesStandInTheirColumns) {
  Select(0);
  Read("lake.xls", "1");
  const std::vector<std::string> lines = Lines(ReadWholeFile(data.TextFileName));
  ASSERT_THAT(lines, SizeIs(7));
  EXPECT_EQ(lines[0], "    Year,    Code,    DofY,HatchDay,BroodAge,   #EorJ,   Lake_Prod");
  EXPECT_THAT(lines[1], StartsWith("    1995,"));
  EXPECT_EQ(Rightmost(lines[1], 12), "  6.4850E-01") << "five significant digits";
  EXPECT_EQ(Columns(lines[3], 37, 44), "      -?");
  for (const std::string& line : lines) EXPECT_EQ(line.size(), 66u) << "the last comma is removed";
}

TEST_F(WorkbookTest, TheListNamesSheetsThatAreNotEmptyWithTheirSize) {
  windows.AtWait([this] {
    EXPECT_EQ(form.title, "Read data from EXCEL worksheet");
    EXPECT_EQ(form.lblSelect.text, "Select worksheet to use:");
    EXPECT_THAT(form.lstWorksheets.items,
                ElementsAre(testing::MatchesRegex("First \\( [0-9]+ rows by [0-9]+ columns \\)"),
                            testing::MatchesRegex("Third \\( [0-9]+ rows by [0-9]+ columns \\)")));
    EXPECT_FALSE(program.frmInitialize.TakesInput());
    desk.Press(form.cmdCancel);
  });
  Read("empty_between.xls");
}

TEST_F(WorkbookTest, BehindAnEmptySheetTheChoiceIsOffByOneSheet) {
  Select(1);  // "Third" is shown, the second of all sheets is taken
  Read("empty_between.xls");
  EXPECT_FALSE(data.ReadOK);
  EXPECT_EQ(Status(), "No data: worksheet Empty is empty");
  EXPECT_THAT(windows.messages, IsEmpty());
  EXPECT_THAT(Files(), IsEmpty());
  EXPECT_EQ(host.random.StreamNumber(), 0u);
}

TEST_F(WorkbookTest, BeforeAnEmptySheetTheChoiceIsTheSheetShown) {
  Select(0);
  Read("empty_between.xls");
  EXPECT_EQ(data.SheetName, "First");
}

TEST_F(WorkbookTest, OfAWorkbookWithASingleEmptySheetNothingCanBeSelected) {
  windows.AtWait([this] {
    EXPECT_THAT(form.lstWorksheets.items, IsEmpty());
    EXPECT_TRUE(desk.Press(form.cmdOK));
    EXPECT_EQ(windows.messages.back().title, "No worksheet selected");
    EXPECT_EQ(windows.LastText(), "You must select at least a worksheet or else click on 'Cancel'");
    EXPECT_EQ(windows.messages.back().style, style::Information);
    EXPECT_TRUE(form.Visible()) << "the form stays";
    EXPECT_TRUE(desk.Press(form.cmdCancel));
  });
  Read("single_empty.xls");
  EXPECT_FALSE(form.Loaded());
  EXPECT_FALSE(data.ReadOK);
}

TEST_F(WorkbookTest, ACancelledChoiceLeavesAnAnalysisWithoutDataAndWithoutAMessage) {
  windows.AtWait([this] { desk.Press(form.cmdCancel); });
  Read("lake.xls");
  EXPECT_THAT(windows.messages, IsEmpty());
  EXPECT_EQ(data.Visits(), 0);
  EXPECT_EQ(Status(), "No data: no worksheet was chosen");
  EXPECT_TRUE(program.frmMenu.Visible()) << "the menu opens as if the read had succeeded";
  EXPECT_TRUE(desk.Usable(program.frmMenu.cmdLoadAlg));
  EXPECT_THAT(Files(), IsEmpty());
}

TEST_F(WorkbookTest, AClosedChoiceIsACancelledOne) {
  windows.AtWait([this] { EXPECT_TRUE(desk.Close(form)); });
  Read("lake.xls");
  EXPECT_FALSE(data.ReadOK);
  EXPECT_THAT(windows.messages, IsEmpty());
}

TEST_F(WorkbookTest, ASheetWithAColumnTooFewIsPassedOverInSilence) {
  Select(0);
  Read("too_few_columns.xls");
  EXPECT_FALSE(data.ReadOK);
  EXPECT_THAT(windows.messages, IsEmpty());
  EXPECT_THAT(Status(), HasSubstr("at least 6 are needed"));
  EXPECT_THAT(Files(), IsEmpty()) << "no half text is left";
}

TEST_F(WorkbookTest, AWorkbookThatCannotBeOpenedIsPassedOverInSilence) {
  Read("encrypted.xls");
  EXPECT_FALSE(data.ReadOK);
  EXPECT_THAT(windows.messages, IsEmpty());
  EXPECT_THAT(Status(), HasSubstr("encrypted"));
  desk.Press(program.frmMenu.cmdInitialize);
  windows.File("/nowhere/lake.xls");
  desk.Press(program.frmInitialize.cmdLoadData);
  desk.Press(program.frmInitialize.cmdDone);
  EXPECT_THAT(windows.messages, IsEmpty());
  EXPECT_THAT(Status(), HasSubstr("/nowhere/lake.xls"));
}

TEST_F(WorkbookTest, ATextThatCannotBeWrittenIsPassedOverInSilence) {
  std::filesystem::remove_all(folder / "");
  Select(0);
  Read("lake.xls");
  EXPECT_FALSE(data.ReadOK);
  EXPECT_THAT(windows.messages, IsEmpty());
  EXPECT_THAT(Status(), HasSubstr("EXCEL_to_TEXT_DataFormat_"));
}

TEST_F(WorkbookTest, EachConversionWritesANewFileAndKeepsTheOthers) {
  Select(0);
  Read("lake.xls");
  Select(0);
  Read("lake.xls");
  EXPECT_THAT(Files(), SizeIs(2));
  EXPECT_EQ(host.random.StreamNumber(), 2u) << "each begins a stream of its own";
}

TEST_F(WorkbookTest, ASheetThatBeginsElsewhereIsReadFromItsFirstCell) {
  Select(0);
  Read("offset.xls");
  EXPECT_TRUE(data.ReadOK);
  EXPECT_EQ(data.TotalRecords, 2);
}

TEST_F(WorkbookTest, TheResultsSummaryNamesTheWorksheet) {
  Select(0);
  Read("lake.xls");
  windows.No("Load algorithm data");
  desk.Press(program.frmMenu.cmdLoadAlg);
  program.state.algorithm.Value(15) = program.state.algorithm.Value(17) = 0.02;
  windows.Enter("1");
  windows.Yes("Choose among output options");
  desk.Press(program.frmMenu.cmdUserSummary);
  EXPECT_THAT(program.frmSummary.rtbOut.text,
              HasSubstr("     lake.xls\r\nThe brood size worksheet chosen from the above EXCEL file is: Lake\r\n"));
}

}  // namespace
}  // namespace merlane
