#include "data/workbook_conversion.h"

#include "base/runtime_failure.h"
#include "base/text.h"

namespace merlane {
namespace {

const std::vector<WorkbookCell> Head = {"Year", "Code", "DofY", "HatchDay", "BroodAge", "#EorJ", "Lake_Prod"};

std::string SecondLine(const std::vector<WorkbookCell>& row) {
  return Lines(BroodDataText({"Lake", {Head, row}})).at(1);
}

TEST(BroodDataText, HeadingsComeThroughRightJustified) {
  EXPECT_EQ(BroodDataText({"Lake", {Head}}), "    Year,    Code,    DofY,HatchDay,BroodAge,   #EorJ,   Lake_Prod\r\n");
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

TEST(BroodDataText, NoCharacterIsCutInHalf) {
  EXPECT_EQ(Columns(SecondLine({1995.0, "\u00D6stlich7", 1.0, 1.0, 1.0, 1.0}), 10, 17), " stlich7");
  EXPECT_EQ(Columns(SecondLine({1995.0, "M\u00F6we-12", 1.0, 1.0, 1.0, 1.0}), 10, 17), "M\u00F6we-12");
  EXPECT_EQ(Rightmost(SecondLine({1995.0, "A", 1.0, 1.0, 1.0, 1.0, "Seefl\u00E4che_\u00FC_km"}), 13),
            ", Seefl\u00E4che_");
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
