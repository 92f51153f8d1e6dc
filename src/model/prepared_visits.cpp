#include "model/prepared_visits.h"

#include <algorithm>
#include <bit>
#include <unordered_map>
#include <utility>

namespace merlane {
namespace {

/// Calculations are the same when all that goes into them has the same bits.
using Key = std::vector<std::uint64_t>;

struct KeyHash {
  std::size_t operator()(const Key& key) const {
    std::uint64_t hash = 0x9E3779B97F4A7C15u;
    for (const std::uint64_t part : key) {
      hash = (hash ^ part) * 0xBF58476D1CE4E5B9u;
      hash ^= hash >> 29;
    }
    return hash;
  }
};

std::uint64_t Part(int x) { return static_cast<std::uint64_t>(x); }
std::uint64_t Part(double x) { return std::bit_cast<std::uint64_t>(x); }

/// Numbers distinct keys from 0 in the order of their first appearance.
class Numbering {
 public:
  /// The number of a key, and whether it is new.
  std::pair<int, bool> operator()(const Key& key) {
    const auto [found, isNew] = numbers_.try_emplace(key, static_cast<int>(numbers_.size()));
    return {found->second, isNew};
  }
  int Size() const { return static_cast<int>(numbers_.size()); }

 private:
  std::unordered_map<Key, int, KeyHash> numbers_;
};

using Interval = PreparedVisits::Interval;
using ClutchInterval = PreparedVisits::ClutchInterval;
using BroodInterval = PreparedVisits::BroodInterval;
using Prediction = PreparedVisits::Prediction;

/// The visits as the two passes over them ask for them; index j is within the columns.
class Preparation {
 public:
  Preparation(const BroodData& data, PreparedVisits& prepared) : data_(data), prepared_(prepared) {}

  void Run() {
    Group();
    for (int brood = 0; brood < data_.Broods(); ++brood) {
      ForVisits(brood, [&](int visit, bool first) { AddClutchStep(brood, visit, first); });
      ForVisits(brood, [&](int visit, bool first) { AddBroodStep(brood, visit, first); });
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

  template <class... Parts>
  const Key& KeyOf(Parts... parts) {
    key_.assign({Part(parts)...});
    return key_;
  }

  void Group() {
    constexpr int worthwhile = 4;  // broods of a group, on average, from which sharing between broods pays
    Numbering groups;
    for (int brood = 0; brood < data_.Broods(); ++brood) {
      key_.clear();
      for (int m = 0; m < data_.NCov; ++m) key_.push_back(Part(data_.CovariatesOf(brood)[m]));
      prepared_.GroupOfBrood.push_back(groups(key_).first);
    }
    prepared_.Groups = groups.Size();
    if (groups.Size() <= 1 || data_.Broods() >= worthwhile * groups.Size()) return;
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

  void AddClutchStep(int brood, int visit, bool first) {
    const auto add = [&](ClutchInterval kind, int interval) {
      prepared_.ClutchSteps.push_back({visit, brood, interval, CountOf(visit, first), kind});
      interval_ = interval;
    };
    interval_ = -1;
    const double age = Age(visit);
    if (!data_.ClutchAgeKnown[static_cast<std::size_t>(brood)]) {
      if (!first && Stage(visit - 1) == -1 && Stage(visit) == -1 && Count(visit) != Missing)
        add(ClutchInterval::ByDate,
            AddInterval(PreparedVisits::ClutchByDate, Date(visit - 1), Date(visit), Count(visit - 1)));
    } else if (first) {
      if (age == 0) add(ClutchInterval::FirstOnHatchDay, -1);
    } else if (const double before = Age(visit - 1); age != Missing && before != Missing && before < 0) {
      const ClutchInterval kind = age < 0    ? ClutchInterval::ByAge
                                  : age == 0 ? ClutchInterval::ToHatchDay
                                             : ClutchInterval::ToHatch;
      add(kind, AddInterval(PreparedVisits::ClutchByAge, before, age < 0 ? age : 0.0, Count(visit - 1)));
    }
    clutchIntervals_.push_back(interval_);
  }

  void AddBroodStep(int brood, int visit, bool first) {
    const auto add = [&](BroodInterval kind, int interval, int intervalCorrelated = -1) {
      const bool second = visit == data_.FirstVisit[static_cast<std::size_t>(brood)] + 1;
      prepared_.BroodSteps.push_back({visit, brood, interval, intervalCorrelated, CountOf(visit, first), kind, second});
      interval_ = interval;
    };
    interval_ = -1;
    const double age = Age(visit);
    const int group = prepared_.GroupOfBrood[static_cast<std::size_t>(brood)];
    if (!data_.BroodAgeKnown[static_cast<std::size_t>(brood)]) {
      if (!first && Stage(visit - 1) == 1 && Stage(visit) == 1 && Count(visit) != Missing)
        add(BroodInterval::ByDate,
            AddInterval(PreparedVisits::BroodByDate(group), Date(visit - 1), Date(visit), Count(visit - 1)));
    } else if (first) {
      if (age == 0) add(BroodInterval::FirstOnHatchDay, -1);
    } else if (age > 0) {
      const int mortality = PreparedVisits::BroodByAge(group);
      const double before = Age(visit - 1);
      if (before == Missing) {
        add(BroodInterval::AgeBeforeUnknown, -1);
      } else if (before < 0) {
        const int N = Count(visit - 1);
        const int random = AddInterval(mortality, 0.0, age, N, before, false);
        const int correlated = AddInterval(mortality, 0.0, age, N, before, true);
        add(BroodInterval::FromClutch, random, correlated);
      } else {
        add(BroodInterval::ByAge, AddInterval(mortality, before, age, Count(visit - 1)));
      }
    }
    broodIntervals_.push_back(interval_);
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
  Key key_;
  int interval_ = -1;
  std::vector<int> clutchIntervals_, broodIntervals_;  // of each visit so far, -1 for none
  Numbering times_, intervals_, outcomes_, spanning_;
};

}  // namespace

PreparedVisits::Prediction PredictionOf(const BroodData& data, int visit) {
  const auto v = static_cast<std::size_t>(visit);
  const int before = data.VisitStage[v - 1], stage = data.VisitStage[v];
  if (before == -1 && (stage == -1 || data.VisitAge[v] == 0)) return Prediction::Clutch;
  if (before == 1 && stage == 1) return Prediction::Brood;
  if (before == -1 && stage == 1) return Prediction::Spanning;
  return Prediction::None;
}

PreparedVisits::PreparedVisits(const BroodData& data) { Preparation(data, *this).Run(); }

}  // namespace merlane
