#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "base/gamma_ln.h"

namespace merlane {

/// ln Gamma of many arguments that recur, computed in one row. Whoever needs them goes through his calculation twice:
/// the first time he asks and is told 0, the second time he is told, in the same order. For one thread.
class AskedGammaLn {
 public:
  /// How many can be asked for in a row without any memory being taken.
  void Reserve(std::size_t asked) {
    arguments_.reserve(asked);
    values_.reserve(asked);
    asked_.reserve(asked);
  }
  void Begin() {
    asking_ = true;
    arguments_.clear();
    asked_.clear();
    ++row_;
  }
  /// What has been asked is told from here on.
  void Answer() {
    values_.resize(arguments_.size());
    GammaLnRow(arguments_, values_);
    asking_ = false;
    told_ = 0;
  }
  double operator()(double x) {
    if (!asking_) return values_[asked_[told_++]];
    asked_.push_back(NumberOf(x));
    return 0;
  }

 private:
  std::uint32_t NumberOf(double x) {
    const auto bits = std::bit_cast<std::uint64_t>(x);
    Entry& entry = entries_[(bits * 0x9E3779B97F4A7C15u) >> (64 - Log2OfSize)];
    if (entry.argument != bits || entry.row != row_) {
      entry = {bits, row_, static_cast<std::uint32_t>(arguments_.size())};
      arguments_.push_back(x);
    }
    return entry.number;
  }

  static constexpr int Log2OfSize = 11;
  /// Where an argument of this row stands, until another takes the place.
  struct Entry {
    std::uint64_t argument = 0;
    std::uint32_t row = 0, number = 0;
  };
  std::vector<Entry> entries_ = std::vector<Entry>(std::size_t{1} << Log2OfSize);
  std::uint32_t row_ = 0;
  bool asking_ = true;
  std::vector<double> arguments_, values_;
  std::vector<std::uint32_t> asked_;  // numbers of arguments
  std::size_t told_ = 0;
};

}  // namespace merlane
