#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "base/gamma_ln.h"
#include "model/count_logs.h"

namespace merlane {

/// A function of one number whose arguments recur: each value is kept until another takes its place. For one thread.
template <auto Function, int Log2OfSize>
class KeptValues {
 public:
  auto operator()(double x) {
    const auto bits = std::bit_cast<std::uint64_t>(x);
    Entry& entry = entries_[(bits * 0x9E3779B97F4A7C15u) >> (64 - Log2OfSize)];
    if (entry.argument != bits) entry = {bits, Function(x)};
    return entry.value;
  }

 private:
  struct Entry {
    std::uint64_t argument = ~std::uint64_t{0};  // a NaN that no calculation gives
    decltype(Function(0.0)) value{};
  };
  std::vector<Entry> entries_ = std::vector<Entry>(std::size_t{1} << Log2OfSize);
};

/// A beta-binomial distribution asks for the same few again and again.
using KeptGammaLn = KeptValues<GammaLn, 11>;

/// Shares that live through a span are the same for all counts, but for the last bit.
using KeptBinomialLogs = KeptValues<LogsOfShare, 10>;

}  // namespace merlane
