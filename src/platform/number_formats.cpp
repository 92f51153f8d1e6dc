#include "platform/number_formats.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "base/number_text.h"
#include "base/text.h"

namespace merlane {
namespace {

constexpr std::string_view Digits = "0#?";

/// A part of a format: a place for a digit, its point, a percent sign, or a text that stands for itself.
struct Part {
  enum class Kind { Digit, Point, Percent, Text } kind = Kind::Text;
  std::string text;  // of a digit, "0", "#" or "?"
};

/// The parts of the first section of a format; none for one that writes numbers in another way.
std::optional<std::vector<Part>> PartsOf(std::string_view code) {
  constexpr std::string_view themselves = " $+-():!^&'~{}<>=";
  std::vector<Part> parts;
  const auto add = [&](Part::Kind kind, std::string_view text) { parts.push_back({kind, std::string(text)}); };
  for (std::size_t i = 0; i < code.size() && code[i] != ';'; ++i) {
    const char c = code[i];
    if (Digits.find(c) != std::string_view::npos) {
      add(Part::Kind::Digit, code.substr(i, 1));
    } else if (c == '.') {
      add(Part::Kind::Point, ".");
    } else if (c == '%') {
      add(Part::Kind::Percent, "%");
    } else if (c == '"') {
      const std::size_t end = std::min(code.find('"', i + 1), code.size());
      add(Part::Kind::Text, code.substr(i + 1, end - i - 1));
      i = end;
    } else if (c == '\\' && i + 1 < code.size()) {
      const std::size_t length = std::max<std::size_t>(Utf8Length(code.substr(i + 1)), 1);
      add(Part::Kind::Text, code.substr(i + 1, length));
      i += length;
    } else if (c == '_' || c == '*') {  // a blank as wide as the next character, and that one as often as there is room
      ++i;
    } else if (themselves.find(c) != std::string_view::npos) {
      add(Part::Kind::Text, code.substr(i, 1));
    } else {
      return std::nullopt;
    }
  }
  return parts;
}

bool IsDigit(const Part& part) { return part.kind == Part::Kind::Digit; }

/// Writes the digits of a whole number into their places, the last one into the last place.
void FillWhole(std::vector<Part>::iterator begin, std::vector<Part>::iterator end, std::string digits) {
  const auto first = std::find_if(begin, end, IsDigit);
  for (auto part = end; part != begin;) {
    if (!IsDigit(*--part)) continue;
    std::string written = part->text == "0" ? "0" : part->text == "?" ? " " : "";
    if (part == first && !digits.empty())
      written = digits;
    else if (!digits.empty())
      written = digits.back();
    if (!digits.empty()) digits.pop_back();
    part->text = written;
  }
}

/// Writes decimals into their places; zeros at the end where they are asked for.
void FillDecimals(std::vector<Part>::iterator begin, std::vector<Part>::iterator end, std::string_view digits) {
  const std::size_t needed =
      digits.find_last_not_of('0') == std::string_view::npos ? 0 : digits.find_last_not_of('0') + 1;
  std::size_t place = 0;
  for (auto part = begin; part != end; ++part) {
    if (!IsDigit(*part)) continue;
    const bool isShown = part->text == "0" || place < needed;
    part->text = isShown ? std::string(digits.substr(place, 1)) : part->text == "?" ? " " : "";
    ++place;
  }
}

}  // namespace

std::optional<std::string> ShownAs(double number, std::string_view formatCode) {
  constexpr double Largest = 1e15;  // whose digits are not all kept
  if (!(number >= 0) || number >= Largest) return std::nullopt;
  std::optional<std::vector<Part>> parts = PartsOf(formatCode);
  if (!parts) return std::nullopt;
  const auto isPercent = [](const Part& part) { return part.kind == Part::Kind::Percent; };
  if (std::ranges::any_of(*parts, isPercent)) return fmt::format("{:.15g}%", 100 * number);
  const auto isPoint = [](const Part& part) { return part.kind == Part::Kind::Point; };
  const auto point = std::ranges::find_if(*parts, isPoint);
  const auto decimals = std::count_if(point, parts->end(), IsDigit);
  if (std::ranges::count_if(*parts, isPoint) > 1 || std::none_of(parts->begin(), point, IsDigit)) return std::nullopt;
  const std::string plain = fmt::format("{:.15g}", number), digits = fmt::format("{:.{}f}", number, decimals);
  if (StrictNumber(digits) != StrictNumber(plain)) return std::nullopt;
  const std::string_view whole = std::string_view(digits).substr(0, digits.find('.'));
  FillWhole(parts->begin(), point, whole == "0" ? "" : std::string(whole));
  if (decimals > 0) FillDecimals(point, parts->end(), std::string_view(digits).substr(whole.size() + 1));
  std::string shown;
  for (const Part& part : *parts) shown += part.text;
  shown = Trim(shown);
  return shown == plain || shown.empty() ? std::nullopt : std::optional(shown);
}

std::string_view CodeOf(int builtinFormat) {
  constexpr int TwoDecimals = 2, Percents = 9, PercentsWithDecimals = 10;
  switch (builtinFormat) {
    case TwoDecimals:
      return "0.00";
    case Percents:
      return "0%";
    case PercentsWithDecimals:
      return "0.00%";
    default:
      return "";
  }
}

}  // namespace merlane
