#pragma once

#include <cstdint>

namespace merlane {

/// More places for visits than any field study fills; beyond it the result tables would exhaust the memory.
inline constexpr std::int64_t MostVisits = 20'000'000;

/// Most visits of a brood and most broods of a year that the program takes.
inline constexpr int MostVisitsOfBrood = 32000, MostBroodsOfYear = 32000;

}  // namespace merlane
