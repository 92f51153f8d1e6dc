// What a reading says of the file, beside its fixed messages.

#include "data/reading_report.h"

#include <gmock/gmock.h>

#include "base/runtime_failure.h"
#include "data/data_text.h"

namespace merlane {
namespace {

using test::Header;
using test::Reading;
using test::Record;
using ::testing::HasSubstr;
using ::testing::Not;

/// What is told of a file with these records below its header.
std::string Odd(const std::string& records, Reading r = Reading()) {
  r.Of(Header + "\n" + records);
  return r.report.oddities.Details(r.report.Lines);
}

TEST(ReadingReport, ASoundFileHasNothingOdd) {
  EXPECT_EQ(Odd(Record(1995, "A", 160, 170, -10, 5) + "\n" + Record("1995", "A", "165", "170", "-?", "5") +
                Record("1995", "B", "180", "170", "?", "5")),
            "");
}

TEST(ReadingReport, ACommaSeparatedFileIsToldAsAnotherKindOfFile) {
  const std::string told = Odd("1995,A,160,170,-10,5\n1995,B,161,170,-9,5\n\n");
  EXPECT_THAT(told, HasSubstr("2 lines do not fit the fixed columns (of 3): it may be another kind of file. They were "
                              "read by their columns all the same:\r\n"
                              "  line 2, column 9: \"6\" where a comma belongs\r\n"
                              "  line 3, column 9: \"6\" where a comma belongs\r\n"));
}

TEST(ReadingReport, AnAgeOrACountWithALetterInsideIsToldThoughItIsANumber) {
  EXPECT_EQ(Odd(Record("1995", "A", "160", "170", "-1e1", "1E1") + Record("1995", "A", "161", "170", "-9", "10")),
            "2 fields are no numbers:\r\n"
            "  line 2, columns 37 to 44: \"    -1e1\", read as -10\r\n"
            "  line 2, columns 46 to 53: \"     1E1\", read as 10\r\n");
}

TEST(ReadingReport, ARecordWithoutACodeIsTold) {
  EXPECT_EQ(
      Odd(Record(1995, "", 160, 170, -10, 5) + Record(1995, "", 161, 170, -9, 5) + Record(1995, "A", 160, 170, -10, 5)),
      "2 records have no code, and those behind each other are one brood:\r\n"
      "  line 2, columns 10 to 17: \"        \"\r\n"
      "  line 3, columns 10 to 17: \"        \"\r\n");
}

TEST(ReadingReport, WhatStandsBehindTheLastFieldIsTold) {
  const auto behind = [](const std::string& more) {
    std::string record = Record(1995, "A", 160, 170, -10, 5);
    return record.insert(record.size() - 1, more);
  };
  EXPECT_EQ(Odd(behind(",  ,  ")), "") << "empty fields";
  EXPECT_EQ(Odd(behind(", 9.9, 7")),
            "1 line goes on behind its last field, and that was not read:\r\n"
            "  line 2, from column 55 on: \" 9.9, 7\"\r\n");
  Reading named;
  named.Of(Header + ",       Depth\n" + behind(",         0.5, x"));
  EXPECT_EQ(named.report.oddities.Details(1),
            "1 line goes on behind its last field, and that was not read:\r\n"
            "  line 2, from column 68 on: \" x\"\r\n")
      << "a covariate that the heading names may be left unread";
}

TEST(ReadingReport, AFieldThatIsNoNumberIsToldWithWhatItWasReadAs) {
  const std::string told = Odd(Record("1995", "A", "1 60", "NA", "-10", "12a"));
  EXPECT_EQ(told,
            "3 fields are no numbers:\r\n"
            "  line 2, columns 19 to 26: \"    1 60\", read as 160\r\n"
            "  line 2, columns 28 to 35: \"      NA\", read as 0\r\n"
            "  line 2, columns 46 to 53: \"     12a\", read as 12\r\n");
}

TEST(ReadingReport, AVisitInPlaceOfTheHeadingIsTold) {
  Reading r;
  r.Of(Record(1995, "A", 160, 170, -10, 5) + Record(1995, "A", 165, 170, -5, 4));
  EXPECT_THAT(r.report.oddities.Details(1),
              HasSubstr("the first line holds a visit where a heading belongs, and was not read:\r\n  line 1, "));
}

TEST(ReadingReport, NegativeCountsAndMarksForDaysAreTold) {
  EXPECT_EQ(Odd(Record(1995, "A", -999, -999, -10, -3)),
            "2 values are -999, which stands for no value:\r\n"
            "  line 2, columns 19 to 26: \"    -999\", read as a day\r\n"
            "  line 2, columns 28 to 35: \"    -999\", read as a hatch day\r\n"
            "1 count is negative:\r\n"
            "  line 2, columns 46 to 53: \"      -3\", read as -3\r\n");
}

TEST(ReadingReport, ADayThatIsNotBehindTheOneBeforeIsTold) {
  EXPECT_EQ(Odd(Record("1995", "A", "160", "170", "?", "5") + Record("1995", "A", "155", "170", "?", "5")),
            "1 visit is on no later day than the one before:\r\n"
            "  line 3, code \"       A\": day 155 behind 160 of line 2\r\n");
}

TEST(ReadingReport, ACodeThatStandsAgainOrDiffersInCaseOrBlanksAloneIsTold) {
  const std::string told = Odd(Record(1995, "A 1", 160, 170, -10, 5) + Record(1995, "B", 160, 170, -10, 5) +
                               Record(1995, "A 1", 165, 170, -5, 5) + Record(1995, "a1", 166, 170, -4, 5));
  EXPECT_EQ(told,
            "1 code stands again behind other codes, as another brood:\r\n"
            "  line 4, columns 10 to 17: \"     A 1\", behind \"     A 1\" of line 2\r\n"
            "1 code differs from another in case, blanks, accents, zeros or marks alone, and is another brood:\r\n"
            "  line 5, columns 10 to 17: \"      a1\", behind \"     A 1\" of line 2\r\n");
}

TEST(ReadingReport, CodesAlikeButForZerosOrMarksAreTold) {
  const auto told = [](const char* a, const char* b) {
    return Odd(Record(1995, a, 171, 162, 9, 4) + Record(1995, b, 175, 162, 13, 4));
  };
  EXPECT_EQ(told("007", "7"),
            "1 code differs from another in case, blanks, accents, zeros or marks alone, and is another brood:\r\n"
            "  line 3, columns 10 to 17: \"       7\", behind \"     007\" of line 2\r\n");
  EXPECT_THAT(told("C01", "C1"), HasSubstr("1 code differs"));
  EXPECT_THAT(told("A_1", "A-1"), HasSubstr("1 code differs"));
  EXPECT_EQ(told("1-12", "11-2"), "") << "other numbers between the same digits";
  EXPECT_EQ(told("10", "1"), "");
}

TEST(ReadingReport, AnAgeThatIsNotTheDaysSinceTheHatchDayIsTold) {
  EXPECT_EQ(Odd(Record(1995, "C1", 163, 162, 1, 6) + Record(1995, "C1", 171, 162, 19, 4)),
            "1 age is not the days since the hatch day beside it (the age counts):\r\n"
            "  line 3, code \"      C1\": age 19, and 9 on day 171 with the hatch day 162\r\n");
  EXPECT_THAT(Odd(Record(1995, "C2", 171, 12, 9, 4) + Record(1995, "C2", 175, 12, 13, 4)),
              HasSubstr("2 ages are not the days since the hatch day beside them (the age counts):\r\n"
                        "  line 2, code \"      C2\": age 9, and 159 on day 171 with the hatch day 12\r\n"))
      << "a hatch day of which a digit is missing";
  EXPECT_THAT(Odd(Record(1995, "C3", 155, 162, 7, 4) + Record(1995, "C3", 175, 162, 13, 4)),
              HasSubstr("line 2, code \"      C3\": age 7, and -7 on day 155"))
      << "a sign that is missing";
}

TEST(ReadingReport, EggsOfUnknownAgeBehindTheHatchDayAreTold) {
  EXPECT_EQ(Odd(Record("1995", "A", "160", "165", "-?", "5") + Record("1995", "A", "170", "165", "-?", "4")),
            "1 age is not the days since the hatch day beside it (the age counts):\r\n"
            "  line 3, code \"       A\": eggs of unknown age, and 5 on day 170 with the hatch day 165\r\n");
  EXPECT_EQ(Odd(Record("1995", "A", "165", "165", "-?", "5") + Record("1995", "A", "170", "0", "-?", "4")),
            "1 hatch day is not that of the brood's visit before (the last one of a brood counts):\r\n"
            "  line 3, code \"       A\": hatch day 0 behind 165 of line 2\r\n")
      << "on the hatch day itself, and where none is told";
}

TEST(ReadingReport, HatchDaysOfOneBroodThatDifferAreTold) {
  EXPECT_EQ(Odd(Record(1995, "C2", 171, 162, 9, 4) + Record(1995, "C2", 175, 165, 10, 4)),
            "1 hatch day is not that of the brood's visit before (the last one of a brood counts):\r\n"
            "  line 3, code \"      C2\": hatch day 165 behind 162 of line 2\r\n");
}

TEST(ReadingReport, AHatchDayThatTheLastVisitOfABroodLacksIsTold) {
  EXPECT_EQ(Odd(Record(1995, "C2", 171, 162, 9, 4) + Record(1995, "C2", 175, 0, 13, 4)),
            "1 hatch day is not that of the brood's visit before (the last one of a brood counts):\r\n"
            "  line 3, code \"      C2\": hatch day 0 behind 162 of line 2\r\n");
}

TEST(ReadingReport, AgesOfOneBroodThatDoNotGoOnWithItsDaysAreTold) {
  EXPECT_EQ(Odd(Record(1995, "A", 160, 0, -10, 5) + Record(1995, "A", 165, 0, 5, 5)),
            "1 visit has a brood older by another number than that by which its day is later (the ages count):\r\n"
            "  line 3, code \"       A\": older by 15 than in line 2, and its day is later by 5\r\n");
}

TEST(ReadingReport, AgesDaysAndHatchDaysThatAgreeOrAreNotKnownAreNotTold) {
  EXPECT_EQ(Odd(Record(1995, "A", 160, 170, -10, 5) + Record(1995, "A", 175, 170, 5, 5)), "");
  EXPECT_EQ(Odd(Record("1995", "A", "160", "0", "-10", "5") + Record("1995", "A", "165", "0", "-5", "5") +
                Record("1995", "B", "160", "170", "?", "5") + Record("1995", "B", "166", "170", "?", "4") +
                Record("1995", "C", "160", "0", "-?", "5") + Record("1995", "C", "166", "165", "1", "4") +
                Record("1995", "D", "160", "165", "-4.5", "5") + Record("1995", "D", "166", "165", "1.25", "4")),
            "");
}

TEST(ReadingReport, WhatIsToldOfAgesChangesNothingThatIsRead) {
  Reading r;
  r.Of(Header + "\n" + Record(1995, "C1", 163, 162, 1, 6) + Record(1995, "C1", 171, 165, 19, 4));
  EXPECT_EQ(r.data.VisitAge, (std::vector<double>{1, 19}));
  EXPECT_EQ(r.data.VisitDate, (std::vector<std::int16_t>{163, 171}));
  EXPECT_EQ(r.data.HatchDate, (std::vector<std::int16_t>{165}));
  EXPECT_EQ(r.report.oddities.InPassing(),
            "Look at the data: 1 hatch day is not that of the brood's visit before (the last one of a brood counts), "
            "1 age is not the days since the hatch day beside it (the age counts)");
}

TEST(ReadingReport, RecordsOfABroodThatStandApartAreTold) {
  const std::string told = Odd(Record(1995, "A", 160, 170, -10, 5) + Record(1996, "A", 160, 170, -10, 5) +
                                   Record(1996, "A", 162, 170, -8, 5) + Record(1995, "A", 165, 170, -5, 4),
                               Reading(1995, 1996));
  EXPECT_THAT(told, HasSubstr("1 visit stands apart from its brood's visit before, and nothing is fitted between them "
                              "(sort the file by year, code and day):\r\n  line 5, "));
}

TEST(ReadingReport, ACovariateThatIsNotAsAtTheFirstVisitIsTold) {
  const auto with = [](const std::string& covariate, int day, int age) {
    return Record(1995, "A", day, 170, age, 5, {covariate});
  };
  EXPECT_EQ(Odd(with("0.5", 160, -10) + with(".50", 161, -9) + with("0,65", 162, -8) + with("7.5", 163, -7),
                Reading(1995, 1995, 1)),
            "1 field is no number:\r\n"
            "  line 4, columns 55 to 66: \"        0,65\", read as 0\r\n"
            "2 covariates are not as at the brood's first visit, which counts:\r\n"
            "  line 4, columns 55 to 66: \"        0,65\", and 0.5 at the first\r\n"
            "  line 5, columns 55 to 66: \"         7.5\", and 0.5 at the first\r\n");
}

TEST(ReadingReport, ACovariateThatIsNoNumberIsToldOfEachVisit) {
  Reading r(1995, 1995, 1);
  const auto with = [](const std::string& covariate, int day, int age) {
    return Record(1995, "A", day, 170, age, 5, {covariate});
  };
  EXPECT_EQ(Odd(with("0,65", 160, -10) + with("0,65", 161, -9) + with("12a", 162, -8), r),
            "3 fields are no numbers:\r\n"
            "  line 2, columns 55 to 66: \"        0,65\", read as 0\r\n"
            "  line 3, columns 55 to 66: \"        0,65\", read as 0\r\n"
            "  line 4, columns 55 to 66: \"         12a\", read as 12\r\n"
            "1 covariate is not as at the brood's first visit, which counts:\r\n"
            "  line 4, columns 55 to 66: \"         12a\", and 0 at the first\r\n");
  r.Of(Header + ",       Depth\n" + with("1", 160, -10) + with("NA", 161, -9));
  EXPECT_THAT(WhatWasRead(r.data, r.report), HasSubstr("Covariate 1 \"Depth\": 1 to 1, mean 1; no number in 1 record"));
}

TEST(ReadingReport, ADayThatIsNoneOfItsYearIsTold) {
  EXPECT_EQ(Odd(Record("1995", "A1", "161", "0", "-?", "5") + Record("1995", "A1", "1186", "0", "-?", "4") +
                Record("1995", "A2", "0", "720", "?", "6") + Record("1995", "A2", "366", "720", "?", "6")),
            "4 days are none of their years (of 1 to 366; behind a New Year they count on):\r\n"
            "  line 3, columns 19 to 26: \"    1186\", read as 1186\r\n"
            "  line 4, columns 19 to 26: \"       0\", read as 0\r\n"
            "  line 4, columns 28 to 35: \"     720\", read as 720\r\n"
            "  line 5, columns 28 to 35: \"     720\", read as 720\r\n");
}

TEST(ReadingReport, AnAgeThatIsNoNumberIsToldWhereItLeavesTheRecordOut) {
  Reading r;
  r.data.CensorEggs = true;
  EXPECT_EQ(Odd(Record("1995", "A", "160", "170", "-1O", "5") + Record("1995", "A", "165", "170", "-5", "5") +
                    Record("1995", "A", "171", "170", "1", "5"),
                r),
            "1 field is no number:\r\n"
            "  line 2, columns 37 to 44: \"     -1O\", read as -1\r\n");
}

TEST(ReadingReport, CodesAreCountedOnceAndMarksAreNotSummed) {
  Reading r;
  r.Of(Header + "\n" + Record(1995, "A", 160, 170, -10, 5) + Record(1995, "B", 160, 170, -10, -999) +
       Record(1995, "A", 165, 170, -5, 4));
  EXPECT_THAT(WhatWasRead(r.data, r.report), HasSubstr("3 records of 3 broods with 2 codes"));
  EXPECT_THAT(WhatWasRead(r.data, r.report), HasSubstr("counted: 9 eggs"));
}

TEST(ReadingReport, AQuestionMarkBehindAnythingButABlankOrAMinusIsTold) {
  EXPECT_EQ(Odd(Record("1995", "A", "160", "170", "5?", "5")),
            "1 field is no number:\r\n"
            "  line 2, columns 37 to 44: \"      5?\", read as an unknown age of a brood\r\n");
}

TEST(ReadingReport, EmptyNumbersAndDecimalsOfWholeOnesAreTold) {
  EXPECT_EQ(Odd(Record("1995", "A", "160.5", "170", "", "5")),
            "1 whole number has decimals:\r\n"
            "  line 2, columns 19 to 26: \"   160.5\", read as 160\r\n"
            "1 number is empty and was read as 0:\r\n"
            "  line 2, columns 37 to 44: \"        \", read as 0\r\n");
  EXPECT_EQ(Odd(Record("1995", "A", "160", "170", "-9.5", "5")), "") << "ages may have decimals";
}

TEST(ReadingReport, TheMarkForNoValueIsToldWhereSomebodyTypedIt) {
  Reading r(1995, 1995, 1);
  EXPECT_EQ(Odd(Record(1995, "A", 160, 170, -999, -999, {"-999"}), r),
            "3 values are -999, which stands for no value:\r\n"
            "  line 2, columns 37 to 44: \"    -999\", read as an unknown age of a clutch\r\n"
            "  line 2, columns 46 to 53: \"    -999\", read as no count\r\n"
            "  line 2, columns 55 to 66: \"        -999\", read as no value\r\n");
}

TEST(ReadingReport, OnlyTheFirstOfManyAreShown) {
  std::string records;
  for (int day = 161; day <= 167; ++day) records += Record("1995", "A", std::to_string(day) + "x", "170", "-?", "5");
  EXPECT_THAT(Odd(records), testing::AllOf(HasSubstr("7 fields are no numbers"), HasSubstr("\"    165x\""),
                                           Not(HasSubstr("166x")), HasSubstr("  and 2 more\r\n")));
}

TEST(ReadingReport, InPassingItIsSaidInAFewWords) {
  Reading r;
  r.Of(Header + "\n1995,A,160,170,-10,5\n" + Record("1995", "B", "16o", "170", "?", "5"));
  EXPECT_THAT(r.report.oddities.InPassing(),
              testing::StartsWith("Look at the data: 1 line does not fit the fixed columns, "));
  EXPECT_EQ(Reading().Of(Header + "\n").report.oddities.InPassing(), "");
}

TEST(ReadingReport, WhatIsOddIsKnownWhenTheReadingFails) {
  Reading r;
  EXPECT_THROW(r.Of(Header + "\n" + Record("1995", "A", "16o", "170", "-10", "5") +
                    Record("1995", "A", "161", "170", "-9", "6")),
               FatalDataError);
  EXPECT_THAT(r.report.oddities.Details(2), HasSubstr("16o"));
}

TEST(ReadingReport, AReplicateOfABootstrapIsNotLookedAt) {
  Reading r;
  r.Of(Header + "\n" + Record("1995", "A", "16o", "", "-10", "5"), true);
  EXPECT_FALSE(r.report.oddities.Any());
}

TEST(ReadingReport, WhatWasReadIsToldInFigures) {
  Reading r(1995, 1997, 2);
  r.data.CensorJuvs = true;
  r.Of(Header + ",       Depth,        Area,       Third\n" + Record(1995, "A", 160, 170, -10, 5, {"2", "0.5"}) +
       Record("1995", "A", "165", "170", "-?", "4", {"2", "0.5"}) + Record(1995, "A", 180, 170, 10, 3, {"2", "0.5"}) +
       Record(1996, "B", 170, 170, 0, 7, {"3", "1.5"}) + Record(1996, "C", 171, 170, -1, 2, {"", "1.5"}) + "\n" +
       Record(1999, "D", 171, 170, -1, 2, {"1", "1"}) + Record(1990, "E", 171, 170, -1, 2, {"1", "1"}));
  EXPECT_EQ(WhatWasRead(r.data, r.report),
            "3 records of 2 broods with 2 codes: 1 with eggs, 1 with juveniles\r\n"
            "Years (broods): 1995 (1), 1996 (1)\r\n"
            "Days 160 to 170; counted: 9 eggs, 7 juveniles; unknown ages: 1 of eggs, 0 of juveniles\r\n"
            "Passed over: 1 blank line, 1 record without a covariate, 1 censored record, 2 records of years other than "
            "1995 to 1997 (from 1990 to 1999, first in line 8)\r\n"
            "Covariate 1 \"Depth\": 2 to 3, mean 2.5; empty in 1 record\r\n"
            "Covariate 2 \"Area\": 0.5 to 1.5, mean 1\r\n"
            "The file has 3 covariates; 2 were read");
}

TEST(ReadingReport, ACovariateThatIsNoNumberIsCountedWithIt) {
  Reading r(1995, 1995, 1);
  r.Of(Header + ",       Depth\n" + Record(1995, "A", 160, 170, -10, 5, {"NA"}) +
       Record(1995, "B", 160, 170, -10, 5, {"0,65"}));
  EXPECT_THAT(WhatWasRead(r.data, r.report),
              HasSubstr("Covariate 1 \"Depth\": 0 to 0, mean 0; no number in 2 records"));
  EXPECT_THAT(r.report.oddities.Details(2), HasSubstr("\"        0,65\", read as 0"));
}

TEST(ReadingReport, NothingReadHasNoFigures) {
  EXPECT_EQ(WhatWasRead(Reading().Of(Header + "\n").data, {}),
            "0 records of 0 broods with 0 codes: 0 with eggs, 0 with "
            "juveniles");
}

}  // namespace
}  // namespace merlane
