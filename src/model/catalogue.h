#pragma once

#include <cstdint>
#include <string>

#include "data/brood_data.h"
#include "model/parameters.h"

namespace merlane {

/// Number of parameters of a model with that many brood covariates.
constexpr int ParameterCount(int covariates) { return 12 * covariates + 34; }

/// Writes the descriptions of the parameters 1..NPAR. Where the age of a clutch or of a brood is unknown, the
/// parameters that need it are described as not to be estimated.
void FillParameterDescriptions(Array1<std::string>& Names, std::int16_t NPAR, const BroodData& data);

/// Decodes the vector into `decoded` and brings entries back into their range, in `Value` itself. A value
/// beyond a limit adds its squared excess times 1e20 to `Penalty`. RuntimeFailure when an age of laying or fledging is
/// beyond 32767 days.
void DecodeParameters(Array1<double>& Value, const Array1<double>& Step, std::int16_t NCov,
                      std::int16_t InteractionBase, Parameters& decoded, double& Penalty);

}  // namespace merlane
