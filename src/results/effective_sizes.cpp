#include "results/effective_sizes.h"

#include "base/arithmetic.h"
#include "base/elementary.h"

namespace merlane {
namespace {

/// Individuals of `n` that count as one, where the overdispersion has faded for that many days.
double Unit(int n, double Theta, double v, double days) {
  return Checked(1 + (n - 1) * Theta * Checked(Exp(Checked(-v * days))));
}

/// What n individuals count of which a share q is exposed to correlated mortality with the unit e.
double EffectiveNumber(int n, double q, double e) { return Divide(q * n, e) + (1 - q) * n; }

}  // namespace

EffectiveSizes FindEffectiveSizes(const BroodData& data, const BestTables& best) {
  const Parameters& p = best.parameters;
  EffectiveSizes sizes;
  sizes.EIU.assign(static_cast<std::size_t>(data.Visits()), static_cast<double>(Missing));
  for (int brood = 0; brood < data.Broods(); ++brood) {
    const auto b = static_cast<std::size_t>(brood);
    const auto first = static_cast<std::size_t>(data.FirstVisit[b]);
    for (std::size_t v = first + 1; v < first + static_cast<std::size_t>(data.VisitsOf[b]); ++v) {
      if (best.survival.EVisit[v] == Missing) continue;
      const int n = data.VisitCount[v - 1];
      const double age = data.VisitAge[v - 1];
      const int before = data.VisitStage[v - 1], stage = data.VisitStage[v];
      if (before == -1 && stage == -1) {
        sizes.EIU[v - 1] = Unit(n, p.ThetaEggC, p.v_N, age - p.LayAge);
        sizes.EffSizeEggs += EffectiveNumber(n, best.survival.PCorrEgg[v], sizes.EIU[v - 1]);
      } else if (before == -1 && stage == 1) {
        sizes.EIU[v] = Unit(n, p.ThetaJuvC, p.v_B, 0);
        const double e = Unit(n, p.ThetaEggC, p.v_N, age - p.LayAge);
        sizes.EffSizeEggs += EffectiveNumber(n, best.survival.PCorrHatch[b], e);
      } else if (before == 1 && stage == 1) {
        sizes.EIU[v - 1] = Unit(n, p.ThetaJuvC, p.v_B, age);
        sizes.EffSizeJuvs += EffectiveNumber(n, best.survival.PCorrJuv[v], sizes.EIU[v - 1]);
      }
    }
  }
  return sizes;
}

}  // namespace merlane
