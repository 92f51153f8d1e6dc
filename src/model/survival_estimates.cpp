#include "model/survival_estimates.h"

#include <fmt/format.h>

#include "model/survival.h"

namespace merlane {
namespace {

/// Calls `action`(first visit, end of visits, survival functions) for each brood of known age.
template <class Action>
void ForBroodsOfKnownAge(const BroodData& data, const LikelihoodState& fitted, const std::string& what,
                         const CalculationWatch& watch, Action action) {
  for (int brood = 0; brood < data.Broods(); ++brood) {
    const auto b = static_cast<std::size_t>(brood);
    if (!data.BroodAgeKnown[b]) continue;
    const int year = data.BroodYear[b];
    watch.progress(fmt::format("{}{} brood # {} of {}", year, what, data.BroodNumber(brood),
                               data.BroodsInYear[static_cast<std::size_t>(data.YearIndex(year))]));
    watch.turn();
    const SurvivalFunctions functions(
        BroodMortalityByAge(fitted.parameters, data, brood, fitted.survival.EHatch[b]).mortality);
    const auto first = static_cast<std::size_t>(data.FirstVisit[b]);
    action(first, first + static_cast<std::size_t>(data.VisitsOf[b]), functions);
  }
  watch.progress("");
}

/// Probability that one individual alive at an age is alive at a later one.
Survivors Probability(const SurvivalFunctions& functions, double from, double to, bool BootstrapMode) {
  return ExpectedSurvivors(functions, functions.At(from), functions.At(to), 1, BootstrapMode);
}

}  // namespace

void SurvivalEstimates::Preset(const BroodData& data) {
  for (auto* column : {&LiveDayR, &LiveDayC, &LiveDay, &LiveNextR, &LiveNextC, &LiveNext, &FledgeFromR, &FledgeFromC,
                       &FledgeFrom, &FledgeZeroR, &FledgeZeroC, &FledgeZero})
    column->assign(static_cast<std::size_t>(data.Visits()), static_cast<double>(Missing));
  estimated = false;
}

void EstimateOneDaySurvival(const BroodData& data, const LikelihoodState& fitted, bool BootstrapMode,
                            const CalculationWatch& watch, SurvivalEstimates& estimates) {
  estimates.estimated = true;
  const double FledgeAge = fitted.parameters.FledgeAge;
  const auto estimate = [&](std::size_t first, std::size_t end, const SurvivalFunctions& functions) {
    for (std::size_t v = first; v < end; ++v) {
      const double a = data.VisitAge[v];
      if (!(a >= 0 && a < FledgeAge)) continue;
      const Survivors day = Probability(functions, a, a + 1, BootstrapMode);
      estimates.LiveDayR[v] = day.OutR;
      estimates.LiveDayC[v] = day.OutC;
      estimates.LiveDay[v] = day.OutAll;
      if (v + 1 < end && data.VisitAge[v + 1] != Missing) {
        const Survivors next = Probability(functions, a, data.VisitAge[v + 1], BootstrapMode);
        estimates.LiveNextR[v] = next.OutR;
        estimates.LiveNextC[v] = next.OutC;
        estimates.LiveNext[v] = next.OutAll;
      }
      watch.turn();
    }
  };
  ForBroodsOfKnownAge(data, fitted, "Calculating p[survive 1 day] ", watch, estimate);
}

void EstimateFledgingSurvival(const BroodData& data, const LikelihoodState& fitted, bool BootstrapMode,
                              std::int16_t TargetAge, const CalculationWatch& watch, SurvivalEstimates& estimates) {
  estimates.estimated = true;
  const auto estimate = [&](std::size_t first, std::size_t end, const SurvivalFunctions& functions) {
    for (std::size_t v = first; v < end; ++v) {
      const double a = data.VisitAge[v];
      if (!(a >= 0 && a < TargetAge)) continue;
      const Survivors from = Probability(functions, a, TargetAge, BootstrapMode);
      estimates.FledgeFromR[v] = from.OutR;
      estimates.FledgeFromC[v] = from.OutC;
      estimates.FledgeFrom[v] = from.OutAll;
      watch.turn();
    }
    for (std::size_t v = first; v < end; ++v) {
      const double a = data.VisitAge[v];
      if (!(a >= 0 && a < TargetAge)) continue;
      if (v == first) {
        const Survivors zero = Probability(functions, 0, TargetAge, BootstrapMode);
        estimates.FledgeZeroR[v] = zero.OutR;
        estimates.FledgeZeroC[v] = zero.OutC;
        estimates.FledgeZero[v] = zero.OutAll;
      } else {  // also where the visit before has none
        estimates.FledgeZeroR[v] = estimates.FledgeZeroR[v - 1];
        estimates.FledgeZeroC[v] = estimates.FledgeZeroC[v - 1];
        estimates.FledgeZero[v] = estimates.FledgeZero[v - 1];
      }
    }
  };
  ForBroodsOfKnownAge(data, fitted, "Calculating p[fledge(a,D)] for ", watch, estimate);
}

}  // namespace merlane
