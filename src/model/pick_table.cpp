#include "model/pick_table.h"

#include <algorithm>
#include <limits>

#include "base/runtime_failure.h"

namespace merlane {
namespace {

PickedCount WhatAdds(double P) {
  try {
    return JudgeProbability(P);
  } catch (const RuntimeFailure&) {
    constexpr double impossible = std::numeric_limits<double>::quiet_NaN();
    return {impossible, impossible};
  }
}

}  // namespace

void PickTable::Add(const CountPrediction& prediction) {
  const std::vector<double>& Cum = prediction.Cum;
  const std::size_t first = counts_.size();
  for (std::size_t k = 0; k < Cum.size(); ++k)
    counts_.push_back({prediction.Pmf[k], Cum[k], WhatAdds(prediction.Pmf[k])});
  distributions_.push_back({first, Cum.empty() ? first : counts_.size() - 1});

  // Only where the sums rise can one tell which counts lie before a part; the last one is picked unseen.
  const bool rises = !Cum.empty() && std::is_sorted(Cum.begin(), Cum.end() - 1);
  std::size_t begin = 0;
  for (std::size_t part = 0; part < Parts; ++part) {
    const double least = static_cast<double>(part) / Parts;
    while (rises && begin + 1 < Cum.size() && Cum[begin] < least) ++begin;
    begins_.push_back(static_cast<std::uint16_t>(begin));
  }
}

}  // namespace merlane
