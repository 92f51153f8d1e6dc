#pragma once

#include <cstddef>
#include <functional>
#include <span>
#include <vector>

#include "likelihood/kept_gamma_ln.h"

namespace merlane {

/// The distributions of counts for a data set whose counts are known: ln Gamma of whole numbers is looked up, and what
/// is the same for all counts of a distribution is computed once. Survival and overdispersion are kept within 1e-6 and
/// 0.999999, so that no count has probability 0. The code of a distribution is 1 for the binomial, 2 for the
/// beta-binomial, which needs an overdispersion above 1e-6 and at least two individuals. Its ln Gamma are asked of the
/// caller's `logGamma`, since they recur from one distribution to the next.
class CountDistributions {
 public:
  /// For counts of up to `maxCount` individuals.
  explicit CountDistributions(int maxCount);

  /// Probability of k survivors of n, 1 to maxCount, of which E were expected. E takes the value that the beta-binomial
  /// distribution keeps it at: a caller that passes the entry of a table finds it there. `Var` is the variance of the
  /// count. RuntimeFailure when the probability is no number.
  double ProbVisit(KeptGammaLn& logGamma, int Code, double Theta, int n, int k, double& E, double& Var) const;
  /// ProbVisit for all counts: their probabilities to `Pmf`[0..n].
  void ProbVisits(KeptGammaLn& logGamma, int Code, double Theta, int n, double E, std::span<double> Pmf) const;
  /// Distribution of the count over an interval that spans hatch: of n eggs EN were expected to hatch, and EJ of those
  /// to be alive at the visit. The probability of k individuals goes to `Pmf`[k], k = 0..n. False when the sum of the
  /// probabilities is not 1 to six digits. One that takes long gives `turn` turns for the user interface on its way.
  bool Calc_Probs_and_Theta(KeptGammaLn& logGamma, int Code, int n, double ThetaE, double ThetaJ, double EN, double EJ,
                            std::span<double> Pmf, const std::function<void(long)>& turn = {}) const;

  /// Whether a distribution over hatch takes long: its time grows with the square of the count.
  static constexpr bool TakesLong(int n) { return n > 1000; }

  /// ln of the number of ways to choose k of n, both at most maxCount.
  double LogChoices(int n, int k) const {
    const auto at = [this](int i) { return logFactorial_[static_cast<std::size_t>(i)]; };
    return at(n) - at(k) - at(n - k);
  }

 private:
  std::vector<double> logFactorial_;  // GammaLn(i + 1), i = 0..maxCount
};

/// Variance of a count with the probabilities `Pmf`[0..n].
double PmfVariance(std::span<const double> Pmf);

}  // namespace merlane
