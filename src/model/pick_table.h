#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "model/count_prediction.h"
#include "model/simulator.h"

namespace merlane {

/// Distributions from which counts are picked many times, side by side in memory, with what each count adds to the sums
/// of a fit.
class PickTable {
 public:
  /// Adds a distribution, which has the next number, from 0 on. From an empty one nothing can be picked.
  void Add(const CountPrediction& prediction);
  std::size_t Size() const { return distributions_.size(); }

  /// A count of a distribution: its probability, the sum of those up to it, and what it adds.
  struct Count {
    double P, Cum;
    PickedCount adds;  // NaN where that is a failure
    bool IsPossible() const { return !std::isnan(adds.Deviance); }
  };
  /// The count that a number of [0, 1) picks from a distribution, as Simulate_Pick_ChiSq does.
  const Count& Pick(std::size_t distribution, double U) const {
    const Distribution& d = distributions_[distribution];
    const int part = static_cast<int>(U * Parts);
    std::size_t pick = d.first + begins_[distribution * Parts + static_cast<std::size_t>(part)];
    while (pick < d.last && !(U <= counts_[pick].Cum)) ++pick;
    return counts_[pick];
  }

 private:
  static constexpr std::size_t Parts = 64;
  struct Distribution {
    std::size_t first, last;  // of its counts
  };
  std::vector<Distribution> distributions_;
  std::vector<Count> counts_;
  std::vector<std::uint16_t> begins_;  // of each part of [0, 1): the first count that a number in it may pick
};

}  // namespace merlane
