#include "uncertainty/covariance_report.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <sstream>
#include <utility>

#include "base/arithmetic.h"
#include "base/number_text.h"
#include "base/runtime_failure.h"
#include "base/text.h"
#include "control/save_pane.h"
#include "uncertainty/tail_probability.h"

namespace merlane {
namespace {

constexpr const char* F1 = "0.0000000E+00";
constexpr const char* F2 = "#####0.0000000";
constexpr const char* F3 = "#0.0000";
constexpr const char* ConstantPrefix = "Covariance constant: ";
constexpr const char* FactorsPrefix = "Factors:";
constexpr const char* MeansPrefix = "   Mean:";
constexpr const char* OptimisticNote =
    "Note: The above SE estimates are optimistic (under-estimated) conditional estimates";

using OfGrid = std::function<double(int g)>;

/// One value for each grid in fields of these widths.
std::string Fields(const OfGrid& value, const char* pattern, const std::array<int, 3>& widths) {
  std::string fields;
  for (int g = 1; g <= 3; ++g) fields += NumberField(value(g), pattern, widths[static_cast<std::size_t>(g) - 1]);
  return fields;
}

/// The text of a report as it grows.
class Report {
 public:
  explicit Report(const Covariances& c) : c_(c) {}

  std::string Build(const std::function<void()>& turn) {
    Parameters();
    Summary();
    StandardErrors();
    Probabilities(turn);
    if (c_.OptimisticSE) {
      Line();
      Line(OptimisticNote);
    } else {
      Correlations();
      CovarianceRows();
    }
    Determinants();
    return std::move(text_);
  }

 private:
  void Line(std::string_view line = "") { text_.append(line).append("\r\n"); }
  bool Numerical() const { return c_.mode == CovarianceMode::Numerical; }
  std::string Number(int a, int width) const { return RightSet(fmt::format("{}", c_.CovIndex(a)), width); }

  void Parameters() {
    Line(fmt::format("Parameter values, step sizes, link codes, and definitions for {} calculated covariances:",
                     Numerical() ? "numerically" : "analytically"));
    Line();
    for (int i = 1; i <= c_.CovBaseValue.Size(); ++i)
      Line(Format(i, " 000) ") + NumberField(c_.CovBaseValue(i), F1, 14) + NumberField(c_.CovStep(i), F1, 16) + " " +
           RightSet(c_.CovFuse(i), 3) + "  " + c_.CovName(i));
  }

  // Fifteen lines stand between the parameters and their standard errors; averaging counts on that.
  void Summary() {
    Line();
    Line(Numerical()
             ? "Reliable numerical covariance results should be similar among three grids with quite different "
               "grid factors"
             : "Analytical covariance results are redundant for all grids; likelihood function value summary is "
               "meaningless");
    Line();
    Line(ConstantPrefix + Shortest(1 / c_.CovConstantInverse));
    Line();
    Line("                               Grid #1           Grid #2           Grid #3");
    Line();
    const auto factor = [&](int g) { return NumberField(c_.grid(g).GridFactor, F1, 13); };
    Line(fmt::format("{}              1) {}  2) {}  3) {}", FactorsPrefix, factor(1), factor(2), factor(3)));
    Line();
    Line("Likelihood function value summary:");
    Line(fmt::format("{}            {}", MeansPrefix, Fields([&](int g) { return Mean(g); }, F1, {18, 18, 18})));
    Line("   Std Dev:         " + Fields([&](int g) { return SD(g); }, F1, {18, 18, 18}));
    Line("   Coef of Var:     " + Fields([&](int g) { return CoefVar(g); }, F2, {18, 18, 18}));
    Line();
  }

  bool HasSummary(int g) const { return Numerical() && c_.grid(g).ending != GridEnding::Abandoned; }
  double Mean(int g) const {
    if (!Numerical()) return c_.CovF0 / c_.CovConstantInverse;
    return HasSummary(g) ? c_.grid(g).GridMean / c_.CovConstantInverse : -1;
  }
  double SD(int g) const { return HasSummary(g) ? c_.grid(g).GridSD / c_.CovConstantInverse : -1; }
  double CoefVar(int g) const {
    const double mean = c_.grid(g).GridMean;
    return HasSummary(g) && mean != 0 ? std::fabs(c_.grid(g).GridSD / mean) : -1;
  }

  void StandardErrors() {
    Line("Par#                               Standard errors of the estimates");
    for (int a = 1; a <= c_.CovCount; ++a)
      Line(Number(a, 3) + Fields([&](int g) { return c_.grid(g).standardErrors(a); }, F1, {35, 18, 18}));
  }

  void Probabilities(const std::function<void()>& turn) {
    Line();
    Line("Par#               Probabilities that the estimates do not differ from 0, then 1");
    for (int a = 1; a <= c_.CovCount; ++a) {
      std::string line = Number(a, 3) + std::string(17, ' ');
      for (int g = 1; g <= 3; ++g) line += RightSet(Probability(a, g, 0), 10) + RightSet(Probability(a, g, 1), 8);
      Line(line);
      turn();
    }
  }

  /// The probability that the estimate does not differ from `value`.
  std::string Probability(int a, int g, double value) const {
    const double se = c_.grid(g).standardErrors(a);
    if (se == -1) return Format(-1, F3);
    const double p = TailProbability(std::fabs(Divide(c_.CovBaseValue(c_.CovIndex(a)) - value, se)));
    return p < 0.0001 ? "<0.0001" : Format(p, F3);
  }

