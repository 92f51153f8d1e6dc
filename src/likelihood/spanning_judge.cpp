#include "likelihood/spanning_judge.h"

#include <algorithm>
#include <cmath>

#include "base/arithmetic.h"
#include "likelihood/count_logs.h"

namespace merlane {
namespace {

/// The error of ln Gamma is some 1e-10 between these bounds; it grows with large shapes, and with very small ones,
/// where it is reflected.
bool SumIsKnown(bool binomial, double p, double theta) {
  return binomial || (p >= 1e-4 && p <= 0.9999 && theta >= 1e-4 && theta <= 0.999);
}

}  // namespace

bool FateDistributions::SumIsKnown(int n) const {
  return !CountDistributions::TakesLong(n) && merlane::SumIsKnown(binomialEggs, EN / n, ThetaE) &&
         merlane::SumIsKnown(binomialJuvs, pJ, ThetaJ);
}

/// See Calc_Probs_and_Theta.
std::optional<FateDistributions> SpanningJudge::Expected::Of(HatchFate fate, const CountErrors& errors, int n) const {
  const FateErrors scatter = ErrorsOf(
      fate, errors, [this] { return thetaEggs; }, [this] { return thetaJuvs; });
  FateDistributions of;
  of.ThetaE = scatter.ThetaE;
  of.ThetaJ = scatter.ThetaJ;
  if (std::isnan(of.ThetaE) || std::isnan(of.ThetaJ)) return std::nullopt;
  of.EN = numbers.EHatch(fate);
  of.pJ = Divide(numbers.juveniles[fate], of.EN);
  of.binomialEggs = n == 1 || !scatter.overdispersed || of.ThetaE <= 1e-6;
  of.binomialJuvs = !scatter.overdispersed || of.ThetaJ <= 1e-6;
  return of;
}

SpanningJudge::SpanningJudge(const CountDistributions& distributions, int maxCount)
    : distributions_(distributions), Pmf_(static_cast<std::size_t>(maxCount) + 1) {
  random_.P = correlated_.P = Pmf_;
  ofFate_.fill(Pmf_);
}

bool SpanningJudge::FillProbabilities(const CountErrors& errors, const Expected& expected, int n,
                                      std::span<const std::int16_t> counts, bool testSums, std::span<double> P) {
  random_.filled = correlated_.filled = false;
  std::array<double, 4> sum = {};
  for (const HatchFate fate : HatchFates) {
    const bool occurs = Occurs(fate, errors, expected.numbers);
    std::fill_n(ofFate_[fate].begin(), counts.size(), occurs ? 0.0 : 1.0);
    if (!occurs || !(expected.numbers.juveniles[fate] > 0)) continue;
    if (!FillOfFate(fate, errors, expected, n, counts, testSums)) return false;
    sum[fate] = 1;
  }
  const std::array<double, 4> weights = FateWeights(expected.q, expected.r);
  const auto mixture = [&weights](double PRR, double PCR, double PRC, double PCC) {
    return weights[RR] * PRR + weights[CR] * PCR + weights[RC] * PRC + weights[CC] * PCC;
  };
  const double whole = mixture(sum[RR], sum[CR], sum[RC], sum[CC]);
  if (testSums && whole != 0 && std::abs(whole - 1) > 5e-7) return false;
  for (std::size_t i = 0; i < counts.size(); ++i)
    P[i] = mixture(ofFate_[RR][i], ofFate_[CR][i], ofFate_[RC][i], ofFate_[CC][i]);
  return true;
}

bool SpanningJudge::FillOfFate(HatchFate fate, const CountErrors& errors, const Expected& expected, int n,
                               std::span<const std::int16_t> counts, bool testSums) {
  const std::optional<FateDistributions> by = expected.Of(fate, errors, n);
  if (!by) return false;
  std::vector<double>& P = ofFate_[fate];
  if (!by->SumIsKnown(n)) {
    const bool overdispersed = !by->binomialEggs || !by->binomialJuvs;
    const auto Pmf = std::span(Pmf_).first(static_cast<std::size_t>(n) + 1);
    const bool accurate = distributions_.Calc_Probs_and_Theta(
        logGamma_, overdispersed ? 2 : 1, n, by->ThetaE, by->ThetaJ, by->EN, expected.numbers.juveniles[fate], Pmf);
    for (std::size_t i = 0; i < counts.size(); ++i) P[i] = Pmf[static_cast<std::size_t>(counts[i])];
    return accurate && !testSums;
  }

  const int least = counts.front();
  const std::vector<double>& hatched = HatchedOf(CorrelatedEggs(fate) ? correlated_ : random_, *by, n, least);
  const BinomialLogs binomial(by->pJ);
  for (int m = least; m <= n; ++m) {
    const double P1 = hatched[static_cast<std::size_t>(m)];
    const auto add = [&](const auto& juvs) {
      for (std::size_t i = 0; i < counts.size() && counts[i] <= m; ++i)
        P[i] += P1 * juvs.Probability(distributions_.LogChoices(m, counts[i]), m, counts[i]);
    };
    if (m == 1 || by->binomialJuvs) {
      add(binomial);
    } else if (m == 0) {
      P[0] += P1 * 1.0;
    } else {
      double EJuvs = m * by->pJ;
      add(BetaBinomialLogs(logGamma_, m, EJuvs, by->ThetaJ));
    }
  }
  return true;
}

const std::vector<double>& SpanningJudge::HatchedOf(Hatched& hatched, const FateDistributions& by, int n, int least) {
  if (hatched.filled && hatched.binomial == by.binomialEggs) return hatched.P;
  hatched.filled = true;
  hatched.binomial = by.binomialEggs;
  const auto fill = [&](const auto& logs) {
    for (int m = least; m <= n; ++m)
      hatched.P[static_cast<std::size_t>(m)] = logs.Probability(distributions_.LogChoices(n, m), n, m);
  };
  double EN = by.EN;
  if (by.binomialEggs)
    fill(BinomialLogs(EN / n));
  else
    fill(BetaBinomialLogs(logGamma_, n, EN, by.ThetaE));
  return hatched.P;
}

}  // namespace merlane
