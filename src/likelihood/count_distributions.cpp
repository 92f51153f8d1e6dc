#include "likelihood/count_distributions.h"

#include <algorithm>
#include <optional>

#include "base/arithmetic.h"
#include "base/gamma_ln.h"
#include "likelihood/count_logs.h"

namespace merlane {

CountDistributions::CountDistributions(int maxCount) {
  for (int i = 0; i <= maxCount; ++i) logFactorial_.push_back(GammaLn(i + 1));
}

double CountDistributions::ProbVisit(KeptGammaLn& logGamma, int Code, double Theta, int n, int k, double& E,
                                     double& Var) const {
  if (Theta == 1.0) Theta = 0.999999;
  const double p = E / n;
  // An absurd expectation may make it infinite: no objective rests on it, so it does not stop a minimisation.
  Var = n * p * (1 - p) * ((n - 1) * Theta + 1);
  const bool possible = k >= 0 && k <= n;  // odd data have counts that rise or are missing
  const double logChoices = possible ? LogChoices(n, k) : GammaLn(n + 1) - GammaLn(k + 1) - GammaLn(n - k + 1);
  if (n == 1 || Code == 1 || Theta <= 1e-6) return BinomialLogs(p).Probability(logChoices, n, k);
  return BetaBinomialLogs(logGamma, n, E, Theta).Probability(logChoices, n, k);
}

void CountDistributions::ProbVisits(KeptGammaLn& logGamma, int Code, double Theta, int n, double E,
                                    std::span<double> Pmf) const {
  const auto fill = [&](const auto& logs) {
    for (int k = 0; k <= n; ++k) Pmf[static_cast<std::size_t>(k)] = logs.Probability(LogChoices(n, k), n, k);
  };
  if (n == 1 || Code == 1 || Theta <= 1e-6)
    fill(BinomialLogs(E / n));
  else
    fill(BetaBinomialLogs(logGamma, n, E, Theta));
}

bool CountDistributions::Calc_Probs_and_Theta(KeptGammaLn& logGamma, int Code, int n, double ThetaE, double ThetaJ,
                                              double EN, double EJ, std::span<double> Pmf,
                                              const std::function<void(long)>& turn) const {
  std::fill(Pmf.begin(), Pmf.end(), 0.0);
  const double pE = EN / n;
  const double pJ = Divide(EJ, EN);
  const bool binomialEggs = n == 1 || Code == 1 || ThetaE <= 1e-6;
  const bool binomialJuvs = Code == 1 || ThetaJ <= 1e-6;
  double E = EN;
  const BinomialLogs eggs(pE);
  const BinomialLogs juvs(pJ);
  std::optional<BetaBinomialLogs> overdispersedEggs;
  if (!binomialEggs) overdispersedEggs.emplace(logGamma, n, E, ThetaE);
  for (int m = 0; m <= n; ++m) {  // alive at hatch
    if (turn && TakesLong(n)) turn(1);
    const double P1 = overdispersedEggs ? overdispersedEggs->Probability(LogChoices(n, m), n, m)
                                        : eggs.Probability(LogChoices(n, m), n, m);
    if (m == 1 || binomialJuvs) {
      for (int k = 0; k <= m; ++k) Pmf[static_cast<std::size_t>(k)] += P1 * juvs.Probability(LogChoices(m, k), m, k);
    } else if (m == 0) {
      Pmf[0] += P1 * 1.0;
    } else {
      double EJuvs = m * pJ;
      const BetaBinomialLogs overdispersedJuvs(logGamma, m, EJuvs, ThetaJ);
      for (int k = 0; k <= m; ++k)
        Pmf[static_cast<std::size_t>(k)] += P1 * overdispersedJuvs.Probability(LogChoices(m, k), m, k);
    }
  }
  double sum = 0;
  for (const double probability : Pmf) sum = sum + probability;
  return sum >= 0.999999 && sum <= 1.000001;
}

double PmfVariance(std::span<const double> Pmf) {
  double mean = 0;
  double square = 0;
  int k = 0;
  for (const double probability : Pmf) {
    square = square + k * k * probability;
    mean = mean + k * probability;
    ++k;
  }
  return square - mean * mean;
}

}  // namespace merlane
