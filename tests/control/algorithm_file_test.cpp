#include "control/algorithm_file.h"

#include <gmock/gmock.h>

#include "base/number_text.h"
#include "base/text.h"
#include "control/fuses.h"
#include "platform/files.h"
#include "platform/random_streams.h"

namespace merlane {
namespace {

using Failure = AlgorithmReading::Failure;

/// Data of a model of three parameters with something in every field.
AlgorithmData Three() {
  AlgorithmData a;
  a.NPAR = 3;
  a.Value = {1.23456789, -2, 0};
  a.Step = {0.1, 0, -0.25};
  a.Fuse = {"A", "~~", "AB"};
  a.ParName = {"first", "second", "third"};
  a.Tolerance = -0.001;
  a.MaxCalls = 12345;
  a.TerminalFreq = 20;
  a.FileFreq = 5;
  a.LogName = "run.tvl";
  a.StepReduction = 0.05;
  return a;
}

/// A record of three parameters, as it stands before anything is read.
AlgorithmData Fresh() {
  AlgorithmData a;
  a.NPAR = 3;
  return a;
}

std::string Text() { return AlgorithmText(Three(), AlgorithmForm::Menu); }

/// The text with line `number` (from 1) replaced.
std::string WithLine(int number, const std::string& line) {
  std::vector<std::string> lines = Lines(Text());
  lines[static_cast<std::size_t>(number) - 1] = line;
  std::string text;
  for (const std::string& each : lines) text += each + "\r\n";
  return text;
}

TEST(AlgorithmFileTest, DefaultsHaveNoStepAndNoFuse) {
  AlgorithmData a;
  a.NPAR = 34;
  SetDefaultAlgorithm(a);
  for (int i = 1; i <= 34; ++i) {
    const bool one = i == 1 || i == 2 || i == 16 || i == 18 || i == 20 || i == 22;
    EXPECT_EQ(a.Value(i), i == 3 || i == 4 ? 2 : one ? 1 : 0) << i;
    EXPECT_EQ(a.Step(i), 0) << i;
    EXPECT_EQ(a.Fuse(i), "~~") << i;
  }
  EXPECT_EQ(a.Tolerance, 0.0001);
  EXPECT_EQ(a.MaxCalls, 9999);
  EXPECT_EQ(a.TerminalFreq, 10);
  EXPECT_EQ(a.FileFreq, 0);
  EXPECT_EQ(a.LogName, "minimize.tvl");
  EXPECT_EQ(a.StepReduction, 0.1);
}

TEST(AlgorithmFileTest, WriterOfTheMenu) {
  EXPECT_EQ(Text(),
            "             3  Number of parameters\r\n"
            " 1.2345679E+00   1.0000000E-01  A  Value, step then link for first\r\n"
            "-2.0000000E+00   0.0000000E+00 ~~  Value, step then link for second\r\n"
            " 0.0000000E+00  -2.5000000E-01 AB  Value, step then link for third\r\n"
            "-1.0000000E-03  Tolerance for Convergence (+ for ABS, - for REL)\r\n"
            "         12345  Maximum # of function calls (simplex) or iterations (Marquardt)\r\n"
            "            20  Terminal output frequency\r\n"
            "             5  File output frequency\r\n"
            "       run.tvl  Name of output file\r\n"
            " 5.0000000E-02  Step size reduction fraction\r\n");
}

TEST(AlgorithmFileTest, WriterOfTheRankingHasAWiderFuseAndTwoOtherComments) {
  const std::vector<std::string> lines = Lines(AlgorithmText(Three(), AlgorithmForm::Ranking));
  EXPECT_EQ(lines[1], " 1.2345679E+00   1.0000000E-01   A  Value, step then link for: first");
  EXPECT_EQ(lines[3], " 0.0000000E+00  -2.5000000E-01  AB  Value, step then link for: third");
  EXPECT_EQ(lines[4], "-1.0000000E-03  Simplex limit (+ for ABS, - for REL)");
}

TEST(AlgorithmFileTest, GoldenFilesReadAndWriteBackByteForByte) {
  for (const char* name : {"fuses", "fuses_two_letters", "priors", "covariates_original", "large"}) {
    const std::string text = ReadWholeFile(std::string(MERLANE_GOLDEN_DIR "/") + name + ".alg");
    AlgorithmData a;
    a.NPAR = StrictInt16(Lines(text).front().substr(0, 14));
    ASSERT_EQ(ReadAlgorithm(text, a).failure, Failure::None) << name;
    const bool ranking = text.find("Simplex limit") != std::string::npos;
    a.LogName = Trim(a.LogName);
    a.ParName.Dimension(a.NPAR);
    for (int i = 1; i <= a.NPAR; ++i) a.ParName(i) = Lines(text)[static_cast<std::size_t>(i)].substr(ranking ? 63 : 61);
    EXPECT_EQ(AlgorithmText(a, ranking ? AlgorithmForm::Ranking : AlgorithmForm::Menu), text) << name;
  }
}

TEST(AlgorithmFileTest, SavedAndLoadedHoldsEightDigitsNoLoggingAndTheLogName) {
  AlgorithmData a = Fresh();
  ASSERT_EQ(ReadAlgorithm(Text(), a).failure, Failure::None);
  EXPECT_EQ(a.Value, (Array1<double>{1.2345679, -2, 0}));
  EXPECT_EQ(a.Step, (Array1<double>{0.1, 0, -0.25}));
  EXPECT_EQ(a.Tolerance, -0.001);
  EXPECT_EQ(a.MaxCalls, 12345);
  EXPECT_EQ(a.TerminalFreq, 20);
  EXPECT_EQ(a.FileFreq, 0);
  EXPECT_EQ(a.LogName, "run.tvl") << "without the blanks that fill its columns";
  EXPECT_EQ(a.StepReduction, 0.05);
}

TEST(AlgorithmFileTest, TwoLetterFuseOfTheMenuLosesItsFirstLetter) {
  AlgorithmData a = Fresh();
  ReadAlgorithm(Text(), a);
  EXPECT_EQ(a.Fuse, (Array1<std::string>{"A", "~~", "B"}));
}

TEST(AlgorithmFileTest, TwoLetterFuseOfTheRankingIsKept) {
  AlgorithmData a = Fresh();
  ReadAlgorithm(AlgorithmText(Three(), AlgorithmForm::Ranking), a);
  EXPECT_EQ(a.Fuse, (Array1<std::string>{"A", "~~", "AB"}));
}

TEST(AlgorithmFileTest, FuseXBecomesCapitalAndFuseOneIsNone) {
  for (const auto& [written, read] : {std::pair("x ", "X"), {"1 ", "~~"}, {"~~", "~~"}, {"A1", "~~"}, {"1A", "~~"}}) {
    AlgorithmData a = Fresh();
    const std::string line = std::string(" 1.0000000E+00   1.0000000E-01  ") + written + "  comment";
    ASSERT_EQ(ReadAlgorithm(WithLine(2, line), a).failure, Failure::None) << written;
    EXPECT_EQ(a.Fuse(1), read) << written;
  }
}

TEST(AlgorithmFileTest, TwoBlanksForAFuseEndTheLoad) {
  AlgorithmData a = Fresh();
  const AlgorithmReading reading = ReadAlgorithm(WithLine(3, " 1.0000000E+00   1.0000000E-01      comment"), a);
  EXPECT_EQ(reading.failure, Failure::BadContent);
  EXPECT_EQ(reading.details, "line 3: there is no fuse in columns 33 and 34");
}

TEST(AlgorithmFileTest, NumbersTooLongForTheirColumnsMoveTheRestAndReadBack) {
  AlgorithmData a = Three();
  a.Value(1) = a.Tolerance = -1e-100;
  a.Step(1) = -2e-200;
  const std::string text = AlgorithmText(a, AlgorithmForm::Menu);
  EXPECT_EQ(Lines(text)[1].substr(0, 35), "-1.0000000E-100 -2.0000000E-200  A ");
  AlgorithmData read = Fresh();
  EXPECT_EQ(ReadAlgorithm(text, read).failure, Failure::None);
  EXPECT_EQ(read.Value(1), -1e-100);
  EXPECT_EQ(read.Step(1), -2e-200);
  EXPECT_EQ(read.Fuse(1), a.Fuse(1));
  EXPECT_EQ(read.Tolerance, -1e-100);
}

TEST(AlgorithmFileTest, NegativeStepWithThreeDigitExponentKeepsItsSign) {
  AlgorithmData a = Three();
  a.Step(1) = -1e-100;
  const std::string text = AlgorithmText(a, AlgorithmForm::Menu);
  EXPECT_EQ(Lines(text)[1].substr(14, 16), " -1.0000000E-100");
  ReadAlgorithm(text, a);
  EXPECT_EQ(a.Step(1), -1e-100);
}

TEST(AlgorithmFileTest, BlankLineAtTheEndLoads) {
  AlgorithmData a = Fresh();
  EXPECT_EQ(ReadAlgorithm(Text() + "\r\n\r\n", a).failure, Failure::None);
}

TEST(AlgorithmFileTest, OneMoreLineFailsWithTooManyAndTheRecordIsReplaced) {
  AlgorithmData a = Fresh();
  a.FileFreq = 3;
  EXPECT_EQ(ReadAlgorithm(Text() + "\r\nmore\r\n", a).failure, Failure::TooManyLines);
  EXPECT_EQ(a.Value(1), 1.2345679);
  EXPECT_EQ(a.StepReduction, 0.05);
  EXPECT_EQ(a.FileFreq, 5);
}

TEST(AlgorithmFileTest, LineOfBlanksBehindTheOptionsIsOneTooMany) {
  AlgorithmData a = Fresh();
  EXPECT_EQ(ReadAlgorithm(Text() + "  \r\n", a).failure, Failure::TooManyLines);
}

TEST(AlgorithmFileTest, FileThatEndsBeforeTheStepReductionFailsWithTooFew) {
  AlgorithmData a = Fresh();
  std::string text = Text();
  text.resize(text.rfind(" 5.0000000E-02"));
  EXPECT_EQ(ReadAlgorithm(text, a).failure, Failure::TooFewLines);
  EXPECT_EQ(a.LogName, "run.tvl");
  EXPECT_EQ(a.StepReduction, 0.1);
}

TEST(AlgorithmFileTest, EmptyFileHasTooFewLines) {
  AlgorithmData a = Fresh();
  EXPECT_EQ(ReadAlgorithm("", a).failure, Failure::TooFewLines);
}

TEST(AlgorithmFileTest, FaultInLineOneIsInappropriate) {
  AlgorithmData a = Fresh();
  EXPECT_EQ(ReadAlgorithm(WithLine(1, "         three  Number of parameters"), a).failure, Failure::BadContent);
}

TEST(AlgorithmFileTest, OtherParameterCountChangesNothing) {
  AlgorithmData a = Three();
  a.NPAR = 4;
  const AlgorithmReading reading = ReadAlgorithm(Text(), a);
  EXPECT_EQ(reading.failure, Failure::ParameterCount);
  EXPECT_EQ(reading.fileCount, 3);
  EXPECT_EQ(a.Value, Three().Value);
}

TEST(AlgorithmFileTest, BadNumberInTheMiddleIsInappropriateAndWhatCameBeforeStays) {
  AlgorithmData a = Fresh();
  const AlgorithmReading reading = ReadAlgorithm(WithLine(3, "-2.0000000E+00   0.1x           ~~"), a);
  EXPECT_EQ(reading.failure, Failure::BadContent);
  EXPECT_EQ(a.Value, (Array1<double>{1.2345679, -2, 0}));
  EXPECT_EQ(a.Step, (Array1<double>{0.1, 0, 0}));
  EXPECT_EQ(a.Fuse, (Array1<std::string>{"A", "~~", "~~"}));
}

TEST(AlgorithmFileTest, ParametersNotReachedAreFusedWithNobodyIfTheRunGoesOn) {
  AlgorithmData a = Fresh();
  ReadAlgorithm(WithLine(2, "x"), a);
  RunState state;
  state.algorithm = a;
  BuildFuseGroups(state);
  EXPECT_EQ(state.fuses.FuseCount, 0);
}

TEST(AlgorithmFileTest, BadNumberInTheLastLineIsTooFewUnlessABlankLineFollows) {
  const std::string text = WithLine(10, "  none  Step size reduction fraction");
  AlgorithmData a = Fresh();
  EXPECT_EQ(ReadAlgorithm(text, a).failure, Failure::TooFewLines);
  EXPECT_EQ(ReadAlgorithm(text + "\r\n", a).failure, Failure::BadContent);
}

TEST(AlgorithmFileTest, EmptyFieldAndOverflowOfAnI16AreErrors) {
  AlgorithmData a = Fresh();
  EXPECT_EQ(ReadAlgorithm(WithLine(5, ""), a).failure, Failure::BadContent);
  EXPECT_EQ(ReadAlgorithm(WithLine(7, "         40000  Terminal output frequency"), a).failure, Failure::BadContent);
}

TEST(AlgorithmFileTest, WholeNumbersAreRoundedHalfToEven) {
  AlgorithmData a = Fresh();
  ASSERT_EQ(ReadAlgorithm(WithLine(7, "          12.5"), a).failure, Failure::None);
  EXPECT_EQ(a.TerminalFreq, 12);
}

TEST(AlgorithmFileTest, LinesMayEndWithLineFeedAlone) {
  std::string text = Text();
  std::erase(text, '\r');
  AlgorithmData a = Fresh();
  EXPECT_EQ(ReadAlgorithm(text, a).failure, Failure::None);
}

TEST(AlgorithmFileTest, BrokenFilesNeverDoMoreThanFail) {
  RandomStream random(20240601, 0);
  const auto upTo = [&](std::size_t n) { return static_cast<std::size_t>(random.Uniform() * static_cast<double>(n)); };
  int failures = 0;
  for (int round = 0; round < 5000; ++round) {
    std::string text = Text();
    for (std::size_t change = upTo(4) + 1; change > 0; --change) {
      const std::size_t at = upTo(text.size());
      switch (upTo(4)) {
        case 0:
          text[at] = static_cast<char>(upTo(256));
          break;
        case 1:
          text.erase(at, upTo(40));
          break;
        case 2: {
          const std::size_t count = upTo(20);
          text.insert(at, std::string(count, "0E+\n~ "[upTo(6)]));
          break;
        }
        default:
          text.resize(at + 1);
      }
    }
    AlgorithmData a = Fresh();
    const bool failed = ReadAlgorithm(text, a).failure != Failure::None;
    if (failed) ++failures;
    EXPECT_TRUE(a.Value.Size() == a.Fuse.Size() && (failed || a.Value.Size() == 3));
  }
  EXPECT_GT(failures, 1000);
  EXPECT_LT(failures, 5000);
}

TEST(AlgorithmFileTest, SmallToleranceIsRaisedAndZeroStays) {
  AlgorithmData a;
  for (const auto& [before, after] : {std::pair(1e-9, 1e-6), {-1e-9, -1e-6}, {0.0, 0.0}}) {
    a.Tolerance = before;
    EXPECT_TRUE(RaiseTolerance(a));
    EXPECT_EQ(a.Tolerance, after);
  }
  a.Tolerance = -1e-6;
  EXPECT_FALSE(RaiseTolerance(a));
}

TEST(AlgorithmFileTest, LogNameIsShortenedFromBehind) {
  EXPECT_EQ(ShortLogName("minimize.tvl"), "minimize.tvl");
  EXPECT_EQ(ShortLogName("fourteen_c.tvl"), "fourteen_c.tvl");
  EXPECT_EQ(ShortLogName("runs/first.tvl"), "runs/first.tvl") << "short enough with its folder";
  EXPECT_EQ(ShortLogName("C:\\runs\\lake\\first.tvl"), "first.tvl");
  EXPECT_EQ(ShortLogName("/home/anna/first.tvl"), "first.tvl");
  EXPECT_EQ(ShortLogName("a_very_long_name.tvl"), "_long_name.tvl");
}

TEST(AlgorithmFileTest, ShortNameDropsFolderAndLastFourCharacters) {
  EXPECT_EQ(AlgorithmShortName("/data/lake.alg", "old"), "lake");
  EXPECT_EQ(AlgorithmShortName("C:\\data\\lake.backup", "old"), "lake.ba");
  EXPECT_EQ(AlgorithmShortName("/data/abc", "old"), "");
  EXPECT_EQ(AlgorithmShortName("lake.alg", "old"), "old");
}

}  // namespace
}  // namespace merlane
