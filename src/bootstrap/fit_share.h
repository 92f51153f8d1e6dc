#pragma once

#include <cstdint>

#include "bootstrap/replicate_fit.h"
#include "platform/shared_work.h"

namespace merlane {

/// What came of a share of a bootstrap's attempts.
struct FittedShare {
  int attempts = 0, rejected = 0;
};

/// Fits a share of the attempts that a bootstrap of `wanted` replicates will make, each `share.of`-th, and keeps the
/// record of each in `shared`. As the bootstrap goes on until it has all replicates, so does the share until it has its
/// part of them, and beyond that by as many as rejected attempts vary in number: its attempts shall be enough for a
/// bootstrap in which others had less luck. After a hundred rejections in a row it ends. `cores` threads share the
/// work, which the records do not depend on.
FittedShare FitShare(const FitOrigin& origin, const Share& share, std::int32_t wanted, int cores, SharedWork& shared);

}  // namespace merlane
