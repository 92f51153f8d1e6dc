#pragma once

#include <chrono>
#include <string>

#include "control/objective.h"
#include "control/run_state.h"
#include "data/brood_data.h"
#include "likelihood/likelihood.h"

namespace merlane {

/// A data set with algorithm data, whose objective counts its calls and the time spent in it. The first function call
/// has been made.
class MeasuredRun {
 public:
  using Seconds = std::chrono::duration<double>;

  MeasuredRun(std::string name, BroodData data, const AlgorithmData& algorithm);
  MeasuredRun(const MeasuredRun&) = delete;
  MeasuredRun& operator=(const MeasuredRun&) = delete;

  /// What a command took.
  struct Cost {
    int calls = 0;
    Seconds all{0};
    Seconds inObjective{0};
    double PercentOutside() const { return 100 * (1 - inObjective / all); }
  };

  /// Builds the fuse groups, packs the free parameters and runs a command.
  template <class Command>
  Cost Measure(const Command& run) {
    Pack();
    cost_ = {};
    const Seconds begin = Now();
    run();
    cost_.all = Now() - begin;
    return cost_;
  }

  const std::string name;
  RunState state;
  Objective objective{state, [this](ModelCall& call) { Evaluate(call); }};

 private:
  static Seconds Now() { return std::chrono::steady_clock::now().time_since_epoch(); }
  void Pack();
  void Evaluate(ModelCall& call);
  void EvaluateAhead(std::span<const Array1<double>> vectors, std::int32_t NF);

  BroodData data_;
  LikelihoodState likelihood_;
  EvaluationSetting setting_;
  Workers workers_{Workers::Cores()};
  Likelihood evaluator_{data_, &workers_};
  Cost cost_;
};

/// The example data: 1995 and 1996, three covariates.
MeasuredRun ExampleData();
/// Two thousand broods of ten visits each.
MeasuredRun ManyBroods();

}  // namespace merlane
