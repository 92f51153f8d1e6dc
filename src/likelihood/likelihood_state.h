#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "survival/best_tables.h"
#include "survival/parameters.h"
#include "survival/survival_tables.h"

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
  double BestPenalty = 0;                   // of that
  double MinDeviance = 0, MaxDeviance = 0;  // limits of the plots of deviances and Pearson deviates
  double YoungestAge = 0;                   // of the visits younger than laying, days

  /// Tables that evaluations have left for Likelihood::FillTables to write when somebody looks; the numbers above and
  /// the best vector are always there.
  struct Owed {
    bool preset = false, last = false, best = false;
    bool bestIsLast = false;                                // both are of the same evaluation
    bool lastInBootstrap = false, bestInBootstrap = false;  // whether these were evaluated in a bootstrap
    Parameters ofLast;                                      // what the last evaluation was made from
  };
  Owed owed;
  /// The ages between which alone the survival tables have had entries since they were preset; none when no such ages
  /// are known.
  struct Ages {
    std::int16_t LayAge = 0, FledgeAge = 0;
    bool operator==(const Ages&) const = default;
  };
  std::optional<Ages> filledBetween;

  /// Gives all tables the shape of the data; every entry becomes 0.
  void Dimension(const BroodData& data);
  /// Presets the survival tables and all best tables but the best deviances to Missing, for the first evaluation of a
  /// run.
  void Preset();
  /// Keeps the vector that led to the lowest objective, then the tables it led to.
  void KeepBestVector(const Array1<double>& Value);
  void KeepBestTables();
};

}  // namespace merlane
