#pragma once

#include "data/simulation_plan.h"
#include "likelihood/likelihood.h"
#include "likelihood/streams.h"
#include "model/simulator.h"

namespace merlane::test {

/// Broods seen every day from age 1 to 15.
inline const SimulatorSettings DailyJuveniles{
    .MinInitSize = 10, .MaxInitSize = 20, .InitAge = 1, .FinalAge = 15, .SampFreq1 = 1, .SampFreq2 = 1};

/// A planned data set, its parameters, and the counts that are simulated for it.
struct Planned {
  explicit Planned(const SimulatorSettings& settings, int broods, std::uint64_t seed = 12345)
      : streams(seed), Value(34), Step(34), Names(34), Fuse(34, "~~") {
    data.FirstYear = data.LastYear = 1;
    data.simulator = settings;
    PlanSimulation(data, broods, streams.random);
    state.Dimension(data);
    for (const int i : {1, 2, 3, 4, 16, 18, 20, 22}) Value(i) = 1;
    Value(9) = -28;
    watch.tell = setting.tell = [this](const Message& message) { told.push_back(message); };
    setting.SimulationMode = true;
  }
  Planned(const Planned&) = delete;
  Planned& operator=(const Planned&) = delete;

  /// Evaluates at the present values, as the command does, and simulates.
  Planned& Simulate() {
    Likelihood(data).EvaluateObjective(setting, state, F, Value, Step, Names, Fuse, 34, 1, SampleSize);
    SimulateData(data, {.SimulationMode = true}, state.best, streams.random, watch, simulation);
    return *this;
  }
  /// Takes the simulated counts for observed ones and returns the objective at the values they were simulated with.
  double Observe() {
    data.VisitCount = simulation.SimCount;
    setting.SimulationMode = false;
    Likelihood likelihood(data);
    likelihood.EvaluateObjective(setting, state, F, Value, Step, Names, Fuse, 34, 1, SampleSize);
    likelihood.FillTables(state);
    return F;
  }
  int Count(int visit) const { return simulation.SimCount[static_cast<std::size_t>(visit)]; }

  Streams streams;
  BroodData data;
  LikelihoodState state;
  EvaluationSetting setting;
  CalculationWatch watch;
  Array1<double> Value, Step;
  Array1<std::string> Names, Fuse;
  Simulation simulation;
  std::vector<Message> told;
  double F = 0;
  std::int32_t SampleSize = 0;
};

}  // namespace merlane::test
