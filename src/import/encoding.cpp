#include "import/encoding.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdint>
#include <set>

#include "base/runtime_failure.h"
#include "base/text.h"
#include "base/utf8.h"
#include "platform/file_kind.h"

namespace merlane {
namespace {

bool IsBigEndian(std::string_view bytes) {
  if (bytes.starts_with("\xFE\xFF")) return true;
  return !bytes.starts_with("\xFF\xFE") && bytes.size() > 1 && bytes[0] == '\0';
}

std::string FromUtf16(std::string_view bytes) {
  const bool bigEndian = IsBigEndian(bytes);
  const auto unit = [&](std::size_t i) {
    const auto first = static_cast<unsigned char>(bytes[i]), second = static_cast<unsigned char>(bytes[i + 1]);
    return static_cast<std::uint32_t>(bigEndian ? first << 8 | second : second << 8 | first);
  };
  if (bytes.size() % 2 != 0) throw RuntimeFailure("the file is cut within a character of UTF-16");
  std::string text;
  for (std::size_t i = 0; i < bytes.size(); i += 2) {
    std::uint32_t c = unit(i);
    if (c >= 0xDC00 && c < 0xE000) throw RuntimeFailure("the file is not UTF-16");
    if (c >= 0xD800 && c < 0xDC00) {
      if (i + 3 >= bytes.size() || unit(i + 2) < 0xDC00 || unit(i + 2) >= 0xE000)
        throw RuntimeFailure("the file is not UTF-16");
      c = 0x10000 + ((c - 0xD800) << 10) + (unit(i += 2) - 0xDC00);
    }
    if (c != 0xFEFF) text += Utf8Character(c);
  }
  return text;
}

/// The character of a byte. Where Latin-1 has control characters, which no text holds, Windows has more letters.
std::uint32_t Windows1252(unsigned char byte) {
  static constexpr std::uint16_t more[32] = {0x20AC, 0x81,   0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                             0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x8D,   0x017D, 0x8F,
                                             0x90,   0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                             0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x9D,   0x017E, 0x0178};
  return byte >= 0x80 && byte < 0xA0 ? more[byte - 0x80] : byte;
}

/// The character of a byte as Macs had it before they knew Unicode.
std::uint32_t MacRoman(unsigned char byte) {
  static constexpr std::uint16_t upper[128] = {
      0xC4,   0xC5,   0xC7,   0xC9,   0xD1,   0xD6,   0xDC,   0xE1,   0xE0,   0xE2,   0xE4, 0xE3,   0xE5,
      0xE7,   0xE9,   0xE8,   0xEA,   0xEB,   0xED,   0xEC,   0xEE,   0xEF,   0xF1,   0xF3, 0xF2,   0xF4,
      0xF6,   0xF5,   0xFA,   0xF9,   0xFB,   0xFC,   0x2020, 0xB0,   0xA2,   0xA3,   0xA7, 0x2022, 0xB6,
      0xDF,   0xAE,   0xA9,   0x2122, 0xB4,   0xA8,   0x2260, 0xC6,   0xD8,   0x221E, 0xB1, 0x2264, 0x2265,
      0xA5,   0xB5,   0x2202, 0x2211, 0x220F, 0x3C0,  0x222B, 0xAA,   0xBA,   0x3A9,  0xE6, 0xF8,   0xBF,
      0xA1,   0xAC,   0x221A, 0x192,  0x2248, 0x2206, 0xAB,   0xBB,   0x2026, 0xA0,   0xC0, 0xC3,   0xD5,
      0x152,  0x153,  0x2013, 0x2014, 0x201C, 0x201D, 0x2018, 0x2019, 0xF7,   0x25CA, 0xFF, 0x178,  0x2044,
      0x20AC, 0x2039, 0x203A, 0xFB01, 0xFB02, 0x2021, 0xB7,   0x201A, 0x201E, 0x2030, 0xC2, 0xCA,   0xC1,
      0xCB,   0xC8,   0xCD,   0xCE,   0xCF,   0xCC,   0xD3,   0xD4,   0xF8FF, 0xD2,   0xDA, 0xDB,   0xD9,
      0x131,  0x2C6,  0x2DC,  0xAF,   0x2D8,  0x2D9,  0x2DA,  0xB8,   0x2DD,  0x2DB,  0x2C7};
  return byte >= 0x80 ? upper[byte - 0x80] : byte;
}

/// The text of bytes each of which is a character.
template <class CharacterOf>
std::string FromSingleBytes(std::string_view bytes, CharacterOf characterOf) {
  std::string text;
  text.reserve(bytes.size());
  for (const char c : bytes) text += Utf8Character(characterOf(static_cast<unsigned char>(c)));
  return text;
}

bool IsAsciiLetter(std::uint32_t c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); }

/// Letters with accents of the languages of western Europe; of those of eastern ones, which have other character sets,
/// the capitals alone.
bool IsCapital(std::uint32_t c) {
  constexpr std::uint32_t Times = 0xD7;
  static const std::set<std::uint32_t> beyond{0x152, 0x160, 0x17D};
  return (c >= 0xC0 && c <= 0xDE && c != Times) || beyond.contains(c);
}
bool IsSmallLetter(std::uint32_t c) {
  constexpr std::uint32_t DividedBy = 0xF7, Oe = 0x153;
  return (c >= 0xDF && c <= 0xFF && c != DividedBy) || c == Oe;
}

/// Whether the byte at a place, which is beyond ASCII, is what stands beside letters: one of them, an apostrophe
/// between two, or a quote or dash at the end of a word.
template <class CharacterOf>
bool FitsIntoWord(std::string_view bytes, std::size_t place, CharacterOf characterOf) {
  constexpr std::uint32_t Apostrophe = 0x2019, FirstMark = 0x2013, LastMark = 0x203A;
  const std::uint32_t character = characterOf(static_cast<unsigned char>(bytes[place]));
  const char left = place > 0 ? bytes[place - 1] : ' ', right = place + 1 < bytes.size() ? bytes[place + 1] : ' ';
  const bool behind = IsAsciiLetter(static_cast<unsigned char>(left));
  const bool before = IsAsciiLetter(static_cast<unsigned char>(right));
  if (!behind && !before) return false;
  if (IsCapital(character)) return left < 'a' || left > 'z';
  if (IsSmallLetter(character)) return behind || right < 'A' || right > 'Z';
  return behind && before ? character == Apostrophe : character >= FirstMark && character <= LastMark;
}

/// The places of bytes that make better words of a Mac than of Windows, the reverse, and words of both.
struct BetterWords {
  std::vector<std::size_t> ofMac, ofWindows, ofBoth;
};

BetterWords BetterWordsIn(std::string_view bytes) {
  BetterWords better;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    if (IsAscii(bytes.substr(i, 1))) continue;
    const bool mac = FitsIntoWord(bytes, i, MacRoman), windows = FitsIntoWord(bytes, i, Windows1252);
    if (mac && !windows) better.ofMac.push_back(i);
    if (windows && !mac) better.ofWindows.push_back(i);
    if (windows && mac) better.ofBoth.push_back(i);
  }
  return better;
}

