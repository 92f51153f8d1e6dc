#include "likelihood/likelihood.h"

#include <gmock/gmock.h>

#include "base/elementary.h"
#include "base/runtime_failure.h"
#include "likelihood/analysis.h"
#include "plain_distributions.h"

namespace merlane {
namespace {

using plain::Calc_Probs_and_Theta;
using plain::ProbBetaBinomial;
using plain::ProbBinomial;

using test::Analysis;

TEST(Likelihood, WithoutCorrelatedMortalityIsBinomial) {
  Analysis a;
  a.ClutchOverHatch();
  a.Read();
  a.Value(15) = 0.02;
  a.Value(17) = 0.03;
  a.Evaluate();
  const SurvivalTables& t = a.state.survival;
  const std::vector<double>& deviance = a.state.VisitDeviance;
  EXPECT_EQ(deviance[0], 0);
  EXPECT_EQ(deviance[1], -2 * Log(ProbBinomial(6, 5, t.EVisitR[1] / 6)));
  std::vector<double> Pmf(6);
  Calc_Probs_and_Theta(1, 5, 0, 0, t.EHatchR[0], t.JuvRR[0], Pmf);
  EXPECT_EQ(deviance[2], -2 * Log(Pmf[4]));
  EXPECT_EQ(deviance[3], -2 * Log(ProbBinomial(4, 3, t.EVisitR[3] / 4)));
  EXPECT_EQ(a.F, deviance[1] + deviance[2] + deviance[3]);
  EXPECT_EQ(a.state.EggsAtRisk, 6 + 5);
  EXPECT_EQ(a.state.JuvsAtRisk, 4);
  EXPECT_EQ(a.SampleSize, 15);
}

TEST(Likelihood, MixesTheFourFatesOverHatch) {
  Analysis a;
  a.Visit("A", -5, 5).Visit("A", 4, 3).Read();
  a.Value(11) = 0.4;
  a.Value(13) = 0.3;
  a.Value(15) = 0.01;
  a.Value(19) = 0.05;
  a.Value(17) = 0.02;
  a.Value(21) = 0.04;
  a.Evaluate();
  const SurvivalTables& t = a.state.survival;
  const auto probability = [&](double EHatch, double Juv) {
    std::vector<double> Pmf(6);
    Calc_Probs_and_Theta(1, 5, 0, 0, EHatch, Juv, Pmf);
    return Pmf[3];
  };
  const double q = t.PCorrHatch[0], r = t.PCorrJuv[1];
  const double P = (1 - r) * (1 - q) * probability(t.EHatchR[0], t.JuvRR[0]) +
                   (1 - r) * q * probability(t.EHatchC[0], t.JuvCR[0]) +
                   (1 - q) * r * probability(t.EHatchR[0], t.JuvRC[0]) + q * r * probability(t.EHatchC[0], t.JuvCC[0]);
  EXPECT_EQ(a.state.VisitDeviance[1], -2 * Log(P));
  EXPECT_EQ(a.state.VarR[1], 0) << "no variance over hatch";
}

TEST(Likelihood, ABroodFirstSeenAfterHatchHasItsFirstPredictionAtItsSecondVisit) {
  Analysis a;
  a.Visit("A", 3, 6).Visit("A", 8, 5).Read();
  a.Value(17) = 0.03;
  a.Evaluate();
  EXPECT_EQ(a.state.survival.EVisit[0], Missing);
  EXPECT_EQ(a.state.VisitDeviance[0], 0);
  EXPECT_EQ(a.F, -2 * Log(ProbBinomial(6, 5, a.state.survival.EVisitR[1] / 6)));
  EXPECT_EQ(a.state.EggsAtRisk, 0);
  EXPECT_EQ(a.state.JuvsAtRisk, 6);
}

TEST(Likelihood, AVisitOnTheHatchDayIsACountOfEggsAndTheNextStartsFromItAsJuveniles) {
  Analysis a;
  a.Visit("A", -6, 6).Visit("A", 0, 5).Visit("A", 7, 4).Read();
  a.Value(3) = 2;  // only the eggs are overdispersed
  a.Value(5) = 0.2;
  a.Value(6) = 0.03;
  a.Value(11) = a.Value(13) = 0.4;
  a.Value(15) = a.Value(17) = 0.02;
  a.Value(19) = a.Value(21) = 0.06;
  a.Evaluate();
  const SurvivalTables& t = a.state.survival;
  EXPECT_EQ(t.EVisit[1], t.EHatch[0]);
  EXPECT_EQ(t.PCorrEgg[1], t.PCorrHatch[0]);
  double EC = t.EVisitC[1];
  const double q = t.PCorrHatch[0];
  EXPECT_EQ(a.state.VisitDeviance[1], -2 * Log((1 - q) * ProbBinomial(6, 5, t.EVisitR[1] / 6) +
                                               q * ProbBetaBinomial(6, 5, EC, 0.2 * Exp(-0.03 * (-6 + 28)))));
  const double r = t.PCorrJuv[2];
  EXPECT_EQ(a.state.VisitDeviance[2],
            -2 * Log((1 - r) * ProbBinomial(5, 4, t.EVisitR[2] / 5) + r * ProbBinomial(5, 4, t.EVisitC[2] / 5)));
  EXPECT_EQ(a.state.EggsAtRisk, 6);
  EXPECT_EQ(a.state.JuvsAtRisk, 5);
}

TEST(Likelihood, TheJuvenilesOverdispersionOverHatchIsAtTheNegativeAgeOfTheClutch) {
  Analysis a;
  a.Visit("A", -5, 5).Visit("A", 4, 3).Read();
  a.Value(4) = 2;
  a.Value(7) = 0.2;
  a.Value(8) = 0.1;
  a.Value(13) = 1;
  a.Value(15) = 0.01;
  a.Value(21) = 0.04;
  a.Evaluate();
  const SurvivalTables& t = a.state.survival;
  std::vector<double> Pmf(6);
  Calc_Probs_and_Theta(2, 5, 0, 0.2 * Exp(0.1 * 5), t.EHatchR[0], t.JuvRC[0], Pmf);
  EXPECT_EQ(a.state.VisitDeviance[1], -2 * Log(Pmf[3]));
}

TEST(Likelihood, OverdispersionTakesTheAgeAlsoOfAClutchThatIsFollowedByDate) {
  Analysis a;
  for (const char* code : {"A", "B"}) {
    const int older = *code == 'A' ? 0 : 4;
    a.UnknownAge(code, 140, "-?", 6);
    a.WithoutHatchDay(code, 150, -14 + older, 6).WithoutHatchDay(code, 155, -9 + older, 5);
  }
  a.Read();
  a.Value(3) = 2;
  a.Value(5) = 0.2;
  a.Value(6) = 0.05;
  a.Value(11) = 1;
  a.Value(19) = 0.03;
  a.Evaluate();
  for (const int brood : {0, 1}) {
    const auto v = static_cast<std::size_t>(3 * brood + 2);
    double EC = a.state.survival.EVisitC[v];
    EXPECT_EQ(EC, a.state.survival.EVisitC[2]) << "both broods have the same dates and counts";
    EXPECT_EQ(a.state.VisitDeviance[v],
              -2 * Log(0 * 1.0 + ProbBetaBinomial(6, 5, EC, 0.2 * Exp(-0.05 * (-14 + 4 * brood + 28)))));
  }
}

TEST(Likelihood, FromNoneLeftNothingIsPredicted) {
  Analysis a, shorter;
  a.Visit("A", 2, 6).Visit("A", 6, 0).Visit("A", 9, 0).Read();
  shorter.Visit("A", 2, 6).Visit("A", 6, 0).Read();
  for (Analysis* each : {&a, &shorter}) {
    each->Value(17) = 0.05;
    each->Evaluate();
  }
  EXPECT_EQ(a.F, shorter.F);
  EXPECT_EQ(a.state.JuvsAtRisk, 6);
  EXPECT_EQ(a.state.VisitDeviance[2], 0);
  EXPECT_EQ(a.turns, shorter.turns) << "no turn where nothing is predicted";
}

TEST(Likelihood, ASecondEvaluationAtTheSameVectorLeavesTheBestUntouched) {
  Analysis a;
  a.ClutchOverHatch();
  a.Read();
  a.Value(15) = a.Value(17) = 0.02;
  const double first = a.Evaluate();
  a.state.best.VisitDeviance[1] = 77;
  a.SampleSize = -5;
  a.state.best.Value(15) = 0.5;
  EXPECT_EQ(a.Evaluate(2), first);
  EXPECT_EQ(a.state.BestObjective, first);
  EXPECT_EQ(a.state.best.VisitDeviance[1], 77);
  EXPECT_EQ(a.state.best.Value(15), 0.5);
  EXPECT_EQ(a.SampleSize, -5) << "written at a new lowest objective only";
}

TEST(Likelihood, TheBestTablesAreThoseOfTheLowestObjectiveAndAFirstCallAlwaysSetsThem) {
  Analysis a;
  a.ClutchOverHatch();
  a.Read();
  a.Value(15) = a.Value(17) = 0.02;
  const double good = a.Evaluate();
  a.Value(15) = 0.3;
  const double bad = a.Evaluate(2);
  ASSERT_GT(bad, good);
  EXPECT_EQ(a.state.BestObjective, good);
  EXPECT_EQ(a.state.best.Value(15), 0.02);
  EXPECT_EQ(a.state.best.parameters.Alpha_NR, 0.02);
  EXPECT_NE(a.state.best.survival.EVisit[1], a.state.survival.EVisit[1]);
  EXPECT_EQ(a.Evaluate(1), bad);
  EXPECT_EQ(a.state.BestObjective, bad);
  EXPECT_EQ(a.state.best.Value(15), 0.3);
  EXPECT_EQ(a.state.best.survival.EVisit, a.state.survival.EVisit);
  EXPECT_EQ(a.state.best.VisitDeviance, a.state.VisitDeviance);
}

TEST(Likelihood, AVectorOfZerosIsNotEvaluated) {
  Analysis a;
  a.ClutchOverHatch();
  a.Read();
  a.Value.Fill(0);
  a.F = 5;
  EXPECT_EQ(a.Evaluate(), 0);
  EXPECT_EQ(a.Value(1), 0) << "not even decoded";
  EXPECT_EQ(a.SampleSize, 0) << "nobody is at risk, whatever was evaluated before";
}

TEST(Likelihood, TheBetaBinomialLeavesItsBoundOfTheExpectedCountInTheTable) {
  Analysis a;
  a.Visit("A", 2, 6).Visit("A", 6, 6).Read();
  a.Value(4) = 2;
  a.Value(7) = 0.2;
  a.Value(13) = 0.5;
  a.Value(17) = 0.02;
  a.Value(21) = 1e-9;
  a.Evaluate();
  EXPECT_EQ(a.state.survival.EVisitC[1], 6 * 0.999999);
  EXPECT_EQ(a.state.best.survival.EVisitC[1], 6 * 0.999999);
}

TEST(Likelihood, AnEntryThatALaterVectorDoesNotFillKeepsItsNumberAndCounts) {
  Analysis a;
  a.Visit("A", -5, 6).Visit("A", 5, 4).Read();
  a.Value(15) = 0.02;
  a.Value(17) = 0.03;
  const double before = a.Evaluate();
  const double expected = a.state.survival.EVisit[1];
  a.Value(15) = 0;  // no prediction to hatch, so none behind it
  const double later = a.Evaluate(2);
  EXPECT_EQ(a.state.survival.EHatch[0], Missing);
  EXPECT_EQ(a.state.survival.EVisit[1], expected);
  EXPECT_EQ(a.state.EggsAtRisk, 6) << "still counted";
  EXPECT_NE(later, before) << "judged with what hatch now is";
  EXPECT_EQ(a.Evaluate(1), 0) << "a first call forgets it";
}

TEST(Likelihood, AVisitWithoutPredictionHasADevianceThatIsNotCounted) {
  Analysis a;
  // Brood B's second visit is at fledging; the number at risk is carried over from brood A.
  a.Visit("A", 2, 6).Visit("A", 6, 5).Visit("B", 8, 4).Visit("B", 12, 3).Read();
  a.Value(10) = 10;
  a.Value(17) = 0.03;
  a.state.VisitDeviance[3] = 55;
  a.Evaluate();
  EXPECT_EQ(a.F, a.state.VisitDeviance[1]);
  EXPECT_NEAR(a.state.VisitDeviance[3], 0, 1e-12) << "-2 ln 1";
  EXPECT_EQ(a.state.MinDeviance, std::min(0.0, a.state.VisitDeviance[3]));
}

TEST(Likelihood, DeviancesAreNotPreset) {
  Analysis a;
  a.Visit("A", 8, 4).Visit("A", 12, 3).Read();
  a.Value(10) = 10;
  a.Value(17) = 0.03;
  a.state.VisitDeviance[1] = 55;
  a.Evaluate();
  EXPECT_EQ(a.state.VisitDeviance[1], 55) << "no visit before it has had a prediction";
  EXPECT_EQ(a.F, 0);
  EXPECT_EQ(a.state.MaxDeviance, 55) << "the limits take all visits";
}

TEST(Likelihood, AProbabilityOf0CostsNothing) {
  Analysis a;
  a.Visit("A", -28, 6).Visit("A", 5, 4).Read();
  a.Value(11) = 0.5;
  a.Value(15) = a.Value(19) = 1000;  // nothing is expected to hatch
  a.Value(17) = 0.02;
  a.Evaluate();
  EXPECT_EQ(a.state.survival.EHatchR[0], 0);
  EXPECT_EQ(a.state.VisitDeviance[1], 0);
  EXPECT_EQ(a.state.EggsAtRisk, 6);
  EXPECT_EQ(a.state.Penalty, -Log(1e-8) * 1e20) << "of the expected number at hatch alone";
}

TEST(Likelihood, AProbabilityThatUnderflowsTo0CostsNothing) {
  Analysis a;
  a.Visit("A", 2, 1000).Visit("A", 6, 1000).Read();
  a.Value(17) = 0.01;
  EXPECT_GT(a.Evaluate(), 0);
  a.Value(17) = 5;  // an expected share of e^-20, kept at 1e-6; its power of 1000 is no number
  EXPECT_EQ(a.Evaluate(), 0);
  EXPECT_EQ(a.state.VisitDeviance[1], 0);
  EXPECT_EQ(a.state.JuvsAtRisk, 1000);
}

/// From a visit younger than laying the time is negative, the random function may be too, and so the probability of the
/// correlated state lies outside 0 and 1.
void LetTheCorrelatedProbabilityBeNegative(Analysis& a) {
  a.Value(9) = -20;
  a.Value(11) = 1;
  a.Value(12) = 0.3;
  a.Value(15) = 1;
  a.Value(19) = 0.01;
  a.Value(17) = 0.02;
}

TEST(Likelihood, ANegativeProbabilityIsPenalised) {
  Analysis a;
  a.Visit("A", -23, 6).Visit("A", -20, 3).Read();
  LetTheCorrelatedProbabilityBeNegative(a);
  a.Evaluate();
  const SurvivalTables& t = a.state.survival;
  const double q = t.PCorrEgg[1];
  ASSERT_LT(q, 0);
  EXPECT_EQ(t.EVisitR[1], 0);
  const double P = (1 - q) * ProbBinomial(6, 3, 0) + q * ProbBinomial(6, 3, t.EVisitC[1] / 6);
  ASSERT_LT(P, 0);
  EXPECT_EQ(a.state.VisitDeviance[1], 0);
  EXPECT_EQ(a.state.Penalty, -Log(1e-8) * 1e20 + P * P * 1e20) << "beside that of too few survivors";
  EXPECT_EQ(a.state.EggsAtRisk, 6);
}

TEST(Likelihood, ANegativeProbabilityOverHatchIsPenalisedToo) {
  Analysis a;
  a.Visit("A", -23, 6).Visit("A", 5, 0).Read();
  LetTheCorrelatedProbabilityBeNegative(a);
  a.Evaluate();
  const SurvivalTables& t = a.state.survival;
  const double q = t.PCorrHatch[0];
  ASSERT_LT(q, 0);
  std::vector<double> Pmf(7);
  Calc_Probs_and_Theta(1, 6, 0, 0, t.EHatchC[0], t.JuvCR[0], Pmf);
  const double P = q * Pmf[0];
  EXPECT_EQ(a.state.VisitDeviance[1], 0);
  EXPECT_EQ(a.state.Penalty, -Log(1e-8) * 1e20 + P * P * 1e20);
}

TEST(Likelihood, AFirstCallSaysThatTheProbabilitiesOverHatchDoNotSumTo1) {
  Analysis a;
  a.Visit("A", -28, 6).Visit("A", 5, 4).Read();
  a.Value(11) = 0.5;
  a.Value(15) = a.Value(17) = 0.02;
  a.Value(19) = 1000;  // of the correlated half nothing is expected to hatch, so it has no distribution
  a.Evaluate();
  ASSERT_EQ(a.told.size(), 1u);
  EXPECT_EQ(a.told[0].title, "Calculation problem: Sum of probabilities <> 1 @ 0.50000000");
  EXPECT_EQ(a.told[0].text,
            "Unacceptably poor numerical accuracy in probability calculation in procedure 'Do_Likelihoods'");
  EXPECT_EQ(a.told[0].style, style::Critical);
  EXPECT_GT(a.state.VisitDeviance[1], 0) << "and the evaluation carries on";
  a.Evaluate(2);
  EXPECT_EQ(a.told.size(), 1u) << "told at a first call only";
}

/// A brood over hatch with both kinds of mortality, at a first vector; there the age at fledging limits nothing.
void TypeBroodOverHatch(Analysis& a) {
  a.Visit("A", -28, 6).Visit("A", 5, 4).Read();
  a.Value(11) = 0.4;
  a.Value(13) = 0.3;
  a.Value(15) = a.Value(17) = 0.02;
  a.Value(19) = a.Value(21) = 0.05;
}

TEST(Likelihood, ANewExpectedNumberAtHatchActsThoughThoseBehindHatchAreOld) {
  for (const int rate : {15, 19}) {  // of random mortality, of correlated mortality
    Analysis a;
    TypeBroodOverHatch(a);
    a.Evaluate();
    const SurvivalTables before = a.state.survival;
    a.Value(rate) = 0.06;
    a.Value(10) = 5;  // fledged when visited: the entries behind hatch stay
    a.Evaluate(2);
    const SurvivalTables& t = a.state.survival;
    ASSERT_EQ(t.JuvCR, before.JuvCR);
    ASSERT_EQ(t.JuvRC, before.JuvRC);
    ASSERT_EQ(t.EHatchR == before.EHatchR, rate == 19);
    ASSERT_EQ(t.EHatchC == before.EHatchC, rate == 15);
    const auto probability = [](double EHatch, double Juv) {
      std::vector<double> Pmf(7);
      Calc_Probs_and_Theta(1, 6, 0, 0, EHatch, Juv, Pmf);
      return Pmf[4];
    };
    const double q = t.PCorrHatch[0], r = t.PCorrJuv[1];
    const double P = (1 - r) * (1 - q) * probability(t.EHatchR[0], t.JuvRR[0]) +
                     (1 - r) * q * probability(t.EHatchC[0], t.JuvCR[0]) +
                     (1 - q) * r * probability(t.EHatchR[0], t.JuvRC[0]) +
                     q * r * probability(t.EHatchC[0], t.JuvCC[0]);
    EXPECT_EQ(a.state.VisitDeviance[1], -2 * Log(P)) << rate;
  }
}

TEST(Likelihood, AFailureOverHatchLeavesNothingToTheNextEvaluation) {
  Analysis a;
  TypeBroodOverHatch(a);
  const double first = a.Evaluate();
  a.Value(19) = 1000;  // nothing is expected to hatch, though old entries expect some behind hatch
  a.Value(10) = 5;
  EXPECT_THROW(a.Evaluate(2), RuntimeFailure);
  a.Value(19) = 0.05;
  a.Value(10) = 0;
  EXPECT_EQ(a.Evaluate(2), first);
}

TEST(Likelihood, PenaltiesOfTheTablesCountTwiceInOneFunctionCall) {
  Analysis a;
  a.Visit("A", 2, 6).Visit("A", 6, 5).Visit("A", 9, 4).Read();
  a.Value(17) = 12;
  a.Evaluate();
  const double once = a.state.Penalty;
  EXPECT_GE(once, 2 * (12.0 - 10) * (12.0 - 10) * 1e20);
  EXPECT_NEAR(a.F, once, 1e-6 * once);
  // Rates that the check of the hypothesis would repair are set as it wants them.
  a.setting.OneCallRun = true;
  a.Value(17) = 12;
  a.Evaluate();
  EXPECT_NEAR(a.state.Penalty, 2 * once, 1e-9 * once);
  a.setting.OneCallRun = false;
  a.Evaluate(2);
  EXPECT_EQ(a.state.Penalty, once);
}

TEST(Likelihood, SimulationsHaveTablesAndNoDeviance) {
  Analysis a;
  a.ClutchOverHatch();
  a.Read();
  a.Value(15) = a.Value(17) = 0.02;
  a.setting.SimulationMode = true;
  EXPECT_EQ(a.Evaluate(), 0);
  EXPECT_NE(a.state.survival.EVisit[1], Missing);
  EXPECT_EQ(a.SampleSize, 0);
}

TEST(Likelihood, AnOverdispersionThatOverflowsAtAnUnknownAgeIsAFailure) {
  Analysis a;
  a.UnknownAge("A", 140, "-?", 6).UnknownAge("A", 150, "-?", 5).Read();
  a.Value(3) = 2;
  a.Value(5) = 0.2;
  a.Value(6) = 0.8;
  a.Value(11) = 0.5;
  a.Value(15) = a.Value(19) = 0.02;
  EXPECT_THROW(a.Evaluate(), RuntimeFailure);
  a.Value(6) = 0.01;
  EXPECT_GT(a.Evaluate(), 0) << "inflated, but a number";
  EXPECT_GT(a.state.VarC[1], 6 * 0.25 * (5 * 1.0 + 1)) << "in the variance it is not limited";
}

TEST(Likelihood, AnOverdispersionThatNoComponentUsesCannotFail) {
  Analysis a;
  a.UnknownAge("A", 140, "-?", 6).UnknownAge("A", 150, "-?", 5).Read();
  a.Value(6) = 0.8;
  a.Value(15) = 0.02;
  EXPECT_GT(a.Evaluate(), 0);
}

TEST(Likelihood, AMissingCountBehindAPredictionIsAFailure) {
  Analysis a;
  a.Visit("A", 2, 6).Visit("A", 6, -999).Read();
  a.Value(17) = 0.03;
  EXPECT_THROW(a.Evaluate(), RuntimeFailure);
}

TEST(Likelihood, GivesATurnForEachVisitThatCouldBePredicted) {
  Analysis a;
  a.Visit("A", 2, 6).Visit("A", 6, 5).Visit("B", 3, 6).Visit("B", 7, 6).Read();
  a.Value(17) = 0.03;
  a.Evaluate();
  // One between clutches and broods, none for the first visit, one for each visit behind it.
  EXPECT_EQ(a.turns, 1 + 3);
}

TEST(Likelihood, GivesTurnsWhileItMakesTheDistributionOfManyOverHatch) {
  Analysis a, few;
  a.Visit("A", -5, 1500).Visit("A", 4, 1400).Read();
  few.Visit("A", -5, 150).Visit("A", 4, 140).Read();
  for (Analysis* each : {&a, &few}) {
    each->Value(15) = 0.01;
    each->Value(17) = 0.02;
    each->Evaluate();
  }
  EXPECT_EQ(few.turns, 1 + 1);
  EXPECT_EQ(a.turns, 1 + 1 + 1501) << "one for each number that may be alive at hatch";
  a.turns = 0;
  a.Value(17) = 0.03;
  a.Evaluate(2);
  EXPECT_EQ(a.turns, 1 + 1 + 1501) << "in a minimisation, too, which needs no tables";
}

}  // namespace
}  // namespace merlane
