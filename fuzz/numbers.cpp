// The number kit: texts that become numbers, and numbers that become texts.
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <string>

#include "base/number_text.h"
#include "base/runtime_failure.h"
#include "base/text.h"
#include "targets.h"

namespace merlane::fuzz {
namespace {

bool SameNumber(double a, double b) { return a == b; }

void Read(std::string_view bytes) {
  double strict = 0;
  bool isNumber = true;
  try {
    strict = StrictNumber(bytes);
  } catch (const RuntimeFailure&) {
    isNumber = false;
  }
  Require(IsNumber(bytes) == isNumber, "what is a number can be read as one");
  try {
    const double lenient = LenientNumber(bytes);
    Require(std::isfinite(lenient), "a number is finite");
    if (isNumber) Require(SameNumber(lenient, strict), "both readings agree on a number");
  } catch (const RuntimeFailure&) {
    Require(!isNumber, "a number that can be read strictly can be read leniently");
  }
  if (!isNumber) return;
  const std::string text(Trim(bytes));
  Require(SameNumber(std::strtod(text.c_str(), nullptr), strict), "the library reads the same number");
}

void Write(double x) {
  Require(StrictNumber(Shortest(x)) == x, "the shortest text reads back");
  Require(StrictNumber(Plain(x)) == x, "the plain text reads back");
  for (const char* pattern : {"0.0000000E+00", "0.0000E+000", "####0.000000", "#0.0###"}) {
    const std::string field = NumberField(x, pattern, 14);
    Require(field.size() >= 14, "a field is as wide as it shall be");
    Require(Trim(field) == Trim(Format(x, pattern)), "a field holds its number whole");
  }
  const double rounded = StrictNumber(Format(x, "0.0000000E+00"));
  if (std::isnormal(x)) Require(std::fabs(rounded - x) <= 5.1e-8 * std::fabs(x), "eight digits are eight digits");
}

}  // namespace

void Numbers(std::string_view bytes) {
  Read(bytes);
  double x = 0;
  if (bytes.size() < sizeof x) return;
  std::memcpy(&x, bytes.data(), sizeof x);
  if (std::isfinite(x)) Write(x);
}

}  // namespace merlane::fuzz
