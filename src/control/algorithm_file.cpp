#include "control/algorithm_file.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "base/number_text.h"
#include "base/runtime_failure.h"
#include "base/text.h"
#include "control/fuses.h"

namespace merlane {
namespace {

constexpr double LeastTolerance = 1e-6;

/// Hands out the lines of a text one by one and knows which one it gave last.
class LineReader {
 public:
  explicit LineReader(std::string_view text) : lines_(Lines(text)) {}

  bool AtEnd() const { return next_ == lines_.size(); }
  std::size_t Number() const { return next_; }  // of the line given last, from 1

  const std::string& Next() {
    if (AtEnd()) throw RuntimeFailure("the file ends");
    return lines_[next_++];
  }

 private:
  std::vector<std::string> lines_;
  std::size_t next_ = 0;
};

/// The first 14 columns, where every line has its number.
constexpr int FirstWidth = 14;
std::string_view FirstField(std::string_view line) { return NumberColumns(line, 1, FirstWidth); }

// The other fields of a parameter's line stand behind its value, which may have outgrown its columns.

/// Columns 17 to 30, and the sign of a number that needs one more.
double ReadStep(std::string_view rest) { return StrictNumber(Columns(rest, Columns(rest, 2, 2) == "-" ? 2 : 3, 16)); }

std::string ReadFuse(std::string_view rest) {
  const std::string fuse = UpperCase(Trim(Columns(rest, 19, 20)));
  if (fuse.empty()) throw RuntimeFailure("there is no fuse in columns 33 and 34");
  const auto isCapital = [](char c) { return c >= 'A' && c <= 'Z'; };
  return isCapital(fuse.front()) && isCapital(fuse.back()) ? fuse : Unfused;
}

/// Stores what was read, and counts it.
template <class T>
void Take(T& field, T read, int& taken) {
  field = std::move(read);
  ++taken;
}

constexpr int FieldsOfAParameter = 3;

void ReadParameters(LineReader& lines, AlgorithmData& a, int& taken) {
  a.Value.Dimension(a.NPAR);
  a.Step.Dimension(a.NPAR);
  a.Fuse.Dimension(a.NPAR, Unfused);
  for (int i = 1; i <= a.NPAR; ++i) {
    const std::string& line = lines.Next();
    const std::string_view value = FirstField(line);
    const auto width = std::max<std::size_t>(FirstWidth, value.size());
    const std::string_view rest = std::string_view(line).substr(std::min(width, line.size()));
    Take(a.Value(i), StrictNumber(value), taken);
    Take(a.Step(i), ReadStep(rest), taken);
    Take(a.Fuse(i), ReadFuse(rest), taken);
  }
}

/// The options in the order of the file.
constexpr std::array OptionNames = {"tolerance",        "maximum of calls", "display frequency",
                                    "output frequency", "name of the log",  "step reduction"};

void ReadOptions(LineReader& lines, AlgorithmData& a, int& taken) {
  Take(a.Tolerance, StrictNumber(FirstField(lines.Next())), taken);
  Take(a.MaxCalls, StrictInt32(FirstField(lines.Next())), taken);
  Take(a.TerminalFreq, StrictInt16(FirstField(lines.Next())), taken);
  Take(a.FileFreq, StrictInt16(FirstField(lines.Next())), taken);
  Take(a.LogName, std::string(Trim(Columns(lines.Next(), 1, FirstWidth))), taken);
  Take(a.StepReduction, StrictNumber(FirstField(lines.Next())), taken);
}

}  // namespace

void SetDefaultAlgorithm(AlgorithmData& a) {
  a.Value.Dimension(a.NPAR);
  a.Step.Dimension(a.NPAR);
  a.Fuse.Dimension(a.NPAR, Unfused);
  for (const auto& [i, value] : {std::pair(1, 1), {2, 1}, {3, 2}, {4, 2}, {16, 1}, {18, 1}, {20, 1}, {22, 1}})
    if (i <= a.NPAR) a.Value(i) = value;
  a.Tolerance = 0.0001;
  a.MaxCalls = 9999;
  a.TerminalFreq = 10;
  a.FileFreq = 0;
  a.LogName = "minimize.tvl";
  a.StepReduction = 0.1;
}

std::string AlgorithmText(const AlgorithmData& a, AlgorithmForm form) {
  const bool ranking = form == AlgorithmForm::Ranking;
  std::string text;
  const auto line = [&text](const std::string& field, std::string_view comment) {
    text += fmt::format("{}{}\r\n", field, comment);
  };
  const auto number = [](double x, const char* pattern) { return NumberField(x, pattern, FirstWidth); };
  constexpr const char* Real = "0.0000000E+00";
  line(number(a.NPAR, "###0"), "  Number of parameters");
  for (int i = 1; i <= a.NPAR; ++i)
    line(number(a.Value(i), Real), NumberField(a.Step(i), Real, 16) + RightSet(a.Fuse(i), ranking ? 4 : 3) +
                                       (ranking ? "  Value, step then link for: " : "  Value, step then link for ") +
                                       a.ParName(i));
  line(number(a.Tolerance, Real),
       ranking ? "  Simplex limit (+ for ABS, - for REL)" : "  Tolerance for Convergence (+ for ABS, - for REL)");
  line(number(a.MaxCalls, "####0"), "  Maximum # of function calls (simplex) or iterations (Marquardt)");
  line(number(a.TerminalFreq, "####0"), "  Terminal output frequency");
  line(number(a.FileFreq, "####0"), "  File output frequency");
  line(RightSet(ShortLogName(a.LogName), FirstWidth), "  Name of output file");
  line(number(a.StepReduction, Real), "  Step size reduction fraction");
  return text;
}

std::string ShortLogName(const std::string& logName) {
  if (logName.size() <= 14) return logName;
  return std::string(FileName(Rightmost(logName, 14)));
}

AlgorithmReading ReadAlgorithm(std::string_view text, AlgorithmData& a) {
  using Failure = AlgorithmReading::Failure;
  AlgorithmReading reading;
  LineReader lines(text);
  try {
    reading.fileCount = StrictInt16(FirstField(lines.Next()));
    if (reading.fileCount != a.NPAR) {
      reading.failure = Failure::ParameterCount;
      return reading;
    }
    ReadParameters(lines, a, reading.taken);
    ReadOptions(lines, a, reading.taken);
  } catch (const RuntimeFailure& fault) {
    reading.failure = lines.AtEnd() ? Failure::TooFewLines : Failure::BadContent;
    reading.details = fmt::format("line {}: {}", lines.Number(), fault.what());
    return reading;
  }
  while (!lines.AtEnd()) {
    if (lines.Next().empty()) continue;
    reading.failure = Failure::TooManyLines;
    reading.details = fmt::format("line {} stands behind the last option", lines.Number());
    return reading;
  }
  a.FileFreq = 0;
  return reading;
}

std::string TakenInWords(const AlgorithmReading& reading, int NPAR) {
  if (reading.fileCount != NPAR) return "taken from the file: nothing";
  const int whole = std::min(reading.taken / FieldsOfAParameter, NPAR);
  if (whole < NPAR) {
    constexpr const char* Begun[] = {"", "the value of parameter ", "the value and step of parameter "};
    const int begun = reading.taken % FieldsOfAParameter;
    std::string taken = whole == 0 ? "" : whole == 1 ? "parameter 1" : fmt::format("parameters 1 to {}", whole);
    if (begun != 0) taken += fmt::format("{}{}{}", taken.empty() ? "" : " and ", Begun[begun], whole + 1);
    return fmt::format(
        "taken from the file: {}; what is left of the {} parameters is 0, frozen and unfused, all "
        "options are the earlier ones",
        taken.empty() ? "nothing" : taken, NPAR);
  }
  const auto* const next = OptionNames.begin() + (reading.taken - FieldsOfAParameter * NPAR);
  if (next == OptionNames.end()) return "taken from the file: all parameters and options";
  return fmt::format("taken from the file: all parameters; of the options these are still the earlier ones: {}",
                     fmt::join(next, OptionNames.end(), ", "));
}

bool RaiseTolerance(AlgorithmData& a) {
  if (std::fabs(a.Tolerance) >= LeastTolerance) return false;
  if (a.Tolerance != 0) a.Tolerance = std::copysign(LeastTolerance, a.Tolerance);
  return true;
}

std::string AlgorithmShortName(const std::string& path, const std::string& present) {
  const std::string_view name = FileName(path);
  if (name.size() == path.size()) return present;
  return std::string(name.substr(0, name.size() - std::min<std::size_t>(name.size(), 4)));
}

}  // namespace merlane
