#include "data/frm_xls_worksheets.h"

#include <filesystem>

#include "base/text.h"
#include "support/scripted_host.h"

namespace merlane {
namespace {

using ::testing::ElementsAre;

/// A workbook that stands in the test.
struct TypedWorkbook : Workbooks {
  std::vector<Worksheet> sheets;
  std::vector<Worksheet> Read(const std::string&) override { return sheets; }
};

struct FrmXlsWorksheetsTest : ::testing::Test {
  test::ScriptedHost host;
  TypedWorkbook workbook;
  Desk desk{[this] {
    Host h{host.windows, host.clock, host.random, workbook};
    h.outputFolder = testing::TempDir();
    h.outputFolder.pop_back();
    return h;
  }()};
  FrmXlsWorksheets form{desk};

  const std::vector<WorkbookCell> row{1995.0, "A", 150.0, 160.0, -10.0, 8.0};
  /// Converts the workbook, the first item of the list being chosen.
  FrmXlsWorksheets::Converted Convert() {
    host.windows.AtWait([this] {
      desk.Select(form.lstWorksheets, 0);
      desk.Press(form.cmdOK);
    });
    return form.ConvertWorkbook("lake.xls").value();
  }
};

TEST_F(FrmXlsWorksheetsTest, ASheetOfASingleCellIsLeftOutOfTheListAndOneOfTwoIsNot) {
  workbook.sheets = {{"One", {{"Year"}}}, {"Two", {{"Year"}, {1995.0}}}};
  host.windows.AtWait([this] {
    EXPECT_THAT(form.lstWorksheets.items, ElementsAre("Two ( 2 rows by 1 columns )"));
    desk.Press(form.cmdCancel);
  });
  EXPECT_FALSE(form.ConvertWorkbook("lake.xls"));
}

TEST_F(FrmXlsWorksheetsTest, TheNumberOfTheFileHasSixDigits) {
  workbook.sheets = {{"Lake", {row}}};
  std::uint64_t seed = 0;  // the first whose stream 1 begins below a tenth
  while (RandomStream(seed, 1).Uniform() >= 0.1) ++seed;
  host.random.SetSeed(seed);
  const auto converted = Convert();
  EXPECT_THAT(std::string(FileName(converted.TextFileName)),
              ::testing::MatchesRegex("EXCEL_to_TEXT_DataFormat_0[0-9]{5}\\.dat"));
  std::filesystem::remove(converted.TextFileName);
}

}  // namespace
}  // namespace merlane
