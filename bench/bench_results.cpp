// Results and simulation: randomisations of the goodness-of-fit test per second on the example data and on 2000 broods
// of 10 visits, with each visit's distribution built once and, for comparison, at each pick; survival estimates,
// simulation and the listing of 20000 records. Times are of the wall clock, the least of five.

#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <string>
#include <utility>

#include "example_data.h"
#include "field_data.h"
#include "likelihood/likelihood.h"
#include "model/simulator.h"
#include "model/survival_estimates.h"
#include "results/effective_sizes.h"
#include "results/goodness_of_fit.h"
#include "results/results_summary.h"

namespace {

using namespace merlane;

template <class Action>
double Seconds(const Action& action) {
  const auto begin = std::chrono::steady_clock::now();
  action();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

/// A data set evaluated at one vector, with its streams of random numbers.
class Fitted {
 public:
  Fitted(std::string name, BroodData data, const Array1<double>& Value)
      : name_(std::move(name)), data_(std::move(data)), Value_(Value), Step_(Value.Size()), Names_(Value.Size()) {
    Array1<std::string> Fuse(Value.Size(), "~~");
    double F = 0;
    state_.Dimension(data_);
    EvaluationSetting setting;
    setting.tell = [](const Message&) {};
    Likelihood likelihood(data_);
    likelihood.EvaluateObjective(setting, state_, F, Value_, Step_, Names_, Fuse,
                                 static_cast<std::int16_t>(Value_.Size()), 1, SampleSize_);
    likelihood.FillTables(state_);
    random_.SetSeed(1);
  }
  Fitted(const Fitted&) = delete;
  Fitted& operator=(const Fitted&) = delete;

  void Randomise(int randomisations) {
    const double once = Seconds(
        [&] { RandomisedGoodnessOfFit(data_, state_.best, randomisations, random_, NobodyWaits(), &workers_); });
    const int fewer = std::max(1, randomisations / 100);
    const double each = Seconds([&] {
      for (int r = 0; r < fewer; ++r) RandomiseAnew();
    });
    fmt::print("{:<44}{:>10.1f} randomisations/s; distributions built at each pick: {:>8.1f}/s; ratio {:.1f}\n", name_,
               randomisations / once, fewer / each, each / fewer * randomisations / once);
  }

  void List() {
    SurvivalEstimates estimates;
    estimates.Preset(data_);
    const auto D = static_cast<std::int16_t>(state_.best.parameters.FledgeAge);
    Report("survival estimates", [&] {
      EstimateOneDaySurvival(data_, state_, false, {}, estimates, &workers_);
      EstimateFledgingSurvival(data_, state_, false, D, {}, estimates, &workers_);
    });
    Simulation simulation;
    Report("simulation", [&] { SimulateData(data_, {}, state_.best, random_, {}, simulation); });
    EffectiveSizes sizes;
    Report("effective sizes", [&] { sizes = FindEffectiveSizes(data_, state_.best, {}); });
    const ResultsSubject subject{.data = data_,
                                 .fitted = state_,
                                 .Value = Value_,
                                 .Names = Names_,
                                 .SampleSize = SampleSize_,
                                 .AlgName = "",
                                 .PriorFileName = ""};
    for (const Listing listing : {Listing::Partitioning, Listing::SimulatedAndSurvival}) {
      std::string text;
      Report(listing == Listing::Partitioning ? "listing, partitioning" : "listing, simulation and survival",
             [&] { text = ListingRows(subject, listing, sizes, estimates, simulation, NobodyWaits(), &workers_); });
    }
  }

 private:
  /// One randomisation without anything kept from visit to visit.
  void RandomiseAnew() {
    CountPredictor predictor(data_, state_.best.parameters);
    double SumPearson = 0, SumDeviance = 0;
    for (int brood = 0; brood < data_.Broods(); ++brood) {
      const auto b = static_cast<std::size_t>(brood);
      for (int visit = data_.FirstVisit[b] + 1; visit < data_.FirstVisit[b] + data_.VisitsOf[b]; ++visit) {
        const auto v = static_cast<std::size_t>(visit);
        if (state_.best.survival.EVisit[v] == Missing || data_.VisitCount[v - 1] < 1) continue;
        CountPrediction prediction;
        predictor.Predict(visit, data_.VisitCount[v - 1], BestExpectation(data_, state_.best.survival, brood, visit),
                          prediction);
        KeepVariances(data_, visit, prediction, state_.best);
        Simulate_Pick_ChiSq(prediction, random_, {}, SumPearson, SumDeviance);
      }
    }
  }

  template <class Action>
  void Report(const char* what, const Action& action) {
    double least = Seconds(action);
    for (int again = 2; again <= 5; ++again) least = std::min(least, Seconds(action));
    fmt::print("{:<44}{:<34}{:>8} records {:>9.2f} ms\n", name_, what, data_.Visits(), 1000 * least);
  }

  /// As at a window where nothing happens.
  static CalculationWatch NobodyWaits() {
    CalculationWatch watch;
    watch.quietTurns = [](long atMost) { return atMost; };
    return watch;
  }

  const std::string name_;
  const BroodData data_;
  Array1<double> Value_, Step_;
  Array1<std::string> Names_;
  LikelihoodState state_;
  std::int32_t SampleSize_ = 0;
  SystemClock clock_;
  RandomStreams random_{clock_};
  Workers workers_{Workers::Cores()};
};

Fitted ExampleData() {
  Example example = ReadExample();
  return {"example data, three covariates", std::move(example.data), example.algorithm.Value};
}

Fitted ManyBroods(bool overdispersed) {
  BroodData data = ReadFieldData({});
  const Array1<double> Value = FieldVector(data, overdispersed);
  return {std::string("2000 broods, 10 visits each, ") + (overdispersed ? "beta-binomial" : "binomial"),
          std::move(data), Value};
}

}  // namespace

int main() {
  ExampleData().Randomise(2000);
  ManyBroods(false).Randomise(200);
  ManyBroods(true).Randomise(200);
  ManyBroods(true).List();
}
