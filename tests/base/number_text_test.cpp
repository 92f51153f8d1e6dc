#include "base/number_text.h"

#include "base/runtime_failure.h"

namespace merlane {
namespace {

TEST(Format, ExponentTemplates) {
  EXPECT_EQ(Format(1e-4, "0.0000000E+00"), "1.0000000E-04");
  EXPECT_EQ(Format(-1e-100, "0.0000000E+00"), "-1.0000000E-100");
  EXPECT_EQ(Format(0.0, "0.0000000E+00"), "0.0000000E+00");
  EXPECT_EQ(Format(1.5, " 0.000E+000"), " 1.500E+000");
  EXPECT_EQ(Format(9.99999999, "0.0E+00"), "1.0E+01");
}

TEST(Format, TheSignStandsBeforeAllLiteralBlanks) {
  EXPECT_EQ(Format(-1.5, " 0.000E+000"), "- 1.500E+000");
  EXPECT_EQ(Format(-7, "    000) "), "-    007) ");
}

TEST(Format, FixedTemplates) {
  EXPECT_EQ(Format(7, "    000) "), "    007) ");
  EXPECT_EQ(Format(34, "###0"), "34");
  EXPECT_EQ(Format(0, "####0"), "0");
  EXPECT_EQ(Format(1234567, "####0"), "1234567");
  EXPECT_EQ(Format(592.7459881827024, "####0.000000    "), "592.745988    ");
  EXPECT_EQ(Format(3, "00"), "03");
  EXPECT_EQ(Format(42, "000000"), "000042");
}

TEST(Format, OptionalDecimalsAreDropped) {
  EXPECT_EQ(Format(0.5, "#0.0###"), "0.5");
  EXPECT_EQ(Format(2, "#0.0###"), "2.0");
  EXPECT_EQ(Format(0.12345, "#0.0###"), "0.1235");
}

TEST(Format, RoundsTheExactBinaryValue) {
  EXPECT_EQ(Format(0.5, "#0"), "0");
  EXPECT_EQ(Format(1.5, "#0"), "2");
  EXPECT_EQ(Format(2.675, "0.00"), "2.67");
}

TEST(Format, ZeroHasNoSignButANegativeNumberThatRoundsToZeroKeepsIts) {
  EXPECT_EQ(Format(-0.0, "####0.000000"), "0.000000");
  EXPECT_EQ(Format(-1e-9, "####0.000000"), "-0.000000");
}

TEST(Format, AllDigitsOfALargeNumber) { EXPECT_EQ(Format(1e20, "####0.0"), "100000000000000000000.0"); }

TEST(Format, RefusesWhatIsNoNumber) {
  EXPECT_THROW(Format(1.0 / 0.0, "0"), RuntimeFailure);
  EXPECT_THROW(Format(0.0 / 0.0, "0"), RuntimeFailure);
}

TEST(NumberField, IsFlushRightAndGrowsForANumberThatDoesNotFit) {
  EXPECT_EQ(NumberField(-2, "0.0000000E+00", 16), "  -2.0000000E+00");
  EXPECT_EQ(NumberField(-2e-100, "0.0000000E+00", 14), "-2.0000000E-100");
  EXPECT_EQ(NumberField(12345, "#0.00", 4), "12345.00");
}

TEST(NumberColumns, GoOnAsFarAsTheDigitsDo) {
  EXPECT_EQ(NumberColumns("ab-1.0E-100  2", 3, 9), "-1.0E-100");
  EXPECT_EQ(NumberColumns("ab-1.0E-10  2", 3, 10), "-1.0E-10");
  EXPECT_EQ(NumberColumns("ab    1 23", 3, 8), "    1 ") << "what follows upon a blank is another number";
  EXPECT_EQ(NumberColumns("ab 1", 3, 9), " 1");
  EXPECT_EQ(NumberColumns("ab", 3, 9), "");
}

TEST(Shortest, WholeNumbersHaveNoPoint) {
  EXPECT_EQ(Shortest(-26.0), "-26");
  EXPECT_EQ(Shortest(-7.5), "-7.5");
  EXPECT_EQ(Shortest(-0.0), "0");
  EXPECT_EQ(Shortest(0.1), "0.1");
}

TEST(Plain, NeverHasAnExponent) {
  EXPECT_EQ(Plain(1e-6), "0.000001");
  EXPECT_EQ(Plain(-2.5), "-2.5");
  EXPECT_EQ(Plain(1995), "1995");
  EXPECT_EQ(Plain(-0.0), "0");
  EXPECT_EQ(Plain(1e22), "10000000000000000000000");
}

TEST(LenientNumber, TakesTheLongestPrefix) {
  EXPECT_EQ(LenientNumber("  12"), 12);
  EXPECT_EQ(LenientNumber("-11  "), -11);
  EXPECT_EQ(LenientNumber("12abc"), 12);
  EXPECT_EQ(LenientNumber("1E"), 1);
  EXPECT_EQ(LenientNumber("1e2"), 100);
  EXPECT_EQ(LenientNumber("1D2"), 1);
  EXPECT_EQ(LenientNumber(".5"), 0.5);
  EXPECT_EQ(LenientNumber("5."), 5);
  EXPECT_EQ(LenientNumber("+3"), 3);
}

TEST(LenientNumber, DropsBlanksAnywhere) {
  EXPECT_EQ(LenientNumber("- 11"), -11);
  EXPECT_EQ(LenientNumber("1 5"), 15);
}

TEST(LenientNumber, IsZeroWithoutDigits) {
  for (const char* text : {"", "   ", "-?", "?", ".", "+", "E5", "\t12", "inf", "nan", "x1"})
    EXPECT_EQ(LenientNumber(text), 0) << text;
  EXPECT_EQ(LenientNumber("0x10"), 0);
}

TEST(LenientNumber, FailsOnlyWhenTooLarge) {
  EXPECT_THROW(LenientNumber("1E400"), RuntimeFailure);
  EXPECT_EQ(LenientNumber("1E-400"), 0);
  EXPECT_EQ(LenientNumber("4.9406564584124654e-324"), 4.9406564584124654e-324);
}

TEST(StrictNumber, AcceptsSurroundingBlanksAndNothingElse) {
  EXPECT_EQ(StrictNumber("  1.5E-3 "), 1.5e-3);
  EXPECT_EQ(StrictNumber("+2"), 2);
  for (const char* text : {"", "  ", "1 5", "- 1", "12a", "1E", "inf", "nan", "0x10", "1,5", "1D2", "\t1"})
    EXPECT_THROW(StrictNumber(text), RuntimeFailure) << text;
  EXPECT_THROW(StrictNumber("1E400"), RuntimeFailure);
}

TEST(IsNumber, IsWhatTheStrictReadingAccepts) {
  for (const char* text : {"  1.5E-3 ", "+2", "-0", ".5", "5.", "1E-400", "1E308"}) EXPECT_TRUE(IsNumber(text)) << text;
  for (const char* text : {"", "  ", "1 5", "- 1", "12a", "1E", "inf", "nan", ".", "1E400", "-1E400"})
    EXPECT_FALSE(IsNumber(text)) << text;
}

TEST(StrictIntegers, RoundHalfToEvenAndTestTheRange) {
  EXPECT_EQ(StrictInt16("34.4"), 34);
  EXPECT_EQ(StrictInt16("2.5"), 2);
  EXPECT_EQ(StrictInt16("3.5"), 4);
  EXPECT_EQ(StrictInt16("-32768"), -32768);
  EXPECT_THROW(StrictInt16("32768"), RuntimeFailure);
  EXPECT_EQ(StrictInt32("2147483647"), 2147483647);
  EXPECT_THROW(StrictInt32("2147483648"), RuntimeFailure);
}

}  // namespace
}  // namespace merlane
