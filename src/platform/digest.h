#pragma once

#include <bit>
#include <cstdint>
#include <string_view>

#include "platform/random_streams.h"

namespace merlane {

/// A number that tells contents apart: of all that was added, in its order, to the last bit. No two contents that are
/// met by chance have the same.
class Digest {
 public:
  Digest& Add(std::uint64_t word) {
    value_ = SplitMix64(value_ ^ word);
    return *this;
  }
  Digest& Add(double number) { return Add(std::bit_cast<std::uint64_t>(number)); }
  Digest& Add(std::string_view text) {
    Add(std::uint64_t{text.size()});
    for (; !text.empty(); text.remove_prefix(text.size() < 8 ? text.size() : 8)) Add(Packed(text.substr(0, 8)));
    return *this;
  }
  /// Each number of a row, and how many they are.
  template <class Row>
  Digest& AddAll(const Row& row) {
    std::uint64_t count = 0;
    for (const auto& number : row) {
      Add(static_cast<double>(number));
      ++count;
    }
    return Add(count);
  }

  std::uint64_t Value() const { return value_; }

 private:
  static std::uint64_t Packed(std::string_view bytes) {
    std::uint64_t word = 0;
    for (const char c : bytes) word = word << 8 | static_cast<unsigned char>(c);
    return word;
  }

  std::uint64_t value_ = 0;
};

}  // namespace merlane
