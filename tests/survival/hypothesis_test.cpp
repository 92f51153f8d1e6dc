#include "survival/hypothesis.h"

#include "survival/catalogue.h"
#include "survival/survival_tables.h"

namespace merlane {
namespace {

constexpr const char* T5 = "DO NOT ESTIMATE (MUST=0) Overdispersion Theta_NC^2 for eggs";
constexpr const char* T6 = "DO NOT ESTIMATE (MUST=0) Clutch age attenuation coefficient for Theta_NC^2";
constexpr const char* T7 = "DO NOT ESTIMATE (MUST=0) Overdispersion Theta_BC^2 for juveniles";
constexpr const char* T8 = "DO NOT ESTIMATE (MUST=0) Brood age attenuation coefficient for Theta_BC^2";

/// One brood with one juvenile interval that the model uses, and a vector that needs no repair: both mortalities random
/// alone.
struct Hypothesis {
  explicit Hypothesis(int covariates = 0) : NPAR(static_cast<std::int16_t>(ParameterCount(covariates))) {
    data.FirstYear = data.LastYear = 1995;
    data.NCov = static_cast<std::int16_t>(covariates);
    data.InteractionBase = static_cast<std::int16_t>(InteractionBaseOf(covariates));
    data.CovariateName.Dimension(covariates, "Depth");
    AllocateTables(data, {{2}});
    data.VisitAge = {-5, 4};
    data.HatchDate = {170};
    tables.Dimension(data);
    tables.Preset();
    tables.EVisitR[1] = 3;
    tables.EHatch[0] = 4;
    tables.ClutchIntervals = tables.BroodIntervals = 1;
    Value.Dimension(NPAR);
    Step.Dimension(NPAR);
    Names.Dimension(NPAR);
    Fuse.Dimension(NPAR, "~~");
    for (int i = 1; i <= 4; ++i) Value(i) = 1;
    Value(15) = Value(17) = 0.02;
    Value(16) = Value(18) = Value(20) = Value(22) = 1;
    FillParameterDescriptions(Names, NPAR, data);
  }
  bool Validate() { return ValidateHypothesis(data, tables, simulation, Value, Step, Names, Fuse); }

  void ExpectFixed(int i, double value, const std::string& text) const {
    EXPECT_EQ(Value(i), value) << i;
    EXPECT_EQ(Step(i), 0) << i;
    EXPECT_EQ(Names(i), text) << i;
  }
  void ExpectStarted(int i, const std::string& text) const {
    EXPECT_EQ(Value(i), 0.01) << i;
    EXPECT_EQ(Step(i), 0.001) << i;
    EXPECT_EQ(Names(i), text) << i;
  }

