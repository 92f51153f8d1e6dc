#include "results/aicc.h"

namespace merlane {

std::optional<double> AICc(double BestObjective, std::int32_t SampleSize, int FreeCount) {
  const std::int64_t n = SampleSize, k = FreeCount;
  if (n - k - 1 <= 0) return std::nullopt;
  return BestObjective + static_cast<double>(2 * k * n) / static_cast<double>(n - k - 1);
}

}  // namespace merlane
