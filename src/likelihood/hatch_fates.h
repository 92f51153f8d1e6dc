#pragma once

#include <array>
#include <cstddef>
#include <functional>
#include <span>

#include "data/brood_data.h"
#include "likelihood/count_distributions.h"
#include "likelihood/stage_errors.h"
#include "survival/survival_tables.h"

namespace merlane {

/// The four fates of individuals over an interval that spans hatch: which mortality befalls the eggs (first letter) and
/// which the juveniles.
enum HatchFate : std::size_t { RR, CR, RC, CC };
inline constexpr std::array<HatchFate, 4> HatchFates = {RR, CR, RC, CC};

constexpr bool CorrelatedEggs(HatchFate fate) { return fate == CR || fate == CC; }
constexpr bool CorrelatedJuveniles(HatchFate fate) { return fate == RC || fate == CC; }

/// What is expected over hatch, by fate. Missing where there is no number.
struct OverHatch {
  double EHatchR = Missing,
         EHatchC = Missing;  // alive at hatch, had random, had correlated mortality acted on the eggs
  std::array<double, 4> juveniles = {Missing, Missing, Missing, Missing};  // alive at the visit

  OverHatch() = default;
  /// Of a brood.
  OverHatch(const SurvivalTables& tables, std::size_t brood);
  double EHatch(HatchFate fate) const { return CorrelatedEggs(fate) ? EHatchC : EHatchR; }
};

/// The weights of the fates, where the eggs are in the correlated state with probability q, the juveniles with r.
constexpr std::array<double, 4> FateWeights(double q, double r) {
  return {(1 - r) * (1 - q), (1 - r) * q, (1 - q) * r, q * r};
}

/// True for a fate that can befall a brood and of which something is expected. Any other is as likely whatever is
/// counted: its probabilities are 1, under a weight of 0.
bool Occurs(HatchFate fate, const CountErrors& errors, const OverHatch& expected);

/// How the counts of a fate scatter.
struct FateErrors {
  bool overdispersed = false;     // both stages count as beta-binomial where one of them does
  double ThetaE = 0, ThetaJ = 0;  // of eggs and juveniles

  int Code() const { return overdispersed ? 2 : 1; }
};

/// Those of a fate; `thetaEggs` and `thetaJuvs` give a stage's overdispersion under correlated mortality, and are asked
/// only where the fate has that.
template <class ThetaEggs, class ThetaJuvs>
FateErrors ErrorsOf(HatchFate fate, const CountErrors& errors, const ThetaEggs& thetaEggs, const ThetaJuvs& thetaJuvs) {
  const bool eggsC = CorrelatedEggs(fate), juvsC = CorrelatedJuveniles(fate);
  return {.overdispersed = errors.eggs.Code(eggsC) == 2 || errors.juveniles.Code(juvsC) == 2,
          .ThetaE = eggsC ? thetaEggs() : errors.eggs.ThetaR,
          .ThetaJ = juvsC ? thetaJuvs() : errors.juveniles.ThetaR};
}

/// The distribution of the count by a fate that occurs: of n individuals at the visit of that age before hatch. The
/// probability of k individuals goes to `Pmf`[k]; all are 0 when none is expected. False when their sum is not 1 to six
/// digits. ArithmeticFailure when an overdispersion overflows. `turn` as for CountDistributions.
bool FateDistribution(HatchFate fate, const CountDistributions& distributions, KeptGammaLn& logGamma,
                      const CountErrors& errors, const OverHatch& expected, int n, double age, std::span<double> Pmf,
                      const std::function<void(long)>& turn);

}  // namespace merlane
