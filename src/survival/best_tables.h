#pragma once

#include <vector>

#include "survival/parameters.h"
#include "survival/survival_tables.h"

namespace merlane {

/// The state that produced the lowest objective since the first evaluation of a run: what the reports and plots read.
struct BestTables {
  Array1<double> Value;
  Parameters parameters;
  SurvivalTables survival;
  std::vector<double> VisitDeviance, VarR, VarC;
  std::vector<double> VarAll;  // over both kinds of mortality; filled by the simulator alone, Missing before
};

}  // namespace merlane
