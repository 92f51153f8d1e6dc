#include "likelihood/objective_plan.h"

#include <algorithm>
#include <bit>
#include <limits>
#include <numeric>
#include <utility>

#include "base/numbering.h"

namespace merlane {
namespace {

/// Numbers in the plan of what is numbered in the preparation; anew in each scope where broods share nothing.
class Numbers {
 public:
  explicit Numbers(std::size_t size) : entries_(size) {}
  /// The number of `key`; a new one is made by `make`.
  template <class Make>
  int Of(int key, int scope, Make make) {
    Entry& entry = entries_[static_cast<std::size_t>(key)];
    if (entry.scope != scope) entry = {scope, make()};
    return entry.number;
  }

 private:
  struct Entry {
    int scope = -1, number = -1;
  };
  std::vector<Entry> entries_;
};

std::size_t At(int index) { return static_cast<std::size_t>(index); }

int Size(const auto& column) { return static_cast<int>(column.size()); }

using Kind = Prediction;  // of which stage
constexpr int Kinds = static_cast<int>(Kind::Spanning) + 1;

/// Sorts by a key from 0 to `keys` - 1; those with the same keep their order, so that they can be sorted by one key
/// after the other, the most important one last. Takes a time in proportion to both numbers.
template <class Item, class Key>
void SortBy(const Key& key, int keys, std::vector<Item>& items, std::vector<Item>& room) {
  std::vector<std::size_t> next(At(keys) + 1);  // place of each key
  for (const Item& item : items) ++next[At(key(item)) + 1];
  std::partial_sum(next.begin(), next.end(), next.begin());
  room.resize(items.size());
  for (const Item& item : items) room[next[At(key(item))]++] = item;
  std::swap(items, room);
}

/// Pieces of that many times are worth to be given to another core.
constexpr std::size_t TimesOfPiece = 1000;

/// So are rows of that many predictions, which stay near a core.
constexpr int PredictionsOfRow = 500;

class Planning {
 public:
  Planning(const BroodData& data, const PreparedVisits& prepared, const CountDistributions& distributions,
           ObjectivePlan& plan)
      : data_(data),
        prepared_(prepared),
        distributions_(distributions),
        plan_(plan),
        times_(prepared.Times.size()),
        intervals_(prepared.Intervals.size()),
        fromHatch_(prepared.Intervals.size()),
        mortalities_(static_cast<std::size_t>(prepared.Mortalities())),
        filled_(static_cast<std::size_t>(data.Visits())),
        hatches_(static_cast<std::size_t>(data.Broods())) {}

  void Run() {
    for (const PreparedVisits::ClutchStep& step : prepared_.ClutchSteps) Add(step);
    plan_.clutches = PieceFrom({});
    int brood = -1;
    std::size_t nextPiece = plan_.Time.size() + TimesOfPiece;
    for (const PreparedVisits::BroodStep& step : prepared_.BroodSteps) {
      if (!plan_.subject.broodsShareMortalities && step.brood != brood && plan_.Time.size() >= nextPiece) {
        AddPiece();
        nextPiece = plan_.Time.size() + TimesOfPiece;
      }
      brood = step.brood;
      Add(step);
    }
    AddPiece();
    JudgeVisits();
    NumberDistinctTimes();
  }

 private:
  /// What fills a visit's entries in the tables.
  enum class By : std::uint8_t { Nothing, Clutch, HatchDay, Brood, FromHatch };
  struct Filled {
    By by = By::Nothing;
    int interval = -1;  // or its number among those from hatch
  };
  /// How many individuals of a brood hatched.
  struct Hatch {
    int interval = -1;       // the clutch interval that tells it
    double known = Missing;  // or the count on the hatch day
    bool spanned = false;    // an interval from hatch begins with it
    bool Any() const { return interval >= 0 || known != Missing; }
  };

  /// A visit that counts, and the distribution of its count.
  struct Counted {
    struct Of {
      Kind kind{};
      int span = -1, interval = -1, age = -1;
      std::int16_t n = 0;
      bool operator==(const Of&) const = default;
    } of;
    std::int16_t k = 0;
    std::size_t place = 0;  // among those that count
  };

