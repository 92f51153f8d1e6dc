#include "model/pick_table.h"

#include <gtest/gtest.h>

#include "base/runtime_failure.h"
#include "likelihood/streams.h"
#include "survival/same_bits.h"

namespace merlane {
namespace {

/// A distribution of 0..n, with impossible counts among them.
CountPrediction Distribution(int n, RandomStream& random) {
  CountPrediction prediction;
  double sum = 0;
  for (int k = 0; k <= n; ++k) {
    prediction.Pmf.push_back(random.Uniform() < 0.2 ? 0 : random.Uniform() / (n + 1));
    prediction.Cum.push_back(sum += prediction.Pmf.back());
  }
  if (n % 2 == 0) prediction.Cum.back() = 1;
  return prediction;
}

TEST(PickTable, PicksAsOneDistributionDoes) {
  RandomStream random(2026, 4);
  PickTable table;
  std::vector<CountPrediction> distributions;
  for (int i = 0; i < 60; ++i) {
    distributions.push_back(Distribution(i, random));
    table.Add(distributions.back());
  }
  distributions[30].Cum = {0.5, 0.2, 0.9};  // does not rise
  distributions[30].Pmf = {0.5, 0.3, 0.2};
  table.Add(distributions[30]);
  distributions.push_back(distributions[30]);
  test::Streams streams, alone;
  for (int i = 0; i < 20000; ++i) {
    const std::size_t d = static_cast<std::size_t>(i) % distributions.size();
    if (d == 30) continue;
    double SumPearson = 0, SumDeviance = 0;
    bool possible = true;
    const double U = streams.random.Uniform();
    try {
      Simulate_Pick_ChiSq(distributions[d], alone.random, {}, SumPearson, SumDeviance);
    } catch (const RuntimeFailure&) {
      possible = false;
    }
    const PickTable::Count& picked = table.Pick(d, U);
    EXPECT_EQ(picked.IsPossible(), possible);
    if (!possible) continue;
    EXPECT_PRED2(SameBits, picked.adds.Pearson, SumPearson);
    EXPECT_PRED2(SameBits, picked.adds.Deviance, SumDeviance);
  }
}

TEST(PickTable, ATieIsNotAbove) {
  PickTable table;
  table.Add({.Pmf = {0.25, 0.25, 0.5}, .Cum = {0.25, 0.5, 1}});
  EXPECT_EQ(table.Pick(0, 0.25).adds.Deviance, JudgeProbability(0.25).Deviance);
  EXPECT_EQ(table.Pick(0, 0.5).adds.Pearson, JudgeProbability(0.25).Pearson);
  EXPECT_EQ(table.Pick(0, std::nextafter(0.5, 1)).adds.Pearson, JudgeProbability(0.5).Pearson);
  EXPECT_EQ(table.Pick(0, 0).adds.Pearson, JudgeProbability(0.25).Pearson);
}

}  // namespace
}  // namespace merlane
