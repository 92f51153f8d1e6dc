#pragma once

#include <optional>
#include <string>

#include "data/brood_data.h"
#include "model/simulator.h"
#include "model/survival_estimates.h"
#include "plots/plot_table.h"
#include "survival/best_tables.h"

namespace merlane {

/// What the detail plots show: the best state, and what survival estimates and the simulator have left. Columns that
/// were never filled are all Missing.
struct DetailSubject {
  const BroodData& data;
  const BestTables& best;
  const SurvivalEstimates& estimates;
  const Simulation& simulation;
};

/// Name of a brood on plots: its code without blanks, and the year.
std::string BroodLabel(const BroodData& data, int brood);

/// A page of plots of one brood: a row per visit, up to the largest number of visits of any brood.
PlotTable BuildBroodPlot(const DetailSubject& subject, int brood);

/// A page of plots of all broods of a year, or of all years when none is given: MaxVisits rows for each brood.
/// RuntimeFailure for a deviance so large that the probability behind it is 0, and for more rows than can be counted.
PlotTable BuildYearPlot(const DetailSubject& subject, std::optional<int> year);

}  // namespace merlane
