#include "base/utf8.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "base/text.h"

namespace merlane {
namespace {

bool BeginsCharacter(char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }

/// How many ASCII bytes begin the text, eight at a time while there are eight.
std::size_t AsciiPrefix(std::string_view text) {
  std::size_t i = 0;
  for (std::uint64_t eight = 0; i + sizeof eight <= text.size(); i += sizeof eight) {
    std::memcpy(&eight, text.data() + i, sizeof eight);
    if ((eight & 0x8080808080808080U) != 0) break;
  }
  while (i < text.size() && static_cast<unsigned char>(text[i]) < 0x80) ++i;
  return i;
}

/// Where character `number`, counted from 0, begins; the size of the text when it has not so many.
std::size_t BeginOf(std::string_view text, int number) {
  std::size_t i = 0;
  for (int n = 0; i < text.size(); ++i)
    if (BeginsCharacter(text[i]) && n++ == number) break;
  return i;
}

}  // namespace

bool IsAscii(std::string_view text) { return AsciiPrefix(text) == text.size(); }

bool IsUtf8(std::string_view text) {
  for (text.remove_prefix(AsciiPrefix(text)); !text.empty(); text.remove_prefix(AsciiPrefix(text))) {
    const std::size_t length = Utf8Length(text);
    if (length == 0) return false;
    text.remove_prefix(length);
  }
  return true;
}

bool HasWideCharacters(std::string_view text) { return !IsAscii(text) && IsUtf8(text); }

std::size_t CharacterCount(std::string_view text) {
  return static_cast<std::size_t>(std::ranges::count_if(text, BeginsCharacter));
}

std::string_view CharacterColumns(std::string_view line, int first, int last) {
  line.remove_prefix(BeginOf(line, first - 1));
  return FirstCharacters(line, last - first + 1);
}

std::string_view FirstCharacters(std::string_view text, int count) { return text.substr(0, BeginOf(text, count)); }

std::string_view LastCharacters(std::string_view text, int count) {
  const int characters = static_cast<int>(CharacterCount(text));
  return characters <= count ? text : text.substr(BeginOf(text, characters - count));
}

std::string Utf8Character(std::uint32_t character) {
  std::string bytes;
  const auto trail = [&](int shift) { bytes += static_cast<char>(0x80 | ((character >> shift) & 0x3F)); };
  if (character < 0x80) {
    bytes += static_cast<char>(character);
  } else if (character < 0x800) {
    bytes += static_cast<char>(0xC0 | (character >> 6));
    trail(0);
  } else if (character < 0x10000) {
    bytes += static_cast<char>(0xE0 | (character >> 12));
    trail(6);
    trail(0);
  } else {
    bytes += static_cast<char>(0xF0 | (character >> 18));
    trail(12);
    trail(6);
    trail(0);
  }
  return bytes;
}

}  // namespace merlane
