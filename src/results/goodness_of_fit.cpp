#include "results/goodness_of_fit.h"

#include <fmt/format.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <utility>
#include <vector>

#include "base/arithmetic.h"
#include "base/elementary.h"
#include "base/number_text.h"
#include "base/runtime_failure.h"
#include "data/data_digest.h"
#include "model/kept_predictions.h"
#include "model/pick_table.h"
#include "model/simulator.h"
#include "platform/digest.h"

namespace merlane {
namespace {

/// The sums of the real data, in the order of the visits.
void Observe(const BroodData& data, const BestTables& best, const CalculationWatch& watch, GoodnessOfFit& fit) {
  for (int brood = 0; brood < data.Broods(); ++brood) {
    const auto b = static_cast<std::size_t>(brood);
    for (int visit = data.FirstVisit[b]; visit < data.FirstVisit[b] + data.VisitsOf[b]; ++visit) {
      const auto v = static_cast<std::size_t>(visit);
      if (best.survival.EVisit[v] == Missing) continue;
      fit.deviance.observed = fit.deviance.observed + best.VisitDeviance[v];
      try {
        fit.pearson.observed = fit.pearson.observed + PearsonDeviate(best.VisitDeviance[v]);
      } catch (const RuntimeFailure& failure) {
        fit.pearson.defined = false;
        watch.impossible({"Pearson deviate", brood, visit, failure.what()});
      }
    }
  }
}

/// The predictions from which counts are picked. What a visit's count is drawn from is the same in every randomisation,
/// and so is what a count adds to the sums: both are computed once, for all visits that have the same distribution.
class Randomisations {
 public:
  Randomisations(const BroodData& data, BestTables& best, Workers* workers)
      : data_(data), best_(best), workers_(workers), predictions_(data, best.parameters) {
    for (int brood = 0; brood < data.Broods(); ++brood) {
      const auto b = static_cast<std::size_t>(brood);
      for (int visit = data.FirstVisit[b] + 1; visit < data.FirstVisit[b] + data.VisitsOf[b]; ++visit) {
        const auto v = static_cast<std::size_t>(visit);
        if (best.survival.EVisit[v] != Missing && data.VisitCount[v - 1] > 0)
          visits_.push_back({.visit = visit, .brood = brood});
      }
    }
  }

  /// Leaves out so many randomisations.
  void LeaveOut(int randomisations, RandomStreams& random) const {
    random.LeaveOut(static_cast<unsigned long long>(randomisations) * visits_.size());
  }

  /// True when the sums of the next randomisation are all that there is to it: nothing is prepared or told on the way,
  /// and its numbers have not been drawn.
  bool AreSumsAll() const {
    return prepared_ == visits_.size() && wantingAttention_ == 0 && next_ == ahead_.size() && drawn_.empty();
  }
  /// Leaves out the next randomisation, whose sums are known; false when it was aborted.
  bool PassOver(RandomStreams& random, const CalculationWatch& watch) const {
    LeaveOut(1, random);
    return watch.Turns(static_cast<long>(visits_.size()));
  }

  /// The sums of the next randomisation, of which so many are still wanted; false when it was aborted or a count was
  /// impossible.
  bool Run(int wanted, RandomStreams& random, const CalculationWatch& watch, double& SumPearson, double& SumDeviance) {
    if (next_ == ahead_.size()) LookAhead(wanted, random);
    if (next_ == ahead_.size()) return PickAll([&] { return random.Uniform(); }, watch, SumPearson, SumDeviance);
    const Ahead& ahead = ahead_[next_++];
    if (!ahead.possible) {
      const double* U = ahead.uniform.data();
      return PickAll([&] { return *U++; }, watch, SumPearson, SumDeviance);
    }
    SumPearson = ahead.SumPearson;
    SumDeviance = ahead.SumDeviance;
    return watch.Turns(static_cast<long>(visits_.size()));
  }

 private:
  struct PredictedVisit {
    int visit, brood;
    std::size_t prediction = 0;  // its number
    bool wantsAttention = true;  // before its count is picked; at least once
  };
  /// A randomisation whose numbers have been drawn, and whose sums have been made unless a count was impossible.
  struct Ahead {
    std::vector<double> uniform;
    double SumPearson = 0, SumDeviance = 0;
    bool possible = true;
  };

