#pragma once

#include <bit>
#include <cstdint>
#include <cstring>
#include <optional>

#include "data/record_layout.h"

namespace merlane {

/// The whole number of a field with nothing but blanks in front of it, all of the field's columns at once. None of any
/// other field.
inline std::optional<int> RightSetWhole(const char* field) {
  std::uint64_t columns = 0;  // the first one lowest
  static_assert(sizeof columns == record::Width);
  if (std::endian::native != std::endian::little) return std::nullopt;
  std::memcpy(&columns, field, sizeof columns);
  const int blanks = std::countr_zero(columns ^ 0x2020202020202020) / 8;
  if (blanks == 8) return std::nullopt;
  const bool negative = static_cast<unsigned char>(columns >> 8 * blanks) == '-';
  const int before = blanks + (negative ? 1 : 0);
  if (before == 8) return std::nullopt;
  const std::uint64_t digits = columns >> 8 * before << 8 * before;
  const std::uint64_t zeros = std::uint64_t{0x3030303030303030} >> 8 * before << 8 * before;
  const std::uint64_t values = digits ^ zeros;
  if (((values | (values + 0x0606060606060606)) & 0xF0F0F0F0F0F0F0F0) != 0) return std::nullopt;
  // Neighbours are joined: to numbers of two digits, of four, of eight.
  const std::uint64_t two = (values * 2561) >> 8 & 0x00FF00FF00FF00FF;
  const std::uint64_t four = (two * 6553601) >> 16 & 0x0000FFFF0000FFFF;
  const int magnitude = static_cast<int>((four * 42949672960001) >> 32);
  return negative ? -magnitude : magnitude;
}

}  // namespace merlane
