#pragma once

#include <string>

#include "data/brood_data.h"

namespace merlane {

struct SurvivalTables;

/// Repairs a hypothesis that contradicts itself or the data: dependent parameters get the value that is forced on them,
/// a step of 0 and a description that says so. Needs survival tables filled at the same vector, since the rules look at
/// which expected counts exist. Returns true when a value or step has changed; the first parameter that has is unfused,
/// its fuse becoming a single "~".
bool ValidateHypothesis(const BroodData& data, const SurvivalTables& tables, bool simulationMode, Array1<double>& Value,
                        Array1<double>& Step, Array1<std::string>& Names, Array1<std::string>& Fuse);

}  // namespace merlane
