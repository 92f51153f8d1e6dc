#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "base/elementary_rows.h"
#include "base/gamma_ln.h"

namespace merlane {

/// ln Gamma of arguments that recur, each of which is kept until another takes its place: a beta-binomial distribution
/// asks for the same few again and again. Takes its room when it is first asked, which not every model does. For one
/// thread.
class KeptGammaLn {
 public:
  double operator()(double x) {
    if (entries_.empty()) entries_.resize(std::size_t{1} << Log2OfSize);
    const auto bits = std::bit_cast<std::uint64_t>(x);
    Entry& entry = entries_[(bits * 0x9E3779B97F4A7C15u) >> (64 - Log2OfSize)];
    if (entry.argument != bits) entry = {bits, GammaLn(x)};
    return entry.value;
  }
  /// Of a row of arguments, of which only those below 1 are kept: for the others it is not worth looking.
  void Row(std::span<const double> x, std::span<double> y) {
    GammaLnRow(x, y);
    std::array<std::size_t, 256> below;  // gathered without a branch, which no processor could foretell
    for (std::size_t begin = 0; begin < x.size(); begin += below.size()) {
      std::size_t found = 0;
      for (std::size_t i = begin; i < std::min(begin + below.size(), x.size()); ++i) {
        below[found] = i;
        found += x[i] >= 1 ? 0 : 1;
      }
      for (const std::size_t i : std::span(below).first(found)) y[i] = (*this)(x[i]);
    }
  }

 private:
  static constexpr int Log2OfSize = 13;
  struct Entry {
    std::uint64_t argument = ~std::uint64_t{0};  // a NaN that no calculation gives
    double value = 0;
  };
  std::vector<Entry> entries_;
};

}  // namespace merlane
