#include "likelihood/likelihood_state.h"

#include <gtest/gtest.h>

#include "base/elementary.h"

namespace merlane {
namespace {

LikelihoodState WithDeviances(std::vector<double> deviances) {
  LikelihoodState state;
  state.VisitDeviance = std::move(deviances);
  state.KeepBestTables();
  return state;
}

TEST(LikelihoodState, TheLimitsAreThoseOfTheDeviances) {
  const LikelihoodState state = WithDeviances({0, 3.5, -2e-16, 0.25});
  EXPECT_EQ(state.MinDeviance, -2e-16);
  EXPECT_EQ(state.MaxDeviance, 3.5);
}

TEST(LikelihoodState, APearsonDeviateBelowAllDeviancesIsTheLowerLimit) {
  const LikelihoodState state = WithDeviances({0.25, 3.5});
  const double P = Exp(-0.5 * 0.25);
  EXPECT_EQ(state.MinDeviance, (1 - P) / P);
  EXPECT_EQ(state.MaxDeviance, 3.5);
}

TEST(LikelihoodState, ADevianceWhoseProbabilityUnderflowsHasNoPearsonDeviate) {
  const LikelihoodState state = WithDeviances({1e4, 2e4});
  EXPECT_EQ(state.MinDeviance, 1e4);
  EXPECT_EQ(state.MaxDeviance, 2e4);
}

TEST(LikelihoodState, WithoutVisitsTheLimitsAreThoseOfNothing) {
  const LikelihoodState state = WithDeviances({});
  EXPECT_EQ(state.MinDeviance, 1e100);
  EXPECT_EQ(state.MaxDeviance, -1e100);
}

TEST(LikelihoodState, APresetLeavesNothingButTheDeviances) {
  BroodData data;
  data.FirstYear = data.LastYear = 1995;
  AllocateTables(data, {{2}});
  LikelihoodState state;
  state.Dimension(data);
  state.VisitDeviance = state.best.VisitDeviance = {1, 2};
  state.VarR = {3, 4};
  state.Preset();
  const std::vector<double> perBrood = {Missing}, perVisit = {Missing, Missing};
  for (const SurvivalTables* t : {&state.survival, &state.best.survival}) {
    for (const auto* column :
         {&t->EHatchR, &t->EHatchC, &t->EHatch, &t->PCorrHatch, &t->JuvRR, &t->JuvCR, &t->JuvRC, &t->JuvCC})
      EXPECT_EQ(*column, perBrood);
    for (const auto* column : {&t->EVisitR, &t->EVisitC, &t->EVisit, &t->PCorrEgg, &t->PCorrJuv})
      EXPECT_EQ(*column, perVisit);
  }
  for (const auto* column : {&state.best.VarR, &state.best.VarC, &state.best.VarAll}) EXPECT_EQ(*column, perVisit);
  EXPECT_EQ(state.VisitDeviance, (std::vector<double>{1, 2}));
  EXPECT_EQ(state.best.VisitDeviance, (std::vector<double>{1, 2}));
  EXPECT_EQ(state.VarR, (std::vector<double>{3, 4})) << "each evaluation clears them itself";
}

}  // namespace
}  // namespace merlane
