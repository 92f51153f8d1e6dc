#include "likelihood/spanning_judge.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "plain_distributions.h"
#include "platform/random_streams.h"
#include "survival/same_bits.h"

namespace merlane {
namespace {

/// Both mortalities in both stages, beta-binomial.
Parameters BothMortalities() {
  Parameters p;
  p.CodeEggC = p.CodeJuvC = 2;
  p.c_N = p.c_B = 0.5;
  p.f_N = p.f_B = 0.1;
  return p;
}

/// Whatever is left out, the sums of probabilities among it, would have had no effect.
TEST(SpanningJudge, GivesTheBitsOfTheWholeDistributions) {
  constexpr int Most = 15;
  const CountDistributions distributions(Most);
  SpanningJudge judge(distributions, Most);
  const CountErrors errors(BothMortalities());
  RandomStream random(2024, 1);
  int judged = 0;
  for (int i = 0; i < 2000; ++i) {
    const int n = 1 + static_cast<int>(random.Uniform() * Most);
    const double EHatch = n * random.Uniform();
    const double EJuv = EHatch * random.Uniform();
    const double thetaEggs = std::pow(10.0, -7 * random.Uniform());
    const double thetaJuvs = std::pow(10.0, -7 * random.Uniform());
    // The correlated fate of both stages alone has weight.
    SpanningJudge::Expected expected{{}, 1, 1, thetaEggs, thetaJuvs};
    expected.numbers.EHatchR = expected.numbers.EHatchC = EHatch;
    expected.numbers.juveniles = {EJuv, EJuv, EJuv, EJuv};
    std::vector<std::int16_t> counts;
    for (int k = static_cast<int>(random.Uniform() * (n + 1)); k <= n; k += 1 + static_cast<int>(random.Uniform() * 3))
      counts.push_back(static_cast<std::int16_t>(k));
    std::vector<double> P(counts.size());
    const bool sure = judge.FillProbabilities(errors, expected, n, counts, false, P);

    std::vector<double> Pmf(static_cast<std::size_t>(n) + 1);
    const bool accurate = plain::Calc_Probs_and_Theta(2, n, thetaEggs, thetaJuvs, EHatch, EJuv, Pmf);
    EXPECT_TRUE(accurate || !sure) << i << ": a warning is due";
    if (!sure) continue;
    for (std::size_t j = 0; j < counts.size(); ++j)
      EXPECT_PRED2(SameBits, P[j], Pmf[static_cast<std::size_t>(counts[j])]) << i;
    ++judged;
  }
  EXPECT_GT(judged, 1000);
}

}  // namespace
}  // namespace merlane
