#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "data/brood_data.h"
#include "likelihood/evaluation_setting.h"
#include "likelihood/likelihood_state.h"

namespace merlane {

/// What the first evaluation of a run does before the objective is computed: all tables are preset; in a run of one
/// function call the user hears of visits younger than laying, the hypothesis is repaired where it contradicts itself
/// or the data, and missing attributes are told. Expects decoded parameters; `fillSurvivalTables` fills the tables at
/// them.
///
/// Penalties of that filling stay in `state.Penalty`, and those of a second decoding are added: the objective of one
/// function call counts penalties more than once.
void BeginEvaluations(const BroodData& data, LikelihoodState& state, const EvaluationSetting& setting,
                      const std::function<void()>& fillSurvivalTables, Array1<double>& Value, Array1<double>& Step,
                      Array1<std::string>& Names, Array1<std::string>& Fuse, std::int16_t NPAR);

}  // namespace merlane
