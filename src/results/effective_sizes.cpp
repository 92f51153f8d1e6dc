#include "results/effective_sizes.h"

#include "base/arithmetic.h"
#include "base/elementary.h"
#include "base/runtime_failure.h"

namespace merlane {
namespace {

/// Individuals of `n` that count as one, where the overdispersion has faded for that many days.
double Unit(int n, double Theta, double v, double days) {
  return Checked(1 + (n - 1) * Theta * Checked(Exp(Checked(-v * days))));
}

/// What n individuals count of which a share q is exposed to correlated mortality with the unit e.
double EffectiveNumber(int n, double q, double e) { return Divide(q * n, e) + (1 - q) * n; }

/// The best state's visits with a prediction, and the sizes that they add up to.
class Sizes {
 public:
  Sizes(const BroodData& data, const BestTables& best) : data_(data), best_(best), p_(best.parameters) {
    sizes.EIU.assign(static_cast<std::size_t>(data.Visits()), static_cast<double>(Missing));
  }

  void Add(std::size_t b, std::size_t v) {
    const int n = data_.VisitCount[v - 1];
    const double age = data_.VisitAge[v - 1];
    const int before = data_.VisitStage[v - 1], stage = data_.VisitStage[v];
    if (before == -1 && stage == -1) {
      sizes.EIU[v - 1] = Unit(n, p_.ThetaEggC, p_.v_N, age - p_.LayAge);
      sizes.EffSizeEggs += EffectiveNumber(n, best_.survival.PCorrEgg[v], sizes.EIU[v - 1]);
    } else if (before == -1 && stage == 1) {
      sizes.EIU[v] = Unit(n, p_.ThetaJuvC, p_.v_B, 0);
      const double e = Unit(n, p_.ThetaEggC, p_.v_N, age - p_.LayAge);
      sizes.EffSizeEggs += EffectiveNumber(n, best_.survival.PCorrHatch[b], e);
    } else if (before == 1 && stage == 1) {
      sizes.EIU[v - 1] = Unit(n, p_.ThetaJuvC, p_.v_B, age);
      sizes.EffSizeJuvs += EffectiveNumber(n, best_.survival.PCorrJuv[v], sizes.EIU[v - 1]);
    }
  }

  EffectiveSizes sizes;

 private:
  const BroodData& data_;
  const BestTables& best_;
  const Parameters& p_;
};

}  // namespace

EffectiveSizes FindEffectiveSizes(const BroodData& data, const BestTables& best, const CalculationWatch& watch) {
  Sizes sizes(data, best);
  for (int brood = 0; brood < data.Broods(); ++brood) {
    const auto b = static_cast<std::size_t>(brood);
    const int first = data.FirstVisit[b];
    for (int visit = first + 1; visit < first + data.VisitsOf[b]; ++visit) {
      const auto v = static_cast<std::size_t>(visit);
      if (best.survival.EVisit[v] == Missing) continue;
      try {
        sizes.Add(b, v);
      } catch (const RuntimeFailure& failure) {
        watch.impossible({"effective independent sample size", brood, visit, failure.what()});
      }
    }
  }
  return sizes.sizes;
}

}  // namespace merlane
