#include "data/brood_reader.h"

#include <chrono>

#include "base/runtime_failure.h"
#include "data/data_text.h"

namespace merlane {
namespace {

using test::Header;
using test::Reading;
using test::Record;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

/// The message of the fatal error that reading the text ends with.
Message FatalMessage(const std::string& text, Reading reading = Reading()) {
  try {
    reading.Of(text);
  } catch (const FatalDataError& error) {
    return error.message;
  }
  ADD_FAILURE() << "no fatal error";
  return {};
}

/// What the failure says that reading the text ends with.
std::string FailureOf(const std::string& text, Reading reading = Reading()) {
  try {
    reading.Of(text);
  } catch (const RuntimeFailure& failure) {
    return failure.what();
  }
  ADD_FAILURE() << "no failure";
  return {};
}

TEST(BroodReader, ReadsTheExampleOfTheFormat) {
  const std::string text =
      "    Year,    Code,    DofY,HatchDay,BroodAge,   #EorJ,    Year1995,    Year1996,   Lake_Prod\n"
      "    1995,  ORCBLX,     161,     172,     -11,       5,           1,           0,      0.6485\n"
      "    1995,  ORCBLX,     186,     172,      14,       4,           1,           0,      0.6485\n";
  Reading r(1995, 1996, 3);
  const BroodData& d = r.Of(text).data;
  EXPECT_THAT(r.messages, IsEmpty());
  EXPECT_EQ(d.CovariateName, (Array1<std::string>{"Year1995", "Year1996", "Lake_Prod"}));
  EXPECT_THAT(d.BroodsInYear, ElementsAre(1, 0));
  EXPECT_THAT(d.ClutchesInYear, ElementsAre(1, 0));
  EXPECT_THAT(d.JuvBroodsInYear, ElementsAre(1, 0));
  EXPECT_THAT(d.BroodCode, ElementsAre("  ORCBLX"));
  EXPECT_THAT(d.VisitYear, ElementsAre(1995, 1995));
  EXPECT_THAT(d.VisitDate, ElementsAre(161, 186));
  EXPECT_THAT(d.VisitAge, ElementsAre(-11, 14));
  EXPECT_THAT(d.VisitStage, ElementsAre(-1, 1));
  EXPECT_THAT(d.VisitCount, ElementsAre(5, 4));
  EXPECT_THAT(d.HatchDate, ElementsAre(172));
  EXPECT_THAT(d.Covariate, ElementsAre(1, 0, 0.6485));
  EXPECT_EQ(d.MaxBroods, 1);
  EXPECT_EQ(d.MaxVisits, 2);
  EXPECT_EQ(d.TotalRecords, 2);
  EXPECT_EQ(d.DistinctCodes, 1);
  EXPECT_EQ(d.EggTotal, 5);
  EXPECT_EQ(d.JuvTotal, 4);
  EXPECT_EQ(d.MinDate, 160);
  EXPECT_EQ(d.MaxDate, 190);
  EXPECT_EQ(d.MaxCount, 6);
  EXPECT_EQ(d.MinAge, -12);
  EXPECT_TRUE(d.AllClutchAgesKnown && d.AllBroodAgesKnown);
}

TEST(BroodReader, AFileWithTheHeaderAloneSaysTwiceThatNothingWasRead) {
  Reading r;
  r.Of(Header + "\n");
  EXPECT_THAT(r.Titles(), ElementsAre("No records read", "No records read"));
  EXPECT_EQ(r.messages[0].text, "Missing clutch, brood or covariate data has caused all records to be skipped");
  EXPECT_EQ(r.messages[0].style, style::Critical);
  EXPECT_THAT(r.data.BroodsInYear, ElementsAre(0));
  EXPECT_EQ(r.data.Visits(), 0);
  EXPECT_EQ(r.data.MaxBroods, 0);
  EXPECT_EQ(r.data.MaxVisits, 0);
  EXPECT_EQ(r.data.MinDate, 366);
}

TEST(BroodReader, NothingReadIsToldInABootstrapToo) {
  Reading r;
  r.Of(Header, true);
  EXPECT_EQ(r.messages.size(), 2u);
}

TEST(BroodReader, TheDetailsOfNothingReadSayWhy) {
  Reading r;
  r.data.CensorEggs = true;
  r.Of(Header + "\n\n" + Record(1994, "A", 160, 170, 1, 3) + Record(1995, "A", 160, 170, -10, 3));
  ASSERT_EQ(r.messages.size(), 2u);
  EXPECT_EQ(
      r.messages[1].details,
      "3 lines behind the header: 1 blank, 0 without a covariate, 1 censored, 1 of years other than 1995 to 1995");
}

TEST(BroodReader, AClutchOfEggRecordsVanishesWhenEggsAreCensoredAndAHatchDayRecordStays) {
  const std::string text = Header + "\n" + Record(1995, "A", 169, 170, -1, 3) + Record(1995, "B", 169, 170, -1, 5) +
                           Record(1995, "B", 170, 170, 0, 4) + Record(1995, "C", 175, 170, 5, 4);
  Reading eggs;
  eggs.data.CensorEggs = true;
  eggs.Of(text);
  EXPECT_THAT(eggs.data.BroodCode, ElementsAre("       B", "       C"));
  EXPECT_THAT(eggs.data.VisitAge, ElementsAre(0, 5));
  EXPECT_THAT(eggs.data.ClutchesInYear, ElementsAre(0));
  Reading juvs;
  juvs.data.CensorJuvs = true;
  juvs.Of(text);
  EXPECT_THAT(juvs.data.VisitAge, ElementsAre(-1, -1, 0));
}

TEST(BroodReader, UnknownAgesSurviveBothCensorings) {
  const std::string text =
      Header + "\n" + Record("1995", "A", "160", "170", "-?", "5") + Record("1995", "B", "180", "170", "?", "4");
  Reading r;
  r.data.CensorEggs = r.data.CensorJuvs = true;
  r.Of(text);
  EXPECT_THAT(r.data.VisitStage, ElementsAre(-1, 1));
}

TEST(BroodReader, ARecordOutsideTheYearsIsSkippedWithoutAMessageAndDoesNotEndTheBrood) {
  Reading r;
  r.Of(Header + "\n" + Record(1995, "A", 160, 170, -10, 5) + Record(1994, "B", 161, 170, -9, 5) +
       Record(1995, "A", 162, 170, -8, 5));
  EXPECT_THAT(r.messages, IsEmpty());
  EXPECT_THAT(r.data.VisitsOf, ElementsAre(2));
}

TEST(BroodReader, TheSameCodeInTwoYearsIsTwoBroodsAndCountsOnce) {
  Reading r(1995, 1996);
  r.Of(Header + "\n" + Record(1995, "A", 160, 170, -10, 5) + Record(1995, "B", 160, 170, -10, 5) +
       Record(1996, "A", 160, 170, -10, 5));
  EXPECT_THAT(r.data.BroodsInYear, ElementsAre(2, 1));
  EXPECT_EQ(r.data.DistinctCodes, 2);
}

TEST(BroodReader, ACodeThatReturnsIsANewBroodAndCountsTwiceWithinItsYear) {
  Reading r;
  r.Of(Header + "\n" + Record(1995, "A", 160, 170, -10, 5) + Record(1995, "B", 160, 170, -10, 5) +
       Record(1995, "A", 165, 170, -5, 9));
  EXPECT_THAT(r.data.VisitsOf, ElementsAre(1, 1, 1));
  EXPECT_EQ(r.data.DistinctCodes, 3);
}

TEST(BroodReader, CodesBehindAnEmptyOneAreNotFoundByLaterYears) {
  Reading r(1995, 1996);
  r.Of(Header + "\n" + Record(1995, "A", 160, 170, -10, 5) + "    1995,\n" + Record(1995, "B", 160, 170, -10, 5) +
       Record(1996, "A", 160, 170, -10, 5) + Record(1996, "B", 160, 170, -10, 5));
  EXPECT_EQ(r.data.DistinctCodes, 4) << "A, the empty code, B, and B again";
  EXPECT_THAT(r.data.BroodCode, ElementsAre("       A", "", "       B", "       A", "       B"));
}

TEST(BroodReader, AClutchAgeWrittenAsAQuestionMarkLeavesTheAgeMissing) {
  Reading r;
  r.Of(Header + "\n" + Record("1995", "A", "160", "170", "-?", "5") + Record("1995", "A", "165", "170", "-?", "5"));
  EXPECT_THAT(r.data.VisitStage, ElementsAre(-1, -1));
  EXPECT_THAT(r.data.VisitAge, ElementsAre(-999.0, -999.0));
  EXPECT_THAT(r.data.ClutchAgeKnown, ElementsAre(0));
  EXPECT_THAT(r.data.BroodAgeKnown, ElementsAre(1));
  EXPECT_FALSE(r.data.AllClutchAgesKnown);
  EXPECT_TRUE(r.data.AllBroodAgesKnown);
  ASSERT_EQ(r.messages.size(), 1u) << "told once, however many records lack their age";
  EXPECT_EQ(r.messages[0].title, "At least one clutch lacks clutch age data!");
  EXPECT_EQ(r.messages[0].text, "Mortality rates for clutches cannot be modelled as a function of clutch age.");
  EXPECT_EQ(r.messages[0].style, style::Information);
  EXPECT_EQ(r.messages[0].details, "line 2, columns 37 to 44: \"      -?\"");
}

TEST(BroodReader, ABroodAgeWrittenAsAQuestionMarkIsToldOnTwoLines) {
  Reading r;
  r.Of(Header + "\n" + Record("1995", "A", "180", "170", "?", "5"));
  EXPECT_THAT(r.data.VisitStage, ElementsAre(1));
  EXPECT_THAT(r.data.BroodAgeKnown, ElementsAre(0));
  ASSERT_EQ(r.messages.size(), 1u);
  EXPECT_EQ(r.messages[0].title, "At least one brood lacks brood age data!");
  EXPECT_EQ(r.messages[0].text,
            "Mortality rates for broods cannot be modelled as a function of brood age.\r\n"
            "Analyses using age as a covariate are unavailable.");
}

TEST(BroodReader, AQuestionMarkBehindAnythingElseIsABroodWithoutAMessage) {
  Reading r;
  r.Of(Header + "\n" + Record("1995", "A", "180", "170", "5?", "5"));
  EXPECT_THAT(r.data.VisitStage, ElementsAre(1));
  EXPECT_THAT(r.data.VisitAge, ElementsAre(-999.0));
  EXPECT_THAT(r.data.BroodAgeKnown, ElementsAre(1));
  EXPECT_THAT(r.messages, IsEmpty());
}

TEST(BroodReader, AQuestionMarkInAnyOtherColumnIsNoUnknownAge) {
  Reading r;
  r.Of(Header + "\n" + Record("1995", "A", "180", "170", "? ", "5") + Record("1995", "B", "180", "170", "-3?  ", "5"));
  EXPECT_THAT(r.data.VisitAge, ElementsAre(0, -3));
  EXPECT_THAT(r.data.VisitStage, ElementsAre(1, -1));
  EXPECT_TRUE(r.data.AllClutchAgesKnown && r.data.AllBroodAgesKnown);
}

TEST(BroodReader, UnknownAgesAreNotToldInABootstrap) {
  Reading r;
  r.Of(Header + "\n" + Record("1995", "A", "180", "170", "-?", "5") + Record("1995", "B", "180", "170", "?", "5"),
       true);
  EXPECT_THAT(r.messages, IsEmpty());
  EXPECT_FALSE(r.data.AllClutchAgesKnown || r.data.AllBroodAgesKnown);
}

TEST(BroodReader, TheOrderTestSkipsAVisitOfUnknownAgeForAgesButNotForCounts) {
  const auto text = [](const std::string& count) {
    return Header + "\n" + Record("1995", "A", "160", "170", "-10", "5") +
           Record("1995", "A", "165", "170", "-?", count) + Record("1995", "A", "166", "170", "-10", "3");
  };
  EXPECT_NO_THROW(Reading().Of(text("4")));
  EXPECT_EQ(FatalMessage(text("6")).text,
            "An increase in clutch or brood size was encountered at visit #2 of brood #1 in year 1995");
}

TEST(BroodReader, ABlankCodeWithABlankCovariateIsNotSkipped) {
  Reading r(1995, 1995, 1);
  r.Of(Header + "\n" + Record(1995, "", 160, 170, -10, 5, {""}) + Record(1995, "B", 160, 170, -10, 5, {"2.5"}));
  EXPECT_THAT(r.messages, IsEmpty());
  EXPECT_THAT(r.data.BroodCode, ElementsAre("        ", "       B"));
  EXPECT_THAT(r.data.Covariate, ElementsAre(0, 2.5));
}

TEST(BroodReader, ARecordThatLacksAnyCovariateIsDroppedWholeAndToldOnce) {
  Reading r(1995, 1995, 2);
  r.Of(Header + "\n" + Record(1995, "A", 160, 170, -10, 5, {"1", ""}) + Record(1995, "A", 162, 170, -8, 5, {"1"}) +
       Record(1995, "B", 160, 170, -10, 5, {"1", "2"}));
  EXPECT_THAT(r.data.BroodCode, ElementsAre("       B"));
  ASSERT_EQ(r.messages.size(), 1u);
  EXPECT_EQ(r.messages[0].title, "Some records skipped");
  EXPECT_EQ(r.messages[0].text, "Missing brood covariate data has caused data for at least one brood to be skipped");
  EXPECT_THAT(r.messages[0].details, HasSubstr("line 2, columns 68 to 79"));
}

TEST(BroodReader, SkippedRecordsAreNotToldInABootstrap) {
  Reading r(1995, 1995, 1);
  r.Of(Header + "\n" + Record(1995, "A", 160, 170, -10, 5) + Record(1995, "B", 160, 170, -10, 5, {"1"}), true);
  EXPECT_THAT(r.messages, IsEmpty());
  EXPECT_THAT(r.data.BroodCode, ElementsAre("       B"));
}

TEST(BroodReader, DaysCountsAndAgesAreRoundedOutwardsForPlotsUnlessTheyAreRoundAlready) {
  Reading r;
  r.Of(Header + "\n" + Record("1995", "A", "153", "170", "-17", "7") + Record("1995", "A", "166", "170", "-4", "3"));
  EXPECT_EQ(r.data.MinDate, 150);
  EXPECT_EQ(r.data.MaxDate, 170);
  EXPECT_EQ(r.data.MaxCount, 8);
  EXPECT_EQ(r.data.MinAge, -18);
  r.Of(Header + "\n" + Record("1995", "A", "155", "170", "-18", "8") + Record("1995", "A", "165", "170", "-5", "3"));
  EXPECT_EQ(r.data.MinDate, 155);
  EXPECT_EQ(r.data.MaxDate, 165);
  EXPECT_EQ(r.data.MaxCount, 8);
  EXPECT_EQ(r.data.MinAge, -18);
}

TEST(BroodReader, TheLastDayOfALeapYearIsNotBelowTheLimitThatDaysBeginWith) {
  Reading r;
  r.Of(Header + "\n" + Record("1995", "A", "366", "170", "7", "7"));
  EXPECT_EQ(r.data.MinDate, 366);
  EXPECT_EQ(r.data.MaxDate, 370);
}

TEST(BroodReader, ADayBelow0IsRoundedTowards0) {
  Reading r;
  r.Of(Header + "\n" + Record("1995", "A", "-7", "10", "-17", "7"));
  EXPECT_EQ(r.data.MinDate, -5);
  EXPECT_EQ(r.data.MaxDate, 0);
}

TEST(BroodReader, ARecordOfAnUnwantedYearMayCauseTheMessageOnSkippedRecords) {
  Reading r(1995, 1995, 1);
  r.Of(Header + "\n" + Record(1990, "A", 160, 170, -10, 5) + Record(1995, "B", 160, 170, -10, 5, {"1"}));
  EXPECT_THAT(r.Titles(), ElementsAre("Some records skipped"));
}

TEST(BroodReader, ACensoredRecordIsNeverLookedAtForItsYear) {
  Reading r;
  r.data.CensorEggs = true;
  EXPECT_NO_THROW(r.Of(Header + "\n" + Record("99999", "A", "160", "170", "-10", "5")));
  EXPECT_THAT(FailureOf(Header + "\n" + Record("99999", "A", "160", "170", "-10", "5")),
              HasSubstr("line 2, columns 1 to 8: \"   99999\""));
}

TEST(BroodReader, CovariatesComeFromTheFirstRecordAndTheHatchDayFromTheLast) {
  Reading r(1995, 1995, 1);
  r.Of(Header + "\n" + Record(1995, "A", 160, 170, -10, 5, {"1"}) + Record(1995, "A", 165, 172, -7, 5, {"2"}));
  EXPECT_THAT(r.data.Covariate, ElementsAre(1));
  EXPECT_THAT(r.data.HatchDate, ElementsAre(172));
}

TEST(BroodReader, BlankFieldsAre0AndABlankAgeMakesABroodRecord) {
  Reading r;
  r.Of(Header + "\n" + Record("1995", "A", "", "", "", ""));
  EXPECT_THAT(r.data.VisitDate, ElementsAre(0));
  EXPECT_THAT(r.data.HatchDate, ElementsAre(0));
  EXPECT_THAT(r.data.VisitAge, ElementsAre(0));
  EXPECT_THAT(r.data.VisitStage, ElementsAre(1));
  EXPECT_THAT(r.data.VisitCount, ElementsAre(0));
}

TEST(BroodReader, NumbersAreReadLenientlyAndRoundHalfToEven) {
  Reading r;
  r.Of(Header + "\n" + Record("1995.4x", "A", "160.5", "1E2", "- 7.5", "1 2"));
  EXPECT_THAT(r.data.VisitYear, ElementsAre(1995));
  EXPECT_THAT(r.data.VisitDate, ElementsAre(160));
  EXPECT_THAT(r.data.HatchDate, ElementsAre(100));
  EXPECT_THAT(r.data.VisitAge, ElementsAre(-7.5));
  EXPECT_THAT(r.data.VisitCount, ElementsAre(12));
  EXPECT_EQ(r.data.MinAge, -8) << "(truncate(-7.5 / 2) - 1) x 2";
}

TEST(BroodReader, AFieldIsReadByPositionAndCommasAreNotLookedAt) {
  Reading r;
  r.Of(Header + "\n1995,A,160,170,-10,5\n");
  EXPECT_THAT(r.data.BroodCode, ElementsAre("0,170,-1"));
  EXPECT_THAT(r.data.VisitDate, ElementsAre(0));
}

TEST(BroodReader, AnAgeTypedAs999BelowZeroIsAMissingAgeOfAClutch) {
  Reading r;
  r.Of(Header + "\n" + Record(1995, "A", 160, 170, -999, 5) + Record(1995, "A", 161, 170, -999, 5));
  EXPECT_THAT(r.data.VisitStage, ElementsAre(-1, -1));
  EXPECT_TRUE(r.data.AllClutchAgesKnown);
  EXPECT_EQ(r.data.MinAge, 0);
}

TEST(BroodReader, ACountTypedAs999BelowZeroFallsOutOfTheOrderTest) {
  Reading r;
  EXPECT_NO_THROW(r.Of(Header + "\n" + Record(1995, "A", 160, 170, -10, 5) + Record(1995, "A", 161, 170, -10, -999) +
                       Record(1995, "A", 161, 170, -10, 7)));
}

TEST(BroodReader, ACountThatRisesIsFatal) {
  const Message m = FatalMessage(Header + "\n" + Record(1995, "A", 160, 170, -10, 5) +
                                 Record(1995, "B", 160, 170, -10, 5) + Record(1995, "B", 161, 170, -9, 6));
  EXPECT_EQ(m.title, "Problem reading data - analysis stops");
  EXPECT_EQ(m.text, "An increase in clutch or brood size was encountered at visit #2 of brood #2 in year 1995");
  EXPECT_EQ(m.style, style::Critical);
  EXPECT_EQ(m.details, "line 4, code \"       B\": 6 behind 5 of line 3");
}

TEST(BroodReader, AnAgeThatStandsStillIsFatal) {
  const Message m = FatalMessage(Header + "\n" + Record(1995, "A", 160, 170, -10, 5) +
                                 Record("1995", "A", "161", "170", "-10.0", "5"));
  EXPECT_EQ(m.text, "An non-increase in brood age was encountered at visit #2 of brood #1 in year 1995");
  EXPECT_EQ(m.details, "line 3, code \"       A\": age -10 behind -10 of line 2");
}

TEST(BroodReader, ABootstrapDoesNotTestTheOrder) {
  Reading r;
  EXPECT_NO_THROW(
      r.Of(Header + "\n" + Record(1995, "A", 160, 170, -10, 5) + Record(1995, "A", 160, 170, -10, 6), true));
}

TEST(BroodReader, Visit32001OfABroodIsFatalWithTheVisitsMessage) {
  std::string text = Header + "\n";
  for (int i = 1; i <= 32000; ++i) text += Record("1995", "A", "1", "170", "-?", "5");
  EXPECT_NO_THROW(Reading().Of(text));
  const Message m = FatalMessage(text + Record("1995", "A", "1", "170", "-?", "5"));
  EXPECT_EQ(m.title, "Problem reading data - analysis stops");
  EXPECT_EQ(m.text, "The number of observations (visits) for a single brood exceeds the maximum of 32000");
  EXPECT_THAT(m.details, HasSubstr("line 32002"));
}

TEST(BroodReader, Brood32001OfAYearIsFatalWithTheBroodsMessage) {
  std::string text = Header + "\n";
  for (int i = 1; i <= 32000; ++i) text += Record(1995, std::to_string(i), 160, 170, -10, 5);
  Reading r(1995, 1996);
  EXPECT_NO_THROW(r.Of(text + Record(1996, "1", 160, 170, -10, 5)));
  EXPECT_EQ(r.data.MaxBroods, 32000);
  EXPECT_EQ(FatalMessage(text + Record(1995, "last", 160, 170, -10, 5)).text,
            "The number of broods observed (visited) in 1995 exceeds the maximum of 32000");
}

TEST(BroodReader, MoreVisitsThanThereIsRoomForAreToldWithTheLine) {
  // Each year has the same brood by turns, so that each brood gets as many places as there are records.
  constexpr int Years = 700, Records = 31900;
  std::string text = Header + "\n";
  for (int i = 0; i < Records; ++i) text += Record(std::to_string(1000 + i % Years), "A", "1", "170", "-?", "5");
  Reading r(1000, 1000 + Years - 1);
  EXPECT_THAT([&] { r.Of(text); }, testing::ThrowsMessage<RuntimeFailure>(testing::AllOf(
                                       HasSubstr("there is room for 20000000 visits"), HasSubstr("line "))));
}

TEST(BroodReader, TooManyVisitsOrBroodsOfABootstrapFailWithoutEndingTheProgram) {
  std::string visits = Header + "\n", broods = Header + "\n";
  for (int i = 1; i <= 32005; ++i) {
    visits += Record("1995", "A", "1", "170", "-?", "5");
    broods += Record(1995, std::to_string(i), 160, 170, -10, 5);
  }
  EXPECT_THROW(Reading().Of(visits, true), RuntimeFailure);
  EXPECT_THROW(Reading().Of(broods, true), RuntimeFailure);
}

TEST(BroodReader, AnUnsortedFileGoesOnWithTheRunningVisitNumber) {
  Reading r(1995, 1996);
  r.Of(Header + "\n" + Record(1995, "A", 160, 170, -10, 5) + Record(1996, "B", 160, 170, -10, 5) +
       Record(1996, "B", 161, 170, -9, 4) + Record(1995, "A", 162, 170, -8, 3));
  EXPECT_THAT(r.data.VisitsOf, ElementsAre(3, 2)) << "the second record of A is visit 3, not 2";
  EXPECT_THAT(r.data.VisitAge, ElementsAre(-10, -999, -8, -10, -9));
  EXPECT_THAT(r.data.VisitStage, ElementsAre(-1, 0, -1, -1, -1));
  EXPECT_THAT(r.data.VisitCount, ElementsAre(5, -999, 3, 5, 4));
}

TEST(BroodReader, AnUnsortedFileMayOverwriteVisits) {
  Reading r(1995, 1996);
  r.Of(Header + "\n" + Record(1995, "A", 160, 170, -10, 5) + Record(1995, "A", 161, 170, -9, 5) +
       Record(1996, "B", 160, 170, -10, 5) + Record(1995, "A", 162, 170, -8, 3));
  EXPECT_THAT(r.data.VisitAge, ElementsAre(-10, -8, -10));
  EXPECT_EQ(r.data.TotalRecords, 4);
}

TEST(BroodReader, ALineThatEndsBeforeTheCodeCannotOpenAYear) {
  EXPECT_THAT(FailureOf(Header + "\n    1995\n"), HasSubstr("line 2, columns 10 to 17"));
}

TEST(BroodReader, CodesAreComparedAsTheyStand) {
  Reading r;
  r.Of(Header + "\n    1995,ABC\n    1995,ABC     \n");
  EXPECT_THAT(r.data.BroodCode, ElementsAre("ABC", "ABC     "));
}

TEST(BroodReader, AnOverflowOfAnyFieldFailsAndSaysWhere) {
  const auto with = [](const char* year, const char* day, const char* hatch, const char* age, const char* count) {
    return Header + "\n" + Record(year, "A", day, hatch, age, count);
  };
  EXPECT_THAT(FailureOf(with("40000", "1", "1", "1", "1")), HasSubstr("columns 1 to 8"));
  EXPECT_THAT(FailureOf(with("1995", "40000", "1", "1", "1")), HasSubstr("columns 19 to 26: \"   40000\""));
  EXPECT_THAT(FailureOf(with("1995", "1", "-32769", "1", "1")), HasSubstr("columns 28 to 35"));
  EXPECT_THAT(FailureOf(with("1995", "1", "1", "1E400", "1")), HasSubstr("columns 37 to 44"));
  EXPECT_THAT(FailureOf(with("1995", "1", "1", "1", "40000")), HasSubstr("columns 46 to 53"));
  EXPECT_THAT(FailureOf(with("1995", "32766", "1", "1", "1")), HasSubstr("overflow")) << "32770 is no day";
  EXPECT_THAT(FailureOf(with("1995", "1", "1", "1", "32767")), HasSubstr("overflow")) << "32768 is no count";
  EXPECT_THAT(FailureOf(with("1995", "1", "1", "-40000", "1")), HasSubstr("overflow"));
}

TEST(BroodReader, AnEmptyFileFails) { EXPECT_THAT(FailureOf(""), HasSubstr("empty")); }

TEST(BroodReader, LinesMayEndInAnyWayAndTheLastNotAtAll) {
  const std::string records[] = {Header, Record(1995, "A", 160, 170, -10, 5), Record(1995, "A", 165, 170, -5, 4)};
  for (const char* end : {"\n", "\r\n", "\r"})
    for (const bool lastEnds : {true, false}) {
      std::string text = records[0] + end + records[1].substr(0, 53) + end + records[2].substr(0, 53);
      if (lastEnds) text += end;
      EXPECT_EQ(Reading().Of(text).data.TotalRecords, 2) << testing::PrintToString(end) << lastEnds;
    }
}

TEST(BroodReader, AByteOrderMarkBeforeTheHeaderIsHarmless) {
  Reading r(1995, 1995, 1);
  r.Of("\xEF\xBB\xBF" + Header + ",       Depth\n" + Record(1995, "A", 160, 170, -10, 5, {"2"}));
  EXPECT_EQ(r.data.CovariateName, (Array1<std::string>{"Depth"}));
  EXPECT_EQ(r.data.TotalRecords, 1);
}

TEST(BroodReader, LettersOfSeveralBytesAreOneColumnEach) {
  Reading r;
  r.Of(Header + "\n    1995,   M\u00D6WE1,     160,     170,     -10,       5\n" +
       "    1995,   M\u00D6WE2,     161,     170,      -?,       4\n");
  EXPECT_THAT(r.data.BroodCode, ElementsAre("   M\u00D6WE1", "   M\u00D6WE2"));
  EXPECT_THAT(r.data.VisitDate, ElementsAre(160, 161));
  EXPECT_THAT(r.data.VisitCount, ElementsAre(5, 4));
  EXPECT_TRUE(r.data.CodesAreUtf8);
  EXPECT_FALSE(r.report.oddities.Any());
}

TEST(BroodReader, BytesOfAFileThatIsNotUtf8AreOneColumnEach) {
  Reading r;
  r.Of(Header + "\n    1995,   M\xD6WE1,     160,     170,     -10,       5\n" +
       "    1995,   M\xD6WE2,     161,     170,      -9,       4\n");
  EXPECT_THAT(r.data.BroodCode, ElementsAre("   M\xD6WE1", "   M\xD6WE2"));
  EXPECT_THAT(r.data.VisitCount, ElementsAre(5, 4));
  EXPECT_FALSE(r.data.CodesAreUtf8);
  EXPECT_FALSE(r.report.oddities.Any());
}

TEST(BroodReader, ATabIsNoBlankAndANulIsACharacterLikeAnyOther) {
  Reading r(0, 0);
  r.Of(Header + "\n" + std::string(17, '\t') + "\n" + std::string("    \0   ,       A", 17) + "\n");
  EXPECT_THAT(r.data.BroodCode, ElementsAre(std::string(8, '\t'), "       A"));
  EXPECT_THAT(r.data.VisitYear, ElementsAre(0, 0));
}

TEST(BroodReader, ManyRecordsAreReadInLittleTime) {
  std::string text = Header + "\n";
  for (int year = 1980; year <= 2010; ++year)
    for (int brood = 1; brood <= 8065; ++brood)
      for (int visit = 0; visit < 4; ++visit)
        text += Record(year, std::to_string(year * 10000 + brood), 150 + visit * 5, 170, -20 + visit * 5, 8 - visit);
  Reading r(1980, 2010);
  const auto start = std::chrono::steady_clock::now();
  r.Of(text);
  const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
  EXPECT_EQ(r.data.TotalRecords, 1000060);
  EXPECT_EQ(r.data.DistinctCodes, 250015);
  EXPECT_LT(took.count(), 3);
}

}  // namespace
}  // namespace merlane
