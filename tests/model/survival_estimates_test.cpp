#include "model/survival_estimates.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "base/runtime_failure.h"
#include "likelihood/analysis.h"
#include "likelihood/evaluated_case.h"

namespace merlane {
namespace {

using test::Analysis;
using ::testing::Each;
using ::testing::ElementsAre;

SurvivalEstimates Estimated(const Analysis& a, std::int16_t TargetAge, const CalculationWatch& watch = {}) {
  SurvivalEstimates estimates;
  estimates.Preset(a.reading.data);
  EstimateOneDaySurvival(a.reading.data, a.state, false, watch, estimates);
  EstimateFledgingSurvival(a.reading.data, a.state, false, TargetAge, watch, estimates);
  return estimates;
}

/// A brood seen at -4, on its hatch day, at 6, 11 and 30, with an age at fledging of 30.
Analysis Brood() {
  Analysis a;
  a.Visit("A", -4, 8).Visit("A", 0, 8).Visit("A", 6, 7).Visit("A", 11, 5).Visit("A", 30, 4).Read();
  a.Value(10) = 30;
  a.Value(15) = 0.01;
  return a;
}

TEST(SurvivalEstimates, UnderConstantSurvivalFledgingIsOneDayToThePowerOfTheDays) {
  Analysis a = Brood();
  a.Value(17) = 0.04;
  a.Evaluate();
  const SurvivalEstimates s = Estimated(a, 30);
  const double p = std::exp(-0.04);
  for (const std::size_t v : {1u, 2u, 3u}) {
    const double age = a.reading.data.VisitAge[v];
    EXPECT_NEAR(s.LiveDay[v], p, 1e-14);
    EXPECT_NEAR(s.LiveNext[v], std::pow(p, a.reading.data.VisitAge[v + 1] - age), 1e-14);
    EXPECT_NEAR(s.FledgeFrom[v], std::pow(p, 30 - age), 1e-14);
    EXPECT_EQ(s.LiveDay[v], s.LiveDayR[v]) << "random mortality is all there is";
    EXPECT_EQ(s.LiveDayC[v], 0);
  }
}

TEST(SurvivalEstimates, SurvivalToFledgingIsTheProductOfItsParts) {
  Analysis a = Brood();
  a.Value(13) = 0.4;
  a.Value(14) = 0.05;
  a.Value(17) = 0.03;
  a.Value(18) = 0.8;
  a.Value(21) = 0.06;
  a.Value(22) = 1.3;
  a.Evaluate();
  const SurvivalEstimates s = Estimated(a, 30);
  EXPECT_NEAR(s.FledgeFrom[1], s.LiveNext[1] * s.FledgeFrom[2], 1e-14) << "over both kinds";
  EXPECT_NEAR(s.FledgeFrom[2], s.LiveNext[2] * s.FledgeFrom[3], 1e-14);
  EXPECT_NEAR(s.FledgeFromC[1], s.LiveNextC[1] * s.FledgeFromC[2], 1e-14) << "and under each";
  EXPECT_NEAR(s.FledgeFromR[1], s.LiveNextR[1] * s.FledgeFromR[2], 1e-14);
  EXPECT_EQ(s.FledgeFrom[1], Estimated(a, 30).FledgeFrom[1]);
}

TEST(SurvivalEstimates, AreThoseOfTheLastEvaluationNotOfTheBest) {
  Analysis a = Brood();
  a.Value(17) = 0.04;
  a.Evaluate();
  a.Value(17) = 0.4;
  a.Evaluate(2);
  ASSERT_EQ(a.state.best.parameters.Alpha_BR, 0.04) << "it was the better one";
  EXPECT_NEAR(Estimated(a, 30).LiveDay[1], std::exp(-0.4), 1e-14);
}

TEST(SurvivalEstimates, HandComputedWeibullCase) {
  Analysis a = Brood();
  a.Value(17) = 0.05;
  a.Value(18) = 0.5;
  a.Evaluate();
  const SurvivalEstimates s = Estimated(a, 25);
  EXPECT_NEAR(s.LiveDay[3], std::exp(-0.05 * (std::sqrt(12.0) - std::sqrt(11.0))), 1e-14);
  EXPECT_NEAR(s.FledgeFrom[3], std::exp(-0.05 * (5 - std::sqrt(11.0))), 1e-14);
}

TEST(SurvivalEstimates, AVisitOnTheHatchDayHasEntriesAndOneAtTheTargetAgeHasNone) {
  Analysis a = Brood();
  a.Value(17) = 0.04;
  a.Evaluate();
  const SurvivalEstimates s = Estimated(a, 30);
  for (const auto* column : {&s.LiveDay, &s.LiveNext, &s.FledgeFrom}) {
    EXPECT_EQ((*column)[0], Missing) << "a clutch visit";
    EXPECT_NE((*column)[1], Missing);
    EXPECT_EQ((*column)[4], Missing) << "at age 30";
  }
  const SurvivalEstimates sooner = Estimated(a, 11);
  EXPECT_NE(sooner.FledgeFrom[2], Missing);
  EXPECT_EQ(sooner.FledgeFrom[3], Missing);
  EXPECT_NE(sooner.LiveDay[3], Missing) << "one day's survival is limited by the fitted age";
}

TEST(SurvivalEstimates, TheLastVisitOfABroodHasNoNext) {
  Analysis a;
  a.Visit("A", 2, 8).Visit("A", 6, 7).Visit("B", 1, 5).Read();
  a.Value(10) = 30;
  a.Value(17) = 0.04;
  a.Evaluate();
  const SurvivalEstimates s = Estimated(a, 30);
  EXPECT_THAT(s.LiveNext, ElementsAre(testing::DoubleNear(std::exp(-0.16), 1e-14), Missing, Missing));
}

TEST(SurvivalEstimates, ANextVisitOfUnknownAgeHasNoSurvivalToIt) {
  Analysis a;
  a.Visit("A", 2, 8).UnknownAge("A", 165, " ?", 7).Visit("A", 9, 6).Read();
  a.reading.data.BroodAgeKnown[0] = 1;
  a.Value(10) = 30;
  a.Value(17) = 0.04;
  a.Evaluate();
  const SurvivalEstimates s = Estimated(a, 30);
  EXPECT_EQ(s.LiveNext[0], Missing);
  EXPECT_NE(s.LiveDay[0], Missing);
}

TEST(SurvivalEstimates, FledgingFromHatchIsRepeatedAtEachVisitFromTheFirst) {
  Analysis a;
  a.Visit("A", 2, 8).Visit("A", 6, 7).Visit("A", 12, 7).Read();
  a.Value(10) = 30;
  a.Value(17) = 0.04;
  a.Evaluate();
  EXPECT_THAT(Estimated(a, 30).FledgeZero, Each(testing::DoubleNear(std::exp(-0.04 * 30), 1e-14)));
}

TEST(SurvivalEstimates, WhereTheFirstVisitFailsTheAgeTestTheSecondCopiesWhateverItHolds) {
  Analysis a = Brood();
  a.Value(17) = 0.04;
  a.Evaluate();
  EXPECT_THAT(Estimated(a, 30).FledgeZero, Each(Missing)) << "first seen as a clutch";
  SurvivalEstimates s = Estimated(a, 30);
  s.FledgeZero[0] = 0.25;
  EstimateFledgingSurvival(a.reading.data, a.state, false, 30, {}, s);
  EXPECT_THAT(s.FledgeZero, ElementsAre(0.25, 0.25, 0.25, 0.25, Missing));
}

TEST(SurvivalEstimates, ABroodWithoutKnownAgeKeepsMissingInAllTables) {
  Analysis a;
  a.UnknownAge("A", 162, " ?", 8).UnknownAge("A", 166, " ?", 7).Visit("B", 2, 6).Read();
  a.Value(10) = 30;
  a.Value(17) = 0.04;
  a.Evaluate();
  const SurvivalEstimates s = Estimated(a, 30);
  for (const auto* column :
       {&s.LiveDayR, &s.LiveDayC, &s.LiveDay, &s.LiveNextR, &s.LiveNextC, &s.LiveNext, &s.FledgeFromR, &s.FledgeFromC,
        &s.FledgeFrom, &s.FledgeZeroR, &s.FledgeZeroC, &s.FledgeZero})
    EXPECT_THAT(std::vector<double>(column->begin(), column->begin() + 2), Each(Missing));
  EXPECT_NE(s.LiveDay[2], Missing);
}

TEST(SurvivalEstimates, WithoutAnAgeAtFledgingNoVisitHasOneDaySurvival) {
  Analysis a = Brood();
  a.Value(10) = 0;
  a.Value(17) = 0.04;
  a.Evaluate();
  EXPECT_THAT(Estimated(a, 0).LiveDay, Each(Missing));
}

TEST(SurvivalEstimates, HopelessSurvivalIsFlooredButNotInABootstrap) {
  Analysis a = Brood();
  a.Value(17) = 9;
  a.Evaluate();
  const double penalty = a.state.Penalty;
  SurvivalEstimates s = Estimated(a, 30);
  EXPECT_EQ(s.FledgeFrom[1], 1e-8);
  EXPECT_NEAR(s.FledgeFromR[1], std::exp(-9.0 * 30), 1e-130);
  EXPECT_EQ(a.state.Penalty, penalty) << "nothing is charged";
  EstimateFledgingSurvival(a.reading.data, a.state, true, 30, {}, s);
  EXPECT_EQ(s.FledgeFrom[1], s.FledgeFromR[1]);
}

TEST(SurvivalEstimates, AttributesAndCovariatesActAsInTheFit) {
  Analysis a;
  a.Visit("A", -3, 8, "2").Visit("A", 4, 7, "2").Visit("A", 9, 6, "2").Read(1);
  a.Value(10) = 40;
  a.Value(15) = 0.01;
  a.Value(17) = 0.02;
  a.Value(23) = 0.05;
  a.Value(31) = 0.3;
  a.Evaluate();
  const SurvivalEstimates s = Estimated(a, 40);
  const double rate = 0.02 * std::exp(a.state.survival.EHatch[0] * 0.05 + 2 * 0.3);
  EXPECT_NEAR(s.LiveDay[1], std::exp(-rate), 1e-14);
  EXPECT_NEAR(7 * s.LiveNext[1], a.state.survival.EVisit[2], 1e-12) << "the fit's own expectation";
}

TEST(SurvivalEstimates, TellsWhichBroodIsCalculatedAndGivesTurns) {
  Analysis a;
  a.Visit("A", 2, 8).Visit("A", 6, 7).UnknownAge("B", 166, " ?", 7).Visit("C", 3, 4).Read();
  a.Value(10) = 30;
  a.Value(17) = 0.04;
  a.Evaluate();
  std::vector<std::string> progress;
  int turns = 0;
  CalculationWatch watch;
  watch.progress = [&](const std::string& text) { progress.push_back(text); };
  watch.turn = [&] { ++turns; };
  Estimated(a, 30, watch);
  EXPECT_THAT(progress, ElementsAre("1995Calculating p[survive 1 day]  brood # 1 of 3",
                                    "1995Calculating p[survive 1 day]  brood # 3 of 3", "",
                                    "1995Calculating p[fledge(a,D)] for  brood # 1 of 3",
                                    "1995Calculating p[fledge(a,D)] for  brood # 3 of 3", ""));
  EXPECT_EQ(turns, 2 * (2 + 3));
}

TEST(SurvivalEstimates, BroodThatCannotBeEstimatedIsToldAndTheOthersAreEstimated) {
  Analysis a;
  a.Visit("A", 2, 8).Visit("A", 6, 7).Visit("B", 3, 4).Read();
  a.Value(10) = 30;
  a.Value(17) = 0.04;
  a.Evaluate();
  a.state.survival.EHatch = {1e300, 0};
  a.state.parameters.ZetaBR(1) = 1e300;
  EXPECT_THROW(Estimated(a, 30), RuntimeFailure) << "where nobody takes it";
  std::vector<ImpossibleStep> impossible;
  CalculationWatch watch;
  watch.impossible = [&](const ImpossibleStep& step) { impossible.push_back(step); };
  const SurvivalEstimates s = Estimated(a, 30, watch);
  ASSERT_EQ(impossible.size(), 2U) << "one day, and to fledging";
  EXPECT_EQ(impossible[0].brood, 0);
  EXPECT_FALSE(impossible[0].visit);
  EXPECT_THAT(impossible[0].reason, testing::HasSubstr("overflow"));
  EXPECT_EQ(s.LiveDay[0], Missing);
  EXPECT_NE(s.LiveDay[2], Missing);
}

class EstimatesByWorkers : public testing::TestWithParam<int> {};

TEST_P(EstimatesByWorkers, NumbersAndWhatIsToldAreThoseOfOneBroodAfterTheOther) {
  Analysis a;
  for (int brood = 0; brood < 1500; ++brood) {
    const std::string code = std::to_string(brood);
    a.Visit(code, 1 + brood % 5, 8).Visit(code, 6 + brood % 7, 7).Visit(code, 15, 5);
  }
  a.Read();
  a.Value(10) = 30;
  a.Value(17) = 0.04;
  a.Evaluate();
  a.state.parameters.ZetaBR(1) = 1e300;
  a.state.survival.EHatch.assign(1500, 0);
  a.state.survival.EHatch[70] = a.state.survival.EHatch[1400] = 1e300;  // overflows
  const auto estimated = [&](Workers* workers) {
    std::vector<std::string> told;
    CalculationWatch watch;
    watch.progress = [&](const std::string& text) { told.push_back(text); };
    watch.turn = [&] { told.emplace_back("turn"); };
    watch.impossible = [&](const ImpossibleStep& step) { told.push_back(step.reason); };
    SurvivalEstimates s;
    s.Preset(a.reading.data);
    EstimateOneDaySurvival(a.reading.data, a.state, false, watch, s, workers);
    EstimateFledgingSurvival(a.reading.data, a.state, false, 30, watch, s, workers);
    return std::pair(told, std::vector{s.LiveDay, s.LiveNext, s.FledgeFrom, s.FledgeZero});
  };
  const auto alone = estimated(nullptr);
  EXPECT_EQ(std::ranges::count_if(alone.first, [](const auto& text) { return text.find("verflow") != text.npos; }), 4);
  Workers workers(GetParam());
  EXPECT_EQ(estimated(&workers), alone);
}

INSTANTIATE_TEST_SUITE_P(Threads, EstimatesByWorkers, testing::Values(1, 2, 5));

class GoldenEstimates : public testing::TestWithParam<test::GoldenCase> {};

TEST_P(GoldenEstimates, SurvivalToTheNextVisitTimesTheCountIsTheFitsExpectation) {
  test::Evaluated e(GetParam());
  e.CallAgain();
  const BroodData& data = e.reading.data;
  SurvivalEstimates s;
  s.Preset(data);
  EstimateOneDaySurvival(data, e.state, false, {}, s);
  for (std::size_t v = 0; v + 1 < static_cast<std::size_t>(data.Visits()); ++v) {
    if (s.LiveNext[v] == Missing || e.state.survival.EVisit[v + 1] == Missing || data.VisitCount[v] < 1) continue;
    EXPECT_NEAR(data.VisitCount[v] * s.LiveNext[v], e.state.survival.EVisit[v + 1], 1e-6) << "visit " << v;
  }
}

INSTANTIATE_TEST_SUITE_P(Cases, GoldenEstimates, testing::ValuesIn(test::SmallCases()),
                         [](const auto& c) { return c.param.name; });

}  // namespace
}  // namespace merlane
