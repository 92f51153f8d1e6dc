// The objective of 2000 broods of 10 visits, evaluated by the product and by the plain evaluation, and their ratio.
// Every evaluation is at another vector, so that nothing is left over from the one before.

#include <benchmark/benchmark.h>
#include <fmt/format.h>

#include <map>
#include <string>

#include "field_data.h"
#include "likelihood/likelihood.h"
#include "plain_objective.h"

namespace {

using namespace merlane;
using Covariates = FieldDataPlan::Covariates;

/// All that an evaluation is given, kept from one to the next.
struct Bench {
  Bench(Covariates covariates, bool overdispersed)
      : data(ReadFieldData({.covariates = covariates})),
        start(FieldVector(data, overdispersed)),
        Value(start),
        Step(Value.Size()),
        Names(Value.Size()),
        Fuse(Value.Size()) {
    state.Dimension(data);
    setting.turn = [](long) {};
  }

  /// Parameters 11 to 22, those of both mortalities, move with each call.
  void Move(std::int32_t NF) {
    const double factor = 1 + 1e-7 * NF;
    for (int i = 11; i <= 22; ++i) Value(i) = start(i) * factor;
  }

  BroodData data;
  LikelihoodState state;
  EvaluationSetting setting;
  Array1<double> start, Value, Step;
  Array1<std::string> Names, Fuse;
  double F = 0;
  std::int32_t SampleSize = 0;
};

template <class Evaluate>
void Run(benchmark::State& run, Bench& bench, bool keepsBest, Evaluate evaluate) {
  std::int32_t NF = 0;
  for (auto _ : run) {
    bench.Move(++NF);
    if (NF > 1) bench.state.BestObjective = keepsBest ? 1e300 : -1e300;
    evaluate(NF);
  }
  benchmark::DoNotOptimize(bench.F);
}

void Product(benchmark::State& run, Covariates covariates, bool overdispersed, bool keepsBest) {
  Bench b(covariates, overdispersed);
  Likelihood likelihood(b.data);
  Run(run, b, keepsBest, [&](std::int32_t NF) {
    likelihood.EvaluateObjective(b.setting, b.state, b.F, b.Value, b.Step, b.Names, b.Fuse,
                                 static_cast<std::int16_t>(b.Value.Size()), NF, b.SampleSize);
  });
}

void Plain(benchmark::State& run, Covariates covariates, bool overdispersed, bool keepsBest) {
  Bench b(covariates, overdispersed);
  Run(run, b, keepsBest, [&](std::int32_t NF) {
    plain::EvaluateObjective(b.data, b.setting, b.state, b.F, b.Value, b.Step, b.Names, b.Fuse,
                             static_cast<std::int16_t>(b.Value.Size()), NF, b.SampleSize);
  });
}

/// Prints the table as usual and keeps the times for the ratios.
class Ratios : public benchmark::ConsoleReporter {
 public:
  void ReportRuns(const std::vector<Run>& runs) override {
    benchmark::ConsoleReporter::ReportRuns(runs);
    for (const Run& run : runs) times_[run.benchmark_name()] = run.GetAdjustedCPUTime();
  }
  void Print() const {
    for (const auto& [name, time] : times_) {
      const auto product = times_.find("product/" + name.substr(name.find('/') + 1));
      if (name.starts_with("plain/") && product != times_.end())
        fmt::print("{}: {:.1f} times as fast as plain\n", name.substr(6), time / product->second);
    }
  }

 private:
  std::map<std::string, double> times_;
};

}  // namespace

int main(int argc, char** argv) {
  const std::map<std::string, Covariates> kinds{{"no covariates", Covariates::None},
                                                {"three covariates, recurring", Covariates::Recurring},
                                                {"three covariates, of each brood its own", Covariates::Continuous}};
  for (const auto& [name, covariates] : kinds)
    for (const bool overdispersed : {false, true})
      for (const bool keepsBest : {false, true}) {
        const std::string label = name + (overdispersed ? ", beta-binomial" : ", binomial") +
                                  (keepsBest ? ", each evaluation a new best" : "");
        benchmark::RegisterBenchmark(("plain/" + label).c_str(), Plain, covariates, overdispersed, keepsBest)
            ->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark(("product/" + label).c_str(), Product, covariates, overdispersed, keepsBest)
            ->Unit(benchmark::kMillisecond);
      }
  benchmark::Initialize(&argc, argv);
  Ratios ratios;
  benchmark::RunSpecifiedBenchmarks(&ratios);
  ratios.Print();
}
