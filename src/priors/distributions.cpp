#include "priors/distributions.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "base/arithmetic.h"
#include "base/arithmetic_failure.h"
#include "base/elementary.h"
#include "base/number_text.h"
#include "base/runtime_failure.h"
#include "base/text.h"

namespace merlane {
namespace {

double Square(double x) { return x * x; }

/// A wall so steep that no minimiser stays behind it.
double Penalty(double excess) { return Checked(Square(excess) * 1e+20); }

double Normal(double x, double m, double s) { return Checked(0.5 * Square(Divide(x - m, s))); }

double Gamma(double x, double m, double s) {
  const double a = Checked(Square(Divide(m, s)));
  const double b = std::fabs(Divide(Square(s), m));
  const double mode = Checked((a - 1) * b);
  const double ref = Checked((1 - a) * CheckedLog(mode) + Divide(mode, b));
  return Checked(Divide(x, b) + (1 - a) * CheckedLog(x) - ref);
}

double LnNormal(double x, double m, double s) {
  const double sigma = CheckedSqrt(CheckedLog(Square(s) + Square(m)) - 2 * CheckedLog(m));
  const double mu = CheckedLog(m) - Square(sigma) / 2;
  const double mode = Checked(Exp(mu - Square(sigma)));
  const double ref = CheckedLog(mode) + 0.5 * Square(Divide(CheckedLog(mode) - mu, sigma));
  return Checked(CheckedLog(x) + 0.5 * Square(Divide(CheckedLog(x) - mu, sigma)) - ref);
}

double Beta(double x, double m, double s) {
  const auto [a, b] = BetaShapeOf(m, s);
  const double mode = std::clamp(Divide(1 - a, (2 - a) - b), PriorLowerEnd, PriorUpperEnd);
  const double ref = Checked((1 - a) * CheckedLog(mode) + (1 - b) * CheckedLog(1 - mode));
  return Checked((1 - a) * CheckedLog(x) + (1 - b) * CheckedLog(1 - x) - ref);
}

// The cliffs share `c`, the last value of NormalCDF in this evaluation: a foot whose standard deviation is not positive
// is judged by what an earlier parameter left there.

double LeftCliff(double x, double m, double s, double& c) {
  // A sharp foot (s = 0) has no use for its own penalty: what follows replaces it, or fails.
  if (s > 0) c = NormalCDF(Divide(x - m, s));
  return c > 0 ? -CheckedLog(c) : Penalty(Divide(x - m, s));
}

double RightCliff(double x, double m, double s, double& c) {
  if (s > 0) c = NormalCDF(Divide(x - m, s));
  return 1 - c > 0 ? -CheckedLog(1 - c) : Penalty(Divide(x - m, s));
}

double Bounded(double x, double left, double leftSD, double right, double rightSD, double& c) {
  double value = LeftCliff(x, left, leftSD, c);
  // Unlike a right cliff that stands alone, a sharp right foot keeps its penalty, in place of what the left foot gave.
  if (rightSD == 0 && x > right) value = Penalty(x - right);
  return Checked(value + RightCliff(x, right, rightSD, c));
}

/// -ln[L] of one parameter; `counts` is set to false when it stays out of the total.
double NegLnL(const Priors& priors, int i, double x, double& c, bool& counts) {
  const std::string& code = priors.PriorCode(i);
  const double m = priors.PriorFirstMean(i);
  const double s = priors.PriorFirstSD(i);
  const auto outside = [&counts](double penalty) {
    counts = false;
    return penalty;
  };
  if (code == "U") return 0;
  if (code == "N") return Normal(x, m, s);
  if (code == "G") return x < PriorLowerEnd ? outside(Penalty(x - PriorLowerEnd)) : Gamma(x, m, s);
  // The first term is multiplied as it stands, although it is entered as the mean.
  if (code == "E") return x <= 0 ? outside(Penalty(x)) : Checked(std::fabs(m) * x);
  if (code == "L") return x < PriorLowerEnd ? outside(Penalty(x - PriorLowerEnd)) : LnNormal(x, m, s);
  if (code == "B") {
    if (x < PriorLowerEnd) return outside(Penalty(x - PriorLowerEnd));
    if (x > PriorUpperEnd) return outside(Penalty(x - PriorUpperEnd));
    return Beta(x, m, s);
  }
  if (code == "S") return LeftCliff(x, m, s, c);
  if (code == "D") return RightCliff(x, m, s, c);
  if (code == "T") return Bounded(x, m, s, NumberOf(priors.PriorSecondMean(i)), NumberOf(priors.PriorSecondSD(i)), c);
  return 0;
}

}  // namespace

double NumberOf(const PriorTerm& secondTerm) {
  if (const double* number = std::get_if<double>(&secondTerm)) return *number;
  // Files put a blank between a minus and its number.
  const std::string_view term = Trim(std::get<std::string>(secondTerm));
  if (term.starts_with("- ")) return -StrictNumber(term.substr(2));
  return StrictNumber(term);
}

bool IsUnset(const PriorTerm& secondTerm) {
  if (const double* number = std::get_if<double>(&secondTerm)) return *number == PriorUnset;
  const std::string& text = std::get<std::string>(secondTerm);
  return IsNumber(text) && StrictNumber(text) == PriorUnset;
}

void Priors::Reset(int NPAR) {
  PriorCode.Dimension(NPAR, "U");
  PriorFirstMean.Dimension(NPAR, PriorUnset);
  PriorFirstSD.Dimension(NPAR, PriorUnset);
  PriorSecondMean.Dimension(NPAR, PriorUnused);
  PriorSecondSD.Dimension(NPAR, PriorUnused);
  PriorNegLnL.Dimension(NPAR);
  PriorTotal = 0;
}

bool Priors::AnySet() const {
  return std::ranges::any_of(PriorCode, [](const std::string& code) { return code != "U"; });
}

std::string Priors::InWords() const {
  const auto term = [](const PriorTerm& t) {
    const double* number = std::get_if<double>(&t);
    return number != nullptr ? Shortest(*number) : std::get<std::string>(t);
  };
  std::string words;
  for (int i = 1; i <= PriorCode.Size(); ++i) {
    if (PriorCode(i) == "U") continue;
    words +=
        fmt::format("{}{}: {} {} {} {} {}", words.empty() ? "" : ", ", i, PriorCode(i), Shortest(PriorFirstMean(i)),
                    Shortest(PriorFirstSD(i)), term(PriorSecondMean(i)), term(PriorSecondSD(i)));
  }
  return words;
}

std::string PriorDistName(const std::string& code) {
  for (const PriorDistribution& distribution : PriorDistributions)
    if (code == distribution.code) return distribution.name;
  return "";
}

double EvaluatePrior(const Array1<double>& values, double ObjectiveConstant, Priors& priors) {
  double c = 0;
  priors.PriorTotal = 0;
  for (int i = 1; i <= priors.PriorCode.Size(); ++i) {
    bool counts = true;
    const auto because = [i](const RuntimeFailure& failure) {
      return fmt::format("the prior of parameter {} cannot be computed: {}", i, failure.what());
    };
    try {
      priors.PriorNegLnL(i) = NegLnL(priors, i, values(i), c, counts);
    } catch (const ArithmeticFailure& failure) {
      throw ArithmeticFailure(because(failure));
    } catch (const RuntimeFailure& failure) {
      throw RuntimeFailure(because(failure));
    }
    if (counts) priors.PriorTotal = Checked(priors.PriorTotal + priors.PriorNegLnL(i));
  }
  priors.PriorTotal = Checked(ObjectiveConstant * priors.PriorTotal);
  return priors.PriorTotal;
}

BetaShape BetaShapeOf(double m, double s) {
  return {Divide(((m - Square(m)) - Square(s)) * m, Square(s)),
          Divide(((m - Square(m)) - Square(s)) * (1 - m), Square(s))};
}

double NormalCDF(double z) {
  static constexpr std::array<double, 10> coef = {-1.26551223, 1.00002368,  0.37409196, 0.09678418,  -0.18628806,
                                                  0.27886807,  -1.13520398, 1.48851587, -0.82215223, 0.17087277};
  const double w = std::fabs(z / std::sqrt(2.0));
  const double t = 1 / (1 + w / 2);
  double u = 0;
  for (std::size_t k = coef.size() - 1; k >= 1; --k) u = (u + coef[k]) * t;
  const double e = t * Exp(u + coef[0] - w * w);
  return z < 0 ? e / 2 : (1 - e) / 2 + 0.5;
}

}  // namespace merlane
