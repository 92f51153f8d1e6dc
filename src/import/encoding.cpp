#include "import/encoding.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdint>
#include <set>
#include <utility>

#include "base/runtime_failure.h"
#include "base/text.h"
#include "base/utf8.h"
#include "import/single_bytes.h"
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

std::string FromSingleBytes(std::string_view bytes, Encoding encoding) {
  std::string text;
  text.reserve(bytes.size());
  for (const char c : bytes) text += Utf8Character(CharacterOf(encoding, c));
  return text;
}

bool IsAsciiLetter(char32_t c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); }
bool IsCyrillic(char32_t c) { return c >= 0x400 && c < 0x500; }

/// Letters with accents of the languages of western Europe; of those of others the capitals alone, which the character
/// sets of western Europe have.
bool IsCapital(char32_t c) {
  constexpr char32_t Times = 0xD7;
  static const std::set<char32_t> beyond{0x152, 0x160, 0x17D};
  return (c >= 0xC0 && c <= 0xDE && c != Times) || beyond.contains(c);
}
bool IsSmallLetter(char32_t c) {
  constexpr char32_t DividedBy = 0xF7, Oe = 0x153;
  return (c >= 0xDF && c <= 0xFF && c != DividedBy) || c == Oe;
}

/// The characters beside a place; blanks at the ends.
std::pair<char, char> Beside(std::string_view bytes, std::size_t place) {
  return {place > 0 ? bytes[place - 1] : ' ', place + 1 < bytes.size() ? bytes[place + 1] : ' '};
}

/// Whether the byte at a place, which is beyond ASCII, is what stands beside letters: one of them, an apostrophe
/// between two, or a quote or dash at the end of a word.
bool FitsIntoWord(std::string_view bytes, std::size_t place, Encoding encoding) {
  constexpr char32_t Apostrophe = 0x2019, FirstMark = 0x2013, LastMark = 0x203A;
  const char32_t character = CharacterOf(encoding, bytes[place]);
  const auto [left, right] = Beside(bytes, place);
  const bool behind = IsAsciiLetter(static_cast<unsigned char>(left));
  const bool before = IsAsciiLetter(static_cast<unsigned char>(right));
  if (!behind && !before) return false;
  if (IsCapital(character)) return left < 'a' || left > 'z';
  if (IsSmallLetter(character)) return behind || right < 'A' || right > 'Z';
  return behind && before ? character == Apostrophe : character >= FirstMark && character <= LastMark;
}

/// Whether the byte at a place is a letter of middle Europe, and in western Europe a sign where nobody writes one: in
/// front of a letter or, since ordinal numbers and questions have such, between two.
bool FitsIntoWordOfMiddleEurope(std::string_view bytes, std::size_t place) {
  constexpr char32_t FirstLetter = 0x100, BehindLetters = 0x180;
  static const std::set<char32_t> beginWords{0xAA, 0xBA, 0xBF};
  const char32_t letter = CharacterOf(Encoding::Windows1250, bytes[place]);
  const char32_t sign = CharacterOf(Encoding::Latin1, bytes[place]);
  const auto [left, right] = Beside(bytes, place);
  const bool isLetter = letter >= FirstLetter && letter < BehindLetters, isSign = sign >= 0xA0 && sign <= 0xBF;
  return isLetter && isSign && IsAsciiLetter(static_cast<unsigned char>(right)) &&
         (IsAsciiLetter(static_cast<unsigned char>(left)) || !beginWords.contains(sign));
}

/// Where a word begins all whose letters are Cyrillic: one, at least, of several. Words of western Europe have few
/// letters beyond ASCII in a row.
std::vector<std::size_t> CyrillicWords(std::string_view bytes) {
  constexpr std::size_t Several = 3;
  const auto isCyrillic = [&](std::size_t at) { return IsCyrillic(CharacterOf(Encoding::Windows1251, bytes[at])); };
  const auto isLatin = [&](std::size_t at) {
    return at < bytes.size() && IsAsciiLetter(static_cast<unsigned char>(bytes[at]));
  };
  std::vector<std::size_t> words;
  for (std::size_t begin = 0, end = 0; begin < bytes.size(); begin = end + 1) {
    for (end = begin; end < bytes.size() && isCyrillic(end);) ++end;
    if (end - begin >= Several && !isLatin(begin - 1) && !isLatin(end)) words.push_back(begin);
  }
  return words;
}

/// The places of bytes that make better words in one encoding than in others.
struct BetterWords {
  std::vector<std::size_t> ofMac, ofWindows, ofBoth, ofMiddleEurope, ofCyrillic;