  void Correlations() {
    Line();
    Line("Par#,Par#                                   Correlations");
    for (int a = 1; a <= c_.CovCount; ++a)
      for (int b = a + 1; b <= c_.CovCount; ++b)
        PairLine(
            a, b, [&](int g) { return c_.grid(g).Correlation(a, b); }, F2);
  }

  void CovarianceRows() {
    Line();
    Line("Par#,Par#                                   Covariances");
    for (int a = 1; a <= c_.CovCount; ++a)
      for (int b = a; b <= c_.CovCount; ++b)
        PairLine(
            a, b, [&](int g) { return c_.grid(g).covariances(a, b); }, F1);
  }

  void PairLine(int a, int b, const OfGrid& value, const char* pattern) {
    Line(Number(a, 3) + Number(b, 5) + Fields(value, pattern, {30, 18, 18}));
  }

  void Determinants() {
    Line();
    Line("                                            Determinants");
    Line("Covariance Matrix:  " + Fields([&](int g) { return c_.grid(g).determinant; }, F1, {18, 18, 18}));
    Line("Correlation Matrix: " + Fields([&](int g) { return c_.grid(g).CorrelationDeterminant(); }, F1, {18, 18, 18}));
  }

  const Covariances& c_;
  std::string text_;
};

/// The fuse in a parameter's line, behind its number, value and step, which may have pushed it on; empty in a line that
/// ends before it.
std::string FuseIn(const std::string& line) {
  std::istringstream words(line.substr(std::min(line.size(), line.find(')'))));
  std::string bracket, value, step, fuse;
  words >> bracket >> value >> step >> fuse;
  return fuse;
}

/// The three figures of a line: those of its fields that are numbers throughout.
std::vector<double> Figures(const std::string& line) {
  std::vector<double> figures;
  std::istringstream fields(line);
  for (std::string field; fields >> field;)
    if (field.find_first_not_of("0123456789.+-E") == std::string::npos) figures.push_back(LenientNumber(field));
  return figures;
}

}  // namespace

std::string CovarianceReport(const Covariances& c, const std::function<void()>& turn) { return Report(c).Build(turn); }

std::optional<CovarianceFile::Bounds> CovarianceFile::NegLnLAtValues() const {
  const auto smallest = std::ranges::min_element(grids, {}, [](const Grid& grid) { return std::fabs(grid.factor); });
  if (smallest == grids.end()) return {};
  const double f = std::fabs(smallest->factor), mean = smallest->mean;
  if (f == 0) return Bounds{mean, mean};
  std::optional<double> distance;
  for (const Grid& grid : grids) {
    const double further = std::fabs(grid.factor) / f - 1;
    if (further <= 0) continue;
    const double most = std::fabs(grid.mean - mean) / further;
    distance = std::min(distance.value_or(most), most);
  }
  if (!distance) return {};
  return Bounds{mean - *distance, mean + *distance};
}

std::vector<std::string> CovarianceFileLines(std::string_view text) {
  constexpr std::size_t NameLines = 2;
  std::vector<std::string> lines = Lines(text);
  while (lines.size() > NameLines && lines[0].starts_with(SavedPrefix) && lines[NameLines].starts_with(SavedPrefix))
    lines.erase(lines.begin(), lines.begin() + NameLines);
  return lines;
}

CovarianceFile ReadCovarianceFile(std::string_view text, int NPAR, int rows) {
  constexpr int Heading = 4;   // lines above the parameters
  constexpr int Between = 15;  // lines between the parameters and the standard errors
  const std::vector<std::string> lines = CovarianceFileLines(text);
  if (static_cast<int>(lines.size()) < Heading + NPAR + Between + rows)
    throw RuntimeFailure(
        fmt::format("a covariance file of {} parameters, {} of them estimated, has more lines", NPAR, rows));
  auto line = lines.begin() + Heading;
  CovarianceFile file;
  file.values.Dimension(NPAR);
  file.rows.Dimension(rows);
  file.fuses.Dimension(NPAR);
  for (int i = 1; i <= NPAR; ++i, ++line) {
    file.values(i) = LenientNumber(NumberColumns(*line, 7, 20));
    file.fuses(i) = FuseIn(*line);
  }
  if (std::ranges::find(file.fuses, "") != file.fuses.end()) file.fuses = {};
  std::vector<double> factors, means;
  for (int i = 0; i < Between; ++i, ++line) {
    if (line->starts_with(ConstantPrefix)) file.constant = LenientNumber(line->substr(std::strlen(ConstantPrefix)));
    if (line->starts_with(FactorsPrefix)) factors = Figures(*line);
    if (line->starts_with(MeansPrefix)) means = Figures(*line);
  }
  for (std::size_t g = 0; g < std::min(factors.size(), means.size()); ++g)
    if (means[g] != -1) file.grids.push_back({factors[g], means[g]});
  for (CovarianceFile::Row& row : file.rows) {
    row.parameter = ToInt16(LenientNumber(Columns(*line, 1, 3)));
    if (row.parameter < 1 || row.parameter > NPAR)
      throw RuntimeFailure(fmt::format("parameter {} of a covariance file is not one of 1 to {}", row.parameter, NPAR));
    for (int g = 0; g < 3; ++g)
      row.standardErrors[static_cast<std::size_t>(g)] = LenientNumber(Columns(*line, 25 + 18 * g, 38 + 18 * g));
    ++line;
  }
  file.optimistic = std::find(line, lines.end(), OptimisticNote) != lines.end();
  return file;
}

}  // namespace merlane
