#include "base/utf8.h"

namespace merlane {
namespace {

TEST(Utf8, TextsOfOneKindAreToldFromTheOther) {
  EXPECT_TRUE(IsUtf8(""));
  EXPECT_TRUE(IsUtf8("A long text of ASCII alone, of more than eight bytes"));
  EXPECT_TRUE(IsUtf8("M\u00D6WE1, \u732B \U0001F426 and the rest"));
  EXPECT_FALSE(IsUtf8("A long text, and M\xD6WE1 in Latin-1"));
  EXPECT_FALSE(IsUtf8("cut in half \xC3"));
  EXPECT_TRUE(IsAscii("12345678ABC"));
  EXPECT_FALSE(IsAscii("12345678AB\u00DC"));
  EXPECT_FALSE(IsAscii("\u00DC12345678"));
}

TEST(Utf8, ColumnsAreCountedInCharacters) {
  const char* const line = "a\u00D6\u732B\U0001F426z";
  EXPECT_EQ(CharacterCount(line), 5U);
  EXPECT_EQ(CharacterColumns(line, 2, 3), "\u00D6\u732B");
  EXPECT_EQ(CharacterColumns(line, 5, 9), "z");
  EXPECT_EQ(CharacterColumns(line, 6, 9), "");
  EXPECT_EQ(LastCharacters(line, 2), "\U0001F426z");
  EXPECT_EQ(LastCharacters(line, 5), line);
  EXPECT_EQ(LastCharacters(line, 9), line);
  EXPECT_EQ(FirstCharacters(line, 2), "a\u00D6");
  EXPECT_EQ(FirstCharacters(line, 9), line);
}

}  // namespace
}  // namespace merlane
