#pragma once

#include <span>

namespace merlane::plain {

// The distributions of counts, each computed plainly from its formula: what the faster ones of the program are held
// against.

/// Probability of k survivors of n under the binomial distribution with survival p, which is kept within 1e-6 and
/// 0.999999 so that no count has probability 0.
double ProbBinomial(int n, int k, double p);

/// Probability of k survivors of n under the beta-binomial distribution with the expected count E and the
/// overdispersion theta, both kept within 1e-6 and 0.999999 (E as a share of n). E itself takes the value it was kept
/// at: a caller that passes the entry of a table finds it there.
double ProbBetaBinomial(int n, int k, double& E, double theta);

/// Probability of k survivors of n >= 1, of which E were expected. The code is 1 for the binomial distribution, 2 for
/// the beta-binomial, which needs an overdispersion above 1e-6 and at least two individuals. `Var` is the variance of
/// the count. RuntimeFailure when that is no number.
double ProbVisit(int Code, double Theta, int n, int k, double& E, double& Var);

/// Distribution of the count over an interval that spans hatch: of n eggs EN were expected to hatch, and EJ of those to
/// be alive at the visit. The probability of k individuals goes to `Pmf`[k], k = 0..n. False when the sum of the
/// probabilities is not 1 to six digits.
bool Calc_Probs_and_Theta(int Code, int n, double ThetaE, double ThetaJ, double EN, double EJ, std::span<double> Pmf);

}  // namespace merlane::plain
