#include "data/data_record_text.h"

#include <fmt/format.h>
#include <gmock/gmock.h>

#include "data/data_text.h"
#include "data/record_layout.h"

namespace merlane {
namespace {

using test::Header;
using test::Reading;
using ::testing::ElementsAre;

/// The records of a file written again, under a header without covariates.
std::string WrittenAgain(const std::string& records) {
  Reading reading;
  reading.Of(Header + "\n" + records);
  std::string text = Header + "\n";
  ForEachRecord(reading.data, [&](std::size_t b, std::size_t v) {
    text += FieldsBeforeCount(reading.data, b, v) + CountField(reading.data.VisitCount[v]) + "\n";
  });
  return text;
}

std::string WithCode(const std::string& code, int day) {
  return "    1995," + code + fmt::format(",{:>8},     170,{:>8},       5\n", day, day - 170);
}

TEST(DataRecordText, CodesAreWrittenBackAsTheyWere) {
  for (const std::string code :
       {"  ORCBLX", "   M\u00D6WE1", "\u732B\u732B\u732B\u732B\u732B\u732B\u732B\u732B", "   M\xD6WE1", "A       "}) {
    const std::string records = WithCode(code, 160) + WithCode(code, 165);
    EXPECT_EQ(WrittenAgain(records), Header + "\n" + records);
  }
}

TEST(DataRecordText, ACodeThatALineEndsInIsFilledUpByCharacters) {
  EXPECT_EQ(WrittenAgain("    1995,M\u00D6\n"),
            Header + "\n    1995,      M\u00D6,       0,       0,       0,       0\n");
  EXPECT_EQ(WrittenAgain("    1995,M\xD6\n"), Header + "\n    1995,      M\xD6,       0,       0,       0,       0\n");
}

// The file is divided by bytes for the code of another year, and what is written from it by characters.
TEST(DataRecordText, CodesThatAreUtf8ByChanceStandInColumnsThatReadBack) {
  Reading again;
  again.Of(WrittenAgain("    1990,   M\xD6WE1,     160,     170,     -10,       5\n" + WithCode("  M\u00D6WE1", 160)));
  EXPECT_THAT(again.data.BroodCode, ElementsAre("   M\u00D6WE1"));
  EXPECT_THAT(again.data.VisitDate, ElementsAre(160));
  EXPECT_THAT(again.data.VisitCount, ElementsAre(5));
}

// Rounded, a replicate of these data would be fitted at other ages than the data themselves.
TEST(DataRecordText, AgesThatAreNotWholeKeepTheirDigits) {
  const std::string records =
      "    1995,       A,     163,     170,    -7.5,       8\n"
      "    1995,       A,     164,     170,   -6.25,       8\n"
      "    1995,       A,     166,     170,      -4,       8\n";
  EXPECT_EQ(WrittenAgain(records), Header + "\n" + records);
}

}  // namespace
}  // namespace merlane
