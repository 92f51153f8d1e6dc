#include "import/encoding.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdint>

#include "base/runtime_failure.h"
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

std::string FromLatin1(std::string_view bytes) {
  std::string text;
  text.reserve(bytes.size());
  for (const char c : bytes) text += Utf8Character(Windows1252(static_cast<unsigned char>(c)));
  return text;
}

std::string Translated(std::string_view bytes, Encoding encoding) {
  switch (encoding) {
    case Encoding::Utf16:
      return FromUtf16(bytes);
    case Encoding::Latin1:
      return FromLatin1(bytes);
    case Encoding::Utf8:
      break;
  }
  if (!IsUtf8(bytes)) throw RuntimeFailure("the file is not UTF-8: choose another encoding");
  return std::string(bytes.starts_with("\xEF\xBB\xBF") ? bytes.substr(3) : bytes);
}

}  // namespace

const std::vector<std::string>& EncodingNames() {
  static const std::vector<std::string> names{"UTF-8", "UTF-16", "Latin-1"};
  return names;
}

Encoding ProposedEncoding(std::string_view bytes) {
  if (ForeignKind(bytes) == Utf16Text) return Encoding::Utf16;
  return IsUtf8(bytes) ? Encoding::Utf8 : Encoding::Latin1;
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
