#pragma once

#include "import/encoding.h"

namespace merlane {

/// Whether each byte of a text in that encoding is a character.
bool IsOfSingleBytes(Encoding encoding);

/// The character of a byte in such an encoding.
char32_t CharacterOf(Encoding encoding, char byte);

}  // namespace merlane
