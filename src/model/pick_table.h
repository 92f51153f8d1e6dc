#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

#include "model/count_prediction.h"
#include "model/simulator.h"

namespace merlane {

/// Distributions from which counts are picked many times, side by side in memory, and what each count adds to the sums
/// of a fit, computed once it is picked.
class PickTable {
 public:
  /// Adds a distribution, which has the next number, from 0 on. From an empty one nothing can be picked.
  void Add(const CountPrediction& prediction);
  std::size_t Size() const { return distributions_.size(); }

  /// What the count adds that a number of [0, 1) picks from a distribution, as Pick does. RuntimeFailure when its
  /// probability is 0.
  const PickedCount& Picked(std::size_t distribution, double U) {
    const Distribution& d = distributions_[distribution];
    std::size_t pick = d.first + begins_[distribution * Parts + static_cast<std::size_t>(U * Parts)];
    while (pick < d.last && !(U <= counts_[pick].Cum)) ++pick;
    Count& count = counts_[pick];
    if (std::isnan(count.adds.Deviance)) count.adds = JudgeProbability(count.P);
    return count.adds;
  }

 private:
  static constexpr std::size_t Parts = 64;
  static constexpr double NotYet = std::numeric_limits<double>::quiet_NaN();

  struct Distribution {
    std::size_t first, last;  // of its counts
  };
  struct Count {
    double Cum, P;
    PickedCount adds{NotYet, NotYet};
  };
  std::vector<Distribution> distributions_;
  std::vector<Count> counts_;
  std::vector<std::uint16_t> begins_;  // of each part of [0, 1): the first count that a number in it may pick
};

}  // namespace merlane
