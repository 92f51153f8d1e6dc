#pragma once

#include <cstdint>
#include <random>

#include "platform/clock.h"

namespace merlane {

/// One numbered random stream: the 64-bit Mersenne Twister (M. Matsumoto and T. Nishimura 1998; std::mt19937_64) seeded
/// with splitmix64(seed + number).
class RandomStream {
 public:
  RandomStream(std::uint64_t seed, std::uint64_t number);

  /// A uniform number in [0, 1): the next output shifted right by 11 bits, times 2^-53.
  double Uniform() { return static_cast<double>(engine_() >> 11) * 0x1p-53; }
  void LeaveOut(unsigned long long count) { engine_.discard(count); }

 private:
  std::mt19937_64 engine_;
};

/// The program's random numbers. Each request "seed from the clock" begins the next numbered stream under the seed, so
/// that every random result can be repeated to the last digit. Where the host has given no seed, the first request
/// takes one from the clock.
class RandomStreams {
 public:
  explicit RandomStreams(const Clock& clock) : clock_(clock) {}

  /// Sets the seed and begins its stream 0.
  void SetSeed(std::uint64_t seed);
  /// Begins the next stream; this is what "seed from the clock" does.
  void BeginNext();
  /// Whether who does the same once more gets the same numbers: with a seed that was given, or taken from a clock that
  /// stands.
  bool Repeats() const { return seeded_ ? repeats_ : clock_.Stands(); }
  /// Leaves out the next `count` streams: the one begun next is numbered that much higher.
  void Skip(int count) { number_ += static_cast<std::uint64_t>(count); }

  double Uniform() { return stream_.Uniform(); }
  /// Leaves out the next `count` numbers of the stream.
  void LeaveOut(unsigned long long count) { stream_.LeaveOut(count); }

  std::uint64_t Seed() const { return seed_; }
  std::uint64_t StreamNumber() const { return number_; }

 private:
  const Clock& clock_;
  bool seeded_ = false, repeats_ = false;
  std::uint64_t seed_ = 0;
  std::uint64_t number_ = 0;
  RandomStream stream_{0, 0};
};

/// First output of the splitmix64 sequence whose state is `state` (G. L. Steele, D. Lea and C. H. Flood, Fast
/// splittable pseudorandom number generators, OOPSLA 2014).
std::uint64_t SplitMix64(std::uint64_t state);

}  // namespace merlane
