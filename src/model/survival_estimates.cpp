#include "model/survival_estimates.h"

#include <optional>
#include <string>

#include "base/runtime_failure.h"
#include "survival/shares_by_time.h"
#include "survival/survival.h"

namespace merlane {
namespace {

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

/// What is estimated, and below which age.
struct Task {
  std::string step;
  double limit;
};

/// A visit at an age from 0 on, the `i`-th (from 0) of those of its brood that have a record, and how the brood
/// survives.
struct VisitAfterHatch {
  const std::vector<std::size_t>& visits;
  std::size_t i, v;
  double age;
  SharesByTime& shares;
};

/// Calls `estimate` for all such visits of broods of known age, up to the limit. What cannot be estimated is left out.
template <class Function>
void ForVisitsAfterHatch(const BroodData& data, const LikelihoodState& fitted, const Task& task,
                         const CalculationWatch& watch, Function estimate) {
  std::vector<std::size_t> visits;
  SharesByTime shares;
  std::string where;
  for (int brood = 0; brood < data.Broods(); ++brood) {
    const auto b = static_cast<std::size_t>(brood);
    if (!data.BroodAgeKnown[b]) continue;
    const int year = data.BroodYear[b];
    where.assign(std::to_string(year)).append("Calculating ").append(task.step).append(" brood # ");
    where.append(std::to_string(data.BroodNumber(brood))).append(" of ");
    watch.progress(where.append(std::to_string(data.BroodsInYear[static_cast<std::size_t>(data.YearIndex(year))])));
    watch.turn();
    const auto tried = [&](std::optional<int> visit, const auto& step) {
      try {
        step();
      } catch (const RuntimeFailure& failure) {
        watch.impossible({task.step, brood, visit, failure.what()});
      }
    };
    bool known = false;
    tried({}, [&] {
      shares.Under(BroodMortalityByAge(fitted.parameters, data, brood, fitted.survival.EHatch[b]).mortality);
      known = true;
    });
    visits.clear();
    const auto first = static_cast<std::size_t>(data.FirstVisit[b]);
    for (std::size_t v = first; v < first + static_cast<std::size_t>(data.VisitsOf[b]); ++v)
      if (data.HasRecord(v)) visits.push_back(v);
    for (std::size_t i = 0; known && i < visits.size(); ++i) {
      const std::size_t v = visits[i];
      const double age = data.VisitAge[v];
      if (!(age >= 0 && age < task.limit)) continue;
      tried(static_cast<int>(v), [&] { estimate(VisitAfterHatch{visits, i, v, age, shares}); });
      watch.turn();
    }
  }
  watch.progress("");
}

/// Probability that one individual alive at an age is alive at a later one.
Survivors Probability(SharesByTime& shares, double from, double to, bool BootstrapMode) {
  const SharesAlive atFrom = shares.At(from);
  return ExpectedSurvivors(shares.Functions(), atFrom, shares.At(to), 1, BootstrapMode);
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
  ForVisitsAfterHatch(data, fitted, {"p[survive 1 day] ", static_cast<double>(fitted.parameters.FledgeAge)}, watch,
                      [&](const VisitAfterHatch& at) {
                        day.Set(at.v, Probability(at.shares, at.age, at.age + 1, BootstrapMode));
                        if (at.i + 1 == at.visits.size()) return;
                        const double then = data.VisitAge[at.visits[at.i + 1]];
                        if (then != Missing) next.Set(at.v, Probability(at.shares, at.age, then, BootstrapMode));
                      });
}

void EstimateFledgingSurvival(const BroodData& data, const LikelihoodState& fitted, bool BootstrapMode,
                              std::int16_t TargetAge, const CalculationWatch& watch, SurvivalEstimates& estimates) {
  estimates.estimated = true;
  Estimate fromAge{estimates.FledgeFromR, estimates.FledgeFromC, estimates.FledgeFrom};
  Estimate fromHatch{estimates.FledgeZeroR, estimates.FledgeZeroC, estimates.FledgeZero};
  ForVisitsAfterHatch(data, fitted, {"p[fledge(a,D)] for ", static_cast<double>(TargetAge)}, watch,
                      [&](const VisitAfterHatch& at) {
                        fromAge.Set(at.v, Probability(at.shares, at.age, TargetAge, BootstrapMode));
                        if (at.i == 0)
                          fromHatch.Set(at.v, Probability(at.shares, 0, TargetAge, BootstrapMode));
                        else  // also where the visit before has none
                          fromHatch.Copy(at.v, at.visits[at.i - 1]);
                      });
}

}  // namespace merlane
