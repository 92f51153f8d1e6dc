#pragma once

#include "base/elementary.h"
#include "likelihood/kept_gamma_ln.h"

namespace merlane {

// The logarithms from which the probabilities of a distribution's counts are made: the same for all counts, computed
// once. `logChoices` is ln of the number of ways to choose k of n. See ProbBinomial and ProbBetaBinomial
// (distributions.h), which these follow to the last bit.

/// The share at which a binomial distribution is kept, so that no count has probability 0.
inline double BinomialShare(double p) {
  if (p < 1e-6) p = 1e-6;
  if (p > 0.999999) p = 0.999999;
  return p;
}

struct BinomialLogs {
  explicit BinomialLogs(double p) : logP(Log(BinomialShare(p))), logQ(Log(1 - BinomialShare(p))) {}
  BinomialLogs(double logOfP, double logOfQ) : logP(logOfP), logQ(logOfQ) {}
  double LogProbability(double logChoices, int n, int k) const { return logChoices + k * logP + (n - k) * logQ; }
  double Probability(double logChoices, int n, int k) const { return Exp(LogProbability(logChoices, n, k)); }
  double logP, logQ;
};

/// The shapes a and b of a beta-binomial distribution of n individuals of which E are expected.
struct BetaBinomialShapes {
  /// E takes the value that it is kept at.
  BetaBinomialShapes(int n, double& E, double theta) {
    if (theta > 0.999999) theta = 0.999999;
    if (theta < 1e-6) theta = 1e-6;
    if (E / n > 0.999999) E = n * 0.999999;
    if (E / n < 1e-6) E = n * 1e-6;
    a = (E / n) * (1 - theta) / theta;
    if (a > 1e7) {
      a = 1e7;
    } else if (a < 0) {
      a = 0;
    }
    b = (n - E) * a / E;
  }
  double a = 0, b = 0;
};

struct BetaBinomialLogs {
  /// E takes the value that it is kept at.
  BetaBinomialLogs(KeptGammaLn& logGamma, int n, double& E, double theta) : logGamma_(logGamma) {
    const BetaBinomialShapes shapes(n, E, theta);
    a = shapes.a;
    b = shapes.b;
    logAB = logGamma_(a + b);
    logA = logGamma_(a);
    logB = logGamma_(b);
    logNAB = logGamma_(n + a + b);
  }
  double LogProbability(double logChoices, int n, int k) const {
    return logChoices + logAB - logA - logB + logGamma_(k + a) + logGamma_(n - k + b) - logNAB;
  }
  double Probability(double logChoices, int n, int k) const { return Exp(LogProbability(logChoices, n, k)); }
  double a = 0, b = 0, logAB = 0, logA = 0, logB = 0, logNAB = 0;

 private:
  KeptGammaLn& logGamma_;
};

}  // namespace merlane