  /// Picks visit after visit by what `uniform`() gives.
  template <class Uniform>
  bool PickAll(const Uniform& uniform, const CalculationWatch& watch, double& SumPearson, double& SumDeviance) {
    long turns = 0;  // that are due
    wantingAttention_ = 0;
    for (std::size_t i = 0; i < visits_.size(); ++i) {
      if (i == prepared_) PrepareMore(watch);
      PredictedVisit& visit = visits_[i];
      if (visit.wantsAttention && !watch.Turns(std::exchange(turns, 0))) return false;
      try {
        if (visit.wantsAttention) Attend(visit, watch);
        const PickTable::Count& picked = picks_.Pick(visit.prediction, uniform());
        const PickedCount adds = picked.IsPossible() ? picked.adds : JudgeProbability(picked.P);  // which fails
        SumPearson = SumPearson + adds.Pearson;
        SumDeviance = SumDeviance + adds.Deviance;
      } catch (const RuntimeFailure& failure) {
        if (watch.Turns(turns)) watch.impossible({"randomization", visit.brood, visit.visit, failure.what()});
        return false;
      }
      ++turns;
    }
    return watch.Turns(turns);
  }

  /// Has the workers make the sums of the coming randomisations, whose numbers have been drawn, while one of them draws
  /// for those behind.
  void LookAhead(int wanted, RandomStreams& random) {
    next_ = 0;
    std::swap(ahead_, drawn_);
    if (ahead_.empty()) {
      MakeRoom(CountAhead(wanted), ahead_);
      Draw(random, ahead_);
    }
    if (ahead_.empty()) return;
    MakeRoom(CountAhead(wanted - static_cast<int>(ahead_.size())), drawn_);
    workers_->Share(1 + static_cast<int>(ahead_.size()), [&](int item, int) {
      if (item == 0)
        Draw(random, drawn_);
      else
        SumUp(ahead_[static_cast<std::size_t>(item) - 1]);
    });
  }

  /// None as long as something is prepared or told on the way, and not so many that the numbers take much room.
  std::size_t CountAhead(int wanted) const {
    constexpr std::size_t MostNumbers = 500'000;
    if (workers_ == nullptr || prepared_ < visits_.size() || wantingAttention_ > 0 || visits_.empty()) return 0;
    return std::min({MostNumbers / visits_.size(), static_cast<std::size_t>(wanted),
                     2 * static_cast<std::size_t>(workers_->Count())});
  }

  void MakeRoom(std::size_t randomisations, std::vector<Ahead>& ahead) const {
    ahead.resize(randomisations);
    for (Ahead& one : ahead) one.uniform.resize(visits_.size());
  }
  static void Draw(RandomStreams& random, std::vector<Ahead>& drawn) {
    for (Ahead& ahead : drawn)
      for (double& U : ahead.uniform) U = random.Uniform();
  }

  void SumUp(Ahead& ahead) const {
    double SumPearson = 0, SumDeviance = 0;
    for (std::size_t i = 0; i < visits_.size(); ++i) {
      const PickedCount& adds = picks_.Pick(visits_[i].prediction, ahead.uniform[i]).adds;
      SumPearson = SumPearson + adds.Pearson;
      SumDeviance = SumDeviance + adds.Deviance;
    }
    ahead.SumPearson = SumPearson;
    ahead.SumDeviance = SumDeviance;
    ahead.possible = !std::isnan(SumDeviance);
  }

  /// The predictions of the next visits, so many that between two turns not much time goes by.
  void PrepareMore(const CalculationWatch& watch) {
    constexpr long MostTerms = 1'000'000;  // over hatch a distribution has as many as the square of the count
    long terms = 0;
    for (; prepared_ < visits_.size() && terms < MostTerms; ++prepared_) {
      PredictedVisit& visit = visits_[prepared_];
      const int n = data_.VisitCount[static_cast<std::size_t>(visit.visit) - 1];
      visit.prediction =
          predictions_.Number(visit.visit, n, BestExpectation(data_, best_.survival, visit.brood, visit.visit));
      terms += long{n} * n + 1000;
    }
    predictions_.Build(workers_, [&watch](long) { watch.turn(); });
    while (picks_.Size() < predictions_.Size()) picks_.Add(predictions_.Built(picks_.Size()));
  }

