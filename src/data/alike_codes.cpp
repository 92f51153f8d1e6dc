#include "data/alike_codes.h"

#include <algorithm>

#include "base/alike_letters.h"
#include "base/number_text.h"

namespace merlane {
namespace {

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

bool IsMark(char c) { return c == '-' || c == '_' || c == '.' || c == '/'; }

bool HasExponent(std::string_view number) { return number.find_first_of("eE") != std::string_view::npos; }

/// Without the parts of a number by which a spreadsheet, or who calculates with codes, writes it in another way.
std::string AsNumber(std::string code) {
  code.erase(0, std::min(code.find_first_not_of('\''), code.size()));
  if (!IsNumber(code)) return code;
  if (HasExponent(code)) return Shortest(StrictNumber(code));
  if (code.size() > 2 && code.ends_with(".0")) code.resize(code.size() - 2);
  return code;
}

std::string WithoutMarks(std::string text) {
  std::erase_if(text, IsMark);
  return text;
}

}  // namespace

std::string AlikeCode(std::string_view code) {
  const std::string written = AsNumber(Alike(code));
  std::string alike;
  for (std::size_t i = 0; i < written.size(); ++i) {
    const char c = written[i];
    const bool hasNext = i + 1 < written.size();
    const bool endsDigits = !alike.empty() && IsDigit(alike.back());
    if (IsMark(c)) {
      if (endsDigits && hasNext && IsDigit(written[i + 1])) alike += '-';
      continue;
    }
    const bool isZeroInFront = c == '0' && !endsDigits && hasNext && IsDigit(written[i + 1]);
    if (!isZeroInFront) alike += c;
  }
  return alike;
}

const char* DifferenceOfCodes(std::string_view a, std::string_view b) {
  if (WithoutCase(a) == WithoutCase(b)) return "differ in case or blanks only";
  const std::string first = Alike(a), second = Alike(b);
  if (first == second) return "look alike: they differ in accents, or have letters of another alphabet";
  if (HasExponent(first) != HasExponent(second)) return "are the same number";
  if (WithoutMarks(first) == WithoutMarks(second)) return "differ in marks such as - or _ only";
  return "differ in zeros only, or in a mark before them";
}

}  // namespace merlane
