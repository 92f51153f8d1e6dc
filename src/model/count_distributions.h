#pragma once

#include <cstddef>
#include <span>
#include <vector>

namespace merlane {

/// The distributions of counts for a data set whose counts are known: ln Gamma of whole numbers is looked up, and what
/// is the same for all counts of a distribution is computed once. The results have the very bits of the routines of the
/// same names in distributions.h, which define them.
class CountDistributions {
 public:
  /// For counts of up to `maxCount` individuals.
  explicit CountDistributions(int maxCount);

  /// n at most maxCount.
  double ProbVisit(int Code, double Theta, int n, int k, double& E, double& Var) const;
  /// ProbVisit for all counts: their probabilities to `Pmf`[0..n].
  void ProbVisits(int Code, double Theta, int n, double E, std::span<double> Pmf) const;
  bool Calc_Probs_and_Theta(int Code, int n, double ThetaE, double ThetaJ, double EN, double EJ,
                            std::span<double> Pmf) const;

 private:
  /// ln of the number of ways to choose k of n.
  double LogChoices(int n, int k) const {
    const auto at = [this](int i) { return logFactorial_[static_cast<std::size_t>(i)]; };
    return at(n) - at(k) - at(n - k);
  }
  double Binomial(int n, int k, double p) const;
  double BetaBinomial(int n, int k, double& E, double theta) const;

  std::vector<double> logFactorial_;  // GammaLn(i + 1), i = 0..maxCount
};

}  // namespace merlane
