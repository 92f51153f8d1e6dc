#include "data/data_line.h"

#include <bit>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/number_text.h"
#include "base/runtime_failure.h"
#include "data/data_text.h"
#include "platform/random_streams.h"

namespace merlane {
namespace {

const std::string Fits = "    1995,  ORCBLX,     161,     172,     -11,       5";

std::string Misdivided(const std::string& text, int covariates = 0) {
  const DataLine line(text, 7, true);
  const std::string where = line.Misdivided(covariates);
  EXPECT_EQ(line.IsDivided(covariates), where.empty()) << text;
  return where;
}

TEST(DataLine, ALineInItsColumnsIsDividedAsItShouldBe) {
  EXPECT_EQ(Misdivided(Fits), "");
  EXPECT_EQ(Misdivided(Fits + "   "), "") << "blanks at the end are nobody's harm";
  EXPECT_EQ(Misdivided(Fits + ",           1"), "") << "covariates that were not chosen";
  EXPECT_EQ(Misdivided(Fits + ",           1", 1), "");
  EXPECT_EQ(Misdivided("    1995,   M\u00D6WE1,     161,     172,     -11,       5"), "");
}

TEST(DataLine, AnythingButACommaBetweenFieldsIsTold) {
  EXPECT_EQ(Misdivided("1995,A,160,170,-10,5,and more behind it that ends far beyond all columns"),
            "line 7, column 9: \"6\" where a comma belongs");
  EXPECT_EQ(Misdivided("1995,A,160,170"), "line 7, column 9: \"6\" where a comma belongs");
  EXPECT_EQ(Misdivided("    1995,  ORCBLX"), "line 7 ends before the field of columns 19 to 26");
  EXPECT_EQ(Misdivided(Fits, 1), "line 7 ends before the field of columns 55 to 66");
  EXPECT_EQ(Misdivided(Fits + "0"), "line 7, column 54: \"0\" behind the last field");
  EXPECT_EQ(Misdivided(Fits + "\t1", 1), "line 7, column 54: \"\\x09\" where a comma belongs");
  EXPECT_EQ(Misdivided("    1995;  ORCBLX;     161;     172;     -11;       5"),
            "line 7, column 9: \";\" where a comma belongs");
}

TEST(DataLine, ColumnsAreCharactersOfUtf8AndBytesOfAnythingElse) {
  const std::string text = "    1995,   M\u00D6WE1,     161";
  EXPECT_EQ(DataLine(text, 1, true).Text(record::Code), "   M\u00D6WE1");
  EXPECT_EQ(DataLine(text, 1, true).Text(record::Date), "     161");
  EXPECT_EQ(DataLine(text, 1, false).Text(record::Code), "   M\u00D6WE");
  EXPECT_EQ(DataLine("    1995,   M\xD6WE1,     161", 1, false).Text(record::Code), "   M\xD6WE1");
}

TEST(DataLine, WhatIsNoNumberThroughoutIsReadAllTheSame) {
  const auto read = [](const std::string& field) {
    const std::string text = field + std::string(8 - field.size(), ' ');
    const DataLine line(text, 1, false);
    const DataLine::Reading reading = line.Read(record::Year);
    return std::pair(reading.value, reading.plain);
  };
  EXPECT_EQ(read("1 23"), std::pair(123.0, false));
  EXPECT_EQ(read("12a"), std::pair(12.0, false));
  EXPECT_EQ(read("0,65"), std::pair(0.0, false));
  EXPECT_EQ(read("NA"), std::pair(0.0, false));
  EXPECT_EQ(read(""), std::pair(0.0, false));
  EXPECT_EQ(read("."), std::pair(0.0, false));
  EXPECT_EQ(read("-12"), std::pair(-12.0, true));
  EXPECT_EQ(read(" 0.65"), std::pair(0.65, true));
  EXPECT_EQ(read("1E2"), std::pair(100.0, true));
  EXPECT_EQ(read("+7"), std::pair(7.0, true));
}

/// Whole numbers have ways of their own.
TEST(DataLine, AnyFieldIsReadAsTheLenientReadingHasIt) {
  constexpr std::string_view characters = "  0123456789-+.,xA\x80";
  RandomStream random(2026, 5);
  int whole = 0;
  for (int i = 0; i < 300000; ++i) {
    std::string field(1 + static_cast<std::size_t>(random.Uniform() * 8), ' ');
    const double kind = random.Uniform();
    std::size_t begin = kind < 0.2 ? 0 : static_cast<std::size_t>(random.Uniform() * 9);
    for (; begin < field.size(); ++begin) {
      const double from = kind < 0.7 ? 2 : 0, size = kind < 0.7 ? 10 : static_cast<double>(characters.size());
      field[begin] = characters[static_cast<std::size_t>(from + random.Uniform() * size)];
    }
    if (kind > 0.6 && kind < 0.7) field[field.find_first_not_of(' ') % field.size()] = '-';
    const DataLine line(field, 1, false);
    const DataLine::Reading reading = line.Read(record::Year);
    ASSERT_EQ(std::bit_cast<std::uint64_t>(reading.value), std::bit_cast<std::uint64_t>(LenientNumber(field))) << field;
    ASSERT_EQ(reading.plain, IsNumber(field)) << field;
    if (const std::optional<int> number = line.ReadWhole(record::Year)) {
      ASSERT_TRUE(reading.plain && reading.value == *number) << field;
      ++whole;
    }
  }
  EXPECT_GT(whole, 100000);
}

TEST(DataLines, EndWithEitherOrBothCharacters) {
  const auto linesOf = [](std::string_view text) {
    std::vector<std::string> found;
    for (DataLines lines(text, false); lines.Next();) {
      EXPECT_EQ(lines.Line().Number(), static_cast<int>(found.size()) + 1);
      found.emplace_back(lines.Line().Whole());
    }
    return found;
  };
  using Found = std::vector<std::string>;
  EXPECT_EQ(linesOf(""), Found());
  EXPECT_EQ(linesOf("a\nb\n"), (Found{"a", "b"}));
  EXPECT_EQ(linesOf("a\r\nb\r\n"), (Found{"a", "b"}));
  EXPECT_EQ(linesOf("a\rb\r"), (Found{"a", "b"}));
  EXPECT_EQ(linesOf("a\rb\nc\r\n\r\n\n\rd"), (Found{"a", "b", "c", "", "", "", "d"}));
  EXPECT_EQ(linesOf("\n"), Found{""});
  EXPECT_EQ(linesOf("\r"), Found{""});
  EXPECT_EQ(linesOf("a\r\r\nb"), (Found{"a", "", "b"}));
}

TEST(DataLine, WhatIsShownKeepsLettersAndSpellsOutOtherBytes) {
  EXPECT_EQ(Shown("M\u00D6WE \t\xD6"), "M\u00D6WE \\x09\\xD6");
  EXPECT_EQ(Shown(std::string_view("\0\x7F", 2)), "\\x00\\x7F");
}

}  // namespace
}  // namespace merlane
