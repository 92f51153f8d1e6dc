#include "likelihood/count_distributions.h"

#include <gmock/gmock.h>

#include <cmath>

#include "base/elementary.h"
#include "base/gamma_ln.h"
#include "base/runtime_failure.h"
#include "plain_distributions.h"
#include "survival/same_bits.h"

namespace merlane {
namespace {

using plain::Calc_Probs_and_Theta;
using plain::ProbBetaBinomial;
using plain::ProbBinomial;
using plain::ProbVisit;

TEST(ProbBinomial, IsTheBinomialDistribution) {
  EXPECT_NEAR(ProbBinomial(5, 3, 0.4), 10 * 0.064 * 0.36, 1e-9);
  EXPECT_NEAR(ProbBinomial(1, 1, 0.25), 0.25, 1e-9);
}

TEST(ProbBinomial, UsesBoundsForCertaintiesSoThatNoCountHasProbability0) {
  for (int k = 0; k <= 4; ++k) {
    EXPECT_GT(ProbBinomial(4, k, 0), 0);
    EXPECT_EQ(ProbBinomial(4, k, 0), ProbBinomial(4, k, 1e-6));
    EXPECT_GT(ProbBinomial(4, k, 1), 0);
    EXPECT_EQ(ProbBinomial(4, k, 1), ProbBinomial(4, k, 0.999999));
  }
  EXPECT_NEAR(ProbBinomial(4, 4, 0), 1e-24, 1e-30);
}

TEST(ProbBinomial, OfNothingOutOfNothingIsNotQuite1) {
  EXPECT_EQ(ProbBinomial(0, 0, 0.5), Exp(-GammaLn(1)));
  EXPECT_NE(ProbBinomial(0, 0, 0.5), 1);
}

TEST(ProbBetaBinomial, IsTheBetaBinomialDistribution) {
  const double theta = 0.2;
  double E = 3;
  const double a = (3.0 / 5) * (1 - theta) / theta, b = 2 * a / 3;
  const auto beta = [](double x, double y) { return std::tgamma(x) * std::tgamma(y) / std::tgamma(x + y); };
  EXPECT_NEAR(ProbBetaBinomial(5, 2, E, theta), 10 * beta(2 + a, 3 + b) / beta(a, b), 1e-8);
  EXPECT_EQ(E, 3);
}

TEST(ProbBetaBinomial, KeepsTheExpectedCountWithinItsBoundsAndLeavesItThere) {
  double E = 4;
  ProbBetaBinomial(4, 4, E, 0.3);
  EXPECT_EQ(E, 4 * 0.999999);
  E = 0;
  EXPECT_GT(ProbBetaBinomial(4, 0, E, 0.3), 0.99);
  EXPECT_EQ(E, 4 * 1e-6);
}

TEST(ProbBetaBinomial, KeepsTheOverdispersionWithinItsBounds) {
  double E = 2.5, sameE = 2.5;
  EXPECT_EQ(ProbBetaBinomial(4, 3, E, 7.0), ProbBetaBinomial(4, 3, sameE, 0.999999));
  EXPECT_EQ(ProbBetaBinomial(4, 3, E, 0.0), ProbBetaBinomial(4, 3, sameE, 1e-6));
}

TEST(ProbVisit, UsesTheBinomialForASingleIndividualForCode1AndWithoutOverdispersion) {
  double E = 0.7, Var = 0;
  EXPECT_EQ(ProbVisit(2, 0.4, 1, 1, E, Var), ProbBinomial(1, 1, 0.7));
  E = 2.8;
  EXPECT_EQ(ProbVisit(1, 0.4, 4, 3, E, Var), ProbBinomial(4, 3, 2.8 / 4));
  EXPECT_EQ(ProbVisit(2, 1e-6, 4, 3, E, Var), ProbBinomial(4, 3, 2.8 / 4));
}

TEST(ProbVisit, UsesTheBetaBinomialForCode2WithOverdispersion) {
  double E = 2.8, sameE = 2.8, Var = 0;
  EXPECT_EQ(ProbVisit(2, 0.3, 4, 3, E, Var), ProbBetaBinomial(4, 3, sameE, 0.3));
  const double p = 2.8 / 4;
  EXPECT_EQ(Var, 4 * p * (1 - p) * ((4 - 1) * 0.3 + 1));
}

TEST(ProbVisit, WithAnOverdispersionOf1UsesTheBoundForTheVarianceAsWell) {
  double E = 2, Var = 0, sameE = 2, sameVar = 0;
  EXPECT_EQ(ProbVisit(2, 1.0, 4, 1, E, Var), ProbVisit(2, 0.999999, 4, 1, sameE, sameVar));
  EXPECT_EQ(Var, 4 * 0.5 * 0.5 * (3 * 0.999999 + 1));
}

TEST(ProbVisit, AnAbsurdExpectationMakesTheVarianceInfiniteAndDoesNotFail) {
  double E = 1e300, Var = 0;
  EXPECT_EQ(ProbVisit(1, 0, 4, 2, E, Var), ProbBinomial(4, 2, 0.999999));
  EXPECT_TRUE(std::isinf(Var));
}

TEST(ProbVisit, LeavesAnOverdispersionAbove1InTheVariance) {
  double E = 2, Var = 0;
  ProbVisit(2, 3.0, 4, 1, E, Var);
  EXPECT_EQ(Var, 4 * 0.5 * 0.5 * (3 * 3.0 + 1));
}

TEST(ProbVisit, WithAnExpectedCountOfAllLeavesTheClampedNumberInTheTable) {
  double entry = 5, Var = 0;
  ProbVisit(2, 0.2, 5, 5, entry, Var);
  EXPECT_EQ(entry, 5 * 0.999999);
  EXPECT_EQ(Var, 0);  // from the number before it was kept within its bounds
}

TEST(CalcProbsAndTheta, IsTheConvolutionOfTwoBinomials) {
  std::vector<double> Pmf(4, 99);
  EXPECT_TRUE(Calc_Probs_and_Theta(1, 3, 0, 0, 2.4, 1.8, Pmf));
  // Surviving twice, with 0.8 and 0.75, is binomial with 0.6.
  for (int k = 0; k <= 3; ++k) EXPECT_NEAR(Pmf[static_cast<std::size_t>(k)], ProbBinomial(3, k, 0.6), 1e-9);
  EXPECT_NEAR(PmfVariance(Pmf), 3 * 0.6 * 0.4, 1e-8);
}

TEST(CalcProbsAndTheta, TakesNoneHatchedForNoneAliveWithOverdispersion) {
  std::vector<double> Pmf(3, 0);
  EXPECT_TRUE(Calc_Probs_and_Theta(2, 2, 0.3, 0.4, 1.2, 0.6, Pmf));
  const double pJ = 0.6 / 1.2;
  double expected = 0;
  double E = 1.2;
  expected = expected + ProbBetaBinomial(2, 0, E, 0.3) * 1.0;
  E = 1.2;
  expected = expected + ProbBetaBinomial(2, 1, E, 0.3) * ProbBinomial(1, 0, pJ);
  E = 1.2;
  double EJ = 2 * pJ;
  expected = expected + ProbBetaBinomial(2, 2, E, 0.3) * ProbBetaBinomial(2, 0, EJ, 0.4);
  EXPECT_EQ(Pmf[0], expected);
}

// The sum is 1 whatever is expected: shares are kept within 1e-6 and 0.999999, so that both distributions are proper
// ones, and an overdispersion within the same bounds keeps the arguments of ln Gamma between 1e-12 and 1e6, where the
// rounding of their sum stays below 1e-8 of each probability that matters. So no model can be told of poor accuracy
// here.
TEST(CalcProbsAndTheta, SumsTo1AtEveryExtreme) {
  constexpr double tiny = 5e-324, huge = 1e300;
  for (const int n : {1, 2, 3, 17, 60})
    for (const int code : {1, 2})
      for (const double thetaE : {0.0, 1.0000001e-6, 0.3, 0.999999, huge})
        for (const double thetaJ : {0.0, 1.0000001e-6, 0.3, 0.999999, huge})
          for (const double EN : {tiny, 1e-6, 0.4 * n, 1.0 * n, huge, -3.0})
            for (const double EJ : {tiny, 1e-6, 0.3 * n, 1.0 * n}) {
              if (EJ / EN > 1e307) continue;  // no number
              std::vector<double> Pmf(static_cast<std::size_t>(n) + 1);
              EXPECT_TRUE(Calc_Probs_and_Theta(code, n, thetaE, thetaJ, EN, EJ, Pmf))
                  << n << ' ' << code << ' ' << thetaE << ' ' << thetaJ << ' ' << EN << ' ' << EJ;
            }
}

TEST(PmfVariance, IsTheVarianceOfTheCount) {
  const double Pmf[] = {0.5, 0.0, 0.5};
  EXPECT_EQ(PmfVariance(Pmf), 1);
}

// The faster distributions of a data set give the bits of those above.

TEST(CountDistributions, HaveTheBitsOfTheirDefinitions) {
  KeptGammaLn logGamma;
  const CountDistributions fast(14);
  for (int n = 1; n <= 14; ++n)
    for (int k = 0; k <= n; ++k)
      for (const int code : {1, 2})
        for (const double theta : {0.0, 1e-6, 0.01, 0.4, 1.0, 5.0})
          for (const double share : {-0.2, 0.0, 1e-7, 0.3, 0.95, 1.0, 1.4}) {
            double E = share * n, plainE = share * n, Var = 0, plainVar = 0;
            EXPECT_PRED2(SameBits, fast.ProbVisit(logGamma, code, theta, n, k, E, Var),
                         ProbVisit(code, theta, n, k, plainE, plainVar));
            EXPECT_PRED2(SameBits, E, plainE);
            EXPECT_PRED2(SameBits, Var, plainVar);
          }
}

TEST(CountDistributions, HaveTheBitsOfTheirDefinitionsOverHatch) {
  KeptGammaLn logGamma;
  const CountDistributions fast(12);
  for (int n = 1; n <= 12; ++n)
    for (const int code : {1, 2})
      for (const double thetaE : {0.0, 0.3, 1.5})
        for (const double thetaJ : {0.0, 0.2, 1.5})
          for (const double shareE : {0.4, 1.0})
            for (const double shareJ : {1e-9, 0.7, 1.0}) {
              const auto size = static_cast<std::size_t>(n) + 1;
              std::vector<double> Pmf(size, 7), plainPmf(size, 8);
              const double EN = shareE * n, EJ = EN * shareJ;
              EXPECT_EQ(fast.Calc_Probs_and_Theta(logGamma, code, n, thetaE, thetaJ, EN, EJ, Pmf),
                        Calc_Probs_and_Theta(code, n, thetaE, thetaJ, EN, EJ, plainPmf));
              EXPECT_TRUE(std::equal(Pmf.begin(), Pmf.end(), plainPmf.begin(), SameBits));
            }
}

TEST(CountDistributions, FailAsTheirDefinitionsForACountThatIsMissing) {
  KeptGammaLn logGamma;
  double E = 2, Var = 0;
  EXPECT_THROW(ProbVisit(1, 0, 4, -999, E, Var), RuntimeFailure);
  EXPECT_THROW(CountDistributions(4).ProbVisit(logGamma, 1, 0, 4, -999, E, Var), RuntimeFailure);
}

TEST(CountDistributions, HaveTheBitsOfTheirDefinitionsForACountThatRisesByOneAndFailForMore) {
  KeptGammaLn logGamma;
  const CountDistributions fast(8);
  double E = 2.5, plainE = 2.5, Var = 0, plainVar = 0;
  EXPECT_PRED2(SameBits, fast.ProbVisit(logGamma, 1, 0, 4, 5, E, Var), ProbVisit(1, 0, 4, 5, plainE, plainVar));
  EXPECT_THROW(fast.ProbVisit(logGamma, 1, 0, 4, 6, E, Var), RuntimeFailure);
  EXPECT_THROW(ProbVisit(1, 0, 4, 6, E, Var), RuntimeFailure);
}

TEST(CountDistributions, FailWhereNoneIsExpectedAtHatchButSomeBehindIt) {
  KeptGammaLn logGamma;
  std::vector<double> Pmf(3);
  EXPECT_THROW(Calc_Probs_and_Theta(1, 2, 0, 0, 0, 1, Pmf), RuntimeFailure);
  EXPECT_THROW(CountDistributions(2).Calc_Probs_and_Theta(logGamma, 1, 2, 0, 0, 0, 1, Pmf), RuntimeFailure);
}

}  // namespace
}  // namespace merlane
