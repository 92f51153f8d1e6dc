// Whole fits: a simplex, Marquardt's method and the three covariance grids, on the example data and on 2000 broods of
// 10 visits. Prints for each the function calls, the wall time and how much of it was spent outside the objective.

#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <string>

#include "control/algorithm_file.h"
#include "control/fuses.h"
#include "field_data.h"
#include "minimise/marquardt.h"
#include "minimise/simplex.h"
#include "model/brood_reader.h"
#include "model/catalogue.h"
#include "model/likelihood.h"
#include "platform/files.h"
#include "uncertainty/covariance.h"

namespace {

using namespace merlane;

using Seconds = std::chrono::duration<double>;

Seconds Now() { return std::chrono::steady_clock::now().time_since_epoch(); }

/// A data set with algorithm data, ready to be fitted from the same start again and again.
class Analysis {
 public:
  Analysis(std::string name, BroodData data, const AlgorithmData& algorithm)
      : name_(std::move(name)), data_(std::move(data)) {
    likelihood_.Dimension(data_);
    setting_.tell = [](const Message&) {};
    setting_.turn = [] {};
    state_.algorithm = algorithm;
    state_.flags.ObjectiveConstant = 2;
    setting_.OneCallRun = true;
    Pack();
    objective_(state_.algorithm.Value, 1);
    setting_.OneCallRun = false;
    start_ = state_.algorithm;
  }
  Analysis(const Analysis&) = delete;
  Analysis& operator=(const Analysis&) = delete;

  void Run() {
    Measure("simplex", [&] {
      SimplexState simplex;
      SimplexWatch watch;
      MinimiseSimplex(state_, objective_, simplex, watch);
    });
    const AlgorithmData minimum = state_.algorithm;
    state_.algorithm = start_;
    Measure("Marquardt", [&] {
      MarquardtWatch watch;
      MinimiseMarquardt(state_, objective_, DerivativeMode::Numerical, watch);
    });
    state_.algorithm = minimum;
    Measure("covariances", [&] {
      CovarianceWatch watch;
      Covariances c = PrepareCovariances({}, state_, objective_);
      CalculateCovariances(c, false, state_, objective_, watch);
    });
  }

 private:
  void Pack() {
    BuildFuseGroups(state_);
    PackFree(state_);
  }

  template <class Command>
  void Measure(const char* command, const Command& run) {
    Pack();
    calls_ = 0;
    inObjective_ = Seconds(0);
    const Seconds begin = Now();
    run();
    const Seconds all = Now() - begin;
    fmt::print("{:<34}{:<14}{:>6}{:>8}{:>12.4f}{:>14.6f}{:>10.3f} %\n", name_, command, state_.free.NFREE, calls_,
               all.count(), all.count() / calls_, 100 * (1 - inObjective_ / all));
  }

  void Evaluate(ModelCall& call) {
    const Seconds begin = Now();
    evaluator_.EvaluateObjective(setting_, likelihood_, call.F, call.X, call.StepSize, call.Names, call.Fuses, call.N,
                                 call.NF, call.K);
    inObjective_ += Now() - begin;
    ++calls_;
  }

  const std::string name_;
  BroodData data_;
  LikelihoodState likelihood_;
  EvaluationSetting setting_;
  Likelihood evaluator_{data_};
  RunState state_;
  Objective objective_{state_, [this](ModelCall& call) { Evaluate(call); }};
  AlgorithmData start_;
  int calls_ = 0;
  Seconds inObjective_{0};
};

Analysis ExampleData() {
  BroodData data;
  data.FirstYear = 1995;
  data.LastYear = 1996;
  data.NCov = 3;
  data.InteractionBase = static_cast<std::int16_t>(30 + 4 * data.NCov);
  const std::string path = MERLANE_GOLDEN_DIR "/covariates_original";
  ReadTextData(ReadWholeFile(path + ".dat"), false, data, [](const Message&) {});
  AlgorithmData algorithm;
  algorithm.NPAR = static_cast<std::int16_t>(ParameterCount(data.NCov));
  algorithm.ParName.Dimension(algorithm.NPAR);
  ReadAlgorithm(ReadWholeFile(path + ".alg"), algorithm);
  return {"example data, three covariates", std::move(data), algorithm};
}

Analysis ManyBroods() {
  BroodData data = ReadFieldData({});
  AlgorithmData algorithm;
  algorithm.NPAR = static_cast<std::int16_t>(ParameterCount(0));
  algorithm.ParName.Dimension(algorithm.NPAR);
  SetDefaultAlgorithm(algorithm);
  algorithm.Value = FieldVector(data, false);
  // Random mortality alone, which is what the data have.
  for (const int i : {11, 12, 13, 14, 19, 21}) algorithm.Value(i) = 0;
  for (const int i : {20, 22}) algorithm.Value(i) = 1;
  for (int i = 15; i <= 18; ++i) algorithm.Step(i) = 0.1 * algorithm.Value(i);
  algorithm.Tolerance = 1e-4;
  return {"2000 broods, 10 visits each", std::move(data), algorithm};
}

}  // namespace

int main() {
  fmt::print("{:<34}{:<14}{:>6}{:>8}{:>12}{:>14}{:>12}\n", "data", "command", "free", "calls", "seconds", "s per call",
             "outside");
  ExampleData().Run();
  ManyBroods().Run();
}
