#pragma once

#include <vector>

#include "data/brood_data.h"
#include "likelihood/count_distributions.h"
#include "likelihood/hatch_fates.h"
#include "survival/best_tables.h"

namespace merlane {

/// What is expected of the count at a visit, given the count at the visit before.
struct CountExpectation {
  // Within one stage, or from a clutch to its hatch day: expected counts under random and correlated mortality.
  double ER = Missing, EC = Missing;
  OverHatch overHatch;  // of an interval that spans hatch
  double q = 0;         // probability of the correlated state: of the stage or, over hatch, of the eggs
  double r = 0;         // of the juveniles, over hatch
};

/// The expectation of the best state, one visit ahead of the real counts.
CountExpectation BestExpectation(const BroodData& data, const SurvivalTables& best, int brood, int visit);

/// The distribution of one count k = 0..n.
struct CountPrediction {
  std::vector<double> Pmf;                // mixed over both kinds of mortality
  std::vector<double> Cum;                // P[count <= k]; exactly 1 at n unless the probabilities are inaccurate
  double VarR = 0, VarC = 0, VarAll = 0;  // variances under random, under correlated mortality and of the mixture
  int inaccurateComponents = 0;           // distributions over hatch whose probabilities do not sum to 1
  int inaccurateSums = 0;                 // of the random, the correlated and the mixed distribution, likewise
};

/// Builds the distributions from which counts are picked: the mixtures of the likelihood, at the best parameters.
class CountPredictor {
 public:
  /// Keeps a reference to the data.
  CountPredictor(const BroodData& data, const Parameters& best);

  /// The distribution of the count at a visit when `n` >= 1 were counted at the visit before. RuntimeFailure on an
  /// overflow. `turn` as for CountDistributions.
  void Predict(int visit, int n, const CountExpectation& expected, CountPrediction& prediction,
               const std::function<void(long)>& turn = {});

 private:
  void MixOneStage(int visit, int n, const CountExpectation& expected, const StageErrors& errors,
                   CountPrediction& prediction);
  void MixOverHatch(int visit, int n, const CountExpectation& expected, CountPrediction& prediction,
                    const std::function<void(long)>& turn);

  const BroodData& data_;
  const CountErrors errors_;
  CountDistributions distributions_;
  KeptGammaLn logGamma_;
  std::vector<double> PmfR_, PmfC_, component_;
};

}  // namespace merlane
