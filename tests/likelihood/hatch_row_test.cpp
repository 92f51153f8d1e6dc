#include "likelihood/hatch_row.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>
#include <vector>

#include "base/arithmetic_failure.h"
#include "platform/random_streams.h"
#include "survival/same_bits.h"

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

/// Overdispersion where the codes are 2.
CountErrors Overdispersed(CountErrors errors, std::int16_t eggs, std::int16_t juveniles) {
  errors.eggs.CodeC = eggs;
  errors.juveniles.CodeC = juveniles;
  return errors;
}

TEST(HatchRow, HasTheBitsOfOneDistributionAfterTheOther) {
  const CountDistributions distributions(MaxCount);
  SpanningJudge judge(distributions, MaxCount);
  RandomStream random(2026, 1);
  int judged = 0, left = 0;
  const CountErrors both = Errors(0.5, 0.5);
  for (const auto& errors :
       {both, Errors(0, 0.3), Errors(0.2, 0), Errors(0, 0), Overdispersed(both, 2, 2), Overdispersed(both, 1, 2),
        Overdispersed(both, 2, 1), Overdispersed(Errors(0, 0.3), 1, 2), Overdispersed(Errors(0.2, 0), 2, 1)})
    for (int row = 0; row < 200; ++row) {
      std::vector<Asked> asked(1 + static_cast<std::size_t>(row % 7));
      for (Asked& one : asked) {
        one = AnyAsked(random);
        one.expected.thetaEggs = row % 3 == 0 ? 0.2 : std::pow(10.0, -7 * random.Uniform());
        one.expected.thetaJuvs = row % 3 == 0 ? 0.3 : std::pow(10.0, -7 * random.Uniform());
      }
      HatchRow together(distributions, {7, 7 * (MaxCount + 1), MaxCount});
      for (const bool testSums : {false, true}) {
        std::vector<std::pair<std::vector<double>, std::vector<double>>> P(asked.size());  // together, and alone
        bool fails = false;
        together.Begin();
        for (std::size_t i = 0; i < asked.size() && !fails; ++i) {
          const Asked& one = asked[i];
          auto& [inRow, alone] = P[i];
          inRow.resize(one.counts.size());
          alone.resize(one.counts.size());
          const bool known = judge.FillProbabilities(errors, one.expected, one.n, one.counts, testSums, alone);
          const HatchRow::Addition added = together.Add(errors, one.expected, one.n, one.counts, testSums, inRow);
          if (added == HatchRow::Addition::LeftAlone) {
            inRow = alone;
            ++left;
          } else {
            ASSERT_EQ(added == HatchRow::Addition::Done, known) << row;
          }
          fails = !known;
        }
        if (fails) continue;
        together.FillProbabilities();
        for (const auto& [inRow, alone] : P) EXPECT_TRUE(std::ranges::equal(inRow, alone, SameBits)) << row;
        ++judged;
      }
    }
  EXPECT_GT(judged, 1000);
  EXPECT_GT(left, 100);
}

/// Others take the places of arguments that are kept, and at last all are forgotten.
TEST(HatchRow, KeepsItsBitsWhereArgumentsPressEachOtherOut) {
  const CountDistributions distributions(MaxCount);
  SpanningJudge judge(distributions, MaxCount);
  RandomStream random(2026, 3);
  const CountErrors errors = Overdispersed(Errors(0.5, 0.5), 2, 2);
  const std::vector<std::int16_t> counts{0, 3, 9, MaxCount};
  HatchRow row(distributions, {1, 1 + MaxCount, MaxCount});
  std::vector<double> P(counts.size()), alone(counts.size());
  for (int i = 0; i < 1000; ++i) {
    SpanningJudge::Expected expected{{}, 0.4, 0.6, 0.01 + 0.9 * random.Uniform(), 0.01 + 0.9 * random.Uniform()};
    expected.numbers.EHatchR = expected.numbers.EHatchC = 1 + 13 * random.Uniform();
    expected.numbers.juveniles.fill(0.5 * expected.numbers.EHatchR);
    ASSERT_TRUE(judge.FillProbabilities(errors, expected, MaxCount, counts, false, alone));
    row.Begin();
    ASSERT_EQ(row.Add(errors, expected, MaxCount, counts, false, P), HatchRow::Addition::Done);
    row.FillProbabilities();
    ASSERT_TRUE(std::ranges::equal(P, alone, SameBits)) << i;
  }
}

TEST(HatchRow, DeclinesWhereOneDistributionFails) {
  const CountDistributions distributions(MaxCount);
  RandomStream random(2026, 2);
  Asked asked = AnyAsked(random);
  asked.expected.numbers.juveniles.fill(1);
  HatchRow row(distributions, {1, 1 + MaxCount, MaxCount});
  const auto add = [&](const CountErrors& errors) {
    std::vector<double> P(asked.counts.size());
    row.Begin();
    return row.Add(errors, asked.expected, asked.n, asked.counts, false, P);
  };
  EXPECT_EQ(add(Errors(0.5, 0.5)), HatchRow::Addition::Done);
  asked.expected.thetaJuvs = std::numeric_limits<double>::quiet_NaN();
  EXPECT_EQ(add(Errors(0.5, 0.5)), HatchRow::Addition::Fails) << "an overdispersion overflows";
  EXPECT_EQ(add(Errors(0.5, 0)), HatchRow::Addition::Done) << "which nobody needs";
  asked.expected.numbers.EHatchR = 0;
  EXPECT_THROW(add(Errors(0.5, 0)), ArithmeticFailure) << "of none some are left";
}

TEST(HatchRow, LeavesLargeDistributionsAlone) {
  constexpr int Most = 64;
  const CountDistributions distributions(Most);
  const std::vector<std::int16_t> counts{20};
  HatchRow row(distributions, {1, 1 + MaxCount, MaxCount});
  const auto add = [&](const CountErrors& errors, int n) {
    SpanningJudge::Expected expected{{}, 0, 0, 0.1, 0.1};
    expected.numbers.EHatchR = expected.numbers.EHatchC = 0.8 * n;
    expected.numbers.juveniles.fill(0.6 * n);
    double P = 0;
    row.Begin();
    return row.Add(errors, expected, n, counts, false, {&P, 1});
  };
  const CountErrors binomial = Errors(0, 0), overdispersed = Overdispersed(Errors(0.5, 0.5), 2, 2);
  for (const auto& errors : {binomial, overdispersed}) {
    EXPECT_EQ(add(errors, 63), HatchRow::Addition::Done);
    EXPECT_EQ(add(errors, 64), HatchRow::Addition::LeftAlone);
  }
}

}  // namespace
}  // namespace merlane
