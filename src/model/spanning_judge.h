#pragma once

#include <optional>
#include <vector>

#include "model/count_distributions.h"
#include "model/hatch_fates.h"
#include "model/kept_gamma_ln.h"
#include "model/stage_errors.h"

namespace merlane {

/// The probability of a count over hatch, for one prediction after another: of the distributions that
/// CountDistributions::Calc_Probs_and_Theta makes whole only what the count needs, with the same bits.
class SpanningJudge {
 public:
  /// Keeps references to both.
  SpanningJudge(const CountDistributions& distributions, KeptGammaLn& logGamma, int maxCount);

  /// What is expected of a brood over hatch.
  struct Expected {
    OverHatch numbers;
    double q, r;                  // probabilities of the correlated state of the eggs and of the juveniles
    double thetaEggs, thetaJuvs;  // overdispersion under correlated mortality; NaN when it overflows
  };
  /// P[k of n], for k = 0..n. None where a warning about the sum of probabilities may be due; `testSums` tests the
  /// mixture's, too. ArithmeticFailure on an overflow.
  std::optional<double> Probability(const CountErrors& errors, const Expected& expected, int n, int k, bool testSums);

 private:
  /// Probabilities of m hatched of n, m = k..n.
  struct Hatched {
    std::vector<double> P;
    bool filled = false, binomial = true;
  };
  std::optional<double> OfFate(HatchFate fate, const CountErrors& errors, const Expected& expected, int n, int k,
                               bool testSums);
  const std::vector<double>& HatchedOf(Hatched& hatched, bool binomial, double EN, double theta, int n, int k);

  const CountDistributions& distributions_;
  KeptGammaLn& logGamma_;
  Hatched random_, correlated_;
  std::vector<double> Pmf_;
};

}  // namespace merlane
