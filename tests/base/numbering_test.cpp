#include "base/numbering.h"

#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <map>
#include <utility>

namespace merlane {
namespace {

TEST(Numbering, CountsDistinctKeysInTheOrderOfTheirFirstAppearance) {
  Numbering<2> numbering;
  std::map<Numbering<2>::Key, int> expected;
  for (int i = 0; i < 20'000; ++i) {
    const Numbering<2>::Key key{static_cast<std::uint64_t>(i % 7), std::bit_cast<std::uint64_t>(i % 901 - 450.0)};
    const auto [place, isNew] = expected.try_emplace(key, static_cast<int>(expected.size()));
    EXPECT_EQ(numbering(key), std::pair(place->second, isNew));
  }
  EXPECT_EQ(numbering.Size(), 7 * 901);
}

TEST(Numbering, BeginsAnewWhenItIsCleared) {
  Numbering<1> numbering;
  numbering({5});
  numbering({6});
  numbering.Clear();
  EXPECT_EQ(numbering.Size(), 0);
  EXPECT_EQ(numbering({6}), std::pair(0, true));
}

}  // namespace
}  // namespace merlane
