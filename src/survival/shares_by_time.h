#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>

#include "survival/same_bits.h"
#include "survival/survival.h"

namespace merlane {

/// The shares alive at times that recur under one mortality after another, as of brood after brood: computed again only
/// where the mortality is another, or another time has taken the place.
class SharesByTime {
 public:
  /// The mortality that is asked about from here on.
  void Under(const Mortality& mortality) {
    if (Same(mortality, mortality_)) return;
    ++under_;
    mortality_ = mortality;
    functions_ = SurvivalFunctions(mortality);
  }
  const SurvivalFunctions& Functions() const { return functions_; }
  /// The shares alive at a time.
  const SharesAlive& At(double t) {
    const auto bits = std::bit_cast<std::uint64_t>(t);
    Kept& kept = kept_[(bits * 0x9E3779B97F4A7C15u) >> (64 - Log2OfSize)];
    if (kept.under != under_ || kept.time != bits) kept = {under_, bits, functions_.At(t)};
    return kept.alive;
  }

 private:
  static constexpr int Log2OfSize = 6;
  struct Kept {
    std::uint64_t under = 0;  // which mortality
    std::uint64_t time = 0;
    SharesAlive alive;
  };
  static bool Same(const Mortality& a, const Mortality& b) {
    return SameBits(a.AlphaR, b.AlphaR) && SameBits(a.BetaR, b.BetaR) && SameBits(a.AlphaC, b.AlphaC) &&
           SameBits(a.BetaC, b.BetaC) && SameBits(a.c, b.c) && SameBits(a.f, b.f);
  }

  std::uint64_t under_ = 1;  // how many mortalities there have been
  Mortality mortality_;
  SurvivalFunctions functions_;
  std::array<Kept, std::size_t{1} << Log2OfSize> kept_;
};

}  // namespace merlane
