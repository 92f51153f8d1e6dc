#include "plain_distributions.h"

#include <algorithm>

#include "base/arithmetic.h"
#include "base/elementary.h"
#include "base/gamma_ln.h"

namespace merlane::plain {

double ProbBinomial(int n, int k, double p) {
  if (p < 1e-6) p = 1e-6;
  if (p > 0.999999) p = 0.999999;
  return Exp(GammaLn(n + 1) - GammaLn(k + 1) - GammaLn(n - k + 1) + k * Log(p) + (n - k) * Log(1 - p));
}

double ProbBetaBinomial(int n, int k, double& E, double theta) {
  if (theta > 0.999999) theta = 0.999999;
  if (theta < 1e-6) theta = 1e-6;
  if (E / n > 0.999999) E = n * 0.999999;
  if (E / n < 1e-6) E = n * 1e-6;
  double a = (E / n) * (1 - theta) / theta;
  if (a > 1e7) {
    a = 1e7;
  } else if (a < 0) {
    a = 0;
  }
  const double b = (n - E) * a / E;
  return Exp(GammaLn(n + 1) - GammaLn(k + 1) - GammaLn(n - k + 1) + GammaLn(a + b) - GammaLn(a) - GammaLn(b) +
             GammaLn(k + a) + GammaLn(n - k + b) - GammaLn(n + a + b));
}

double ProbVisit(int Code, double Theta, int n, int k, double& E, double& Var) {
  if (Theta == 1.0) Theta = 0.999999;
  const double p = E / n;
  // An absurd expectation may make it infinite: no objective rests on it, so it does not stop a minimisation.
  Var = n * p * (1 - p) * ((n - 1) * Theta + 1);
  if (n == 1 || Code == 1 || Theta <= 1e-6) return ProbBinomial(n, k, p);
  return ProbBetaBinomial(n, k, E, Theta);
}

bool Calc_Probs_and_Theta(int Code, int n, double ThetaE, double ThetaJ, double EN, double EJ, std::span<double> Pmf) {
  std::fill(Pmf.begin(), Pmf.end(), 0.0);
  for (int m = 0; m <= n; ++m) {  // alive at hatch
    double P1 = 1.0;
    const double pE = EN / n;
    if (n == 1 || Code == 1 || ThetaE <= 1e-6) {
      P1 = ProbBinomial(n, m, pE);
    } else if (n > 1) {
      double E = EN;
      P1 = ProbBetaBinomial(n, m, E, ThetaE);
    }
    for (int k = 0; k <= m; ++k) {  // alive at the visit
      double P2 = 1.0;
      const double pJ = Divide(EJ, EN);
      if (m == 1 || Code == 1 || ThetaJ <= 1e-6) {
        P2 = ProbBinomial(m, k, pJ);
      } else if (m >= 2) {  // of none hatched none is left, and P2 stays 1
        double E = m * pJ;
        P2 = ProbBetaBinomial(m, k, E, ThetaJ);
      }
      Pmf[static_cast<std::size_t>(k)] = Pmf[static_cast<std::size_t>(k)] + P1 * P2;
    }
  }
  double sum = 0;
  for (const double probability : Pmf) sum = sum + probability;
  return sum >= 0.999999 && sum <= 1.000001;
}

}  // namespace merlane::plain
