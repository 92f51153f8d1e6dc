#include "likelihood/prepared_visits.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>

#include "base/numbering.h"

namespace merlane {
namespace {

// Calculations are the same when all that goes into them has the same bits.
std::uint64_t Part(int x) { return static_cast<std::uint64_t>(x); }
std::uint64_t Part(double x) { return std::bit_cast<std::uint64_t>(x); }

template <class... Parts>
std::array<std::uint64_t, sizeof...(Parts)> KeyOf(Parts... parts) {
  return {Part(parts)...};
}

using Interval = PreparedVisits::Interval;

/// The visits as the two passes over them ask for them; index j is within the columns.
class Preparation {
 public:
  Preparation(const BroodData& data, PreparedVisits& prepared) : data_(data), prepared_(prepared) {}

  void Run() {
    Group();
    for (int brood = 0; brood < data_.Broods(); ++brood) {
      ForVisits(brood, [&](int visit, bool first) { clutchIntervals_.push_back(AddClutchStep(brood, visit, first)); });
      ForVisits(brood, [&](int visit, bool first) { broodIntervals_.push_back(AddBroodStep(brood, visit, first)); });
      ForVisits(brood, [&](int visit, bool first) { AddJudgement(brood, visit, first); });
    }
    prepared_.Outcomes = outcomes_.Size();
  }

 private:
  template <class Action>
  void ForVisits(int brood, Action action) {
    const auto b = static_cast<std::size_t>(brood);
    const int begin = data_.FirstVisit[b];
    for (int visit = begin; visit < begin + data_.VisitsOf[b]; ++visit) action(visit, visit == begin);
  }
  double Age(int visit) const { return data_.VisitAge[static_cast<std::size_t>(visit)]; }
  int Date(int visit) const { return data_.VisitDate[static_cast<std::size_t>(visit)]; }
  int Stage(int visit) const { return data_.VisitStage[static_cast<std::size_t>(visit)]; }
  int Count(int visit) const { return data_.VisitCount[static_cast<std::size_t>(visit)]; }

  /// The number that enters the interval; at a brood's first visit the number there.
  std::int16_t CountOf(int visit, bool first) const {
    return data_.VisitCount[static_cast<std::size_t>(first ? visit : visit - 1)];
  }

  void Group() {
    constexpr int worthwhile = 4;  // broods of a group, on average, from which sharing between broods pays
    // A brood belongs to the group of those before it and their next covariate.
    prepared_.GroupOfBrood.assign(static_cast<std::size_t>(data_.Broods()), 0);
    prepared_.Groups = data_.Broods() > 0 ? 1 : 0;
    for (int m = 0; m < data_.NCov; ++m) {
      Numbering<2> groups;
      for (int brood = 0; brood < data_.Broods(); ++brood) {
        int& group = prepared_.GroupOfBrood[static_cast<std::size_t>(brood)];
        group = groups(KeyOf(group, data_.CovariatesOf(brood)[m])).first;
      }
      prepared_.Groups = groups.Size();
    }
    if (prepared_.Groups <= 1 || data_.Broods() >= worthwhile * prepared_.Groups) return;
    prepared_.GroupOfBrood.assign(prepared_.GroupOfBrood.size(), 0);
    prepared_.Groups = 1;
    prepared_.GroupsShareCovariates = false;
  }

  int Time(int mortality, double time) {
    const auto [number, isNew] = times_(KeyOf(mortality, time));
    if (isNew) prepared_.Times.push_back(time);
    return number;
  }

  /// An interval that N individuals enter or, when `ageOfEggs` is below 0, what remains at hatch of N eggs of that age
  /// after one or the other kind of mortality.
  int AddInterval(int mortality, double from, double to, int N, double ageOfEggs = 0, bool correlatedEggs = false) {
    const Interval interval{Time(mortality, from), Time(mortality, to)};
    const auto [number, isNew] = intervals_(KeyOf(interval.from, interval.to, N, ageOfEggs, int{correlatedEggs}));
    if (isNew) prepared_.Intervals.push_back(interval);
    return number;
  }

