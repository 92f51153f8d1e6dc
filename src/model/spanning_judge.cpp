#include "model/spanning_judge.h"

#include <array>
#include <cmath>
#include <span>

#include "base/arithmetic.h"
#include "model/count_logs.h"

namespace merlane {
namespace {

/// Whether the probabilities of a distribution are known to sum to 1 to far more than six digits, so that the sum need
/// not be made. The error of ln Gamma is some 1e-10 between these bounds; it grows with large shapes, and with very
/// small ones, where it is reflected.
bool SumIsKnown(bool binomial, int n, double p, double theta) {
  if (n > 1000) return false;
  return binomial || (p >= 1e-4 && p <= 0.9999 && theta >= 1e-4 && theta <= 0.999);
}

}  // namespace

SpanningJudge::SpanningJudge(const CountDistributions& distributions, KeptGammaLn& logGamma, int maxCount)
    : distributions_(distributions), logGamma_(logGamma), Pmf_(static_cast<std::size_t>(maxCount) + 1) {
  random_.P = correlated_.P = Pmf_;
}

std::optional<double> SpanningJudge::Probability(const CountErrors& errors, const Expected& expected, int n, int k,
                                                 bool testSums) {
  random_.filled = correlated_.filled = false;
  std::array<double, 4> Prob = {1.0, 1.0, 1.0, 1.0}, sum = {};
  for (const HatchFate fate : HatchFates) {
    if (!Occurs(fate, errors, expected.numbers)) continue;
    Prob[fate] = 0;
    if (!(expected.numbers.juveniles[fate] > 0)) continue;
    const std::optional<double> P = OfFate(fate, errors, expected, n, k, testSums);
    if (!P) return std::nullopt;
    Prob[fate] = *P;
    sum[fate] = 1;
  }
  const std::array<double, 4> weights = FateWeights(expected.q, expected.r);
  const auto mixture = [&weights](const std::array<double, 4>& of) {
    return weights[RR] * of[RR] + weights[CR] * of[CR] + weights[RC] * of[RC] + weights[CC] * of[CC];
  };
  if (testSums && mixture(sum) != 0 && std::abs(mixture(sum) - 1) > 5e-7) return std::nullopt;
  return Checked(mixture(Prob));
}

/// See Calc_Probs_and_Theta.
std::optional<double> SpanningJudge::OfFate(HatchFate fate, const CountErrors& errors, const Expected& expected, int n,
                                            int k, bool testSums) {
  const bool eggsC = CorrelatedEggs(fate), juvsC = CorrelatedJuveniles(fate);
  const int Code = errors.eggs.Code(eggsC) == 2 || errors.juveniles.Code(juvsC) == 2 ? 2 : 1;
  const double ThetaE = eggsC ? expected.thetaEggs : errors.eggs.ThetaR;
  const double ThetaJ = juvsC ? expected.thetaJuvs : errors.juveniles.ThetaR;
  if (std::isnan(ThetaE) || std::isnan(ThetaJ)) return std::nullopt;
  const double EN = expected.numbers.EHatch(fate), EJ = expected.numbers.juveniles[fate];
  const double pJ = Divide(EJ, EN);
  const bool binomialEggs = n == 1 || Code == 1 || ThetaE <= 1e-6;
  const bool binomialJuvs = Code == 1 || ThetaJ <= 1e-6;
  if (!SumIsKnown(binomialEggs, n, EN / n, ThetaE) || !SumIsKnown(binomialJuvs, n, pJ, ThetaJ)) {
    const auto Pmf = std::span(Pmf_).first(static_cast<std::size_t>(n) + 1);
    const bool accurate = distributions_.Calc_Probs_and_Theta(Code, n, ThetaE, ThetaJ, EN, EJ, Pmf);
    if (!accurate || testSums) return std::nullopt;
    return Pmf[static_cast<std::size_t>(k)];
  }

  const std::vector<double>& hatched = HatchedOf(eggsC ? correlated_ : random_, binomialEggs, EN, ThetaE, n, k);
  const BinomialLogs juvs(pJ);
  double P = 0;
  for (int m = k; m <= n; ++m) {
    const double P1 = hatched[static_cast<std::size_t>(m)];
    if (m == 1 || binomialJuvs) {
      P += P1 * juvs.Probability(distributions_.LogChoices(m, k), m, k);
    } else if (m == 0) {
      P += P1 * 1.0;
    } else {
      double EJuvs = m * pJ;
      const BetaBinomialLogs overdispersed(logGamma_, m, EJuvs, ThetaJ);
      P += P1 * overdispersed.Probability(distributions_.LogChoices(m, k), m, k);
    }
  }
  return P;
}

const std::vector<double>& SpanningJudge::HatchedOf(Hatched& hatched, bool binomial, double EN, double theta, int n,
                                                    int k) {
  if (hatched.filled && hatched.binomial == binomial) return hatched.P;
  hatched.filled = true;
  hatched.binomial = binomial;
  const auto fill = [&](const auto& logs) {
    for (int m = k; m <= n; ++m)
      hatched.P[static_cast<std::size_t>(m)] = logs.Probability(distributions_.LogChoices(n, m), n, m);
  };
  if (binomial)
    fill(BinomialLogs(EN / n));
  else
    fill(BetaBinomialLogs(logGamma_, n, EN, theta));
  return hatched.P;
}

}  // namespace merlane
