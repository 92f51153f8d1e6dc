#include "model/likelihood_state.h"

#include <gtest/gtest.h>

#include <cmath>

namespace merlane {
namespace {

LikelihoodState WithDeviances(std::vector<double> deviances) {
  LikelihoodState state;
  state.VisitDeviance = std::move(deviances);
  state.KeepBest({});
  return state;
}

TEST(LikelihoodState, TheLimitsAreThoseOfTheDeviances) {
  const LikelihoodState state = WithDeviances({0, 3.5, -2e-16, 0.25});
  EXPECT_EQ(state.MinDeviance, -2e-16);
  EXPECT_EQ(state.MaxDeviance, 3.5);
}

TEST(LikelihoodState, APearsonDeviateBelowAllDeviancesIsTheLowerLimit) {
  const LikelihoodState state = WithDeviances({0.25, 3.5});
  const double P = std::exp(-0.5 * 0.25);
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

}  // namespace
}  // namespace merlane
