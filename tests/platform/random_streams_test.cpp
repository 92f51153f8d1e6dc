#include "platform/random_streams.h"

#include <gtest/gtest.h>

#include <limits>

#include "support/scripted_host.h"

namespace merlane {
namespace {

// The expected numbers come from the definitions of splitmix64 and of the 64-bit Mersenne Twister, written down in
// another language (whose twister gives the published 10000th output of its default seed, 9981545732273789042).

TEST(RandomStreamsTest, SplitMix64GivesThePublishedFirstOutputs) {
  EXPECT_EQ(SplitMix64(0), 0xe220a8397b1dcdafU);
  EXPECT_EQ(SplitMix64(1234567), 0x599ed017fb08fc85U);
}

/// Checks the first three uniform numbers of a stream and its thousandth.
void ExpectStream(RandomStream stream, double first, double second, double third, double thousandth) {
  EXPECT_EQ(stream.Uniform(), first);
  EXPECT_EQ(stream.Uniform(), second);
  EXPECT_EQ(stream.Uniform(), third);
  for (int i = 4; i < 1000; ++i) stream.Uniform();
  EXPECT_EQ(stream.Uniform(), thousandth);
}

TEST(RandomStreamsTest, NumberedStreamsUnderASeed) {
  ExpectStream({42, 0}, 0.13967200376411748, 0.9693205787161252, 0.9701959318564763, 0.06632719889792138);
  ExpectStream({42, 1}, 0.9570289987120429, 0.31252098794803085, 0.981879102943653, 0.33476757521767797);
}

TEST(RandomStreamsTest, LargestSeedWrapsAround) {
  constexpr std::uint64_t largest = std::numeric_limits<std::uint64_t>::max();
  ExpectStream({largest, 0}, 0.6654398766586613, 0.20982608776776634, 0.22549211349014642, 0.4387144428325874);
  ExpectStream({largest, 1}, 0.8923741647765621, 0.9241077559368445, 0.77430114340078, 0.06803869599068302);
}

TEST(RandomStreamsTest, SettingTheSeedBeginsStreamZeroAndEachRequestTheNext) {
  test::FixedClock clock;
  RandomStreams random(clock);
  random.SetSeed(42);
  EXPECT_EQ(random.StreamNumber(), 0U);
  EXPECT_EQ(random.Uniform(), 0.13967200376411748);
  random.BeginNext();
  EXPECT_EQ(random.StreamNumber(), 1U);
  EXPECT_EQ(random.Uniform(), 0.9570289987120429);
  random.SetSeed(42);
  EXPECT_EQ(random.Uniform(), 0.13967200376411748);
}

TEST(RandomStreamsTest, WithoutASeedTheClockGivesOneThatCanBeShownAndRepeated) {
  test::FixedClock clock;
  RandomStreams first(clock);
  first.BeginNext();
  EXPECT_EQ(first.StreamNumber(), 1U);
  RandomStreams second(clock);
  second.SetSeed(first.Seed());
  second.BeginNext();
  EXPECT_EQ(first.Uniform(), second.Uniform());
  clock.now.second += 1;
  RandomStreams later(clock);
  later.BeginNext();
  EXPECT_NE(later.Seed(), first.Seed());
  const std::uint64_t seed = later.Seed();
  later.BeginNext();
  EXPECT_EQ(later.Seed(), seed) << "the seed is taken once";
}

TEST(RandomStreamsTest, NumbersThatAreLeftOutAreThoseThatWouldHaveCome) {
  RandomStream drawn(42, 0), leftOut(42, 0);
  for (int i = 0; i < 1000; ++i) drawn.Uniform();
  leftOut.LeaveOut(1000);
  EXPECT_EQ(leftOut.Uniform(), drawn.Uniform());
}

}  // namespace
}  // namespace merlane
