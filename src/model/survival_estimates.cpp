#include "model/survival_estimates.h"

#include <fmt/format.h>

#include "model/survival.h"

namespace merlane {
namespace {

/// Calls `action`(visits, survival functions) for each brood of known age, with its visits that have a record.
template <class Action>
void ForBroodsOfKnownAge(const BroodData& data, const LikelihoodState& fitted, const std::string& what,
                         const CalculationWatch& watch, Action action) {
  std::vector<std::size_t> visits;
  for (int brood = 0; brood < data.Broods(); ++brood) {
    const auto b = static_cast<std::size_t>(brood);
    if (!data.BroodAgeKnown[b]) continue;
    const int year = data.BroodYear[b];
    watch.progress(fmt::format("{}{} brood # {} of {}", year, what, data.BroodNumber(brood),
                               data.BroodsInYear[static_cast<std::size_t>(data.YearIndex(year))]));
    watch.turn();
    const SurvivalFunctions functions(
        BroodMortalityByAge(fitted.parameters, data, brood, fitted.survival.EHatch[b]).mortality);
    visits.clear();
    const auto first = static_cast<std::size_t>(data.FirstVisit[b]);
    for (std::size_t v = first; v < first + static_cast<std::size_t>(data.VisitsOf[b]); ++v)
      if (data.HasRecord(v)) visits.push_back(v);
    action(visits, functions);
  }
  watch.progress("");
}

/// The three columns of an estimate.
struct Estimate {
  std::vector<double>&R, &C, &all;

  void Set(std::size_t v, const Survivors& survivors) {
    R[v] = survivors.OutR;
    C[v] = survivors.OutC;
    all[v] = survivors.OutAll;
  }
  void Copy(std::size_t v, std::size_t from) {
    for (std::vector<double>* const column : {&R, &C, &all}) (*column)[v] = (*column)[from];
  }
};

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
  Estimate day{estimates.LiveDayR, estimates.LiveDayC, estimates.LiveDay};
  Estimate next{estimates.LiveNextR, estimates.LiveNextC, estimates.LiveNext};
  const double FledgeAge = fitted.parameters.FledgeAge;
  const auto estimate = [&](const std::vector<std::size_t>& visits, const SurvivalFunctions& functions) {
    for (std::size_t i = 0; i < visits.size(); ++i) {
      const std::size_t v = visits[i];
      const double a = data.VisitAge[v];
      if (!(a >= 0 && a < FledgeAge)) continue;
      day.Set(v, Probability(functions, a, a + 1, BootstrapMode));
      if (i + 1 < visits.size() && data.VisitAge[visits[i + 1]] != Missing)
        next.Set(v, Probability(functions, a, data.VisitAge[visits[i + 1]], BootstrapMode));
      watch.turn();
    }
  };
  ForBroodsOfKnownAge(data, fitted, "Calculating p[survive 1 day] ", watch, estimate);
}

void EstimateFledgingSurvival(const BroodData& data, const LikelihoodState& fitted, bool BootstrapMode,
                              std::int16_t TargetAge, const CalculationWatch& watch, SurvivalEstimates& estimates) {
  estimates.estimated = true;
  Estimate fromAge{estimates.FledgeFromR, estimates.FledgeFromC, estimates.FledgeFrom};
  Estimate fromHatch{estimates.FledgeZeroR, estimates.FledgeZeroC, estimates.FledgeZero};
  const auto estimate = [&](const std::vector<std::size_t>& visits, const SurvivalFunctions& functions) {
    for (const std::size_t v : visits) {
      const double a = data.VisitAge[v];
      if (!(a >= 0 && a < TargetAge)) continue;
      fromAge.Set(v, Probability(functions, a, TargetAge, BootstrapMode));
      watch.turn();
    }
    for (std::size_t i = 0; i < visits.size(); ++i) {
      const double a = data.VisitAge[visits[i]];
      if (!(a >= 0 && a < TargetAge)) continue;
      if (i == 0)
        fromHatch.Set(visits[i], Probability(functions, 0, TargetAge, BootstrapMode));
      else
        fromHatch.Copy(visits[i], visits[i - 1]);  // also where the visit before has none
    }
  };
  ForBroodsOfKnownAge(data, fitted, "Calculating p[fledge(a,D)] for ", watch, estimate);
}

}  // namespace merlane
