#pragma once

#include <cstdint>
#include <vector>

#include "model/best_tables.h"
#include "model/parameters.h"
#include "model/survival_tables.h"

namespace merlane {

/// What the evaluations of a data set leave behind. Per-visit columns have the shape of the data's visits.
struct LikelihoodState {
  // The last evaluation.
  Parameters parameters;
  double Penalty = 0;
  SurvivalTables survival;
  std::vector<double> VisitDeviance;  // -2 ln P of the visit's prediction; keeps an older value where none was made
  std::vector<double> VarR, VarC;     // variance of the count under random and under correlated mortality
  std::int32_t EggsAtRisk = 0, JuvsAtRisk = 0;  // individuals at the start of the predictions that count

  // The lowest objective since the first evaluation of a run.
  BestTables best;
  double BestObjective = 0;                 // -2 ln[L] plus penalties
  double MinDeviance = 0, MaxDeviance = 0;  // limits of the plots of deviances and Pearson deviates
  double YoungestAge = 0;                   // of the visits younger than laying, days

  /// Gives all tables the shape of the data; every entry becomes 0.
  void Dimension(const BroodData& data);
  /// Presets the survival tables and all best tables but the best deviances to Missing, for the first evaluation of a
  /// run.
  void Preset();
  /// Keeps the state and the vector that led to it as the best.
  void KeepBest(const Array1<double>& Value);
};

}  // namespace merlane
