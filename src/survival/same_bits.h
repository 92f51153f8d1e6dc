#pragma once

#include <bit>
#include <cstdint>

namespace merlane {

/// True when two numbers are the same to the last bit, the sign of a zero included: a kept result may stand for a
/// calculation only when the calculation would have been given exactly this.
inline bool SameBits(double a, double b) { return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b); }

}  // namespace merlane
