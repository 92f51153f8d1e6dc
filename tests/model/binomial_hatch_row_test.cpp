#include "model/binomial_hatch_row.h"

#include <gtest/gtest.h>

#include <limits>

#include "model/same_bits.h"
#include "platform/random_streams.h"

namespace merlane {
namespace {

constexpr int MaxCount = 15;

/// One distribution over hatch as it is asked for.
struct Asked {
  SpanningJudge::Expected expected{{}, 0, 0, 0.1, 0.1};
  int n = 0;
  std::vector<std::int16_t> counts;
};

Asked AnyAsked(RandomStream& random) {
  Asked asked;
  asked.n = 1 + static_cast<int>(random.Uniform() * MaxCount);
  asked.expected.q = random.Uniform();
  asked.expected.r = random.Uniform();
  OverHatch& numbers = asked.expected.numbers;
  numbers.EHatchR = asked.n * random.Uniform();
  numbers.EHatchC = asked.n * random.Uniform();
  for (const HatchFate fate : HatchFates) {
    const double kind = random.Uniform();
    const double share = kind < 0.1 ? 0 : kind < 0.2 ? 1 : random.Uniform();
    numbers.juveniles[fate] = kind > 0.9 ? Missing : numbers.EHatch(fate) * share;
  }
  for (int k = static_cast<int>(random.Uniform() * (asked.n + 1)); k <= asked.n;
       k += 1 + static_cast<int>(random.Uniform() * 3))
    asked.counts.push_back(static_cast<std::int16_t>(k));
  return asked;
}

CountErrors Errors(double c_N, double c_B) {
  Parameters p;
  p.c_N = c_N;
  p.c_B = c_B;
  p.f_N = p.f_B = 0.1;
  return CountErrors(p);
}

TEST(BinomialHatchRow, HasTheBitsOfOneDistributionAfterTheOther) {
  const CountDistributions distributions(MaxCount);
  SpanningJudge judge(distributions, MaxCount);
  RandomStream random(2026, 1);
  int judged = 0;
  for (const auto& errors : {Errors(0.5, 0.5), Errors(0, 0.3), Errors(0.2, 0), Errors(0, 0)})
    for (int row = 0; row < 200; ++row) {
      std::vector<Asked> asked(1 + static_cast<std::size_t>(row % 7));
      std::size_t terms = 0, counts = 0;
      for (Asked& one : asked) {
        one = AnyAsked(random);
        terms += BinomialHatchRow::MostTerms(one.n, one.counts);
        counts += one.counts.size();
      }
      ASSERT_TRUE(BinomialHatchRow::Serves(errors, MaxCount));
      BinomialHatchRow together(distributions, asked.size(), terms);
      for (const bool testSums : {false, true}) {
        std::vector<double> expected, P(counts);
        bool known = true, added = true;
        together.Begin();
        for (const Asked& one : asked) {
          std::vector<double> alone(one.counts.size());
          known = known && judge.FillProbabilities(errors, one.expected, one.n, one.counts, testSums, alone);
          added = added && together.Add(errors, one.expected, one.n, one.counts, testSums);
          expected.insert(expected.end(), alone.begin(), alone.end());
        }
        ASSERT_EQ(added, known) << row;
        if (!known) continue;
        together.FillProbabilities(P);
        EXPECT_TRUE(std::ranges::equal(P, expected, SameBits)) << row;
        ++judged;
      }
    }
  EXPECT_GT(judged, 500);
}

TEST(BinomialHatchRow, DeclinesWhereOneDistributionFails) {
  const CountDistributions distributions(MaxCount);
  BinomialHatchRow row(distributions, 1, 100);
  RandomStream random(2026, 2);
  Asked asked = AnyAsked(random);
  asked.expected.numbers.juveniles.fill(1);
  row.Begin();
  EXPECT_TRUE(row.Add(Errors(0.5, 0.5), asked.expected, asked.n, asked.counts, false));
  asked.expected.thetaJuvs = std::numeric_limits<double>::quiet_NaN();
  row.Begin();
  EXPECT_FALSE(row.Add(Errors(0.5, 0.5), asked.expected, asked.n, asked.counts, false))
      << "an overdispersion overflows";
  row.Begin();
  EXPECT_TRUE(row.Add(Errors(0.5, 0), asked.expected, asked.n, asked.counts, false)) << "which nobody needs";
  asked.expected.numbers.EHatchR = 0;
  row.Begin();
  EXPECT_FALSE(row.Add(Errors(0.5, 0), asked.expected, asked.n, asked.counts, false)) << "of none some are left";
}

TEST(BinomialHatchRow, ServesNoOverdispersion) {
  CountErrors errors = Errors(0.5, 0.5);
  EXPECT_FALSE(BinomialHatchRow::Serves(errors, 1001)) << "whose sum has to be made";
  errors.juveniles.CodeC = 2;
  EXPECT_FALSE(BinomialHatchRow::Serves(errors, MaxCount));
}

}  // namespace
}  // namespace merlane
