#include "priors/priors_file.h"

#include <fmt/format.h>

#include "base/number_text.h"
#include "base/runtime_failure.h"
#include "base/text.h"

namespace merlane {
namespace {

constexpr int TermWidth = 11;
constexpr const char* TermPattern = " 0.000E+000";

std::string TermField(double term) { return RightSet(Format(term, TermPattern), TermWidth); }

/// A text goes through as it stands, also when it is a number.
std::string TermField(const PriorTerm& term) {
  if (const double* number = std::get_if<double>(&term)) return TermField(*number);
  return RightSet(std::get<std::string>(term), TermWidth);
}

}  // namespace

std::string PriorsFileText(const Priors& priors) {
  const int NPAR = priors.PriorCode.Size();
  std::string text = Format(NPAR, "#0") + "\r\n";
  for (int i = 1; i <= NPAR; ++i)
    text += fmt::format("{}   {}{}{}{}{}   {}\r\n", RightSet(std::to_string(i), 3), RightSet(priors.PriorCode(i), 1),
                        TermField(priors.PriorFirstMean(i)), TermField(priors.PriorFirstSD(i)),
                        TermField(priors.PriorSecondMean(i)), TermField(priors.PriorSecondSD(i)),
                        PriorDistName(priors.PriorCode(i)));
  return text;
}

PriorsReading ReadPriorsText(std::string_view text, int NPAR) {
  const std::vector<std::string> lines = Lines(text);
  if (lines.empty()) throw RuntimeFailure("the priors file is empty");
  if (!IsNumber(lines[0])) throw RuntimeFailure("the file does not begin with the number of its parameters");
  PriorsReading reading;
  reading.count = StrictInt16(lines[0]);
  if (reading.count != NPAR) return reading;
  if (static_cast<int>(lines.size()) < NPAR + 1)
    throw RuntimeFailure(
        fmt::format("the priors file ends with line {}: {} parameters are announced, so it must have {} lines",
                    lines.size(), NPAR, NPAR + 1));
  Priors& priors = reading.priors;
  priors.Reset(NPAR);
  for (int i = 1; i <= NPAR; ++i) {
    const std::string& line = lines[static_cast<std::size_t>(i)];
    priors.PriorCode(i) = UpperCase(Columns(line, 7, 7));
    priors.PriorFirstMean(i) = LenientNumber(Columns(line, 8, 18));
    priors.PriorFirstSD(i) = LenientNumber(Columns(line, 19, 29));
    priors.PriorSecondMean(i) = std::string(Trim(Columns(line, 30, 40)));
    priors.PriorSecondSD(i) = std::string(Trim(Columns(line, 41, 51)));
  }
  return reading;
}

}  // namespace merlane
