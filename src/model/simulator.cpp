#include "model/simulator.h"

#include "base/arithmetic.h"
#include "base/at_end.h"
#include "base/runtime_failure.h"
#include "likelihood/calculation_problem.h"
#include "model/forward_expectation.h"

namespace merlane {
namespace {

/// Simulates one brood after the other.
class Simulator {
 public:
  Simulator(const BroodData& data, const SimulationSetting& setting, BestTables& best, RandomStreams& random,
            const CalculationWatch& watch, Simulation& simulation, KeptPredictions& predictions)
      : data_(data),
        setting_(setting),
        best_(best),
        random_(random),
        watch_(watch),
        simulation_(simulation),
        predictions_(predictions) {}

  void Run() {
    for (int brood = 0; brood < data_.Broods(); ++brood) {
      const int first = data_.FirstVisit[static_cast<std::size_t>(brood)];
      for (int visit = first; visit < first + data_.VisitsOf[static_cast<std::size_t>(brood)]; ++visit) {
        watch_.turn();
        if (visit == first)
          BeginBrood(brood, visit);
        else
          SimulateVisit(brood, visit);
        if (!setting_.BootstrapMode && watch_.aborted()) return;
      }
    }
  }

 private:
  void BeginBrood(int brood, int visit) {
    const auto b = static_cast<std::size_t>(brood);
    const std::int16_t count = data_.VisitCount[static_cast<std::size_t>(visit)];
    simulation_.SimCount[static_cast<std::size_t>(visit)] = count;
    if (data_.VisitAge[static_cast<std::size_t>(visit)] == 0)
      simulation_.SimEHatchR[b] = simulation_.SimEHatchC[b] = simulation_.SimEHatch[b] = count;
  }

  void SimulateVisit(int brood, int visit) {
    const auto v = static_cast<std::size_t>(visit);
    const bool anyVisit = setting_.SimulationMode || setting_.BootstrapMode;
    if (!anyVisit && best_.survival.EVisit[v] == Missing) return;
    const int n = simulation_.SimCount[v - 1];
    std::optional<CountExpectation> expected;
    if (n > 0)
      expected =
          ForwardExpectation(data_, best_.parameters, setting_.BootstrapMode, brood, visit, shares_, simulation_);
    if (expected)
      simulation_.SimCount[v] = Pick(visit, n, *expected);
    else if (setting_.BootstrapMode && (n > 0 || !HasForwardExpectation(data_, best_.parameters, brood, visit)))
      simulation_.SimCount[v] = data_.VisitCount[v];
  }

  std::int16_t Pick(int visit, int n, const CountExpectation& expected) {
    const CountPrediction& prediction = predictions_.Of(visit, n, expected, [this](long) { watch_.turn(); });
    KeepVariances(data_, visit, prediction, best_);
    double SumPearson = 0, SumDeviance = 0;  // of no use here
    return static_cast<std::int16_t>(Simulate_Pick_ChiSq(prediction, random_, watch_, SumPearson, SumDeviance));
  }

  const BroodData& data_;
  const SimulationSetting setting_;
  BestTables& best_;
  RandomStreams& random_;
  const CalculationWatch& watch_;
  Simulation& simulation_;
  ForwardShares shares_;
  KeptPredictions& predictions_;
};

}  // namespace

void Simulation::Preset(const BroodData& data) {
  SimCount.assign(static_cast<std::size_t>(data.Visits()), std::int16_t{Missing});
  for (auto* column : {&SimEHatchR, &SimEHatchC, &SimEHatch})
    column->assign(static_cast<std::size_t>(data.Broods()), static_cast<double>(Missing));
  SimBroodSizeDeficient = SimHatchDateDeficient = simulated = false;
}

Message SimulationError(const std::string& reason) {
  return {"Simulation Error", "Check that algorithm data are loaded and parameters have appropriate values",
          style::Exclamation, reason};
}

void TellInaccuracy(const CountPrediction& prediction, const CalculationWatch& watch) {
  for (int i = 0; i < prediction.inaccurateComponents; ++i) watch.tell(InaccurateSpanningDistribution());
  for (int i = 0; i < prediction.inaccurateSums; ++i)
    watch.tell(InaccurateProbabilities("Calculation problem", "Simulate_Pick_ChiSq"));
}

PickedCount JudgeProbability(double P) {
  PickedCount judged;
  judged.Pearson = Divide(1 - P, P);
  judged.Deviance = -2 * CheckedLog(P);
  return judged;
}

int Simulate_Pick_ChiSq(const CountPrediction& prediction, RandomStreams& random, const CalculationWatch& watch,
                        double& SumPearson, double& SumDeviance) {
  TellInaccuracy(prediction, watch);
  const double U = random.Uniform();
  std::size_t pick = 0;
  while (pick + 1 < prediction.Cum.size() && !(U <= prediction.Cum[pick])) ++pick;
  const PickedCount judged = JudgeProbability(prediction.Pmf[pick]);
  SumPearson = SumPearson + judged.Pearson;
  SumDeviance = SumDeviance + judged.Deviance;
  return static_cast<int>(pick);
}

void KeepVariances(const BroodData& data, int visit, const CountPrediction& prediction, BestTables& best) {
  const auto v = static_cast<std::size_t>(visit);
  if (data.VisitAge[v] == 0) return;
  best.VarR[v] = prediction.VarR;
  best.VarC[v] = prediction.VarC;
  best.VarAll[v] = prediction.VarAll;
}

void SimulateData(const BroodData& data, const SimulationSetting& setting, BestTables& best, RandomStreams& random,
                  const CalculationWatch& watch, Simulation& simulation, KeptPredictions* kept) {
  simulation.Preset(data);
  simulation.simulated = true;
  random.BeginNext();
  if (!setting.BootstrapMode) watch.progress("Simulating data, one moment please...");
  const AtEnd clear([&watch] { watch.progress(""); });
  try {
    KeptPredictions own(data, best.parameters);
    Simulator(data, setting, best, random, watch, simulation, kept != nullptr ? *kept : own).Run();
  } catch (const RuntimeFailure& failure) {
    if (setting.BootstrapMode) throw;
    watch.tell(SimulationError(failure.what()));
  }
}

}  // namespace merlane