  /// The encoding for which most speaks.
  Encoding Best() const {
    if (ofCyrillic.size() > std::max(ofMac.size(), ofWindows.size() + ofBoth.size())) return Encoding::Windows1251;
    if (ofMiddleEurope.size() > 0 && ofMiddleEurope.size() >= ofMac.size()) return Encoding::Windows1250;
    return ofMac.size() > ofWindows.size() ? Encoding::MacRoman : Encoding::Latin1;
  }
};

BetterWords BetterWordsIn(std::string_view bytes) {
  BetterWords better;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    if (IsAscii(bytes.substr(i, 1))) continue;
    const bool mac = FitsIntoWord(bytes, i, Encoding::MacRoman), windows = FitsIntoWord(bytes, i, Encoding::Latin1);
    if (mac && !windows) better.ofMac.push_back(i);
    if (windows && !mac) better.ofWindows.push_back(i);
    if (windows && mac) better.ofBoth.push_back(i);
    if (!windows && !mac && FitsIntoWordOfMiddleEurope(bytes, i)) better.ofMiddleEurope.push_back(i);
  }
  better.ofCyrillic = CyrillicWords(bytes);
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

/// The encoding for which an encoding is most easily taken, and the places that tell so or may tell it.
std::pair<Encoding, std::vector<std::size_t>> OtherEncoding(const BetterWords& better, Encoding encoding) {
  const Encoding best = better.Best();
  const auto& placesOfBest = best == Encoding::Windows1251   ? better.ofCyrillic
                             : best == Encoding::Windows1250 ? better.ofMiddleEurope
                             : best == Encoding::MacRoman    ? better.ofMac
                                                             : better.ofWindows;
  if (best == Encoding::Windows1250 || best == Encoding::Windows1251)
    return {encoding == best ? Encoding::Latin1 : best, placesOfBest};
  if (encoding == Encoding::Windows1250 || encoding == Encoding::Windows1251) return {best, placesOfBest};
  const bool isMac = encoding == Encoding::MacRoman;
  const Encoding other = isMac ? Encoding::Latin1 : Encoding::MacRoman;
  const std::vector<std::size_t>& against = isMac ? better.ofWindows : better.ofMac;
  const std::vector<std::size_t>& inFavour = isMac ? better.ofMac : better.ofWindows;
  if (!against.empty()) return {other, against};
  if (isMac && !inFavour.empty()) return {other, inFavour};  // hardly anybody has such files any more
  return {other, inFavour.empty() ? better.ofBoth : std::vector<std::size_t>()};
}

std::string Translated(std::string_view bytes, Encoding encoding) {
  switch (encoding) {
    case Encoding::Utf16:
      return FromUtf16(bytes);
    case Encoding::Utf8:
      break;
    default:
      return FromSingleBytes(bytes, encoding);
  }
  if (!IsUtf8(bytes)) throw RuntimeFailure("the file is not UTF-8: choose another encoding");
  return std::string(bytes.starts_with("\xEF\xBB\xBF") ? bytes.substr(3) : bytes);
}

}  // namespace

const std::vector<std::string>& EncodingNames() {
  static const std::vector<std::string> names{"UTF-8",     "UTF-16",       "Latin-1",
                                              "Mac Roman", "Windows-1250", "Windows-1251"};
  return names;
}

Encoding ProposedEncoding(std::string_view bytes) {
  if (ForeignKind(bytes) == Utf16Text) return Encoding::Utf16;
  if (IsUtf8(bytes)) return Encoding::Utf8;
  return BetterWordsIn(bytes).Best();
}

std::vector<std::string> DoubtfulLetters(std::string_view bytes, Encoding encoding) {
  if (!IsOfSingleBytes(encoding)) return {};
  if (const std::string_view word = WordOfUtf8(bytes); !word.empty())
    return {fmt::format("\"{}\" would be \"{}\" as UTF-8, which the file is in part: are all letters right?",
                        Decoded(word, encoding), word)};
  const BetterWords better = BetterWordsIn(bytes);
  const auto [other, places] = OtherEncoding(better, encoding);
  if (places.empty()) return {};
  const std::string_view word = WordAt(bytes, places.front());
  return {fmt::format("\"{}\" would be \"{}\" as {}: is the encoding right?", FromSingleBytes(word, encoding),
                      FromSingleBytes(word, other), EncodingNames()[static_cast<std::size_t>(other)])};
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
