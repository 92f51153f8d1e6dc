#include "data/file_outline.h"

#include <fmt/format.h>
#include <gmock/gmock.h>

#include <map>

#include "platform/file_kind.h"
#include "platform/files.h"

namespace merlane {
namespace {

using ::testing::HasSubstr;

constexpr const char* HeadingLine = "    Year,    Code,    DofY,HatchDay,BroodAge,   #EorJ";

TEST(FileOutline, TellsYearsAndCovariates) {
  const FileOutline outline =
      OutlineOf(std::string(HeadingLine) +
                ",        Lake,       Cover\r\n"
                "    2021,       A,     160,       0,      -?,       5,           1,           2\r\n"
                "\r\n"
                "    2019,       B,     160,       0,      -?,       5,           1,           2\r\n"
                "    2023,       C,     160,       0,      -?,       5,           1,           2\r\n");
  EXPECT_EQ(outline.records, 3);
  EXPECT_EQ(outline.covariates, 2);
  EXPECT_EQ(outline.InWords(), "The file holds years 2019 to 2023 and 2 covariates.");
}

TEST(FileOutline, TellsOneYearAsOne) {
  EXPECT_EQ(OutlineOf(std::string(HeadingLine) +
                      ",        Lake\n    2021,       A,     160,       0,      -?,       5,           1\n")
                .InWords(),
            "The file holds year 2021 and 1 covariate.");
}

TEST(FileOutline, TellsLinesThatAreNotDividedAsTheFormatHasIt) {
  const FileOutline outline =
      OutlineOf("Year,Code,DofY,HatchDay,BroodAge,#EorJ\n1995,A,160,0,-?,5\n1995,B,160,0,-?,5\n");
  EXPECT_EQ(outline.misdivided, 2);
  EXPECT_EQ(outline.records, 0);
  EXPECT_THAT(outline.InWords(), HasSubstr("2 of its lines do not fit the fixed columns (line 2, column 9: "));
  EXPECT_THAT(outline.InWords(), HasSubstr("Import..."));
}

TEST(FileOutline, GivesUpOnAnotherKindOfFileSoon) {
  std::string text = std::string(HeadingLine) + "\n    1995,       A,     160,       0,      -?,       5\n";
  for (int i = 0; i < 5000; ++i) text += "1995,A,160,0,-?,5\n";
  const FileOutline outline = OutlineOf(text);
  EXPECT_EQ(outline.records, 0);
  EXPECT_THAT(outline.InWords(), HasSubstr("1000 or more of its lines do not fit"));
}

TEST(FileOutline, PassesOverAYearThatIsNone) {
  const FileOutline outline = OutlineOf(std::string(HeadingLine) +
                                        "\n  soon  ,       A,     160,       0,      -?,       5\n"
                                        "   99999,       A,     160,       0,      -?,       5\n");
  EXPECT_EQ(outline.records, 0);
  EXPECT_EQ(outline.InWords(), "");
}

/// Whatever number of cores looks through it, the first line is told by its number in the file.
TEST(FileOutline, OfALargeFileIsThatOfItsParts) {
  std::string text = std::string(HeadingLine) + "\n";
  for (int i = 0; i < 60000; ++i)
    text += fmt::format("    {},       A,     160,       0,      -?,       5\r\n", 1900 + i * 7 % 101);
  ASSERT_GT(text.size(), 3u << 20);
  EXPECT_EQ(OutlineOf(text).InWords(), "The file holds years 1900 to 2000 and 0 covariates.");
  EXPECT_EQ(OutlineOf(text).records, 60000);
  text += "2001,A,160,0,-?,5\r\n2001,B,160,0,-?,5";
  const FileOutline outline = OutlineOf(text);
  EXPECT_EQ(outline.records, 60000);
  EXPECT_EQ(outline.lastYear, 2000);
  EXPECT_THAT(outline.InWords(), HasSubstr("2 of its lines do not fit the fixed columns (line 60002, column 9: "));
  for (int i = 0; i < 1000; ++i) text.insert(text.find('\n') + 1, "1995,A,160,0,-?,5\n");
  EXPECT_THAT(OutlineOf(text).InWords(), HasSubstr("1000 or more of its lines do not fit the fixed columns (line 2, "));
  EXPECT_EQ(OutlineOf(text).records, 0);
}

/// So many records, whose lines have unlike lengths, so that blocks of a file end anywhere in them.
std::string ManyRecords(int records, const std::string& lineEnd, const std::string& code = "A") {
  std::string text = HeadingLine + (",        Lake" + lineEnd);
  for (int i = 0; i < records; ++i)
    text += fmt::format("    {},       {},     160,       0,      -?,       5,           1{}{}", 1900 + i * 7 % 101,
                        code, std::string(static_cast<std::size_t>(i % 11), ' '), lineEnd);
  return text;
}

/// A file is looked through in blocks where that tells the same as the whole.
TEST(FileOutline, OfALargeFileIsThatOfItsBytes) {
  const std::string usual = ManyRecords(40000, "\r\n");
  ASSERT_GT(usual.size(), 2u << 20);
  const std::string misdivided = "2001,A,160,0,-?,5\n", blanks(3u << 18, ' ');
  std::string few = ManyRecords(40000, "\n");
  for (std::size_t at = 100'000; at < few.size(); at += 300'000) few.insert(few.find('\n', at) + 1, misdivided);
  std::string many = few;
  for (int i = 0; i < 600; ++i) many = many.insert(many.find('\n', 1'000'000) + 1, misdivided) + misdivided;
  const std::map<std::string, std::string> files{
      {"usual", usual},
      {"line feeds", ManyRecords(40000, "\n")},
      {"carriage returns", ManyRecords(40000, "\r")},
      {"both", ManyRecords(20000, "\r") + ManyRecords(20000, "\n") + ManyRecords(20000, "\r\n")},
      {"no last line end", usual.substr(0, usual.size() - 2)},
      {"letters of several bytes", ManyRecords(40000, "\n", "\xC3\x84")},
      {"letters of several bytes far down", usual + ManyRecords(1, "\n", "\xC3\x84") + misdivided},
      {"letters of several bytes, and one that is none far down",
       ManyRecords(40000, "\n", "\xC3\x84") + ManyRecords(1, "\n", "\xC4")},
      {"letters of single bytes", ManyRecords(40000, "\n", "\xC4")},
      {"byte order mark", "\xEF\xBB\xBF" + usual},
      {"lines that do not fit", few},
      {"many lines that do not fit", many},
      {"a long line", usual + blanks + misdivided + usual},
      {"a long heading", HeadingLine + blanks + "\n" + usual},
      {"markup behind blanks", std::string(3u << 18, '\n') + "<html>" + usual},
      {"a packed file", "PK\x03\x04" + usual},
      {"blanks", blanks + blanks},
  };
  const std::string path = testing::TempDir() + "large_outline.dat";
  for (const auto& [name, bytes] : files) {
    WriteWholeFile(path, bytes, false);
    const FileOutline ofFile = OutlineOfFile(path);
    const FileOutline expected = ForeignKind(bytes).empty() ? OutlineOf(bytes) : FileOutline{};
    EXPECT_EQ(ofFile.InWords(), expected.InWords()) << name;
    EXPECT_EQ(ofFile.records, expected.records) << name;
    EXPECT_EQ(ofFile.covariates, expected.covariates) << name;
    EXPECT_EQ(ofFile.misdivided, expected.misdivided) << name;
  }
  WriteWholeFile(path, usual, false);
  EXPECT_EQ(OutlineOfFile(path).records, 40000);
}

TEST(FileOutline, OfNoFileTellsNothing) { EXPECT_EQ(OutlineOfFile("/nowhere").InWords(), ""); }

TEST(FileOutline, OfAnEmptyFileTellsNothing) { EXPECT_EQ(OutlineOf("").InWords(), ""); }

}  // namespace
}  // namespace merlane
