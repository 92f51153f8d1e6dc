#pragma once

#include <cstdint>

#include "data/brood_data.h"

namespace merlane {

/// A number for the records that were read, as they were read: the same for the same visits of the same broods, from
/// whichever file, and hardly ever for others.
std::uint64_t DigestOf(const BroodData& data);

}  // namespace merlane
