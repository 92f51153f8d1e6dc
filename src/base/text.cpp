#include "base/text.h"

#include <algorithm>

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
    const std::size_t end = text.find_first_of("\r\n");
    lines.emplace_back(text.substr(0, end));
    if (end == std::string_view::npos) break;
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

std::string_view FileName(std::string_view path) {
  const std::size_t separator = path.find_last_of("/\\");
  return separator == std::string_view::npos ? path : path.substr(separator + 1);
}

}  // namespace merlane