/// The word around a place: its letters and whatever is beyond ASCII.
std::string_view WordAt(std::string_view bytes, std::size_t place) {
  constexpr std::size_t Longest = 30;
  const auto isOfWord = [&](std::size_t at) {
    return IsAsciiLetter(static_cast<unsigned char>(bytes[at])) || !IsAscii(bytes.substr(at, 1));
  };
  std::size_t begin = place, end = place;
  while (begin > 0 && place - begin < Longest && isOfWord(begin - 1)) --begin;
  while (end < bytes.size() && end - place < Longest && isOfWord(end)) ++end;
  return bytes.substr(begin, end - begin);
}

/// The first word of a text in single bytes that is UTF-8 all the same; empty when there is none.
std::string_view WordOfUtf8(std::string_view bytes) {
  for (std::size_t i = 0; i < bytes.size(); ++i)
    if (!IsAscii(bytes.substr(i, 1)) && Utf8Length(bytes.substr(i)) > 1)
      if (const std::string_view word = WordAt(bytes, i); IsUtf8(word)) return word;
  return {};
}

std::string Translated(std::string_view bytes, Encoding encoding) {
  switch (encoding) {
    case Encoding::Utf16:
      return FromUtf16(bytes);
    case Encoding::Latin1:
      return FromSingleBytes(bytes, Windows1252);
    case Encoding::MacRoman:
      return FromSingleBytes(bytes, MacRoman);
    case Encoding::Utf8:
      break;
  }
  if (!IsUtf8(bytes)) throw RuntimeFailure("the file is not UTF-8: choose another encoding");
  return std::string(bytes.starts_with("\xEF\xBB\xBF") ? bytes.substr(3) : bytes);
}

}  // namespace

const std::vector<std::string>& EncodingNames() {
  static const std::vector<std::string> names{"UTF-8", "UTF-16", "Latin-1", "Mac Roman"};
  return names;
}

Encoding ProposedEncoding(std::string_view bytes) {
  if (ForeignKind(bytes) == Utf16Text) return Encoding::Utf16;
  if (IsUtf8(bytes)) return Encoding::Utf8;
  const BetterWords better = BetterWordsIn(bytes);
  return better.ofMac.size() > better.ofWindows.size() ? Encoding::MacRoman : Encoding::Latin1;
}

std::vector<std::string> DoubtfulLetters(std::string_view bytes, Encoding encoding) {
  if (encoding != Encoding::Latin1 && encoding != Encoding::MacRoman) return {};
  if (const std::string_view word = WordOfUtf8(bytes); !word.empty())
    return {fmt::format("\"{}\" would be \"{}\" as UTF-8, which the file is in part: are all letters right?",
                        Decoded(word, encoding), word)};
  const BetterWords better = BetterWordsIn(bytes);
  const bool isMac = encoding == Encoding::MacRoman;
  const std::vector<std::size_t>& against = isMac ? better.ofWindows : better.ofMac;
  const std::vector<std::size_t>& inFavour = isMac ? better.ofMac : better.ofWindows;
  std::vector<std::size_t> places = against;
  if (places.empty() && isMac) places = inFavour;  // told in any case: hardly anybody has such files any more
  if (places.empty() && inFavour.empty()) places = better.ofBoth;
  if (places.empty()) return {};
  const std::string_view word = WordAt(bytes, places.front());
  const std::string ofMac = FromSingleBytes(word, MacRoman), ofWindows = FromSingleBytes(word, Windows1252);
  return {fmt::format("\"{}\" would be \"{}\" as {}: is the encoding right?", isMac ? ofMac : ofWindows,
                      isMac ? ofWindows : ofMac,
                      EncodingNames()[static_cast<std::size_t>(isMac ? Encoding::Latin1 : Encoding::MacRoman)])};
}

std::string Decoded(std::string_view bytes, Encoding encoding) {
  std::string text = Translated(bytes, encoding);
  if (const std::size_t zero = text.find('\0'); zero != std::string::npos)
    throw RuntimeFailure(
        fmt::format("the file is no text: a byte that is zero stands in line {}",
                    std::count(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(zero), '\n') + 1));
  return text;
}

}  // namespace merlane
