#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "data/brood_data.h"
#include "likelihood/calculation_watch.h"
#include "model/count_prediction.h"
#include "model/kept_predictions.h"
#include "platform/random_streams.h"
#include "survival/best_tables.h"

namespace merlane {

/// Counts drawn from a fitted model, brood by brood from the first real count on. Columns have the shape of the data's
/// visits and broods.
struct Simulation {
  std::vector<std::int16_t> SimCount;                     // Missing: none
  std::vector<double> SimEHatchR, SimEHatchC, SimEHatch;  // expected numbers at hatch of the simulated clutches
  bool SimBroodSizeDeficient = false;                     // a brood needed its E[brood size@hatch] and had none
  bool SimHatchDateDeficient = false;                     // a brood needed its hatch day and had none
  bool simulated = false;                                 // since the columns were preset

  /// Gives the columns the shape of the data; every entry becomes Missing.
  void Preset(const BroodData& data);
};

/// What counts are simulated for.
struct SimulationSetting {
  bool SimulationMode = false;  // a planned data set, of which the first count of each brood is given
  /// Data to be read and fitted again: a count that cannot be predicted is the real one, so that each stretch of
  /// predictions begins at a real count. An expected number of 0 stays 0.
  bool BootstrapMode = false;
};

/// What the user is told where a simulation fails.
Message SimulationError(const std::string& reason);

/// Tells of inaccurate probabilities of a distribution, as it is due at each pick.
void TellInaccuracy(const CountPrediction& prediction, const CalculationWatch& watch);

/// What a count of the probability P adds to the sums of a fit.
struct PickedCount {
  double Pearson = 0;   // (1 - P) / P
  double Deviance = 0;  // -2 ln P
};
/// RuntimeFailure when P is 0.
PickedCount JudgeProbability(double P);

/// Picks a count by one uniform number and adds what it adds to the sums. Tells of inaccurate probabilities.
int Simulate_Pick_ChiSq(const CountPrediction& prediction, RandomStreams& random, const CalculationWatch& watch,
                        double& SumPearson, double& SumDeviance);

/// Keeps the variances of a prediction in the best tables; those of a count on the hatch day are not kept.
void KeepVariances(const BroodData& data, int visit, const CountPrediction& prediction, BestTables& best);

/// Fills `simulation` with counts drawn from the next random stream, each from the one before it in its brood. A brood
/// ends at a count of 0 and, outside a bootstrap, at a count that cannot be predicted. Refreshes the variances of the
/// best tables. A failing calculation is told and ends the simulation with what there is, as an abort does; in a
/// bootstrap, which cannot be aborted here, it is a RuntimeFailure. `kept` are the distributions that earlier
/// simulations of the same data from the same parameters have left.
void SimulateData(const BroodData& data, const SimulationSetting& setting, BestTables& best, RandomStreams& random,
                  const CalculationWatch& watch, Simulation& simulation, KeptPredictions* kept = nullptr);

}  // namespace merlane