  /// What has been added behind `before`.
  ObjectivePlan::Piece PieceFrom(const ObjectivePlan::Piece& before) const {
    return {.mortality = {before.mortality.end, At(plan_.Mortalities())},
            .time = {before.time.end, plan_.Time.size()},
            .span = {before.span.end, plan_.from.size()},
            .interval = {before.interval.end, plan_.N.size()},
            .distinctTime = {}};
  }
  /// Adds the broods behind `before` as a piece of their own.
  void AddPiece() {
    const ObjectivePlan::Piece piece = PieceFrom(plan_.broodPieces.empty() ? plan_.clutches : plan_.broodPieces.back());
    if (piece.mortality.Size() > 0) plan_.broodPieces.push_back(piece);
  }

  Hatch& HatchOf(int brood) { return hatches_[static_cast<std::size_t>(brood)]; }
  void Fill(int visit, By by, int interval) {
    Filled& filled = filled_[static_cast<std::size_t>(visit)];
    if (filled.by != By::Nothing) plan_.regular = false;
    filled = {by, interval};
  }
  int ScopeOf(int brood) const { return plan_.subject.broodsShareMortalities ? 0 : brood; }

  int Time(int prepared, int scope, int mortality, double start) {
    return times_.Of(prepared, scope, [&] {
      plan_.Time.push_back(prepared_.Times[static_cast<std::size_t>(prepared)] - start);
      plan_.mortalityOfTime.push_back(mortality);
      return Size(plan_.Time) - 1;
    });
  }
  int Interval(int prepared, int scope, int mortality, double start, double N) {
    return intervals_.Of(prepared, scope, [&] {
      const PreparedVisits::Interval interval = prepared_.Intervals[static_cast<std::size_t>(prepared)];
      const int from = Time(interval.from, scope, mortality, start);
      const int to = Time(interval.to, scope, mortality, start);
      plan_.span.push_back(Span(from, to, mortality));
      plan_.N.push_back(N);
      return Size(plan_.N) - 1;
    });
  }

  int Span(int from, int to, int mortality) {
    const auto add = [&] {
      plan_.from.push_back(from);
      plan_.to.push_back(to);
      return Size(plan_.from) - 1;
    };
    // A brood with a mortality of its own has hardly a span twice.
    if (!plan_.subject.broodsShareMortalities && mortality >= ObjectivePlan::ClutchMortalities) return add();
    const std::size_t number = At(spans_({static_cast<std::uint64_t>(from), static_cast<std::uint64_t>(to)}).first);
    if (number == spanOf_.size()) spanOf_.push_back(add());
    return spanOf_[number];
  }

  void Add(const PreparedVisits::ClutchStep& step) {
    Hatch& hatch = HatchOf(step.brood);
    if (step.kind == ClutchInterval::FirstOnHatchDay) {
      hatch.known = step.count;
      return;
    }
    if (step.kind == ClutchInterval::ByAge &&
        data_.VisitAge[static_cast<std::size_t>(step.visit)] < plan_.subject.LayAge)
      return;
    if (step.count == Missing) plan_.regular = false;
    const bool byDate = step.kind == ClutchInterval::ByDate;
    (byDate ? plan_.clutchesByDate : plan_.clutchesByAge) = true;
    const int interval = Interval(step.interval, 0, byDate ? PreparedVisits::ClutchByDate : PreparedVisits::ClutchByAge,
                                  byDate ? 0.0 : static_cast<double>(plan_.subject.LayAge), step.count);
    if (step.kind == ClutchInterval::ToHatch || step.kind == ClutchInterval::ToHatchDay) {
      if (hatch.Any()) plan_.regular = false;
      hatch.interval = interval;
    }
    if (step.kind != ClutchInterval::ToHatch)
      Fill(step.visit, step.kind == ClutchInterval::ToHatchDay ? By::HatchDay : By::Clutch, interval);
  }

  void Add(const PreparedVisits::BroodStep& step) {
    Hatch& hatch = HatchOf(step.brood);
    if (step.kind == BroodInterval::FirstOnHatchDay) {
      if (hatch.interval >= 0) plan_.regular = false;
      hatch.known = step.count;
      return;
    }
    const bool byAge = step.kind != BroodInterval::ByDate;
    const int FledgeAge = plan_.subject.FledgeAge;
    if (byAge && !(data_.VisitAge[static_cast<std::size_t>(step.visit)] < FledgeAge || FledgeAge == 0)) return;
    const int scope = ScopeOf(step.brood);
    const int group = prepared_.GroupOfBrood[static_cast<std::size_t>(step.brood)];
    const int prepared = byAge ? PreparedVisits::BroodByAge(group) : PreparedVisits::BroodByDate(group);
    const int mortality = mortalities_.Of(prepared, scope, [&] {
      plan_.broods.push_back({step.brood, byAge, hatch.known, hatch.interval});
      return plan_.Mortalities() - 1;
    });
    if (step.kind == BroodInterval::AgeBeforeUnknown) return;
    if (step.kind == BroodInterval::FromClutch) {
      if (hatch.Any()) AddFromHatch(step, hatch, scope, mortality);
      return;
    }
    if (step.count == Missing) plan_.regular = false;
    Fill(step.visit, By::Brood, Interval(step.interval, scope, mortality, 0, step.count));
  }

