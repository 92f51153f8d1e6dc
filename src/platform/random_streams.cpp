#include "platform/random_streams.h"

namespace merlane {

std::uint64_t SplitMix64(std::uint64_t state) {
  std::uint64_t z = state + 0x9e3779b97f4a7c15U;
  z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9U;
  z = (z ^ (z >> 27)) * 0x94d049bb133111ebU;
  return z ^ (z >> 31);
}

RandomStream::RandomStream(std::uint64_t seed, std::uint64_t number) : engine_(SplitMix64(seed + number)) {}

void RandomStreams::SetSeed(std::uint64_t seed) {
  seeded_ = repeats_ = true;
  seed_ = seed;
  number_ = 0;
  stream_ = RandomStream(seed_, number_);
}

void RandomStreams::BeginNext() {
  if (!seeded_) {
    constexpr std::uint64_t MillisecondsOfADay = 86400000;
    const DateTime now = clock_.Now();
    const int day = (now.year * 12 + now.month) * 31 + now.day;
    SetSeed(static_cast<std::uint64_t>(Timer(clock_) * 1000) + MillisecondsOfADay * static_cast<std::uint64_t>(day));
    repeats_ = clock_.Stands();
  }
  ++number_;
  stream_ = RandomStream(seed_, number_);
}

}  // namespace merlane