  std::int16_t NPAR;
  BroodData data;
  SurvivalTables tables;
  bool simulation = false;
  Array1<double> Value, Step;
  Array1<std::string> Names, Fuse;
};

TEST(Hypothesis, AVectorThatNeedsNoRepairComesBackIdenticalThoughTextsChange) {
  Hypothesis h(1);
  const Array1<double> value = h.Value;
  EXPECT_FALSE(h.Validate());
  EXPECT_EQ(h.Value, value);
  EXPECT_EQ(h.Fuse, Array1<std::string>(h.NPAR, "~~"));
  EXPECT_EQ(h.Names(12), "DO NOT ESTIMATE (MUST=0) Clutch age attenuation coefficient (c_N)");
  EXPECT_EQ(h.Names(14), "DO NOT ESTIMATE (MUST=0) Brood age attenuation coefficient (c_B)");
}

TEST(Hypothesis, OverdispersionOfBinomialEggsBecomes0AndIsUnfused) {
  Hypothesis h;
  h.Value(5) = 0.3;
  h.Step(5) = 0.03;
  h.Value(11) = 0.5;
  h.Value(19) = 0.02;
  h.Fuse(5) = "A";
  EXPECT_TRUE(h.Validate());
  h.ExpectFixed(5, 0, "DO NOT ESTIMATE (MUST=0) Overdispersion Theta_NC^2 for eggs");
  EXPECT_EQ(h.Fuse(5), "~");
}

TEST(Hypothesis, RandomMortalityHasNoBetaBinomialForm) {
  Hypothesis h;
  h.Value(1) = h.Value(2) = 2;
  h.Step(1) = h.Step(2) = 0.1;
  const Array1<std::string> names = h.Names;
  EXPECT_TRUE(h.Validate());
  for (const int i : {1, 2}) h.ExpectFixed(i, 1, names(i));
}

TEST(Hypothesis, ABinomialStageHasNoOverdispersionAndNoAttenuationOfIt) {
  for (const bool eggs : {true, false}) {
    Hypothesis h;
    h.Value(3) = eggs ? 1 : 2;
    h.Value(4) = eggs ? 2 : 1;
    h.Value(11) = h.Value(13) = 0.5;
    h.Value(19) = h.Value(21) = 0.02;
    for (int i = 5; i <= 8; ++i) h.Value(i) = h.Step(i) = 0.3;
    EXPECT_TRUE(h.Validate());
    const int fixed = eggs ? 5 : 7, kept = eggs ? 7 : 5;
    h.ExpectFixed(fixed, 0, fixed == 5 ? T5 : T7);
    h.ExpectFixed(fixed + 1, 0, fixed == 5 ? T6 : T8);
    for (const int i : {kept, kept + 1}) EXPECT_EQ(h.Value(i), 0.3) << i;
  }
}

TEST(Hypothesis, AnOverdispersionOf0HasNoAttenuation) {
  Hypothesis h;
  h.Value(3) = h.Value(4) = 2;
  h.Value(11) = h.Value(13) = 0.5;
  h.Value(19) = h.Value(21) = 0.02;
  h.Step(5) = h.Step(7) = 0.1;  // may become one
  h.Value(6) = h.Value(8) = h.Step(6) = h.Step(8) = 0.1;
  EXPECT_TRUE(h.Validate());
  h.ExpectFixed(6, 0, T6);
  h.ExpectFixed(8, 0, T8);
  EXPECT_EQ(h.Step(5), 0.1);
  EXPECT_EQ(h.Step(7), 0.1);
  EXPECT_EQ(h.Fuse(6), "~");
}

TEST(Hypothesis, WithoutCorrelatedMortalityThereIsNoOverdispersionWhateverTheCode) {
  Hypothesis h;
  h.Value(3) = h.Value(4) = 2;
  for (int i = 5; i <= 8; ++i) h.Value(i) = h.Step(i) = 0.3;
  EXPECT_TRUE(h.Validate());
  h.ExpectFixed(5, 0, T5);
  h.ExpectFixed(6, 0, T6);
  h.ExpectFixed(7, 0, T7);
  h.ExpectFixed(8, 0, T8);
}

TEST(Hypothesis, OnlyTheFirstChangedParameterIsUnfused) {
  Hypothesis h;
  h.Fuse.Fill("B");
  h.Value(2) = 2;
  h.Value(7) = 0.3;
  h.Step(8) = 0.1;
  EXPECT_TRUE(h.Validate());
  EXPECT_EQ(h.Value(2), 1);
  EXPECT_EQ(h.Names(2)[0], 'E') << "the text of a code stays";
  EXPECT_EQ(h.Fuse(2), "~");
  EXPECT_EQ(h.Fuse(7), "B");
  EXPECT_EQ(h.Fuse(8), "B");
}

TEST(Hypothesis, AStepAloneThatGoesTo0IsAChange) {
  Hypothesis h;
  h.Step(12) = 0.1;
  EXPECT_TRUE(h.Validate());
  EXPECT_EQ(h.Fuse(12), "~");
}

TEST(Hypothesis, EggsWithoutAnyRateKeepAMortality) {
  Hypothesis h;
  h.Value(15) = 0;
  EXPECT_TRUE(h.Validate());
  h.ExpectStarted(15, "DO ESTIMATE     (MUST>0) Alpha_NR for egg survival");
  h.ExpectFixed(19, 0, "DO NOT ESTIMATE (MUST=0) Alpha_NC for egg survival");
  h.ExpectFixed(20, 1, "DO NOT ESTIMATE (MUST=1) Beta_NC  for egg survival");
}

TEST(Hypothesis, AllEggsCorrelatedWithoutAttenuationHaveNoRandomMortality) {
  Hypothesis h;
  h.Value(11) = 1;
  EXPECT_TRUE(h.Validate());
  h.ExpectFixed(15, 0, "DO NOT ESTIMATE (MUST=0) Alpha_NR for egg survival");
  h.ExpectFixed(16, 1, "DO NOT ESTIMATE (MUST=1) Beta_NR  for egg survival");
  h.ExpectStarted(19, "DO ESTIMATE     (MUST>0) Alpha_NC for egg survival");
}

TEST(Hypothesis, AllEggsCorrelatedWithAttenuationKeepBothRatesAndGiveEachAStart) {
  Hypothesis h;
  h.Value(11) = 1;
  h.Value(12) = 0.2;
  h.Value(15) = 0;
  EXPECT_TRUE(h.Validate());
  h.ExpectStarted(19, "DO ESTIMATE     (MUST>0) Theta_NC^2 for egg survival");
  h.ExpectStarted(15, "DO ESTIMATE     (MUST>0) Alpha_NR for egg survival");
}

TEST(Hypothesis, AllJuvenilesCorrelatedLoseTheRandomFamilies) {
  Hypothesis h(1);
  h.Value(13) = 1;
  for (int i = 23; i <= h.NPAR; ++i) h.Value(i) = h.Step(i) = 0.1;
  EXPECT_TRUE(h.Validate());
  h.ExpectFixed(17, 0, "DO NOT ESTIMATE (MUST=0) Alpha_BR for juvenile survival");
  h.ExpectFixed(18, 1, "DO NOT ESTIMATE (MUST=1) Beta_BR for juvenile survival");
  h.ExpectStarted(21, "DO ESTIMATE (MUST>0) Alpha_BC for juvenile survival");
  for (const int i : {23, 24, 25, 26, 31, 33})
    h.ExpectFixed(i, 0, "DO NOT ESTIMATE (MUST=0) Brood covariates (random mortality)");
  for (const int i : {35, 36, 39, 40, 41, 42})
    h.ExpectFixed(i, 0, "DO NOT ESTIMATE (MUST=0) Brood covariate interactions  (random mortality)");
  for (const int i : {27, 28, 29, 30, 32, 34, 37, 38, 43, 44, 45, 46}) EXPECT_EQ(h.Value(i), 0.1) << i;
}

TEST(Hypothesis, JuvenilesWithoutCorrelatedMortalityLoseTheCorrelatedFamilies) {
  Hypothesis h(1);
  h.Value(17) = 0;
  for (int i = 23; i <= h.NPAR; ++i) h.Value(i) = h.Step(i) = 0.1;
  EXPECT_TRUE(h.Validate());
  h.ExpectStarted(17, "DO ESTIMATE (MUST>0) Alpha_BR for juvenile survival");
  h.ExpectFixed(21, 0, "DO NOT ESTIMATE (MUST=0) Alpha_BC for juvenile survival");
  h.ExpectFixed(22, 1, "DO NOT ESTIMATE (MUST=1) Beta_BC for juvenile survival");
  for (const int i : {27, 28, 29, 30}) h.ExpectFixed(i, 0, "DO NOT ESTIMATE (MUST=0) Brood covariates");
  for (const int i : {32, 34}) h.ExpectFixed(i, 0, "DO NOT ESTIMATE (MUST=0) Brood covariates (correlated mortality)");
  for (const int i : {37, 38, 43, 44, 45, 46})
    h.ExpectFixed(i, 0, "DO NOT ESTIMATE (MUST=0) Brood covariate interactions  (correlated mortality)");
  for (const int i : {23, 24, 25, 26, 31, 33, 35, 36, 39, 40, 41, 42}) EXPECT_EQ(h.Value(i), 0.1) << i;
}

TEST(Hypothesis, ABroodOfUnknownSizeAtHatchTakesTheSizeFromAllBroodsButLeavesTheInteractionValues) {
  Hypothesis h(1);
  h.tables.EHatch[0] = Missing;
  for (int i = 23; i <= h.NPAR; ++i) h.Value(i) = h.Step(i) = 0.1;
  EXPECT_TRUE(h.Validate());
  h.ExpectFixed(23, 0, "DO NOT ESTIMATE (MUST=0) Zeta_BR(01)  (on Alpha_BR): E[brood size@hatch]");
  h.ExpectFixed(25, 0, "DO NOT ESTIMATE (MUST=0) Gamma_BR(01) (on Beta_BR):  E[brood size@hatch]");
  EXPECT_EQ(h.Value(24), 0.1);
  for (const int i : {35, 39, 41}) EXPECT_EQ(h.Value(i), 0.1) << i;
  EXPECT_EQ(h.Names(35), "DO NOT ESTIMATE (MUST=0) Interaction term coefficients Zeta_BR(01) x  Zeta_BR(02)");
  EXPECT_EQ(h.Names(39),
            "DO NOT ESTIMATE (MUST=0) Interaction term coefficients  Zeta_BR(01) x  Zeta_BR(03)               Depth");
  EXPECT_EQ(h.Names(41),
            "DO NOT ESTIMATE (MUST=0) Interaction term coefficients Gamma_BR(01) x Gamma_BR(03)               Depth");
  EXPECT_EQ(h.Names(40)[0], 'I') << "the interaction of the hatch date keeps its text";
}

TEST(Hypothesis, AHatchDateOf999BelowZeroTakesTheHatchDateAndOneOf0DoesNot) {
  Hypothesis missing(1), blank(1);
  missing.data.HatchDate[0] = Missing;
  blank.data.HatchDate[0] = 0;
  for (Hypothesis* h : {&missing, &blank}) {
    h->Value(24) = 0.1;
    h->Value(42) = 0.1;
    h->Validate();
  }
  missing.ExpectFixed(24, 0, "DO NOT ESTIMATE (MUST=0) Zeta_BR(02)  (on Alpha_BR): Hatch date");
  EXPECT_EQ(missing.Value(42), 0.1);
  EXPECT_EQ(missing.Names(42),
            "DO NOT ESTIMATE (MUST=0) Interaction term coefficients Gamma_BR(02) x Gamma_BR(03)               Depth");
  EXPECT_EQ(blank.Value(24), 0.1);
}

TEST(Hypothesis, AnExpectedCountOfEitherKindMakesAJuvenileInterval) {
  Hypothesis h;
  h.tables.EHatch[0] = Missing;
  std::swap(h.tables.EVisitR[1], h.tables.EVisitC[1]);
  h.Value(23) = 0.1;
  h.Validate();
  EXPECT_EQ(h.Value(23), 0);
}

TEST(Hypothesis, ABroodWithoutAJuvenileIntervalMayLackItsSizeAtHatch) {
  Hypothesis h;
  h.tables.EHatch[0] = Missing;
  h.tables.EVisitR[1] = Missing;
  h.Value(23) = 0.1;
  h.Validate();
  EXPECT_EQ(h.Value(23), 0.1);
}

TEST(Hypothesis, WhatTheRulesOnCorrelatedJuvenilesSayReplacesWhatThoseOnMissingAttributesSaid) {
  Hypothesis h(1);
  h.tables.EHatch[0] = Missing;
  h.data.HatchDate[0] = Missing;
  h.Validate();
  h.ExpectFixed(26, 0, "DO NOT ESTIMATE (MUST=0) Gamma_BR(02) (on Beta_BR):  Hatch date");
  for (int i = 27; i <= 30; ++i) h.ExpectFixed(i, 0, "DO NOT ESTIMATE (MUST=0) Brood covariates");
  EXPECT_EQ(h.Names(36), "DO NOT ESTIMATE (MUST=0) Interaction term coefficients Gamma_BR(01) x Gamma_BR(02)");
  for (const int i : {37, 38, 43, 44, 45, 46})
    h.ExpectFixed(i, 0, "DO NOT ESTIMATE (MUST=0) Brood covariate interactions  (correlated mortality)");
}

TEST(Hypothesis, APredictionOfTheHatchDayIsNoJuvenileInterval) {
  Hypothesis h;
  h.data.VisitAge = {-5, 0};
  h.data.HatchDate[0] = Missing;
  h.Value(24) = 0.1;
  h.Validate();
  EXPECT_EQ(h.Value(24), 0.1);
}

TEST(Hypothesis, JuvenilesWithBothMortalitiesGiveEachRateAStart) {
  Hypothesis h;
  h.Value(13) = 0.4;
  h.Value(17) = 0;
  EXPECT_TRUE(h.Validate());
  h.ExpectStarted(17, "DO ESTIMATE (MUST>0) Alpha_BR for juvenile survival");
  h.ExpectStarted(21, "DO ESTIMATE (MUST>0) Alpha_BC for juvenile survival");
}

TEST(Hypothesis, ClutchVisitsAloneFixAllJuvenileParameters) {
  Hypothesis h(1);
  h.tables.BroodIntervals = 0;
  h.Value(13) = 0.4;
  EXPECT_TRUE(h.Validate());
  for (const int i : {7, 8, 13, 14, 17, 21}) EXPECT_EQ(h.Value(i), 0) << i;
  for (const int i : {18, 22}) EXPECT_EQ(h.Value(i), 1) << i;
  h.ExpectFixed(13, 0, "DO NOT ESTIMATE (MUST=0) p[Brood experiences correlated mortality @ a=0] (c_B)");
  h.ExpectFixed(30, 0, "DO NOT ESTIMATE (MUST=0) Brood attributes (random & correlated mortality)");
  h.ExpectFixed(31, 0, "DO NOT ESTIMATE (MUST=0) Brood covariates (random & correlated mortality)");
  h.ExpectFixed(46, 0, "DO NOT ESTIMATE (MUST=0) Brood covariates (random & correlated mortality)");
}

TEST(Hypothesis, BroodVisitsAloneFixAllEggParameters) {
  Hypothesis h;
  h.tables.ClutchIntervals = 0;
  EXPECT_TRUE(h.Validate());
  for (const int i : {5, 6, 11, 12, 15, 19}) EXPECT_EQ(h.Value(i), 0) << i;
  h.ExpectFixed(11, 0, "DO NOT ESTIMATE (MUST=0) p[Clutch experiences correlated mortality @ a=I] (c_N)");
  h.ExpectFixed(12, 0, "DO NOT ESTIMATE (MUST=0) Clutch age attenuation coefficient (f_N)");
}

TEST(Hypothesis, WithoutIntervalsOverdispersionAndShapesAreFixedToo) {
  Hypothesis h;
  h.tables.ClutchIntervals = h.tables.BroodIntervals = 0;
  h.Value(3) = h.Value(4) = 2;
  for (int i = 5; i <= 22; ++i) h.Value(i) = h.Step(i) = 0.4;
  EXPECT_TRUE(h.Validate());
  h.ExpectFixed(5, 0, T5);
  h.ExpectFixed(6, 0, T6);
  h.ExpectFixed(7, 0, T7);
  h.ExpectFixed(8, 0, T8);
  h.ExpectFixed(14, 0, "DO NOT ESTIMATE (MUST=0) Brood age attenuation coefficient (f_B)");
  h.ExpectFixed(15, 0, "DO NOT ESTIMATE (MUST=0) Alpha_NR for egg survival");
  h.ExpectFixed(16, 1, "DO NOT ESTIMATE (MUST=1) Beta_NR  for egg survival");
  h.ExpectFixed(17, 0, "DO NOT ESTIMATE (MUST=0) Alpha_BR for juvenile survival");
  h.ExpectFixed(18, 1, "DO NOT ESTIMATE (MUST=1) Beta_BR for juvenile survival");
  h.ExpectFixed(19, 0, "DO NOT ESTIMATE (MUST=0) Alpha_NC for egg survival");
  h.ExpectFixed(20, 1, "DO NOT ESTIMATE (MUST=1) Beta_NC  for egg survival");
  h.ExpectFixed(21, 0, "DO NOT ESTIMATE (MUST=0) Alpha_BC for juvenile survival");
  h.ExpectFixed(22, 1, "DO NOT ESTIMATE (MUST=1) Beta_BC for juvenile survival");
  for (const int i : {3, 4}) EXPECT_EQ(h.Value(i), 2) << "the codes stay";
  for (const int i : {9, 10}) EXPECT_EQ(h.Step(i), 0.4) << "and so do the ages";
}

TEST(Hypothesis, TheLastRuleToTouchAParameterWins) {
  Hypothesis h(1);
  h.tables.ClutchIntervals = h.tables.BroodIntervals = 0;
  h.data.AllClutchAgesKnown = h.data.AllBroodAgesKnown = false;
  h.Validate();
  h.ExpectFixed(16, 1, "DO NOT ESTIMATE (MUST=1) Weibull parameter Beta_NR");
  h.ExpectFixed(20, 1, "DO NOT ESTIMATE (MUST=1) Weibull parameter Beta_NC");
  h.ExpectFixed(18, 1, "DO NOT ESTIMATE (MUST=1) Weibull parameter Beta_BR");
  h.ExpectFixed(22, 1, "DO NOT ESTIMATE (MUST=1) Weibull parameter Beta_BC");
  h.ExpectFixed(23, 0, "DO NOT ESTIMATE (MUST=0) Zeta_BR(01)  (on Alpha_BR): E[brood size@hatch]");
  h.ExpectFixed(30, 0, "DO NOT ESTIMATE (MUST=0) Gamma_BC(02) (on Beta_BC):  Hatch date");
  h.ExpectFixed(31, 0, "DO NOT ESTIMATE (MUST=0) Brood covariates & interactions (random & correlated mortality)");
}

TEST(Hypothesis, UnknownAgesFixWhatNeedsThem) {
  Hypothesis clutch, brood(1);
  clutch.data.AllClutchAgesKnown = false;
  clutch.Value(11) = 0.5;
  for (const int i : {12, 16, 19, 20}) clutch.Value(i) = clutch.Step(i) = 1.5;
  EXPECT_TRUE(clutch.Validate());
  clutch.ExpectFixed(12, 0, "DO NOT ESTIMATE (MUST=0) Clutch age attenuation coefficient (f_N)");
  clutch.ExpectFixed(16, 1, "DO NOT ESTIMATE (MUST=1) Weibull parameter Beta_NR");
  clutch.ExpectFixed(20, 1, "DO NOT ESTIMATE (MUST=1) Weibull parameter Beta_NC");
  EXPECT_EQ(clutch.Value(19), 1.5);
  brood.data.AllBroodAgesKnown = false;
  brood.Value(26) = brood.Value(46) = 0.1;
  brood.Value(13) = 0.5;
  for (const int i : {14, 18, 21, 22}) brood.Value(i) = brood.Step(i) = 1.5;
  EXPECT_TRUE(brood.Validate());
  brood.ExpectFixed(14, 0, "DO NOT ESTIMATE (MUST=0) Brood age attenuation coefficient (f_B)");
  brood.ExpectFixed(22, 1, "DO NOT ESTIMATE (MUST=1) Weibull parameter Beta_BC");
  EXPECT_EQ(brood.Value(21), 1.5);
  brood.ExpectFixed(18, 1, "DO NOT ESTIMATE (MUST=1) Weibull parameter Beta_BR");
  brood.ExpectFixed(26, 0, "DO NOT ESTIMATE (MUST=0) Gamma_BR(02) (on Beta_BR):  Hatch date");
  brood.ExpectFixed(46, 0, "DO NOT ESTIMATE (MUST=0) Brood covariates & interactions (random & correlated mortality)");
}

TEST(Hypothesis, ASimulationHasNoCovariates) {
  Hypothesis h;
  h.simulation = true;
  h.Value(31) = 0.1;
  EXPECT_TRUE(h.Validate());
  h.ExpectFixed(31, 0, "DO NOT ESTIMATE (MUST=0) Brood covariates & interactions (random & correlated mortality)");
}

TEST(Hypothesis, ASecondRepairFindsNothingToDo) {
  Hypothesis h(1);
  for (int i = 5; i <= h.NPAR; ++i) h.Value(i) = h.Step(i) = 0.5;
  h.Value(13) = 0;
  EXPECT_TRUE(h.Validate());
  h.Validate();
  EXPECT_FALSE(h.Validate());
}

}  // namespace
}  // namespace merlane
