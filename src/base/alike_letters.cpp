#include "base/alike_letters.h"

#include <algorithm>
#include <array>
#include <cstdint>

#include "base/text.h"
#include "base/utf8.h"

namespace merlane {
namespace {

/// The letters U+00C0 to U+017F without their accents.
constexpr char32_t FirstAccented = 0xC0;
constexpr std::array<std::string_view, 0x180 - FirstAccented> Unaccented{
    "A", "A", "A",  "A", "A", "A", "AE", "C",  "E", "E", "E",  "E",  "I", "I", "I",  "I",  "D", "N", "O",  "O",
    "O", "O", "O",  "x", "O", "U", "U",  "U",  "U", "Y", "TH", "ss", "a", "a", "a",  "a",  "a", "a", "ae", "c",
    "e", "e", "e",  "e", "i", "i", "i",  "i",  "d", "n", "o",  "o",  "o", "o", "o",  "/",  "o", "u", "u",  "u",
    "u", "y", "th", "y", "A", "a", "A",  "a",  "A", "a", "C",  "c",  "C", "c", "C",  "c",  "C", "c", "D",  "d",
    "D", "d", "E",  "e", "E", "e", "E",  "e",  "E", "e", "E",  "e",  "G", "g", "G",  "g",  "G", "g", "G",  "g",
    "H", "h", "H",  "h", "I", "i", "I",  "i",  "I", "i", "I",  "i",  "I", "i", "IJ", "ij", "J", "j", "K",  "k",
    "k", "L", "l",  "L", "l", "L", "l",  "L",  "l", "L", "l",  "N",  "n", "N", "n",  "N",  "n", "n", "N",  "n",
    "O", "o", "O",  "o", "O", "o", "OE", "oe", "R", "r", "R",  "r",  "R", "r", "S",  "s",  "S", "s", "S",  "s",
    "S", "s", "T",  "t", "T", "t", "T",  "t",  "U", "u", "U",  "u",  "U", "u", "U",  "u",  "U", "u", "U",  "u",
    "W", "w", "Y",  "y", "Y", "Z", "z",  "Z",  "z", "Z", "z",  "s"};

/// Small letters of Greek and Russian, and below each the Latin one that it looks like, or the one without its accent.
constexpr std::u32string_view Elsewhere = U"αάβεέζηήιίϊκμνοόρτυύϋχώавеёкмнорстухіїй";
constexpr std::u32string_view LooksLike = U"aabeezhhiiikmnooptyyyxωabeekmhopctyxiiи";

char32_t SmallLetter(char32_t c) {
  const auto isFrom = [c](char32_t first, char32_t last) { return c >= first && c <= last; };
  if (isFrom(U'A', U'Z') || isFrom(0x391, 0x3AB) || isFrom(0x410, 0x42F)) return c + 0x20;
  if (isFrom(0xC0, 0xDE) && c != 0xD7) return c + 0x20;
  if (isFrom(0x400, 0x40F)) return c + 0x50;
  if (isFrom(0x388, 0x38A)) return c + 0x25;  // Greek vowels with their accent
  const bool evenIsLarge =
      isFrom(0x100, 0x137) || isFrom(0x14A, 0x177) || isFrom(0x460, 0x4FF) || isFrom(0x1E00, 0x1EFF);
  const bool oddIsLarge = isFrom(0x139, 0x148) || isFrom(0x179, 0x17E);
  return (evenIsLarge && c % 2 == 0) || (oddIsLarge && c % 2 == 1) ? c + 1 : c;
}

/// Blanks of all widths, and signs that take no place.
bool IsUnseen(char32_t c) {
  return c <= U' ' || c == 0xA0 || c == 0xAD || (c >= 0x2000 && c <= 0x200F) || c == 0x202F || c == 0x2060 ||
         c == 0x3000 || c == 0xFEFF;
}

bool IsAscii(char32_t c) { return c < 0x80; }

bool IsAccent(char32_t c) { return c >= 0x300 && c <= 0x36F; }

/// A small letter without accent, as several where it is written as several.
std::string Plain(char32_t c) {
  if (IsAccent(c)) return "";
  if (c >= FirstAccented && c < FirstAccented + Unaccented.size()) return std::string(Unaccented[c - FirstAccented]);
  if (c >= 0x2010 && c <= 0x2015) return "-";
  const std::size_t place = Elsewhere.find(c);
  return Utf8Character(place == std::u32string_view::npos ? c : LooksLike[place]);
}

/// Calls `take` with each character of a text.
template <class Take>
void ForEachCharacter(std::string_view text, Take take) {
  while (!text.empty()) {
    const std::size_t length = std::max<std::size_t>(Utf8Length(text), 1);
    auto c = static_cast<char32_t>(static_cast<unsigned char>(text[0]));
    if (length > 1) c &= 0x7FU >> length;
    for (std::size_t i = 1; i < length; ++i) c = c << 6 | (static_cast<unsigned char>(text[i]) & 0x3F);
    take(c);
    text.remove_prefix(length);
  }
}

}  // namespace

std::string Alike(std::string_view text) {
  std::string alike;
  ForEachCharacter(text, [&](char32_t c) {
    if (IsUnseen(c)) return;
    if (IsAscii(c))
      alike += static_cast<char>(SmallLetter(c));
    else
      alike += LowerCase(Plain(SmallLetter(c)));
  });
  return alike;
}

std::string WithoutCase(std::string_view text) {
  std::string small;
  ForEachCharacter(text, [&](char32_t c) {
    if (!IsUnseen(c)) small += Utf8Character(SmallLetter(c));
  });
  return small;
}

}  // namespace merlane
