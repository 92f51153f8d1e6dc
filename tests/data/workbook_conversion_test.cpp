#include "data/workbook_conversion.h"

#include "base/runtime_failure.h"
#include "base/text.h"
#include "base/utf8.h"

namespace merlane {
namespace {

const std::vector<WorkbookCell> Head = {"Year", "Code", "DofY", "HatchDay", "BroodAge", "#EorJ", "Lake_Prod"};

std::string SecondLine(const std::vector<WorkbookCell>& row) {
  return Lines(BroodDataText({"Lake", {Head, row}}).text).at(1);
}

TEST(BroodDataText, HeadingsComeThroughRightJustified) {
  EXPECT_EQ(BroodDataText({"Lake", {Head}}).text,
            "    Year,    Code,    DofY,HatchDay,BroodAge,   #EorJ,   Lake_Prod\r\n");
}

TEST(BroodDataText, NumbersAreFormattedByTheirColumn) {
  EXPECT_EQ(SecondLine({1995.0, "ORCBLX", 161.0, 172.0, -11.0, 5.0, 0.6485}),
            "    1995,  ORCBLX,     161,     172,     -11,       5,  6.4850E-01");
}

TEST(BroodDataText, ACovariateKeepsFiveSignificantDigitsOnly) {
  EXPECT_EQ(Rightmost(SecondLine({1995.0, "A", 1.0, 1.0, 1.0, 1.0, 0.64854321}), 12), "  6.4854E-01");
}

TEST(BroodDataText, ATextCodeLongerThanEightCharactersKeepsItsLastEight) {
  EXPECT_EQ(Columns(SecondLine({1995.0, "VERYLONGCODE", 1.0, 1.0, 1.0, 1.0}), 10, 17), "LONGCODE");
}

TEST(BroodDataText, ACodeStandsAsItIsThoughItLooksLikeANumber) {
  EXPECT_EQ(Columns(SecondLine({1995.0, "0012", 1.0, 1.0, 1.0, 1.0}), 10, 17), "    0012");
  EXPECT_EQ(Columns(SecondLine({1995.0, 0.1, 1.0, 1.0, 1.0, 1.0}), 10, 17), "     0.1") << "as a spreadsheet shows it";
}

TEST(BroodDataText, ColumnsAreCharactersAndNoneIsLostOrCutInHalf) {
  EXPECT_EQ(CharacterColumns(SecondLine({1995.0, "\u00D6stlich7", 1.0, 1.0, 1.0, 1.0}), 10, 17), "\u00D6stlich7");
  EXPECT_EQ(CharacterColumns(SecondLine({1995.0, "M\u00F6we-12", 1.0, 1.0, 1.0, 1.0}), 9, 18), ", M\u00F6we-12,");
  EXPECT_EQ(CharacterColumns(SecondLine({1995.0, "s\u00FCdliche \u00C4\u00D6\u00DC1", 1.0, 1.0, 1.0, 1.0}), 10, 17),
            "che \u00C4\u00D6\u00DC1");
  const std::string heading =
      BroodDataText({"Lake", {{"Year", "Code", "DofY", "HatchDay", "BroodAge", "#EorJ", "Seefl\u00E4che_\u00FC_km"}}})
          .text;
  EXPECT_EQ(CharacterColumns(heading, 54, 66), ",Seefl\u00E4che_\u00FC_");
}

TEST(BroodDataText, ALongNumberIsWrittenAsTheNumberThatItIs) {
  const std::string line = SecondLine({1995.0, "A", 161.0, 172.0, -11.3333333333333, 5.0, -1.23456789012345e-05});
  EXPECT_EQ(Columns(line, 37, 44), "     -11");
  EXPECT_EQ(Columns(line, 55, 66), " -1.2346E-05") << "its sign is kept";
  EXPECT_EQ(Columns(SecondLine({1995.0, "A", "161.00000000012", 1.0, 1.0, 1.0}), 19, 26), "     161");
}

TEST(BroodDataText, WhatIsWrittenOtherwiseThanItStandsInItsCellIsToldWithItsPlace) {
  EXPECT_THAT(
      BroodDataText({"Lake", {Head, {1995.0, "VERYLONGCODE", 161.5, "2000-06-09", 1.0, 1.0, 0.64854321}}}).changes,
      testing::ElementsAre("row 2, column 2 of worksheet Lake: \"VERYLONGCODE\", written as \"LONGCODE\"",
                           "row 2, column 3 of worksheet Lake: \"161.5\", written as \"162\"",
                           "row 2, column 4 of worksheet Lake: \"2000-06-09\", written as \"00-06-09\"",
                           "row 2, column 7 of worksheet Lake: \"0.64854321\", written as \"6.4854E-01\""));
  EXPECT_THAT(BroodDataText({"Lake", {Head, {1995.0, "A", 161.0, "172", "-?", 1.0, 0.6485}}}).changes,
              testing::IsEmpty());
}

TEST(BroodDataText, ACodeThatASpreadsheetShowsOtherwiseThanItIsReadIsTold) {
  Worksheet sheet{"Lake", {Head, {1995.0, 7.0, 161.0, 172.0, -11.0, 5.0, 0.5}}};
  sheet.shown = {{}, {{1, "007"}, {5, "05 eggs"}}};
  const ConvertedSheet converted = BroodDataText(sheet);
  EXPECT_THAT(converted.changes,
              testing::ElementsAre("row 2, column 2 of worksheet Lake: \"7\", shown as \"007\", written as \"7\""));
  EXPECT_THAT(converted.text, testing::HasSubstr("    1995,       7,     161,"));
}

TEST(BroodDataText, ANumberWithoutRoomIsRefusedInWords) {
  try {
    BroodDataText({"Lake", {Head, {1995.0, "A", 1234567890.0, 1.0, 1.0, 1.0, 1.0}}});
    FAIL() << "it was written";
  } catch (const RuntimeFailure& failure) {
    EXPECT_STREQ(failure.what(), "row 2, column 3 of worksheet Lake: \"1234567890\" has no room in 8 columns");
  }
}

TEST(BroodDataText, ALineBreakInAHeadingDoesNotBreakTheHeader) {
  EXPECT_EQ(BroodDataText({"Lake", {{"Year", "Code", "DofY", "Hatch\nDay", "Age", "#EorJ", "Lake\r\nProd"}}}).text,
            "    Year,    Code,    DofY,atch Day,     Age,   #EorJ,  Lake  Prod\r\n");
}

TEST(BroodDataText, UnknownAgesComeThrough) {
  EXPECT_EQ(Columns(SecondLine({1995.0, "A", 1.0, 1.0, "-?", 1.0}), 37, 44), "      -?");
  EXPECT_EQ(Columns(SecondLine({1995.0, "A", 1.0, 1.0, "?", 1.0}), 37, 44), "       ?");
}

TEST(BroodDataText, AnEmptyCellIsBlank) {
  EXPECT_EQ(SecondLine({1995.0, "A", 1.0, 1.0, -3.0, 4.0, std::monostate()}),
            "    1995,       A,       1,       1,      -3,       4,            ");
}

TEST(BroodDataText, ANumberInATextCellIsFormattedToo) {
  EXPECT_EQ(Columns(SecondLine({"95", 77.0, "161", 1.0, 1.0, 1.0}), 1, 17), "    0095,      77");
}

TEST(BroodDataText, ASheetWithAColumnTooFewFails) {
  EXPECT_THROW(BroodDataText({"Narrow", {{"Year", "Code", "DofY", "HatchDay", "BroodAge"}}}), RuntimeFailure);
}

}  // namespace
}  // namespace merlane
