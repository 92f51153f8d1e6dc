#include "import/encoding.h"

#include <cstdint>

#include "base/runtime_failure.h"
#include "base/utf8.h"
#include "platform/file_kind.h"

namespace merlane {
namespace {

void AppendUtf8(std::string& text, std::uint32_t c) {
  const auto trail = [&](int shift) { text += static_cast<char>(0x80 | ((c >> shift) & 0x3F)); };
  if (c < 0x80) {
    text += static_cast<char>(c);
  } else if (c < 0x800) {
    text += static_cast<char>(0xC0 | (c >> 6));
    trail(0);
  } else if (c < 0x10000) {
    text += static_cast<char>(0xE0 | (c >> 12));
    trail(6);
    trail(0);
  } else {
    text += static_cast<char>(0xF0 | (c >> 18));
    trail(12);
    trail(6);
    trail(0);
  }
}

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
    if (c != 0xFEFF) AppendUtf8(text, c);
  }
  return text;
}

std::string FromLatin1(std::string_view bytes) {
  std::string text;
  text.reserve(bytes.size());
  for (const char c : bytes) AppendUtf8(text, static_cast<unsigned char>(c));
  return text;
}

}  // namespace

const std::vector<std::string>& EncodingNames() {
  static const std::vector<std::string> names{"UTF-8", "UTF-16", "Latin-1"};
  return names;
}

Encoding ProposedEncoding(std::string_view bytes) {
  if (ForeignKind(bytes) == "a text in UTF-16") return Encoding::Utf16;
  return IsUtf8(bytes) ? Encoding::Utf8 : Encoding::Latin1;
}

std::string Decoded(std::string_view bytes, Encoding encoding) {
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

}  // namespace merlane
