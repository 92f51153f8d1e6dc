#include "priors/priors_file.h"

#include <fmt/format.h>

#include <algorithm>

#include "base/number_text.h"
#include "base/runtime_failure.h"
#include "base/text.h"

namespace merlane {
namespace {

constexpr int TermWidth = 11;
constexpr const char* TermPattern = " 0.000E+000";

/// Flush right; a longer field grows.
std::string Field(const std::string& text) {
  return RightSet(text, std::max(TermWidth, static_cast<int>(text.size())));
}

/// A negative number is one character too long. The exponent 0 goes without its last digit; any other would be another
/// number without it, and the field grows.
std::string TermField(double term) {
  std::string text = Format(term, TermPattern);
  if (static_cast<int>(text.size()) > TermWidth && text.ends_with("E+000")) text.pop_back();
  return Field(text);
}

/// A text goes through as it stands, also when it is a number.
std::string TermField(const PriorTerm& term) {
  if (const double* number = std::get_if<double>(&term)) return TermField(*number);
  return Field(std::get<std::string>(term));
}

/// The terms that may be texts. A second one that leaves no blank in its columns has one before it, or both would be
/// read as one.
std::string SecondTerms(const PriorTerm& mean, const PriorTerm& sd) {
  const std::string last = TermField(sd);
  return TermField(mean) + (last.front() == ' ' ? "" : " ") + last;
}

/// Whether a first term whose exponent has lost a digit would be read with the one that stands behind it.
bool WouldGoOn(const std::string& term, const std::string& next) {
  return static_cast<int>(term.size()) == TermWidth && term.front() == '-' && next.front() >= '0' &&
         next.front() <= '9';
}

/// The two terms that are numbers, and those that may be texts.
std::string FirstAndSecondTerms(const Priors& priors, int i) {
  const std::string mean = TermField(priors.PriorFirstMean(i)), sd = TermField(priors.PriorFirstSD(i));
  const std::string second = SecondTerms(priors.PriorSecondMean(i), priors.PriorSecondSD(i));
  return mean + sd + (WouldGoOn(sd, second) ? " " : "") + second;
}

std::string PriorLine(const Priors& priors, int i) {
  return fmt::format("{}   {}{}   {}\r\n", RightSet(std::to_string(i), 3), RightSet(priors.PriorCode(i), 1),
                     FirstAndSecondTerms(priors, i), PriorDistName(priors.PriorCode(i)));
}

/// A first term: the number that it is read as, and whether nothing but that stands there.
struct TermRead {
  double number;
  bool isNumber;
};

/// Hands out the terms of a line one behind the other; one that has outgrown its columns moves those behind it.
class TermReader {
 public:
  explicit TermReader(std::string_view line) : rest_(line.substr(std::min<std::size_t>(line.size(), TermsBegin))) {}

  /// A number whose sign leaves no room for its last digit goes on with it.
  TermRead Number() {
    const auto width = static_cast<std::size_t>(TermWidth);
    const bool grown = rest_.size() > width && rest_[0] == '-' && rest_[width] >= '0' && rest_[width] <= '9';
    const std::string_view text = Trim(Take(grown ? width + 1 : width));
    return {LenientNumber(text), IsNumber(text.starts_with("- ") ? text.substr(2) : text)};
  }
  /// A text that fills its columns goes on to the next blank.
  std::string Text() {
    auto width = static_cast<std::size_t>(TermWidth);
    while (width < rest_.size() && rest_[width - 1] != ' ' && rest_[width] != ' ') ++width;
    return std::string(Trim(Take(width)));
  }

 private:
  static constexpr std::size_t TermsBegin = 7;  // characters before the terms

  std::string_view Take(std::size_t width) {
    const std::string_view field = rest_.substr(0, width);
    rest_.remove_prefix(field.size());
    return field;
  }

  std::string_view rest_;
};

void Note(PriorsReading& reading, int i, const std::string& what) {
  reading.oddities += fmt::format("{}line {}: {}", reading.oddities.empty() ? "" : "\n", i + 1, what);
}

/// The number that a first term of parameter `i` is read as.
double Told(const TermRead& term, const char* name, int i, PriorsReading& reading) {
  const std::string& code = reading.priors.PriorCode(i);
  if (!term.isNumber && code != "U" && !PriorDistName(code).empty())
    Note(reading, i,
         fmt::format("the {} of parameter {} is no number; it is read as {}", name, i, Shortest(term.number)));
  return term.number;
}

}  // namespace

std::string PriorsFileText(const Priors& priors) {
  std::string text = Format(priors.PriorCode.Size(), "#0") + "\r\n";
  for (int i = 1; i <= priors.PriorCode.Size(); ++i) text += PriorLine(priors, i);
  return text;
}

std::string PriorsInFile(const Priors& priors) {
  std::string text;
  for (int i = 1; i <= priors.PriorCode.Size(); ++i)
    if (priors.PriorCode(i) != "U") text += PriorLine(priors, i);
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
    if (PriorDistName(priors.PriorCode(i)).empty())
      Note(reading, i, fmt::format("column 7 holds no distribution; parameter {} has no prior", i));
    TermReader terms(line);
    priors.PriorFirstMean(i) = Told(terms.Number(), "mean", i, reading);
    priors.PriorFirstSD(i) = Told(terms.Number(), "SD", i, reading);
    priors.PriorSecondMean(i) = terms.Text();
    priors.PriorSecondSD(i) = terms.Text();
  }
  return reading;
}

}  // namespace merlane