  void AddFromHatch(const PreparedVisits::BroodStep& step, Hatch& hatch, int scope, int mortality) {
    if (hatch.spanned || hatch.interval < 0) {
      plan_.regular = false;
      return;
    }
    hatch.spanned = true;
    Fill(step.visit, By::FromHatch, fromHatch_.Of(step.interval, scope, [&] {
      const int random = Interval(step.interval, scope, mortality, 0, 0);
      const int correlated = Interval(step.intervalCorrelated, scope, mortality, 0, 0);
      plan_.fromHatch.push_back({hatch.interval, random, correlated});
      return Size(plan_.fromHatch) - 1;
    }));
  }

  /// The visits as they are judged: one after the other, each with its count before or, where it has no prediction,
  /// with that of the last that has one.
  void JudgeVisits() {
    std::int64_t eggs = 0, juveniles = 0;
    int n = 0;
    std::vector<Counted> counted;
    counted.reserve(filled_.size());
    for (std::size_t v = 0; v < filled_.size(); ++v) {
      const PreparedVisits::Judgement& judgement = prepared_.Judgements[v];
      const bool filled = filled_[v].by != By::Nothing;
      if (filled) n = judgement.countBefore;
      if (n < 1) continue;
      ++plan_.turns;
      if (!filled) {
        // Judged, with a probability of 1 that nobody counts, unless expectations of another visit lead it astray.
        if (judgement.prediction == Kind::Spanning && HatchOf(judgement.brood).spanned) plan_.regular = false;
        continue;
      }
      const bool takesLong = judgement.prediction == Kind::Spanning && CountDistributions::TakesLong(n);
      if (judgement.count < 0 || judgement.count > n || !Fits(judgement, filled_[v].by) || takesLong) {
        plan_.regular = false;
        return;
      }
      counted.push_back({.of = {judgement.prediction, SpanOf(judgement.prediction, filled_[v].interval),
                                filled_[v].interval, Age(data_.VisitAge[v - 1]), judgement.countBefore},
                         .k = judgement.count,
                         .place = counted.size()});
      if (judgement.stageBefore == -1) eggs += n;
      if (judgement.stageBefore == 1) juveniles += n;
    }
    if (eggs + juveniles > std::numeric_limits<std::int32_t>::max()) plan_.regular = false;
    plan_.EggsAtRisk = static_cast<std::int32_t>(eggs);
    plan_.JuvsAtRisk = static_cast<std::int32_t>(juveniles);

    NumberPredictions(std::move(counted));
    plan_.distribution.resize(plan_.k.size());
    // First those that take longest, so that nobody has to be waited for at the end.
    for (const Kind kind : {Kind::Spanning, Kind::Clutch, Kind::Brood}) AddRows(kind);
  }

  static bool Fits(const PreparedVisits::Judgement& judgement, By by) {
    switch (judgement.prediction) {
      case Kind::Clutch:
        return by == (judgement.onHatchDay ? By::HatchDay : By::Clutch);
      case Kind::Brood:
        return by == By::Brood;
      case Kind::Spanning:
        return by == By::FromHatch;
      default:
        return false;
    }
  }

  int SpanOf(Kind kind, int interval) const {
    return kind == Kind::Spanning ? interval : plan_.span[static_cast<std::size_t>(interval)];
  }

  /// By their distributions, and within each by the count.
  void Sort(std::vector<Counted>& counted) const {
    const int counts = prepared_.MaxCount + 1;
    const int spans = std::max(Size(plan_.from), Size(plan_.fromHatch));
    std::vector<Counted> room;
    SortBy([](const Counted& c) { return int{c.k}; }, counts, counted, room);
    SortBy([](const Counted& c) { return int{c.of.n}; }, counts, counted, room);
    SortBy([](const Counted& c) { return c.of.age; }, Size(plan_.Ages), counted, room);
    SortBy([](const Counted& c) { return c.of.interval; }, Size(plan_.N), counted, room);
    SortBy([](const Counted& c) { return c.of.span; }, spans, counted, room);
    SortBy([](const Counted& c) { return static_cast<int>(c.of.kind); }, Kinds, counted, room);
  }

