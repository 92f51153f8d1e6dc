#pragma once

#include <vector>

#include "data/brood_data.h"
#include "likelihood/calculation_watch.h"
#include "survival/best_tables.h"

namespace merlane {

/// How many independent individuals the predictions are worth whose nest mates share their fate.
struct EffectiveSizes {
  /// Effective Independent Unit of correlated mortality, per visit: the number of individuals that count as one. It
  /// belongs to the visit at which an interval starts, but for the interval across hatch, whose later visit bears the
  /// juveniles' unit at hatch. Missing where there is none.
  std::vector<double> EIU;
  double EffSizeEggs = 0, EffSizeJuvs = 0;  // effective independent sample sizes
};

/// From the best state. A visit where a number overflows or a unit is 0 is impossible and adds nothing.
EffectiveSizes FindEffectiveSizes(const BroodData& data, const BestTables& best, const CalculationWatch& watch);

}  // namespace merlane
