#include "model/survival_estimates.h"

#include <algorithm>
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

  bool Includes(double age) const { return age >= 0 && age < limit; }
};

/// A visit at an age from 0 on, the `i`-th (from 0) of those of its brood that have a record, and how the brood
/// survives.
struct VisitAfterHatch {
  const std::vector<std::size_t>& visits;
  std::size_t i, v;
  double age;
  SharesByTime& shares;
};

/// Calls `estimate` for all such visits of the broods begin..end-1 of known age. Gives what could not be estimated, in
/// their order; nothing of that is told yet.
template <class Function>
std::vector<ImpossibleStep> EstimateBroods(const BroodData& data, const LikelihoodState& fitted, const Task& task,
                                           std::size_t begin, std::size_t end, const Function& estimate) {
  std::vector<ImpossibleStep> impossible;
  std::vector<std::size_t> visits;
  SharesByTime shares;
  for (std::size_t b = begin; b < end; ++b) {
    if (!data.BroodAgeKnown[b]) continue;
    const int brood = static_cast<int>(b);
    std::optional<int> visit;
    const auto tried = [&](const auto& step) {
      try {
        step();
        return true;
      } catch (const RuntimeFailure& failure) {
        impossible.push_back({task.step, brood, visit, failure.what()});
        return false;
      }
    };
    if (!tried([&] {
          shares.Under(BroodMortalityByAge(fitted.parameters, data, brood, fitted.survival.EHatch[b]).mortality);
        }))
      continue;
    visits.clear();
    const auto first = static_cast<std::size_t>(data.FirstVisit[b]);
    for (std::size_t v = first; v < first + static_cast<std::size_t>(data.VisitsOf[b]); ++v)
      if (data.HasRecord(v)) visits.push_back(v);
    for (std::size_t i = 0; i < visits.size(); ++i) {
      const double age = data.VisitAge[visits[i]];
      if (!task.Includes(age)) continue;
      visit = static_cast<int>(visits[i]);
      tried([&] { estimate(VisitAfterHatch{visits, i, visits[i], age, shares}); });
    }
  }
  return impossible;
}

/// Goes through the same visits once more, with what there is to tell and a turn for each brood and visit.
void TellOfBroods(const BroodData& data, const Task& task, const CalculationWatch& watch, std::size_t begin,
                  std::size_t end, const std::vector<ImpossibleStep>& impossible) {
  auto next = impossible.begin();
  const auto isNext = [&](std::size_t b, std::optional<int> visit) {
    return next != impossible.end() && next->brood == static_cast<int>(b) && next->visit == visit;
  };
  std::string where;
  for (std::size_t b = begin; b < end; ++b) {
    if (!data.BroodAgeKnown[b]) continue;
    const int year = data.BroodYear[b];
    where.assign(std::to_string(year)).append("Calculating ").append(task.step).append(" brood # ");
    where.append(std::to_string(data.BroodNumber(static_cast<int>(b)))).append(" of ");
    watch.progress(where.append(std::to_string(data.BroodsInYear[static_cast<std::size_t>(data.YearIndex(year))])));
    watch.turn();
    if (isNext(b, {})) {
      watch.impossible(*next++);
      continue;
    }
    const auto first = static_cast<std::size_t>(data.FirstVisit[b]);
    for (std::size_t v = first; v < first + static_cast<std::size_t>(data.VisitsOf[b]); ++v) {
      if (!data.HasRecord(v) || !task.Includes(data.VisitAge[v])) continue;
      if (isNext(b, static_cast<int>(v))) watch.impossible(*next++);
      watch.turn();
    }
  }
}

/// Estimates all broods, each by one of the workers (none: the caller), a thousand ahead of what is told of them.
template <class Function>
void ForVisitsAfterHatch(const BroodData& data, const LikelihoodState& fitted, const Task& task,
                         const CalculationWatch& watch, Workers* workers, const Function& estimate) {
  constexpr std::size_t AtATime = 1024, OneWorkers = 64;
  const auto broods = static_cast<std::size_t>(data.Broods());
  for (std::size_t begin = 0; begin < broods; begin += AtATime) {
    const std::size_t end = std::min(begin + AtATime, broods);
    std::vector<std::vector<ImpossibleStep>> impossible((end - begin + OneWorkers - 1) / OneWorkers);
    const auto ofPiece = [&](int piece, int) {
      const auto p = static_cast<std::size_t>(piece);
      const std::size_t from = begin + p * OneWorkers;
      impossible[p] = EstimateBroods(data, fitted, task, from, std::min(from + OneWorkers, end), estimate);
    };
    const int pieces = static_cast<int>(impossible.size());
    if (workers != nullptr)
      workers->Share(pieces, ofPiece);
    else
      for (int piece = 0; piece < pieces; ++piece) ofPiece(piece, 0);
    for (std::size_t p = 0; p < impossible.size(); ++p) {
      const std::size_t from = begin + p * OneWorkers;
      TellOfBroods(data, task, watch, from, std::min(from + OneWorkers, end), impossible[p]);
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
                            const CalculationWatch& watch, SurvivalEstimates& estimates, Workers* workers) {
  estimates.estimated = true;
  Estimate day{estimates.LiveDayR, estimates.LiveDayC, estimates.LiveDay};
  Estimate next{estimates.LiveNextR, estimates.LiveNextC, estimates.LiveNext};
  ForVisitsAfterHatch(data, fitted, {"p[survive 1 day] ", static_cast<double>(fitted.parameters.FledgeAge)}, watch,
                      workers, [&](const VisitAfterHatch& at) {
                        day.Set(at.v, Probability(at.shares, at.age, at.age + 1, BootstrapMode));
                        if (at.i + 1 == at.visits.size()) return;
                        const double then = data.VisitAge[at.visits[at.i + 1]];
                        if (then != Missing) next.Set(at.v, Probability(at.shares, at.age, then, BootstrapMode));
                      });
}

void EstimateFledgingSurvival(const BroodData& data, const LikelihoodState& fitted, bool BootstrapMode,
                              std::int16_t TargetAge, const CalculationWatch& watch, SurvivalEstimates& estimates,
                              Workers* workers) {
  estimates.estimated = true;
  Estimate fromAge{estimates.FledgeFromR, estimates.FledgeFromC, estimates.FledgeFrom};
  Estimate fromHatch{estimates.FledgeZeroR, estimates.FledgeZeroC, estimates.FledgeZero};
  ForVisitsAfterHatch(data, fitted, {"p[fledge(a,D)] for ", static_cast<double>(TargetAge)}, watch, workers,
                      [&](const VisitAfterHatch& at) {
                        fromAge.Set(at.v, Probability(at.shares, at.age, TargetAge, BootstrapMode));
                        if (at.i == 0)
                          fromHatch.Set(at.v, Probability(at.shares, 0, TargetAge, BootstrapMode));
                        else  // also where the visit before has none
                          fromHatch.Copy(at.v, at.visits[at.i - 1]);
                      });
}

}  // namespace merlane
