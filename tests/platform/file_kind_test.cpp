#include "platform/file_kind.h"

#include "platform/files.h"

namespace merlane {
namespace {

std::string Wide(std::string_view text, bool bigEndian = false) {
  std::string wide;
  for (const char c : text) bigEndian ? wide.append({'\0', c}) : wide.append({c, '\0'});
  return wide;
}

TEST(ForeignKind, TextsInSingleBytesAreNotForeign) {
  EXPECT_EQ(ForeignKind(""), "");
  EXPECT_EQ(ForeignKind("    Year,    Code,    DofY\r\n"), "");
  EXPECT_EQ(ForeignKind("\xEF\xBB\xBFYear;Code\n"), "");
  EXPECT_EQ(ForeignKind("M\xD6WE1 in Latin-1"), "");
  EXPECT_EQ(ForeignKind(std::string("a text with a\0stray zero or\0 two", 33)), "");
}

TEST(ForeignKind, AUtf16TextIsOneWithItsMarkAndWithout) {
  for (const bool bigEndian : {false, true}) {
    EXPECT_EQ(ForeignKind(Wide("Year,Code,DofY\n1995,A,160\n", bigEndian)), "a text in UTF-16");
    EXPECT_EQ(ForeignKind((bigEndian ? "\xFE\xFF" : "\xFF\xFE") + Wide("M", bigEndian)), "a text in UTF-16");
  }
}

TEST(ForeignKind, AnArchiveThatIsCutIsSaidToBe) {
  const std::string whole = ReadWholeFile(MERLANE_SOURCE_DIR "/tests/data/import/lo_visits.xlsx");
  EXPECT_EQ(ForeignKind(whole), "an Excel workbook of the new kind (.xlsx)");
  EXPECT_EQ(ForeignKind(whole.substr(0, whole.size() - 100)),
            "an Excel workbook of the new kind (.xlsx) that is cut short");
  EXPECT_EQ(ForeignKind(whole.substr(0, whole.size() / 2)),
            "an Excel workbook of the new kind (.xlsx) that is cut short");
  EXPECT_EQ(ForeignKind(whole.substr(0, 100)), "a ZIP archive that is cut short");
}

TEST(ForeignKind, WorkbooksAreToldFromOneAnother) {
  const std::string old = ReadWholeFile(MERLANE_TEST_INPUTS_DIR "/workbooks/lake.xls");
  EXPECT_EQ(ForeignKind(old), "an Excel workbook of the old kind (.xls)");
  EXPECT_EQ(ForeignKind("PK\x03\x04 ... [Content_Types].xml ... xl/workbook.xml ... PK\x05\x06"),
            "an Excel workbook of the new kind (.xlsx)");
  EXPECT_EQ(ForeignKind("PK\x03\x04 ... mimetypeapplication/vnd.oasis.opendocument.spreadsheet ... PK\x05\x06"),
            "an OpenDocument spreadsheet (.ods)");
  EXPECT_EQ(ForeignKind("PK\x03\x04 ... birds.jpg ... PK\x05\x06"), "a ZIP archive");
  EXPECT_EQ(ForeignKind(old.substr(0, 8) + std::string(500, ' ') + Wide("EncryptedPackage")), "an encrypted workbook");
  EXPECT_EQ(ForeignKind(old.substr(0, 8) + std::string(500, ' ') + Wide("WordDocument")),
            "a document of an office program");
  EXPECT_EQ(ForeignKind("%PDF-1.4"), "a PDF document");
}

}  // namespace
}  // namespace merlane
