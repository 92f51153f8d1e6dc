#include "priors/priors_file.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "base/runtime_failure.h"
#include "platform/files.h"
#include "priors/set_prior.h"

namespace merlane {
namespace {

TEST(PriorsFile, HasTheColumnsOfItsTwoExampleLines) {
  const Priors priors = test::PriorsOf(2, "N", 0.5, 0.1);
  EXPECT_EQ(PriorsFileText(priors),
            "2\r\n"
            "  1   N 5.000E-001 1.000E-001     Unused     Unused   Gaussian or Normal\r\n"
            "  2   U 1.000E-100 1.000E-100     Unused     Unused   Uniform - unbounded\r\n");
}

TEST(PriorsFile, ANegativeFirstTermLosesTheLastDigitOfAnExponentOfZeroAlone) {
  EXPECT_EQ(PriorsFileText(test::PriorsOf(1, "S", -1.5, 2)),
            "1\r\n  1   S- 1.500E+00 2.000E+000     Unused     Unused   Left-side cliff\r\n");
  for (const double mean : {-1.5, -15.0, -0.15, -1.5e100}) {
    const std::string text = PriorsFileText(test::PriorsOf(1, "S", mean, 2));
    const Priors back = ReadPriorsText(text, 1).priors;
    EXPECT_EQ(back.PriorFirstMean(1), mean) << text;
    EXPECT_EQ(back.PriorFirstSD(1), 2) << text;
    EXPECT_EQ(back.PriorSecondMean(1), PriorTerm("Unused")) << text;
  }
}

TEST(PriorsFile, ALineWithoutOneOfTheNineDistributionsIsTold) {
  const std::string terms = " 5.000E-001 1.000E-001     Unused     Unused";
  for (const std::string& line : std::vector<std::string>{"", "  2", "  2    " + terms, "  2   X" + terms})
    EXPECT_EQ(ReadPriorsText("2\n  1   N" + terms + "\n" + line + "\n", 2).oddities,
              "line 3: column 7 holds no distribution; parameter 2 has no prior");
}

TEST(PriorsFile, ATermThatIsNoNumberIsToldWithItsLineWhereTheDistributionHasOne) {
  const std::string text =
      "4\n"
      "  1   N       mean 1.0O0E-001     Unused     Unused\n"
      "  2   U         no         no     Unused     Unused\n"
      "  3   S- 1.500E+00 1.000E-001     Unused     Unused\n"
      "  4   B        0.5\n";
  const PriorsReading read = ReadPriorsText(text, 4);
  EXPECT_EQ(read.oddities,
            "line 2: the mean of parameter 1 is no number; it is read as 0\n"
            "line 2: the SD of parameter 1 is no number; it is read as 1\n"
            "line 5: the SD of parameter 4 is no number; it is read as 0");
}

TEST(PriorsFile, AnExponentThatHasLostADigitDoesNotGoOnWithATextBehindIt) {
  const Priors priors = test::PriorsOf(1, "T", 0.1, -1, "0123456789.5", PriorTerm("0.02"));
  const Priors back = ReadPriorsText(PriorsFileText(priors), 1).priors;
  EXPECT_EQ(back.PriorFirstSD(1), -1);
  EXPECT_EQ(back.PriorSecondMean(1), PriorTerm("0123456789.5"));
  EXPECT_EQ(ReadPriorsText(PriorsFileText(back), 1).priors.PriorFirstSD(1), -1);
}

TEST(PriorsFile, TwoTermsTypedWithManyCharactersAreReadAsTwo) {
  for (const std::string mean : {"0.1234567890123", "0.123456789", "0.5"}) {
    const Priors priors = test::PriorsOf(1, "T", 0.1, 0.02, mean, PriorTerm("0.0123456789"));
    const Priors back = ReadPriorsText(PriorsFileText(priors), 1).priors;
    EXPECT_EQ(back.PriorSecondMean(1), PriorTerm(mean));
    EXPECT_EQ(back.PriorSecondSD(1), PriorTerm("0.0123456789"));
  }
}

TEST(PriorsFile, ASecondTermTypedWithManyCharactersIsKeptWhole) {
  Priors priors = test::PriorsOf(1, "T", -200, 1);
  priors.PriorSecondMean(1) = "-0.123456789012";
  priors.PriorSecondSD(1) = 0.25;
  const Priors back = ReadPriorsText(PriorsFileText(priors), 1).priors;
  EXPECT_EQ(back.PriorFirstMean(1), -200);
  EXPECT_EQ(back.PriorFirstSD(1), 1);
  EXPECT_EQ(back.PriorSecondMean(1), PriorTerm("-0.123456789012"));
  EXPECT_EQ(NumberOf(back.PriorSecondSD(1)), 0.25);
}

TEST(PriorsFile, WrittenWithCutExponentsItIsReadByItsColumns) {
  const Priors read =
      ReadPriorsText("1\n  1   T- 1.000E-00 1.000E-00112345678901 2.500E-001   Uniform - bounded\n", 1).priors;
  EXPECT_EQ(read.PriorFirstMean(1), -1);
  EXPECT_EQ(read.PriorFirstSD(1), 0.1);
  EXPECT_EQ(read.PriorSecondMean(1), PriorTerm("12345678901"));
  EXPECT_EQ(NumberOf(read.PriorSecondSD(1)), 0.25);
}

TEST(PriorsFile, WritingAPriorAndReadingItBackKeepsTheCodeAndFourSignificantDigitsOfEachTerm) {
  const Priors priors = test::PriorsOf(2, "N", 0.123456, 98765.4);
  const Priors back = ReadPriorsText(PriorsFileText(priors), 2).priors;
  EXPECT_EQ(back.PriorCode(1), "N");
  EXPECT_EQ(back.PriorFirstMean(1), 0.1235);
  EXPECT_EQ(back.PriorFirstSD(1), 98770);
  EXPECT_EQ(back.PriorFirstMean(2), PriorUnset);
  EXPECT_EQ(back.PriorFirstSD(2), PriorUnset);
}

TEST(PriorsFile, LowerCaseCodesAreReadAsUpperCase) {
  EXPECT_EQ(ReadPriorsText("1\n  1   g 2.000E+000 5.000E-001\n", 1).priors.PriorCode(1), "G");
}

TEST(PriorsFile, LettersWhereNumbersBelongCountAsZero) {
  const Priors read = ReadPriorsText("1\n  1   n       mean         SD     Unused     Unused\n", 1).priors;
  EXPECT_EQ(read.PriorCode(1), "N");
  EXPECT_EQ(read.PriorFirstMean(1), 0);
  EXPECT_EQ(read.PriorFirstSD(1), 0);
}

TEST(PriorsFile, LinesBehindTheLastParameterAreNotLookedAt) {
  EXPECT_EQ(ReadPriorsText("1\n  1   E 2.000E+000 2.000E+000\nwhatever\n\xFF\n", 1).priors.PriorCode(1), "E");
}

TEST(PriorsFile, ALineThatEndsEarlyLeavesItsTermsEmpty) {
  const Priors priors = ReadPriorsText("2\n  1\n  2   t 1", 2).priors;
  EXPECT_EQ(priors.PriorCode(1), "");
  EXPECT_EQ(priors.PriorFirstMean(1), 0);
  EXPECT_EQ(priors.PriorCode(2), "T");
  EXPECT_EQ(priors.PriorFirstMean(2), 1);
  EXPECT_EQ(priors.PriorSecondMean(2), PriorTerm(""));
}

TEST(PriorsFile, AFirstTermTooLargeForANumberRefusesTheFileAndASecondOneIsText) {
  EXPECT_THROW(ReadPriorsText("1\n  1   U      1e999 1.000E-100     Unused     Unused", 1), RuntimeFailure);
  EXPECT_THROW(ReadPriorsText("1\n  1   U 1.000E-100      1e999", 1), RuntimeFailure);
  const Priors priors = ReadPriorsText("1\n  1   U 1.000E-100 1.000E-100     -1e999      1e999", 1).priors;
  EXPECT_EQ(priors.PriorSecondMean(1), PriorTerm("-1e999"));
  EXPECT_FALSE(IsUnset(priors.PriorSecondMean(1)));
  EXPECT_FALSE(IsUnset(priors.PriorSecondSD(1)));
}

TEST(PriorsFile, HostileBytesAreReadOrRefusedAndNothingWorse) {
  const std::string sound = ReadWholeFile(MERLANE_GOLDEN_DIR "/priors.pri");
  std::mt19937 random(20240601);
  const auto below = [&random](std::size_t n) { return static_cast<std::size_t>(random()) % n; };
  const Array1<double> values(34, 0.5);
  int read = 0, refused = 0;
  for (int trial = 0; trial < 3000; ++trial) {
    std::string bytes = sound;
    for (std::size_t changes = below(200); changes > 0; --changes)
      bytes[below(bytes.size())] = static_cast<char>(below(256));
    if (trial % 10 == 0) bytes.resize(below(bytes.size()));
    try {
      PriorsReading reading = ReadPriorsText(bytes, 34);
      if (reading.count != 34) continue;
      const Priors again = ReadPriorsText(PriorsFileText(reading.priors), 34).priors;
      EXPECT_EQ(again.PriorCode.Size(), 34);
      ++read;
      EXPECT_TRUE(std::isfinite(EvaluatePrior(values, 2, reading.priors)));
    } catch (const RuntimeFailure&) {
      ++refused;
    }
  }
  EXPECT_GT(read, 100);
  EXPECT_GT(refused, 100);
}

}  // namespace
}  // namespace merlane
