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

TEST(Utf8, LeavesWhatIsUtf8AndTakesTheRestAsLatin1) {
  EXPECT_EQ(Utf8("plain"), "plain");
  EXPECT_EQ(Utf8("s\u00B0 \u20AC \U0001F95A"), "s\u00B0 \u20AC \U0001F95A");
  EXPECT_EQ(Utf8("s\xB0"), "s\u00B0");
  EXPECT_EQ(Utf8("\xFF\x80"), "\u00FF\u0080");
}

TEST(Utf8, MalformedSequencesAreNotUtf8) {
  EXPECT_EQ(Utf8("\xC3"), "\u00C3") << "cut off";
  EXPECT_EQ(Utf8("\xC0\xAF"), "\u00C0\u00AF") << "longer than need be";
  EXPECT_EQ(Utf8("\xE0\x80\xAF"), "\u00E0\u0080\u00AF") << "longer than need be";
  EXPECT_EQ(Utf8("\xED\xA0\x80"), "\u00ED\u00A0\u0080") << "half of a surrogate pair";
  EXPECT_EQ(Utf8("\xF4\x90\x80\x80"), "\u00F4\u0090\u0080\u0080") << "beyond the last character";
}

}  // namespace
}  // namespace merlane
