#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "model/count_distributions.h"
#include "model/hatch_fates.h"
#include "model/spanning_judge.h"
#include "model/stage_errors.h"

namespace merlane {

/// The probabilities of counts over hatch for many distributions at once, where no mortality is overdispersed: with the
/// bits of SpanningJudge, but all logarithms and then all exponentials in a row.
class BinomialHatchRow {
 public:
  /// Keeps a reference to the distributions. There is room for rows of so many distributions, whose probabilities are
  /// made of so many terms.
  BinomialHatchRow(const CountDistributions& distributions, std::size_t mostDistributions, std::size_t mostTerms);

  /// How many terms a distribution may have whose counts are these, of n individuals.
  static std::size_t MostTerms(int n, std::span<const std::int16_t> counts);
  /// Whether it serves for these errors, and distributions of at most `maxCount` individuals.
  static bool Serves(const CountErrors& errors, int maxCount);

  /// Begins a row; then its distributions are added, as SpanningJudge::FillProbabilities takes them. False where that
  /// has no probabilities.
  void Begin();
  bool Add(const CountErrors& errors, const SpanningJudge::Expected& expected, int n,
           std::span<const std::int16_t> counts, bool testSums);
  /// P of all counts of all distributions of the row, one behind the other.
  void FillProbabilities(std::span<double> P);

 private:
  struct Distribution {
    int n;
    std::span<const std::int16_t> counts;
    std::array<double, 4> weights;
    std::array<double, 4> otherwise;  // P of each count by a fate that is not calculated, 0 or 1
    std::array<bool, 4> calculated;   // by fate
    std::array<bool, 2> hatched;      // under random, under correlated mortality: some fate needs them
  };
  void AddShare(double p);

  const CountDistributions& distributions_;
  std::vector<Distribution> row_;
  std::vector<double> shares_, logs_;      // p and 1 - p of each binomial distribution
  std::vector<double> exponents_, terms_;  // of all of them, in the order in which they are summed up
};

}  // namespace merlane