  void Attend(PredictedVisit& visit, const CalculationWatch& watch) {
    const CountPrediction& prediction = predictions_[visit.prediction];
    KeepVariances(data_, visit.visit, prediction, best_);
    TellInaccuracy(prediction, watch);
    visit.wantsAttention = prediction.inaccurateComponents > 0 || prediction.inaccurateSums > 0;
    if (visit.wantsAttention) ++wantingAttention_;
  }

  const BroodData& data_;
  BestTables& best_;
  Workers* const workers_;
  KeptPredictions predictions_;
  PickTable picks_;  // of the predictions, under their numbers
  std::vector<PredictedVisit> visits_;
  std::size_t prepared_ = 0;  // visits whose prediction is built
  int wantingAttention_ = 0;  // visits that do so each time
  std::vector<Ahead> ahead_;
  std::size_t next_ = 0;      // of them
  std::vector<Ahead> drawn_;  // those behind them
};

/// The randomisations of a run, or of its share of them, which is a stretch: a random number cannot be had without
/// those before it.
std::pair<int, int> RangeOf(int count, const SharedWork* shared) {
  if (shared == nullptr || !shared->Mine()) return {1, count};
  const auto [number, of] = *shared->Mine();
  const auto upTo = [count, of = of](int shares) { return static_cast<int>(std::int64_t{count} * shares / of); };
  return {upTo(number - 1) + 1, upTo(number)};
}

void BeginShared(const BroodData& data, const BestTables& best, const GoodnessOfFit& observed, int count,
                 const RandomStreams& random, SharedWork& shared) {
  Digest basis;
  basis.Add("randomisations").Add(random.Seed()).Add(random.StreamNumber());
  basis.Add(DigestOf(data)).AddAll(best.survival.EVisit);
  basis.Add(observed.pearson.observed).Add(observed.deviance.observed);
  shared.Begin(fmt::format("the {} randomizations of a goodness-of-fit test", count), basis.Value(), random.Repeats());
}

std::uint64_t AsWord(double x) { return std::bit_cast<std::uint64_t>(x); }

struct Sums {
  double Pearson, Deviance;
};

/// What a randomisation has come to in another run; none when that is not known.
std::optional<Sums> KnownSums(const SharedWork* shared, int randomisation) {
  const auto* const words = shared != nullptr ? shared->Find(randomisation) : nullptr;
  if (words == nullptr || words->size() != 2) return std::nullopt;
  const Sums sums{std::bit_cast<double>((*words)[0]), std::bit_cast<double>((*words)[1])};
  return std::isfinite(sums.Pearson) && std::isfinite(sums.Deviance) ? std::optional(sums) : std::nullopt;
}

/// The last of the randomisations from r on before one that is known: so far, and no farther, may numbers be drawn.
int StretchToRun(const SharedWork* shared, int r, int last) {
  while (r < last && !KnownSums(shared, r + 1)) ++r;
  return r;
}

/// How the lines of a statistic name it.
struct Words {
  const char *name, *sum, *estimate;
};
constexpr Words PearsonWords{"Pearson-deviates", "Pearson-deviates", "A Pearson-deviates-based"};
constexpr Words DevianceWords{"Deviance", "Deviances", "A deviance-based"};

/// A number after a template, or the word that stands for one that is not defined.
std::string Number(const std::optional<double>& x, const char* pattern, const char* undefined = " Undefined") {
  return x ? Format(*x, pattern) : undefined;
}

std::string Block(const FitStatistic& s, const Words& words) {
  const char* const sum = " ###0.000";
  const char* const share = " #0.000";
  std::string text =
      "The randomization test that follows is that of Roff, D.A. and P. Bentzen (1989), Molecular Biology and "
      "Evolution 6: 539-545\r\n";
  text += fmt::format(
      "You can reject this model if the cumulative p[{}] is outside your acceptance range (e.g., 0.025 < p < "
      "0.975)\r\n",
      words.name);
  text += fmt::format("Simulated sum of {}> n:{}; Mean:{}; SD:{}; Minimum:{}; Maximum:{}\r\n", words.sum,
                      Format(static_cast<double>(s.simulated.size()), " ###0"), Number(s.Mean, sum), Number(s.SD, sum),
                      Number(s.Minimum, sum), Number(s.Maximum, sum));
  text +=
      fmt::format("Observed sum of {0}>{1}; Cumulative p[{2}]:{3}; SE cumulative p[{2}]:{4}\r\n\r\n", words.sum,
                  Format(s.observed, sum), words.name, Number(s.CumulativeP, share), Number(s.CumulativePSE, share));
  text += fmt::format(
      "A very small value for cumulative p[{0}] (e.g., < 0.025) when n is large suggests the model underfits the data "
      "(fits too poorly)\r\n"
      "A very large value for cumulative p[{0}] (e.g., > 0.975) when n is large suggests the model overfits  the data "
      "(fits too well)\r\n\r\n",
      words.name);
  return text + fmt::format("{} estimate of c-hat is: {} SE: {}\r\n\r\n", words.estimate,
                            Number(s.CHat, "###0.00", "Uncalculated"), Number(s.CHatSE, "###0.00", "Uncalculated"));
}

}  // namespace

double PearsonDeviate(double deviance) {
  const double P = Exp(-0.5 * deviance);
  return Divide(1 - P, P);
}

std::optional<GoodnessOfFit> RandomisedGoodnessOfFit(const BroodData& data, BestTables& best, int RandomisationCount,
                                                     RandomStreams& random, const CalculationWatch& watch,
                                                     Workers* workers, SharedWork* shared) {
  GoodnessOfFit fit;
  Observe(data, best, watch, fit);
  if (shared != nullptr) BeginShared(data, best, fit, RandomisationCount, random, *shared);
  random.BeginNext();
  Randomisations randomisations(data, best, workers);
  const auto [first, last] = RangeOf(RandomisationCount, shared);
  randomisations.LeaveOut(first - 1, random);
  int toRun = first - 1;  // up to this one none is known
  for (int r = first; r <= last; ++r) {
    watch.progress(
        fmt::format("Pearson-deviates & Deviance: Performing randomization # {} of {}", r, RandomisationCount));
    double& SumPearson = fit.pearson.simulated.emplace_back(0);
    double& SumDeviance = fit.deviance.simulated.emplace_back(0);
    const std::optional<Sums> known = KnownSums(shared, r);
    const bool taken = known && randomisations.AreSumsAll();
    if (taken) {
      SumPearson = known->Pearson;
      SumDeviance = known->Deviance;
    } else if (r > toRun) {
      toRun = StretchToRun(shared, r, last);
    }
    const bool finished = taken ? randomisations.PassOver(random, watch)
                                : randomisations.Run(toRun - r + 1, random, watch, SumPearson, SumDeviance);
    watch.progress("");
    if (!finished) return std::nullopt;
    if (shared == nullptr) continue;
    if (shared->Mine()) shared->Keep(r, {AsWord(SumPearson), AsWord(SumDeviance)});
    if (taken || !known) shared->Count(taken);  // not one that is run for what it tells on the way
  }
  Summarise(fit.pearson);
  Summarise(fit.deviance);
  return fit;
}

void Summarise(FitStatistic& s) {
  const auto R = static_cast<double>(s.simulated.size());
  if (R == 0) return;
  double sum = 0, squares = 0, least = 1e100, most = 0, atLeastObserved = 0;
  for (const double x : s.simulated) {
    sum = sum + x;
    squares = squares + x * x;
    least = std::min(least, x);
    most = std::max(most, x);
    if (x >= s.observed) ++atLeastObserved;
  }
  const double mean = sum / R;
  const double V = Checked(squares / R - mean * mean);
  s.Mean = mean;
  s.Minimum = least;
  s.Maximum = most;
  if (V > 0) s.SD = std::sqrt(V);
  if (R > 1) {
    const double p = atLeastObserved / R;
    s.CumulativeP = p;
    s.CumulativePSE = std::sqrt(p * (1 - p) / (R - 1));
  }
  if (s.SD && mean > 0) {
    // The standard error is that of the rounded estimate.
    s.CHat = std::floor(100 * (s.observed / mean) + 0.5) / 100;
    s.CHatSE = std::floor(100 * (*s.SD * *s.CHat / mean) + 0.5) / 100;
  }
}

std::string GoodnessOfFitText(const GoodnessOfFit& fit) {
  return (fit.pearson.defined ? Block(fit.pearson, PearsonWords) : "") + Block(fit.deviance, DevianceWords);
}

}  // namespace merlane
