#include "base/text.h"

namespace merlane {
namespace {

using testing::ElementsAre;

TEST(RightSet, PutsTheValueFlushRight) { EXPECT_EQ(RightSet("12", 5), "   12"); }
TEST(RightSet, CutsALongerValueToItsLeftmostCharacters) {
  EXPECT_EQ(RightSet("-1.0000000E-100", 14), "-1.0000000E-10");
}
TEST(RightSet, LeavesAFittingValueAlone) { EXPECT_EQ(RightSet("abc", 3), "abc"); }

TEST(Trim, TakesBlanksAlone) {
  EXPECT_EQ(Trim("  a b "), "a b");
  EXPECT_EQ(Trim("\t"), "\t");
  EXPECT_EQ(Trim("   "), "");
}

TEST(Columns, AreCountedFromOneAndEndWithTheLine) {
  EXPECT_EQ(Columns("abcdef", 2, 4), "bcd");
  EXPECT_EQ(Columns("abc", 2, 9), "bc");
  EXPECT_EQ(Columns("abc", 4, 9), "");
}

TEST(Lines, EndWithCrLfLfOrCr) {
  EXPECT_THAT(Lines("a\r\nb\nc\rd"), ElementsAre("a", "b", "c", "d"));
  EXPECT_THAT(Lines("a\n\nb\n"), ElementsAre("a", "", "b"));
  EXPECT_THAT(Lines(""), ElementsAre());
}

TEST(FileName, IsWhatStandsBehindTheLastSeparator) {
  EXPECT_EQ(FileName("a/b\\c.dat"), "c.dat");
  EXPECT_EQ(FileName("c.dat"), "c.dat");
}

TEST(Case, ChangesTheTwentySixLettersAlone) {
  EXPECT_EQ(UpperCase("aZ\xe4"), "AZ\xe4");
  EXPECT_EQ(LowerCase("XLS"), "xls");
}

TEST(Rightmost, TakesAllOfAShortText) {
  EXPECT_EQ(Rightmost("abcdef", 3), "def");
  EXPECT_EQ(Rightmost("ab", 3), "ab");
}

TEST(WithCrLf, MakesEveryLineEndCrLf) {
  EXPECT_EQ(WithCrLf("a\nb\rc\r\nd"), "a\r\nb\r\nc\r\nd");
  EXPECT_EQ(WithCrLf("\n\n\r\n\r"), "\r\n\r\n\r\n\r\n");
  EXPECT_EQ(WithCrLf(""), "");
}

}  // namespace
}  // namespace merlane
