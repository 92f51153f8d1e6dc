#include "survival/survival.h"

#include <gmock/gmock.h>

#include "base/elementary.h"
#include "base/runtime_failure.h"

namespace merlane {
namespace {

constexpr Mortality Random{.AlphaR = 0.02, .BetaR = 1};

void ExpectNoPrediction(const Survivors& out) {
  EXPECT_EQ(out.OutR, Missing);
  EXPECT_EQ(out.OutC, Missing);
  EXPECT_EQ(out.OutAll, Missing);
  EXPECT_EQ(out.PCorr, 0);
  EXPECT_EQ(out.Penalty, 0);
}

TEST(ExpectedSurvivors, UnderRandomMortalityAloneIsExponential) {
  const Survivors out = ExpectedSurvivors(Random, 0, 10, 5, false);
  EXPECT_DOUBLE_EQ(out.OutR, 5 * Exp(-0.2));
  EXPECT_EQ(out.OutAll, out.OutR);
  EXPECT_EQ(out.OutC, 0);
  EXPECT_EQ(out.PCorr, 0);
  EXPECT_EQ(out.Penalty, 0);
}

TEST(ExpectedSurvivors, UnderCorrelatedMortalityAloneLeavesTheRandomNumberAt0) {
  const Survivors out = ExpectedSurvivors({.AlphaC = 0.03, .BetaC = 1, .c = 1}, 2, 12, 4, false);
  EXPECT_DOUBLE_EQ(out.OutC, 4 * Exp(-0.3));
  EXPECT_EQ(out.OutAll, out.OutC);
  EXPECT_EQ(out.OutR, 0);
  EXPECT_EQ(out.PCorr, 1);
}

TEST(ExpectedSurvivors, WithBothRates0AndAttenuationAllSurvive) {
  const Survivors out = ExpectedSurvivors({.BetaR = 1, .BetaC = 1, .f = 1}, 0, 10, 6, false);
  EXPECT_EQ(out.OutAll, 6);
  EXPECT_EQ(out.OutR, 6);
  EXPECT_EQ(out.OutC, 0);
  EXPECT_EQ(out.PCorr, 0);
}

TEST(ExpectedSurvivors, WithBothRates0AndNoAttenuationThereIsNoPrediction) {
  ExpectNoPrediction(ExpectedSurvivors({.BetaR = 1, .BetaC = 1}, 0, 10, 6, false));
}

TEST(ExpectedSurvivors, WithAllNestsCorrelatedTheRandomFunctionVanishes) {
  const Survivors out =
      ExpectedSurvivors({.AlphaR = 0.01, .BetaR = 1, .AlphaC = 0.02, .BetaC = 1, .c = 1}, 0, 10, 6, false);
  EXPECT_EQ(out.OutR, 0);
  EXPECT_EQ(out.PCorr, 1);
  EXPECT_DOUBLE_EQ(out.OutC, 6 * Exp(-0.2));
  EXPECT_EQ(out.OutAll, out.OutC);
}

TEST(ExpectedSurvivors, AMixtureWithoutAttenuationIsPlain) {
  const Survivors out =
      ExpectedSurvivors({.AlphaR = 0.01, .BetaR = 1, .AlphaC = 0.05, .BetaC = 1, .c = 0.3}, 3, 10, 6, false);
  const auto SR = [](double t) { return 0.7 * Exp(-0.01 * t); };
  const auto SC = [](double t) { return 0.3 * Exp(-0.05 * t); };
  EXPECT_DOUBLE_EQ(out.OutAll, 6 * (SR(10) + SC(10)) / (SR(3) + SC(3)));
  EXPECT_DOUBLE_EQ(out.PCorr, SC(3) / (SR(3) + SC(3)));
}

TEST(SurvivalFunctions, SumTo1AtTheStart) {
  const SharesAlive alive =
      SurvivalFunctions({.AlphaR = 0.02, .BetaR = 1.3, .AlphaC = 0.07, .BetaC = 0.8, .c = 0.6, .f = 0.1}).At(0);
  EXPECT_DOUBLE_EQ(alive.SR + alive.SC, 1);
}

TEST(SurvivalFunctions, TakeThePower0Of0For1) {
  const SharesAlive alive = SurvivalFunctions({.AlphaR = 0.5, .BetaR = 0}).At(0);
  EXPECT_FALSE(alive.failed);
  EXPECT_DOUBLE_EQ(alive.SR, Exp(-0.5));
}

TEST(SurvivalFunctions, AttenuateTheRandomShareWithTheRandomShapeAndTheCorrelatedWithItsOwn) {
  const double AR = 0.02, BR = 1.3, AC = 0.07, BC = 0.8, c = 0.6, f = 0.1, t = 5;
  const double Dn = 1 + c * f * (AC - AR) / ((f + AR) * (f + AC));
  const SharesAlive alive = SurvivalFunctions({AR, BR, AC, BC, c, f}).At(t);
  const double wR = Pow(t, BR), wC = Pow(t, BC);
  EXPECT_EQ(alive.SR, Exp(-AR * wR) * (1 - (c * AR / (f + AR)) * Exp(-f * wR)) / Dn);
  EXPECT_EQ(alive.SC, (c * AC / (f + AC)) * Exp(-(f + AC) * wC) / Dn);
}

TEST(ExpectedSurvivors, AnOverflowThatWouldEndAs0IsAnError) {
  // AlphaR t^BetaR is infinite, exp of its negative 0.
  ExpectNoPrediction(ExpectedSurvivors({.AlphaR = 1e300, .BetaR = 10}, 1, 40, 5, false));
}

TEST(ExpectedSurvivors, ANegativeTimeWithAFractionalShapeIsAnError) {
  ExpectNoPrediction(ExpectedSurvivors({.AlphaR = 0.02, .BetaR = 1.5}, -3, 4, 5, false));
}

TEST(ExpectedSurvivors, ANegativeTimeWithAWholeShapeIsNone) {
  const Survivors out = ExpectedSurvivors(Random, -3, 4, 5, false);
  EXPECT_DOUBLE_EQ(out.OutAll, 5 * Exp(-0.02 * 7));
}

TEST(ExpectedSurvivors, OnlyTheFunctionsInUseCanFail) {
  // Correlated mortality is switched off by its rate; its shape would overflow.
  const Survivors out = ExpectedSurvivors({.AlphaR = 0.02, .BetaR = 1, .BetaC = 1000}, 0, 10, 5, false);
  EXPECT_DOUBLE_EQ(out.OutAll, 5 * Exp(-0.2));
}

TEST(ExpectedSurvivors, MortalityIsOfOneKindByItsRatesWhateverTheProbability) {
  // AlphaR = 0 with AlphaC > 0 is correlated mortality alone; with c = 0 nobody is in that state.
  const Survivors out = ExpectedSurvivors({.BetaR = 1, .AlphaC = 0.02, .BetaC = 1, .c = 0}, 0, 10, 5, false);
  EXPECT_EQ(out.OutC, 0);
  EXPECT_EQ(out.OutAll, 1e-8);
  EXPECT_DOUBLE_EQ(out.Penalty, -Log(1e-8) * 1e20);
}

TEST(ExpectedSurvivors, TooFewSurvivorsArePenalised) {
  const Survivors out = ExpectedSurvivors({.AlphaR = 3, .BetaR = 1}, 0, 10, 5, false);
  EXPECT_LT(out.OutR, 1e-8);
  EXPECT_EQ(out.OutAll, 1e-8);
  EXPECT_EQ(out.Penalty, -Log(1e-8 - out.OutR) * 1e20);
}

TEST(ExpectedSurvivors, InABootstrapAnExpectedNumberOf0StaysAndIsPenalised) {
  const Survivors out = ExpectedSurvivors({.AlphaR = 300, .BetaR = 1}, 0, 10, 5, true);
  EXPECT_EQ(out.OutAll, 0);
  EXPECT_EQ(out.Penalty, 1e20);
  const Survivors few = ExpectedSurvivors({.AlphaR = 3, .BetaR = 1}, 0, 10, 5, true);
  EXPECT_EQ(few.OutAll, few.OutR);
  EXPECT_EQ(few.Penalty, 0);
}

TEST(ExpectedSurvivors, NobodyAtTheStartIsNoPenalty) {
  for (const bool bootstrap : {false, true}) {
    const Survivors out = ExpectedSurvivors(Random, 0, 10, 0, bootstrap);
    EXPECT_EQ(out.OutAll, 0);
    EXPECT_EQ(out.Penalty, 0);
  }
}

TEST(ExpectedSurvivors, ExactlyTheLeastNumberIsNotTooFew) {
  const Survivors out = ExpectedSurvivors({.BetaR = 1, .BetaC = 1, .f = 1}, 0, 10, 1e-8, false);
  EXPECT_EQ(out.OutAll, 1e-8);
  EXPECT_EQ(out.Penalty, 0);
}

TEST(ExpectedSurvivors, AMissingNumberIsTestedForOneKindOfMortalityOnly) {
  EXPECT_EQ(ExpectedSurvivors(Random, 0, 10, Missing, false).OutAll, 0);
  const Survivors correlated = ExpectedSurvivors({.AlphaC = 0.03, .BetaC = 1, .c = 1}, 0, 10, Missing, false);
  EXPECT_EQ(correlated.OutAll, 0);
  EXPECT_EQ(correlated.OutC, 0);
  EXPECT_EQ(correlated.PCorr, 0) << "though nobody is exposed to anything else";
  const Survivors mixed =
      ExpectedSurvivors({.AlphaR = 0.01, .BetaR = 1, .AlphaC = 0.05, .BetaC = 1, .c = 0.3}, 0, 10, Missing, false);
  EXPECT_LT(mixed.OutAll, -600);
  EXPECT_NE(mixed.OutAll, Missing);
}

// Effects of a brood's attributes.

struct OneBrood {
  OneBrood(std::int16_t hatchDate, std::vector<double> covariates) {
    data.NCov = static_cast<std::int16_t>(covariates.size());
    data.HatchDate = {hatchDate};
    data.Covariate = std::move(covariates);
    for (auto* family : {&p.ZetaBR, &p.GammaBR, &p.ZetaBC, &p.GammaBC}) family->Dimension(data.NCov + 2);
    for (auto* family : {&p.ZetaBRx, &p.GammaBRx, &p.ZetaBCx, &p.GammaBCx}) family->Dimension(2, data.NCov + 2);
    p.Alpha_BR = 0.1;
    p.Beta_BR = 1;
    p.Alpha_BC = 0.2;
    p.Beta_BC = 2;
  }
  BroodData data;
  Parameters p;
};

TEST(BroodMortality, IsTheBaseWithoutCoefficients) {
  const OneBrood b(160, {3, -999});
  const BroodMortality effective = BroodMortalityByAge(b.p, b.data, 0, 4.5);
  EXPECT_EQ(effective.mortality.AlphaR, 0.1);
  EXPECT_EQ(effective.mortality.BetaR, 1);
  EXPECT_EQ(effective.mortality.AlphaC, 0.2);
  EXPECT_EQ(effective.mortality.BetaC, 2);
}

TEST(BroodMortality, SumsTheEffectsInOneRunningSum) {
  // Numbers for which every other order of the terms and of their factors that comes to mind has another last digit.
  OneBrood b(179, {0.294, -0.895});
  b.p.ZetaBR = {0.00771, 0.0008, 0.453, 0.0404};
  b.p.ZetaBRx(1, 2) = 3.26e-05;
  b.p.ZetaBRx(1, 3) = 0.0057;
  b.p.ZetaBRx(2, 3) = 0.00022;
  b.p.ZetaBRx(1, 4) = 0.0016;
  b.p.ZetaBRx(2, 4) = 0.00079;
  const double E = 4.99, H = 179;
  double X = E * 0.00771 + H * 0.0008;
  X = X + 0.294 * 0.453;
  X = X + -0.895 * 0.0404;
  X = X + 3.26e-05 * E * H;
  X = X + (0.0057 * E * 0.294 + 0.00022 * H * 0.294);
  X = X + (0.0016 * E * -0.895 + 0.00079 * H * -0.895);
  EXPECT_EQ(BroodMortalityByAge(b.p, b.data, 0, E).mortality.AlphaR, 0.1 * Exp(X));
}

TEST(BroodMortality, ASumOf12ActsAs10AndTheRateEndsAtItsLimitWithAPenalty) {
  OneBrood b(150, {12});
  b.p.ZetaBR(3) = 1;
  const BroodMortality effective = BroodMortalityByAge(b.p, b.data, 0, Missing);
  EXPECT_EQ(effective.mortality.AlphaR, 10);
  const double excess = 0.1 * Exp(10.0) - 10;  // 2202.6 - 10
  EXPECT_EQ(effective.PenaltyAlphaR, excess * excess * 1e20);
  double Penalty = 3;
  effective.AddTo(Penalty);
  EXPECT_EQ(Penalty, 3 + excess * excess * 1e20);
}

TEST(BroodMortality, ItsPenaltiesAreAddedInTheirOrder) {
  const BroodMortality effective{{}, 1, 1e16, 2, 4};
  double Penalty = 1;
  effective.AddTo(Penalty);
  EXPECT_EQ(Penalty, 1.0 + 1.0 + 1e16 + 2 + 4);
  EXPECT_NE(Penalty, 1.0 + 1e16 + 1.0 + 2 + 4) << "a case in which the order matters";
}

TEST(BroodMortality, AMissingSizeAtHatchEntersAsItStands) {
  OneBrood b(150, {});
  b.p.ZetaBR(1) = 0.001;
  EXPECT_EQ(BroodMortalityByAge(b.p, b.data, 0, Missing).mortality.AlphaR, 0.1 * Exp(-999 * 0.001));
}

TEST(BroodMortality, ByDateHasNoMainTermsAndNoShapes) {
  OneBrood b(150, {2});
  b.p.ZetaBR = {0.5, 0.5, 0.1};
  b.p.ZetaBRx(1, 2) = 1e-4;
  const Mortality m = BroodMortalityByDate(b.p, b.data, 0, 4).mortality;
  EXPECT_EQ(m.AlphaR, 0.1 * Exp(2 * 0.1 + 1e-4 * 4 * 150));
  EXPECT_EQ(m.BetaR, 1);
  EXPECT_EQ(m.BetaC, 1);
}

TEST(BroodMortality, FailsOnAnOverflow) {
  OneBrood b(150, {1e300});
  b.p.ZetaBR(3) = -1e10;
  EXPECT_THROW(BroodMortalityByAge(b.p, b.data, 0, 4), RuntimeFailure);
  OneBrood large(150, {});
  large.p.Alpha_BR = 1e300;
  EXPECT_THROW(BroodMortalityByAge(large.p, large.data, 0, 4), RuntimeFailure);
}

}  // namespace
}  // namespace merlane