  void NumberPredictions(std::vector<Counted> counted) {
    Sort(counted);
    plan_.counted.resize(counted.size());
    const Counted* last = nullptr;
    for (const Counted& c : counted) {
      std::vector<ObjectivePlan::Distribution>& distributions = DistributionsOf(c.of.kind);
      const bool another = last == nullptr || last->of != c.of;
      if (another) {
        const int prediction = Size(plan_.k);
        distributions.push_back({c.of.interval, c.of.age, c.of.n, prediction, prediction});
      }
      if (another || last->k != c.k) {
        plan_.k.push_back(c.k);
        plan_.others.push_back(static_cast<std::int16_t>(c.of.n - c.k));
        plan_.spanOfPrediction.push_back(c.of.span);
        plan_.logChoices.push_back(distributions_.LogChoices(c.of.n, c.k));
        distributions.back().predictionEnd = Size(plan_.k);
      }
      plan_.counted[c.place] = Size(plan_.k) - 1;
      last = &c;
    }
  }

  void AddRows(Kind kind) {
    const std::vector<ObjectivePlan::Distribution>& distributions = DistributionsOf(kind);
    std::size_t begin = 0;
    for (std::size_t end = 1; end <= distributions.size(); ++end) {
      const bool full = distributions[end - 1].predictionEnd - distributions[begin].prediction >= PredictionsOfRow;
      if (!full && end < distributions.size()) continue;
      plan_.rows.push_back({kind, {begin, end}});
      for (std::size_t d = begin; d < end; ++d)
        for (int prediction = distributions[d].prediction; prediction < distributions[d].predictionEnd; ++prediction)
          plan_.distribution[At(prediction)] = static_cast<int>(d - begin);
      begin = end;
    }
  }

  std::vector<ObjectivePlan::Distribution>& DistributionsOf(Kind kind) {
    switch (kind) {
      case Kind::Clutch:
        return plan_.clutchDistributions;
      case Kind::Brood:
        return plan_.broodDistributions;
      default:
        return plan_.spanningDistributions;
    }
  }

  int Age(double age) {
    const auto [number, isNew] = ages_({std::bit_cast<std::uint64_t>(age)});
    if (isNew) plan_.Ages.push_back(age);
    return number;
  }

  void NumberDistinctTimes() {
    plan_.clutches.distinctTime = AddDistinct(plan_.clutches.time);
    if (plan_.broodPieces.empty()) return;
    const ObjectivePlan::Range distinct = AddDistinct({plan_.clutches.time.end, plan_.Time.size()});
    for (ObjectivePlan::Piece& piece : plan_.broodPieces) piece.distinctTime = distinct;
  }

  ObjectivePlan::Range AddDistinct(const ObjectivePlan::Range& times) {
    const std::size_t begin = plan_.DistinctTimes.size();
    Numbering<1> numbers;
    for (const double time : times.Of(plan_.Time)) {
      const auto [number, isNew] = numbers({std::bit_cast<std::uint64_t>(time)});
      if (isNew) plan_.DistinctTimes.push_back(time);
      plan_.distinctTime.push_back(static_cast<int>(begin) + number);
    }
    return {begin, plan_.DistinctTimes.size()};
  }

  const BroodData& data_;
  const PreparedVisits& prepared_;
  const CountDistributions& distributions_;
  ObjectivePlan& plan_;
  Numbers times_, intervals_, fromHatch_, mortalities_;
  std::vector<Filled> filled_;  // of each visit
  std::vector<Hatch> hatches_;  // of each brood
  Numbering<2> spans_;
  std::vector<int> spanOf_;  // of those, their numbers in the plan
  Numbering<1> ages_;
};

}  // namespace

std::span<const ObjectivePlan::Distribution> ObjectivePlan::DistributionsOf(const Row& row) const {
  switch (row.kind) {
    case Prediction::Clutch:
      return row.distributions.Of(clutchDistributions);
    case Prediction::Brood:
      return row.distributions.Of(broodDistributions);
    default:
      return row.distributions.Of(spanningDistributions);
  }
}

ObjectivePlan::ObjectivePlan(const BroodData& data, const PreparedVisits& prepared,
                             const CountDistributions& distributions, const Subject& planned)
    : subject(planned) {
  Planning(data, prepared, distributions, *this).Run();
}

}  // namespace merlane
