#include "inference/covariance_match.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <cmath>

#include "base/number_text.h"
#include "base/text.h"
#include "control/fuses.h"

namespace merlane {
namespace {

bool LiesWithin(const CovarianceFile::Bounds& bounds, double x) {
  return (bounds.low <= x && x <= bounds.high) || SameInFiles(bounds.low, x) || SameInFiles(bounds.high, x);
}

std::string Shown(double negLnL) { return Format(negLnL, "####0.0000"); }

std::string Numbers(const std::vector<int>& parameters) {
  return parameters.empty() ? "none" : fmt::format("{}", fmt::join(parameters, ", "));
}

/// The first free parameter of the model, or follower of one, that another parameter moves in the file; 0 when there is
/// none. What the groups are called means nothing: a file of algorithm data may keep one letter of two.
int FusedOtherwise(const CovarianceFile& file, const Competitor& model) {
  const auto free = [&](int i) { return std::ranges::find(model.counted, i) != model.counted.end(); };
  const auto moverOf = [&](const Array1<std::string>& fuses, int i) {
    const int leader = LeaderOf(fuses, i);
    return free(leader) ? leader : i;  // who follows one that does not move stands by itself
  };
  for (int i = 1; i <= file.fuses.Size(); ++i)
    if (moverOf(file.fuses, i) != moverOf(model.Fuse, i)) return i;
  return 0;
}

}  // namespace

bool SameInFiles(double a, double b) {
  constexpr double Digits = 1e-6;
  return std::fabs(a - b) <= Digits * std::max(std::fabs(a), std::fabs(b));
}

CovarianceFileShape ShapeOfCovarianceFile(std::string_view text) {
  constexpr std::size_t Heading = 4, Between = 15;
  const std::vector<std::string> lines = CovarianceFileLines(text);
  CovarianceFileShape shape;
  std::size_t line = Heading;
  for (; line < lines.size() && lines[line].starts_with(Format(shape.parameters + 1, " 000) ")); ++line)
    ++shape.parameters;
  constexpr double Highest = 999;  // of three digits, where an exponent would stand for more
  for (line += Between; line < lines.size() && !Trim(Columns(lines[line], 1, 3)).empty(); ++line)
    shape.counted.push_back(static_cast<int>(std::min(LenientNumber(Columns(lines[line], 1, 3)), Highest)));
  return shape;
}

std::string DifferenceFromModel(const CovarianceFile& file, const Competitor& model) {
  std::vector<int> estimated;
  for (const CovarianceFile::Row& row : file.rows) estimated.push_back(row.parameter);
  if (estimated != model.counted)
    return fmt::format("its free parameters are {}, those of the model {}", Numbers(estimated), Numbers(model.counted));
  if (file.constant != 0 && !SameInFiles(file.constant, 1 / model.constant))
    return fmt::format("its constant is {}, that of the model {}", Shortest(file.constant),
                       Shortest(1 / model.constant));
  if (const int i = FusedOtherwise(file, model); i != 0)
    return fmt::format("parameter {} is fused with others in it than in the model", i);
  for (int i = 1; i <= file.values.Size(); ++i)
    if (!SameInFiles(file.values(i), model.Value(i)))
      return fmt::format("parameter {} is {} in it and {} in the model", i, Shortest(file.values(i)),
                         Shortest(model.Value(i)));
  if (const auto negLnL = file.NegLnLAtValues(); negLnL && !LiesWithin(*negLnL, model.RankNegLnL))
    return fmt::format(
        "-ln[L] at its values was {}, that of the model is {}: it was calculated with other data, or with "
        "other priors",
        Shown((negLnL->low + negLnL->high) / 2), Shown(model.RankNegLnL));
  // With one parameter there are no others that its error could take as known.
  if (file.optimistic && file.rows.Size() > 1)
    return "its standard errors are optimistic, each as if all other parameters were known";
  return "";
}

}  // namespace merlane
