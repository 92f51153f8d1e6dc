#include "base/text.h"

#include <algorithm>

#include "base/utf8.h"

namespace merlane {
namespace {

// Only the 26 letters change case: bytes above 127 are part of names and belong to whoever wrote the file.
char Upper(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }
char Lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

}  // namespace

std::string RightSet(std::string_view value, int width) {
  const auto w = static_cast<std::size_t>(width);
  if (value.size() >= w) return std::string(value.substr(0, w));
  return std::string(w - value.size(), ' ') + std::string(value);
}

std::string_view Trim(std::string_view text) {
  const std::size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

std::string UpperCase(std::string_view text) {
  std::string result(text);
  std::ranges::transform(result, result.begin(), Upper);
  return result;
}

std::string LowerCase(std::string_view text) {
  std::string result(text);
  std::ranges::transform(result, result.begin(), Lower);
  return result;
}

std::string_view Columns(std::string_view line, int first, int last) {
  const auto start = static_cast<std::size_t>(first - 1);
  if (start >= line.size()) return {};
  return line.substr(start, static_cast<std::size_t>(last - first + 1));
}

std::string_view Rightmost(std::string_view text, int count) {
  const auto n = static_cast<std::size_t>(count);
  return text.size() <= n ? text : text.substr(text.size() - n);
}

std::vector<std::string> Lines(std::string_view text) {
  std::vector<std::string> lines;
  while (!text.empty()) {
    const auto endsLine = [](char c) { return c == '\r' || c == '\n'; };
    const auto end = static_cast<std::size_t>(std::find_if(text.begin(), text.end(), endsLine) - text.begin());
    lines.emplace_back(text.substr(0, end));
    if (end == text.size()) break;
    const bool crlf = text[end] == '\r' && end + 1 < text.size() && text[end + 1] == '\n';
    text.remove_prefix(end + (crlf ? 2 : 1));
  }
  return lines;
}

std::string WithCrLf(std::string_view text) {
  std::string result;
  result.reserve(text.size() + text.size() / 32);
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\n') {
      result += "\r\n";
    } else if (text[i] == '\r') {
      result += "\r\n";
      if (i + 1 < text.size() && text[i + 1] == '\n') ++i;
    } else {
      result += text[i];
    }
  }
  return result;
}

std::size_t Utf8Length(std::string_view text) {
  const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  const unsigned char first = byte(0);
  const std::size_t length = first < 0x80   ? 1
                             : first < 0xC2 ? 0
                             : first < 0xE0 ? 2
                             : first < 0xF0 ? 3
                             : first < 0xF5 ? 4
                                            : 0;
  if (length == 0 || length > text.size()) return 0;
  for (std::size_t i = 1; i < length; ++i)
    if ((byte(i) & 0xC0) != 0x80) return 0;
  // Longer forms of shorter characters, halves of surrogate pairs, and numbers beyond the last character.
  const bool wrong = (first == 0xE0 && byte(1) < 0xA0) || (first == 0xED && byte(1) > 0x9F) ||
                     (first == 0xF0 && byte(1) < 0x90) || (first == 0xF4 && byte(1) > 0x8F);
  return wrong ? 0 : length;
}

std::string Utf8(std::string_view text) {
  if (IsUtf8(text)) return std::string(text);
  std::string result;
  for (const char c : text) {
    const auto code = static_cast<unsigned char>(c);
    if (code < 0x80) {
      result += c;
    } else {
      result += static_cast<char>(0xC0 | (code >> 6));
      result += static_cast<char>(0x80 | (code & 0x3F));
    }
  }
  return result;
}

std::string_view FileName(std::string_view path) {
  const std::size_t separator = path.find_last_of("/\\");
  return separator == std::string_view::npos ? path : path.substr(separator + 1);
}

}  // namespace merlane
