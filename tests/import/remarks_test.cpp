#include "import/remarks.h"

#include <gmock/gmock.h>

namespace merlane {
namespace {

using ::testing::Contains;

TEST(Remarks, OfRowsThatWereLeftOutDoNotCrowdOutOthers) {
  Remarks remarks("line");
  for (int line = 1; line <= 1000; ++line) remarks.NoteLeftOut(line, "it has no number");
  remarks.Note(7, "\"A\" has the day of line 6");
  EXPECT_THAT(remarks.First(), Contains("line 7: \"A\" has the day of line 6"));
  EXPECT_EQ(remarks.First().size(), 201U);
  EXPECT_EQ(remarks.Number(), 1001);
}

TEST(Remarks, OfManyKindsAreNotMoreThanCanBeRead) {
  Remarks remarks("row");
  for (int year = 1; year <= 1000; ++year) remarks.Count(year, "the year is " + std::to_string(year));
  remarks.Count(2000, "the year is 1");
  EXPECT_EQ(remarks.First().size(), 200U);
  EXPECT_THAT(remarks.First(), Contains("2 rows, the first in row 1: the year is 1"));
  EXPECT_EQ(remarks.Number(), 1000);
}

}  // namespace
}  // namespace merlane
