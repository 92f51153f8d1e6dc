#pragma once

#include <cstdint>
#include <string>

#include "data/brood_data.h"
#include "likelihood/evaluation_setting.h"
#include "likelihood/likelihood_state.h"

namespace merlane::plain {

/// The objective computed step by step as it is defined, each visit anew and by itself: the yardstick for the speed of
/// Likelihood::EvaluateObjective, which has to give the same bits, and the arbiter when the two differ. Same arguments.
void EvaluateObjective(const BroodData& data, const EvaluationSetting& setting, LikelihoodState& state, double& F,
                       Array1<double>& Value, Array1<double>& Step, Array1<std::string>& Names,
                       Array1<std::string>& Fuse, std::int16_t NPAR, std::int32_t NF, std::int32_t& SampleSize);

/// The survival tables alone.
void FillSurvivalTables(const BroodData& data, const EvaluationSetting& setting, LikelihoodState& state);

/// The deviances alone, added to `F`.
void Do_Likelihoods(const BroodData& data, const EvaluationSetting& setting, std::int32_t NF, LikelihoodState& state,
                    double& F);

}  // namespace merlane::plain
