#include "platform/packed_worksheets.h"

#include "base/runtime_failure.h"

namespace merlane {
namespace {

std::vector<Worksheet> Sheets() {
  return {{"Lake",
           {{std::string("Year"), std::monostate()}, {1995.0, std::string("a\0b", 3)}},
           7,
           {{}, {{0, "01995"}}},
           {true, 1, 7, {2, 5}}},
          {"Empty", {}}};
}

TEST(PackedWorksheets, ComeBackAsTheyWere) {
  const std::vector<Worksheet> back = UnpackWorksheets(PackWorksheets(Sheets()));
  ASSERT_EQ(back.size(), 2U);
  EXPECT_EQ(back[0].name, "Lake");
  EXPECT_EQ(back[0].rows, Sheets()[0].rows);
  EXPECT_EQ(back[0].firstRow, 7U);
  EXPECT_EQ(back[0].shown, Sheets()[0].shown);
  EXPECT_EQ(back[0].hidden, Sheets()[0].hidden);
  EXPECT_EQ(back[1].name, "Empty");
  EXPECT_TRUE(back[1].rows.empty());
}

TEST(PackedWorksheets, BytesThatEndTooEarlyAreAFailure) {
  const std::string whole = PackWorksheets(Sheets());
  for (std::size_t length = 0; length < whole.size(); ++length)
    EXPECT_THROW(UnpackWorksheets(whole.substr(0, length)), RuntimeFailure) << length;
}

TEST(PackedWorksheets, CountsThatTheBytesCannotHoldAreAFailureAndNoMemory) {
  const std::string count(8, '\x7F');
  EXPECT_THROW(UnpackWorksheets(count), RuntimeFailure) << "sheets";
  const std::string one("\1\0\0\0\0\0\0\0", 8), nameless(8, '\0');
  EXPECT_THROW(UnpackWorksheets(one + nameless + count), RuntimeFailure) << "rows";
  EXPECT_THROW(UnpackWorksheets(one + nameless + one + count), RuntimeFailure) << "cells";
}

}  // namespace
}  // namespace merlane
