#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace merlane {

/// Whether a text is UTF-8 throughout, as one of ASCII alone is.
bool IsUtf8(std::string_view text);

/// Whether a text holds nothing but ASCII, whose characters are bytes.
bool IsAscii(std::string_view text);

/// Whether a text is UTF-8 throughout, and has characters of several bytes.
bool HasWideCharacters(std::string_view text);

/// How many characters (code points) a UTF-8 text has.
std::size_t CharacterCount(std::string_view text);

/// Characters `first` to `last` of a UTF-8 line, counted from 1, as far as the line has them.
std::string_view CharacterColumns(std::string_view line, int first, int last);

/// The last or the first `count` characters of a UTF-8 text, or all when there are fewer.
std::string_view LastCharacters(std::string_view text, int count);
std::string_view FirstCharacters(std::string_view text, int count);

/// A character (code point) in UTF-8.
std::string Utf8Character(std::uint32_t character);

}  // namespace merlane
