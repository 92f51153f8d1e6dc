#pragma once

#include <cstdint>

namespace merlane {

/// The classic 16 colours as 0xRRGGBB, toned so that lines and letters in them can be read on white. Black for a number
/// outside 0 to 15.
constexpr std::uint32_t PaletteRgb(int index) {
  constexpr std::uint32_t Colours[] = {0x000000, 0x0000aa, 0x008000, 0x008b8b, 0xaa0000, 0x8b008b, 0x8b5a00, 0xb4b4b4,
                                       0x707070, 0x3c6cf0, 0x30b030, 0x20b8c8, 0xf04848, 0xe050e0, 0xd8b000, 0xffffff};
  return index >= 0 && index < 16 ? Colours[index] : Colours[0];
}

}  // namespace merlane
