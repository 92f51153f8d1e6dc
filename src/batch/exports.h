#pragma once

#include <string>

#include "control/run_state.h"
#include "data/brood_data.h"
#include "likelihood/likelihood_state.h"
#include "program/fit.h"

namespace merlane {

/// CSV, a line for each parameter: number,value,step,fuse,free,name. `free` is 1 for a step other than 0.
std::string ParametersCsv(const AlgorithmData& algorithm);

/// CSV, a line for each visit in the order year, brood, visit, with the figures at the lowest objective. A missing
/// value is an empty field.
std::string VisitsCsv(const BroodData& data, const BestTables& best);

/// JSON, one object. Without a minimisation its figures are null. `changes` are those of the run since the fit, in
/// words; where there are any they stand there, too.
std::string FitJson(const Fit& fit, const std::string& changes = "");

}  // namespace merlane
