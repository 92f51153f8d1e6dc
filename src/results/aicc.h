#pragma once

#include <cstdint>
#include <optional>

namespace merlane {

/// Akaike's information criterion with its correction for small samples, from -2 ln[L]; none with too few degrees of
/// freedom. (Hurvich and Tsai 1989)
std::optional<double> AICc(double BestObjective, std::int32_t SampleSize, int FreeCount);

}  // namespace merlane
