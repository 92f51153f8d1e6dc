#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace merlane {

/// Numbers distinct keys of so many words from 0 in the order of their first appearance.
template <std::size_t Words>
class Numbering {
 public:
  using Key = std::array<std::uint64_t, Words>;

  /// The number of a key, and whether it is new. Without memory for one that is new, all stay as they were.
  std::pair<int, bool> operator()(const Key& key) {
    if (2 * keys_.size() >= places_.size()) Grow();
    int& number = places_[PlaceOf(key)];
    if (number >= 0) return {number, false};
    keys_.push_back(key);
    number = Size() - 1;
    return {number, true};
  }
  int Size() const { return static_cast<int>(keys_.size()); }
  void Clear() {
    keys_.clear();
    places_.clear();
  }

 private:
  /// Where the number of a key stands, or is to stand. The place is in the uppermost bits of the product, which all
  /// bits below have a part in: keys that are whole numbers as doubles differ in their uppermost bits only.
  std::size_t PlaceOf(const Key& key) const {
    std::uint64_t hash = 0x9E3779B97F4A7C15u;
    for (const std::uint64_t word : key) hash = (hash ^ (hash >> 29) ^ word) * 0xBF58476D1CE4E5B9u;
    const std::uint64_t mask = places_.size() - 1;
    auto place = static_cast<std::size_t>(hash >> std::countl_zero(mask));
    while (places_[place] >= 0 && keys_[static_cast<std::size_t>(places_[place])] != key)
      place = (place + 1) & (places_.size() - 1);
    return place;
  }

  void Grow() {
    constexpr std::size_t Least = 64;
    places_.assign(places_.empty() ? Least : 2 * places_.size(), -1);
    for (std::size_t number = 0; number < keys_.size(); ++number)
      places_[PlaceOf(keys_[number])] = static_cast<int>(number);
  }

  std::vector<Key> keys_;    // by number
  std::vector<int> places_;  // numbers, -1 where there is none: a power of 2, twice as many as keys at least
};

}  // namespace merlane