  /// Adds what the pass over the clutches does at a visit; the number of the visit's interval, -1 for none.
  int AddClutchStep(int brood, int visit, bool first) {
    const auto kind = ClutchIntervalTo(data_, brood, visit);
    if (!kind) return -1;
    const int interval = IntervalOfEggs(*kind, visit);
    prepared_.ClutchSteps.push_back({visit, brood, interval, CountOf(visit, first), *kind});
    return interval;
  }

  int IntervalOfEggs(ClutchInterval kind, int visit) {
    switch (kind) {
      case ClutchInterval::FirstOnHatchDay:
        return -1;
      case ClutchInterval::ByDate:
        return AddInterval(PreparedVisits::ClutchByDate, Date(visit - 1), Date(visit), Count(visit - 1));
      default:
        return AddInterval(PreparedVisits::ClutchByAge, Age(visit - 1),
                           kind == ClutchInterval::ByAge ? Age(visit) : 0.0, Count(visit - 1));
    }
  }

  /// The same for the pass over the broods.
  int AddBroodStep(int brood, int visit, bool first) {
    const auto kind = BroodIntervalTo(data_, brood, visit);
    if (!kind) return -1;
    const int group = prepared_.GroupOfBrood[static_cast<std::size_t>(brood)];
    const int interval = IntervalOfJuveniles(*kind, group, visit, false);
    const int ofCorrelated = *kind == BroodInterval::FromClutch ? IntervalOfJuveniles(*kind, group, visit, true) : -1;
    const bool second = visit == data_.FirstVisit[static_cast<std::size_t>(brood)] + 1;
    prepared_.BroodSteps.push_back({visit, brood, interval, ofCorrelated, CountOf(visit, first), *kind, second});
    return interval;
  }

  int IntervalOfJuveniles(BroodInterval kind, int group, int visit, bool ofCorrelatedEggs) {
    switch (kind) {
      case BroodInterval::ByDate:
        return AddInterval(PreparedVisits::BroodByDate(group), Date(visit - 1), Date(visit), Count(visit - 1));
      case BroodInterval::ByAge:
        return AddInterval(PreparedVisits::BroodByAge(group), Age(visit - 1), Age(visit), Count(visit - 1));
      case BroodInterval::FromClutch:
        return AddInterval(PreparedVisits::BroodByAge(group), 0.0, Age(visit), Count(visit - 1), Age(visit - 1),
                           ofCorrelatedEggs);
      default:
        return -1;
    }
  }

  void AddJudgement(int brood, int visit, bool first) {
    PreparedVisits::Judgement judgement;
    judgement.brood = brood;
    judgement.count = data_.VisitCount[static_cast<std::size_t>(visit)];
    judgement.onHatchDay = Age(visit) == 0;
    prepared_.MaxCount = std::max(prepared_.MaxCount, Count(visit));
    if (!first) {
      judgement.countBefore = data_.VisitCount[static_cast<std::size_t>(visit) - 1];
      judgement.stageBefore = static_cast<std::int8_t>(Stage(visit - 1));
      judgement.prediction = PredictionOf(data_, visit);
      judgement.outcome = Outcome(judgement.prediction, visit);
    }
    prepared_.Judgements.push_back(judgement);
  }

  int Outcome(Prediction prediction, int visit) {
    const auto v = static_cast<std::size_t>(visit);
    const int n = Count(visit - 1);
    if (prediction == Prediction::Spanning) {
      const auto [number, isNew] = spanning_(KeyOf(clutchIntervals_[v], broodIntervals_[v], Age(visit - 1), n));
      if (isNew) prepared_.SpanningCounts.push_back(std::max(n, 0));
      return number;
    }
    if (prediction == Prediction::None) return -1;
    const int interval = prediction == Prediction::Clutch ? clutchIntervals_[v] : broodIntervals_[v];
    return outcomes_(KeyOf(static_cast<int>(prediction), interval, Age(visit - 1), n, Count(visit))).first;
  }

  const BroodData& data_;
  PreparedVisits& prepared_;
  std::vector<int> clutchIntervals_, broodIntervals_;  // of each visit so far, -1 for none
  Numbering<2> times_;
  Numbering<4> spanning_;
  Numbering<5> intervals_, outcomes_;
};

}  // namespace

PreparedVisits::PreparedVisits(const BroodData& data) { Preparation(data, *this).Run(); }

}  // namespace merlane
