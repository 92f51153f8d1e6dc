#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "likelihood/count_distributions.h"
#include "likelihood/hatch_fates.h"
#include "likelihood/kept_gamma_ln.h"
#include "likelihood/stage_errors.h"

namespace merlane {

/// By which distributions the eggs of a fate hatch, of n, and its juveniles live on.
struct FateDistributions {
  double EN = 0, ThetaE = 0;  // expected to hatch, and their overdispersion
  double pJ = 0, ThetaJ = 0;  // share of these that lives on
  bool binomialEggs = true, binomialJuvs = true;

  /// Whether the probabilities are known to sum to 1 to far more than six digits, so that the sum need not be made.
  bool SumIsKnown(int n) const;
};

/// The probabilities of counts over hatch, for one distribution after another: of the distributions that
/// CountDistributions::Calc_Probs_and_Theta makes whole only what the counts need, with the same bits.
class SpanningJudge {
 public:
  /// Keeps a reference to the distributions.
  SpanningJudge(const CountDistributions& distributions, int maxCount);

  /// What is expected of a brood over hatch.
  struct Expected {
    OverHatch numbers;
    double q, r;                  // probabilities of the correlated state of the eggs and of the juveniles
    double thetaEggs, thetaJuvs;  // overdispersion under correlated mortality; NaN when it overflows

    /// Those of a fate of which something is expected; none where an overdispersion overflows. ArithmeticFailure where
    /// the juveniles' share does.
    std::optional<FateDistributions> Of(HatchFate fate, const CountErrors& errors, int n) const;
  };
  /// P[k of n] for counts of 0 to n, ascending. False where a warning about the sum of probabilities may be due;
  /// `testSums` tests the mixture's, too. ArithmeticFailure on an overflow.
  bool FillProbabilities(const CountErrors& errors, const Expected& expected, int n,
                         std::span<const std::int16_t> counts, bool testSums, std::span<double> P);

 private:
  /// Probabilities of m hatched of n, as far as they are needed.
  struct Hatched {
    std::vector<double> P;
    bool filled = false, binomial = true;
  };
  bool FillOfFate(HatchFate fate, const CountErrors& errors, const Expected& expected, int n,
                  std::span<const std::int16_t> counts, bool testSums);
  const std::vector<double>& HatchedOf(Hatched& hatched, const FateDistributions& by, int n, int least);

  const CountDistributions& distributions_;
  KeptGammaLn logGamma_;
  Hatched random_, correlated_;
  std::array<std::vector<double>, 4> ofFate_;  // probabilities of the counts
  std::vector<double> Pmf_;
};

}  // namespace merlane
