#include "likelihood/survival_pass.h"

#include <gmock/gmock.h>

#include <cmath>

#include "likelihood/analysis.h"

namespace merlane {
namespace {

using test::Analysis;

TEST(SurvivalTables, AClutchLastSeenBeforeHatchIsCarriedToHatchAndFromThereOn) {
  Analysis a;
  a.Visit("A", -3, 6).Visit("A", 4, 5).Read();
  a.Value(15) = 0.02;
  a.Value(17) = 0.03;
  a.Evaluate();
  const SurvivalTables& t = a.state.survival;
  const Parameters& p = a.state.parameters;
  const Survivors atHatch = ExpectedSurvivors(ClutchMortalityByAge(p), -3 + 28, 28, 6, false);
  EXPECT_EQ(t.EHatch[0], atHatch.OutAll);
  EXPECT_EQ(t.EHatchR[0], atHatch.OutR);
  EXPECT_DOUBLE_EQ(t.EVisit[1], 6 * std::exp(-0.02 * 3) * std::exp(-0.03 * 4));
  EXPECT_EQ(t.JuvRR[0], t.EVisitR[1]);
  EXPECT_EQ(t.EVisitR[0], Missing) << "a first visit has no prediction";
  EXPECT_EQ(t.PCorrEgg[1], Missing) << "the interval ends behind hatch";
  EXPECT_EQ(t.ClutchIntervals, 1) << "an interval over hatch counts as the clutch's";
  EXPECT_EQ(t.BroodIntervals, 0);
  EXPECT_EQ(a.state.EggsAtRisk, 6);
}

TEST(SurvivalTables, AVisitAtFledgingOrBehindIsNotPredicted) {
  Analysis a;
  a.Visit("A", 2, 6).Visit("A", 9, 5).Visit("A", 10, 5).Visit("A", 15, 5).Read();
  a.Value(10) = 10;
  a.Value(17) = 0.03;
  a.Evaluate();
  const SurvivalTables& t = a.state.survival;
  EXPECT_NE(t.EVisit[1], Missing);
  EXPECT_EQ(t.EVisit[2], Missing);
  EXPECT_EQ(t.EVisitR[2], Missing);
  EXPECT_EQ(t.EVisitC[2], Missing);
  EXPECT_EQ(t.PCorrJuv[2], Missing);
  EXPECT_EQ(t.EVisit[3], Missing);
  EXPECT_EQ(t.BroodIntervals, 1);
  a.Value(10) = 0;
  a.Evaluate();
  EXPECT_EQ(t.BroodIntervals, 3) << "0 is no age of fledging";
}

TEST(SurvivalTables, AFirstVisitOnTheHatchDayHasASizeAtHatchAndNoSplitByTheFateOfEggs) {
  Analysis a;
  a.Visit("A", 0, 6).Visit("A", 5, 5).Read();
  a.Value(15) = a.Value(17) = 0.03;
  a.Evaluate();
  EXPECT_EQ(a.state.survival.EHatch[0], 6);
  EXPECT_EQ(a.state.survival.EHatchR[0], 0);
  EXPECT_EQ(a.state.survival.EHatchC[0], 0);
  EXPECT_DOUBLE_EQ(a.state.survival.EVisit[1], 6 * std::exp(-0.15));
  EXPECT_EQ(a.state.JuvsAtRisk, 6);
}

TEST(SurvivalTables, AVisitYoungerThanLayingStillStartsTheNextInterval) {
  Analysis a;
  a.Visit("A", -25, 6).Visit("A", -21, 6).Visit("A", -10, 5).Read();
  a.Value(9) = -20;
  a.Value(15) = 0.02;
  a.Evaluate();
  const SurvivalTables& t = a.state.survival;
  EXPECT_EQ(t.EVisit[1], Missing);
  EXPECT_DOUBLE_EQ(t.EVisit[2], 6 * std::exp(-0.02 * 11)) << "from a time of -1";
  a.Value(16) = 1.5;
  a.Evaluate();
  EXPECT_EQ(t.EVisit[2], Missing) << "a negative time has no power with a fractional exponent";
  EXPECT_EQ(t.ClutchIntervals, 1) << "though the interval counts";
}

TEST(SurvivalTables, OverHatchTheExpectedCountsAreMixedOverTheFateOfTheEggs) {
  Analysis a;
  a.Visit("A", -5, 6).Visit("A", 5, 4).Read();
  a.Value(11) = a.Value(13) = 0.4;
  a.Value(15) = a.Value(17) = 0.01;
  a.Value(19) = a.Value(21) = 0.05;
  a.Evaluate();
  const SurvivalTables& t = a.state.survival;
  EXPECT_DOUBLE_EQ(t.PCorrJuv[1], 0.4);
  const double q = t.PCorrHatch[0], r = t.PCorrJuv[1];
  EXPECT_EQ(t.EVisitR[1], (1 - q) * t.JuvRR[0] + q * t.JuvCR[0]);
  EXPECT_EQ(t.EVisitC[1], (1 - q) * t.JuvRC[0] + q * t.JuvCC[0]);
  EXPECT_EQ(t.EVisit[1], (1 - r) * t.EVisitR[1] + r * t.EVisitC[1]);
}

TEST(SurvivalTables, AnExpectedNumberAtHatchThatIsMissingIsNotCarriedOn) {
  for (const bool random : {true, false}) {
    Analysis a;
    a.Visit("A", -5, Missing).Visit("A", 5, 4).Read();  // the number of eggs is not known
    a.Value(11) = 0.4;
    a.Value(17) = 0.02;
    a.Value(15) = random ? 1e-300 : 0.05;  // a rate so small that the mark of a missing number survives
    a.Value(19) = random ? 0.05 : 1e-300;
    a.Evaluate();
    const SurvivalTables& t = a.state.survival;
    ASSERT_NE(t.EHatch[0], Missing);
    ASSERT_EQ(random ? t.EHatchR[0] : t.EHatchC[0], Missing);
    EXPECT_EQ(random ? t.JuvRR[0] : t.JuvCR[0], Missing);
    EXPECT_NE(random ? t.JuvCR[0] : t.JuvRR[0], Missing);
    EXPECT_EQ(a.F, 0);
  }
}

TEST(SurvivalTables, ByDateTheShapeIs1WhateverTheVectorHolds) {
  Analysis a;
  a.UnknownAge("A", 140, "-?", 6)
      .UnknownAge("A", 150, "-?", 5)
      .UnknownAge("B", 160, "?", 6)
      .UnknownAge("B", 165, "?", 6);
  a.Read();
  a.Value(15) = 0.02;
  a.Value(16) = 3;
  a.Value(17) = 0.01;
  a.Value(18) = 2;
  a.Evaluate();
  const SurvivalTables& t = a.state.survival;
  EXPECT_DOUBLE_EQ(t.EVisit[1], 6 * std::exp(-0.2));
  EXPECT_DOUBLE_EQ(t.EVisit[3], 6 * std::exp(-0.05));
  EXPECT_EQ(t.EHatch[0], Missing) << "by date nothing is carried to hatch";
  EXPECT_EQ(t.ClutchIntervals, 1);
  EXPECT_EQ(t.BroodIntervals, 1);
}

TEST(SurvivalTables, ByDateAMissingCountEndsNoInterval) {
  Analysis a;
  a.UnknownAge("A", 140, "-?", 6).UnknownAge("A", 150, "-?", Missing);
  a.UnknownAge("B", 160, "?", 6).UnknownAge("B", 165, "?", Missing);
  a.Read();
  a.Value(15) = a.Value(17) = 0.02;
  a.Evaluate();
  EXPECT_EQ(a.state.survival.EVisit[1], Missing);
  EXPECT_EQ(a.state.survival.EVisit[3], Missing);
  EXPECT_EQ(a.state.survival.ClutchIntervals, 0);
  EXPECT_EQ(a.state.survival.BroodIntervals, 0);
}

TEST(SurvivalTables, AnIntervalFromAnUnknownAgePaysForItsRatesAndHasNoPrediction) {
  Analysis a;
  // The clutch's age is unknown at its first visit; the brood's ages are known.
  a.UnknownAge("A", 150, "-?", 6).Visit("A", 5, 5).Read();
  a.Value(17) = 30;
  a.Evaluate();
  EXPECT_EQ(a.state.survival.EVisit[1], Missing);
  EXPECT_EQ(a.state.Penalty, (30.0 - 10) * (30.0 - 10) * 1e20);
}

TEST(SurvivalTables, TellWhichAttributesAreMissing) {
  Analysis a;
  a.WithoutHatchDay("A", 165, 5, 6).WithoutHatchDay("A", 170, 10, 5).Read();
  a.Value(17) = 0.02;
  a.Evaluate();
  EXPECT_FALSE(a.state.survival.BroodSizeDeficient);
  EXPECT_FALSE(a.state.survival.HatchDateDeficient);
  a.Step(23) = 0.1;  // may be estimated
  a.Evaluate();
  EXPECT_TRUE(a.state.survival.BroodSizeDeficient);
  EXPECT_FALSE(a.state.survival.HatchDateDeficient);
  a.Step(23) = 0;
  a.Value(30) = 0.1;
  a.Evaluate();
  EXPECT_FALSE(a.state.survival.BroodSizeDeficient);
  EXPECT_TRUE(a.state.survival.HatchDateDeficient);
}

TEST(SurvivalTables, GiveOneTurnBetweenClutchesAndBroods) {
  Analysis a;
  a.Visit("A", -12, 6).Visit("A", -5, 5).Read();
  a.Value(15) = 0.02;
  a.setting.SimulationMode = true;  // no likelihood, but the tables for the check and for the objective
  a.Evaluate();
  EXPECT_EQ(a.turns, 2);
}

}  // namespace
}  // namespace merlane
