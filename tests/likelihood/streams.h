#pragma once

#include "platform/random_streams.h"
#include "support/scripted_host.h"

namespace merlane::test {

/// Random streams under a seed of their own.
struct Streams {
  explicit Streams(std::uint64_t seed = 12345) { random.SetSeed(seed); }
  FixedClock clock;
  RandomStreams random{clock};
};

}  // namespace merlane::test
