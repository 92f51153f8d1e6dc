#include "likelihood/hatch_fates.h"

#include <algorithm>

namespace merlane {

OverHatch::OverHatch(const SurvivalTables& tables, std::size_t brood)
    : EHatchR(tables.EHatchR[brood]),
      EHatchC(tables.EHatchC[brood]),
      juveniles{tables.JuvRR[brood], tables.JuvCR[brood], tables.JuvRC[brood], tables.JuvCC[brood]} {}

bool Occurs(HatchFate fate, const CountErrors& errors, const OverHatch& expected) {
  return expected.juveniles[fate] != Missing && errors.eggs.CanBe(CorrelatedEggs(fate)) &&
         errors.juveniles.CanBe(CorrelatedJuveniles(fate));
}

bool FateDistribution(HatchFate fate, const CountDistributions& distributions, KeptGammaLn& logGamma,
                      const CountErrors& errors, const OverHatch& expected, int n, double age, std::span<double> Pmf,
                      const std::function<void(long)>& turn) {
  if (!(expected.juveniles[fate] > 0)) {
    std::ranges::fill(Pmf, 0.0);
    return true;
  }
  // The juveniles' overdispersion is taken at the negative age of the clutch, so that it exceeds its value at hatch.
  const FateErrors scatter = ErrorsOf(
      fate, errors, [&] { return errors.eggs.Theta(true, age); }, [&] { return errors.juveniles.Theta(true, age); });
  return distributions.Calc_Probs_and_Theta(logGamma, scatter.Code(), n, scatter.ThetaE, scatter.ThetaJ,
                                            expected.EHatch(fate), expected.juveniles[fate], Pmf, turn);
}

}  // namespace merlane
