#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "data/brood_data.h"
#include "survival/parameter_layout.h"
#include "survival/parameters.h"

namespace merlane {

/// The parameters that are brought back to 1, in the vector itself, when they lie above.
inline constexpr std::array CappedAtOne = {parameter::ThetaEggC, parameter::ThetaJuvC, parameter::c_N, parameter::c_B};

/// Writes the descriptions of the parameters 1..NPAR. Where the age of a clutch or of a brood is unknown, the
/// parameters that need it are described as not to be estimated.
void FillParameterDescriptions(Array1<std::string>& Names, std::int16_t NPAR, const BroodData& data);

/// Decodes the vector into `decoded` and brings entries back into their range, in `Value` itself. A value
/// beyond a limit adds its squared excess times 1e20 to `Penalty`. RuntimeFailure when an age of laying or fledging is
/// beyond 32767 days.
void DecodeParameters(Array1<double>& Value, const Array1<double>& Step, const ParameterLayout& layout,
                      Parameters& decoded, double& Penalty);

/// True for a vector of zeros, at which nothing is evaluated.
bool AllZero(const Array1<double>& Value);

}  // namespace merlane
