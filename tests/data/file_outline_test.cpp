#include "data/file_outline.h"

#include <fmt/format.h>
#include <gmock/gmock.h>

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

TEST(FileOutline, OfAnEmptyFileTellsNothing) { EXPECT_EQ(OutlineOf("").InWords(), ""); }

}  // namespace
}  // namespace merlane
