#include "platform/xlsx_workbook.h"

#include <gmock/gmock.h>
#include <zip.h>

#include <filesystem>

#include "base/runtime_failure.h"
#include "platform/files.h"

namespace merlane {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::ThrowsMessage;

std::string KeptXlsx(const std::string& name) { return MERLANE_SOURCE_DIR "/tests/data/import/" + name; }

const WorkbookCell None;
WorkbookCell Text(const char* text) { return std::string(text); }

/// An archive of these files, gone after the test.
class TemporaryArchive {
 public:
  explicit TemporaryArchive(const std::vector<std::pair<std::string, std::string>>& files) {
    std::filesystem::remove(path_);
    int error = 0;
    zip_t* const archive = zip_open(path_.c_str(), ZIP_CREATE, &error);
    for (const auto& [name, content] : files)
      zip_file_add(archive, name.c_str(), zip_source_buffer(archive, content.data(), content.size(), 0), 0);
    EXPECT_EQ(zip_close(archive), 0);
  }
  ~TemporaryArchive() { std::filesystem::remove(path_); }
  const std::string& Path() const { return path_; }

 private:
  const std::string path_ = testing::TempDir() + "archive.xlsx";
};

constexpr const char* Rels =
    "<Relationships><Relationship Id='r1' Type='http://x/officeDocument' Target='/xl/workbook.xml'/></Relationships>";
constexpr const char* BookRels =
    "<Relationships><Relationship Id='r1' Type='http://x/worksheet' Target='worksheets/../sheet.xml'/></Relationships>";
constexpr const char* Book =
    "<workbook><sheets><sheet name='S' sheetId='7' r:id='r1' xmlns:r='r'/></sheets></workbook>";

/// The rows of a workbook whose one sheet holds this XML.
std::vector<std::pair<int, std::vector<WorkbookCell>>> RowsOf(const std::string& sheet) {
  const TemporaryArchive file({{"_rels/.rels", Rels},
                               {"xl/workbook.xml", Book},
                               {"xl/_rels/workbook.xml.rels", BookRels},
                               {"xl/sheet.xml", sheet}});
  std::vector<std::pair<int, std::vector<WorkbookCell>>> rows;
  XlsxWorkbook(file.Path()).Read("S", [&](const WorkbookRow& row) { rows.emplace_back(row.number, row.cells); });
  return rows;
}

TEST(XlsxWorkbook, TellsItsWorksheetsInTheirOrder) {
  EXPECT_THAT(XlsxWorkbook(KeptXlsx("p_titles_on_second_sheet.xlsx")).Sheets(),
              ElementsAre("Read me", "Lake & shore", "Empty"));
  EXPECT_THAT(XlsxWorkbook(KeptXlsx("p_rich_texts.xlsx")).Sheets(), ElementsAre("Visits")) << "a chart is none";
}

TEST(XlsxWorkbook, CellsAreNumbersTextsAndDates) {
  EXPECT_THAT(
      RowsOf(
          "<worksheet><sheetData><row r='3'><c r='B3'><v>1.5</v></c><c r='D3' t='inlineStr'><is><r><t>M\u00D6W</t></r>"
          "<r><t>E1</t></r><rPh><t>spoken</t></rPh></is></c></row><row r='5'><c r='A5' t='b'><v>1</v></c>"
          "<c r='B5' t='e'><v>#N/A</v></c><c r='C5' t='str'><f>A1</f><v>a_x000D_b</v></c><c r='D5'><f>B3*2</f>"
          "<v>3</v></c><c r='E5'><f>B3*2</f></c><c r='F5' s='9'/></row></sheetData></worksheet>"),
      ElementsAre(
          std::pair(3, std::vector<WorkbookCell>{None, 1.5, None, Text("M\u00D6WE1")}),
          std::pair(5, std::vector<WorkbookCell>{Text("TRUE"), Text("#N/A"), Text("a\rb"), 3.0, Text("=B3*2")})));
}

TEST(XlsxWorkbook, TellsWhatASpreadsheetDoesNotShow) {
  const TemporaryArchive file(
      {{"_rels/.rels", Rels},
       {"xl/workbook.xml", "<w><sheets><sheet name='S' state='hidden' id='r1'/></sheets></w>"},
       {"xl/_rels/workbook.xml.rels", BookRels},
       {"xl/sheet.xml",
        "<w><cols><col min='2' max='2' hidden='1'/><col min='9' max='99' hidden='true'/><col min='0' max='7' "
        "hidden='1'/><col min='1' max='99999' hidden='1'/></cols><row r='2' hidden='1'/><row r='4' hidden='1'><c "
        "r='C4'>"
        "<v>1</v></c></row><row r='5' hidden='0'><c r='A5'><v>1</v></c></row><row r='6' hidden='true'><c "
        "r='A6'><v>1</v>"
        "</c></row></w>"}});
  XlsxWorkbook workbook(file.Path());
  EXPECT_TRUE(workbook.IsHidden("S"));
  EXPECT_EQ(workbook.Read("S", [](const WorkbookRow&) {}), (HiddenParts{true, 2, 4, {2}}));
  EXPECT_FALSE(XlsxWorkbook(KeptXlsx("lo_visits.xlsx")).IsHidden("Visits"));
}

TEST(XlsxWorkbook, CellsWithoutPlacesFollowOneAnother) {
  EXPECT_THAT(
      RowsOf("<worksheet><sheetData><row><c><v>1</v></c><c><v>2</v></c></row><row><c><v>3</v></c></row></sheetData>"
             "</worksheet>"),
      ElementsAre(std::pair(1, std::vector<WorkbookCell>{1.0, 2.0}), std::pair(2, std::vector<WorkbookCell>{3.0})));
}

TEST(XlsxWorkbook, WhatIsNoNumberIsTheTextThatItIs) {
  EXPECT_THAT(RowsOf("<worksheet><row><c><v>1,5</v></c><c><v>1e999</v></c><c><v>nan</v></c></row></worksheet>"),
              ElementsAre(std::pair(1, std::vector<WorkbookCell>{Text("1,5"), Text("1e999"), Text("nan")})));
}

TEST(XlsxWorkbook, PlacesThatCannotBeAreRefused) {
  for (const char* sheet :
       {"<w><row r='2'/><row r='2'/></w>", "<w><row r='x'/></w>", "<w><row r='1048577'/></w>", "<w><row r='0'/></w>",
        "<w><c><v>1</v></c></w>", "<w><row><c r='B1'/><c r='A1'/></row></w>", "<w><row><c r='XFE1'/></row></w>",
        "<w><row><c r='1'/></row></w>", "<w><row><c t='s'><v>0</v></c></row></w>", "<w><row r='99999999999'/></w>"})
    EXPECT_THAT([&] { RowsOf(sheet); }, ThrowsMessage<RuntimeFailure>(HasSubstr("cannot be read"))) << sheet;
}

TEST(XlsxWorkbook, TextBeyondWhatACellHoldsIsRefused) {
  EXPECT_THAT([] { RowsOf("<w><row><c t='str'><v>" + std::string(1 << 20, 'x') + "</v></c></row></w>"); },
              ThrowsMessage<RuntimeFailure>(HasSubstr("more text than a cell can")));
}

TEST(XlsxWorkbook, IsReadAgainAndEndsWhenSomebodyThrows) {
  XlsxWorkbook workbook(KeptXlsx("lo_visits.xlsx"));
  const std::string sheet = workbook.Sheets().front();
  int rows = 0;
  const auto count = [&](const WorkbookRow&) { ++rows; };
  workbook.Read(sheet, count);
  workbook.Read(sheet, count);
  EXPECT_EQ(rows, 10);
  EXPECT_THROW(workbook.Read(sheet, count, [](double) { throw Cancelled(); }), Cancelled);
  workbook.Read(sheet, count);
  EXPECT_EQ(rows, 20);
  EXPECT_THAT([&] { workbook.Read("Lake", count); }, ThrowsMessage<RuntimeFailure>(HasSubstr("no worksheet \"Lake\"")));
}

TEST(XlsxWorkbook, CutAnywhereIsRefused) {
  const std::string whole = ReadWholeFile(KeptXlsx("lo_visits.xlsx"));
  const std::string path = testing::TempDir() + "cut.xlsx";
  for (std::size_t length = 0; length < whole.size(); length += 61) {
    WriteWholeFile(path, whole.substr(0, length), false);
    EXPECT_THROW(XlsxWorkbook{path}, RuntimeFailure) << length;
  }
  std::filesystem::remove(path);
}

TEST(ZipArchive, WhatUnpacksToMoreThanIsTakenIsRefusedWhateverTheArchiveSays) {
  const std::string name = "bomb.xml";
  const TemporaryArchive file({{name, std::string(1 << 20, '0')}});
  int pieces = 0;
  const auto count = [&](std::string_view, double) { ++pieces; };
  EXPECT_THAT([&] { ZipArchive(file.Path()).Unpack(name, 100'000, count); },
              ThrowsMessage<RuntimeFailure>(HasSubstr("unpacks to more than")));
  EXPECT_EQ(pieces, 0);
  // The size stands behind both mentions of the file; both are made to say 16 bytes.
  std::string bytes = ReadWholeFile(file.Path());
  for (std::size_t at = 0; (at = bytes.find(std::string("\x00\x00\x10\x00", 4), at)) != std::string::npos;)
    bytes.replace(at, 4, std::string("\x10\x00\x00\x00", 4));
  WriteWholeFile(file.Path(), bytes, false);
  EXPECT_THROW(ZipArchive(file.Path()).Unpack(name, 100'000, count), RuntimeFailure);
  EXPECT_LE(pieces, 2);
}

TEST(ZipArchive, FilesThatAreMissingOrDamagedAreRefused) {
  const TemporaryArchive file({{"a.xml", std::string(5000, 'a')}});
  EXPECT_TRUE(ZipArchive(file.Path()).Has("A.xml"));
  EXPECT_FALSE(ZipArchive(file.Path()).Has("b.xml"));
  const auto take = [](std::string_view, double) {};
  EXPECT_THAT([&] { ZipArchive(file.Path()).Unpack("b.xml", 1 << 20, take); },
              ThrowsMessage<RuntimeFailure>(HasSubstr("b.xml is missing")));
  std::string bytes = ReadWholeFile(file.Path());
  bytes[40] = static_cast<char>(bytes[40] + 1);
  WriteWholeFile(file.Path(), bytes, false);
  EXPECT_THAT([&] { ZipArchive(file.Path()).Unpack("a.xml", 1 << 20, take); },
              ThrowsMessage<RuntimeFailure>(HasSubstr("damaged")));
}

}  // namespace
}  // namespace merlane
