#include "priors/distributions.h"

#include <gtest/gtest.h>

#include <cmath>

#include "base/runtime_failure.h"
#include "priors/set_prior.h"

namespace merlane::test {
namespace {

/// One parameter with a prior.
class OnePrior {
 public:
  explicit OnePrior(const std::string& code, double mean = PriorUnset, double sd = PriorUnset,
                    const PriorTerm& secondMean = PriorUnused, const PriorTerm& secondSD = PriorUnused) {
    priors = test::PriorsOf(1, code, mean, sd, secondMean, secondSD);
  }
  /// The total at x under a constant of 1.
  double At(double x) { return EvaluatePrior(Array1<double>{x}, 1, priors); }
  double NegLnL() const { return priors.PriorNegLnL(1); }

  Priors priors;
};

TEST(Priors, ResetGivesEveryParameterTheUnboundedUniform) {
  Priors priors;
  priors.Reset(3);
  for (int i = 1; i <= 3; ++i) {
    EXPECT_EQ(priors.PriorCode(i), "U");
    EXPECT_EQ(priors.PriorFirstMean(i), PriorUnset);
    EXPECT_EQ(priors.PriorFirstSD(i), PriorUnset);
    EXPECT_EQ(priors.PriorSecondMean(i), PriorTerm("Unused"));
    EXPECT_EQ(priors.PriorSecondSD(i), PriorTerm("Unused"));
  }
}

TEST(Priors, InWordsAreThoseThatAreSetWithTheirNumbersInFull) {
  Priors priors;
  priors.Reset(3);
  EXPECT_EQ(priors.InWords(), "");
  SetPrior(priors, 1, "N", 0.1, 1.0 / 3);
  SetPrior(priors, 3, "T", -1, 0.5, "2.5", 0.25);
  EXPECT_EQ(priors.InWords(), "1: N 0.1 0.3333333333333333 Unused Unused, 3: T -1 0.5 2.5 0.25");
}

TEST(Priors, AreOfferedInTheirOrder) {
  std::string codes;
  for (const PriorDistribution& distribution : PriorDistributions) codes += distribution.code;
  EXPECT_EQ(codes, "UTNEGBSDL");
  EXPECT_STREQ(PriorDistributions[0].name, "Uniform - unbounded");
  EXPECT_STREQ(PriorDistributions[8].name, "Ln-normal");
}

TEST(Priors, ASecondTermIsUnsetAsANumberAndAsTheTextOfOne) {
  EXPECT_TRUE(IsUnset(PriorUnset));
  EXPECT_TRUE(IsUnset("1.000E-100"));
  EXPECT_FALSE(IsUnset(1.0));
  EXPECT_FALSE(IsUnset("1"));
  EXPECT_FALSE(IsUnset(""));
  EXPECT_FALSE(IsUnset(PriorUnused));
}

TEST(Priors, ACodeThatIsNoneOfTheNineHasNoName) {
  EXPECT_EQ(PriorDistName("D"), "Right-side cliff");
  EXPECT_EQ(PriorDistName("d"), "");
}

TEST(EvaluatePrior, AllCodesUniformUnboundedGiveZero) {
  Priors priors;
  priors.Reset(4);
  priors.PriorNegLnL.Fill(9);
  EXPECT_EQ(EvaluatePrior(Array1<double>{-5, 0, 1e300, 1}, 2, priors), 0);
  EXPECT_EQ(priors.PriorNegLnL, (Array1<double>{0, 0, 0, 0}));
}

TEST(EvaluatePrior, ACodeThatIsNoneOfTheNineContributesNothing) {
  OnePrior t("X", 1, 1);
  EXPECT_EQ(t.At(5), 0);
  t.priors.PriorCode(1) = "n";
  EXPECT_EQ(t.At(5), 0);
}

TEST(EvaluatePrior, TheConstantMultipliesTheTotalAndLeavesTheSingleTerms) {
  OnePrior t("N", 10, 2);
  EXPECT_EQ(EvaluatePrior(Array1<double>{14}, 1, t.priors), 2);
  EXPECT_EQ(EvaluatePrior(Array1<double>{14}, 0.5, t.priors), 1);
  EXPECT_EQ(t.NegLnL(), 2);
  EXPECT_EQ(EvaluatePrior(Array1<double>{14}, 0, t.priors), 0) << "until a command has set the constant";
  EXPECT_EQ(t.NegLnL(), 2);
}

TEST(EvaluatePrior, SumsOverAllParameters) {
  OnePrior t("N");
  t.priors.Reset(3);
  test::SetPrior(t.priors, 1, "N", 0, 1);
  test::SetPrior(t.priors, 3, "E", 2, 2);
  EXPECT_EQ(EvaluatePrior(Array1<double>{3, 99, 5}, 2, t.priors), 2 * (4.5 + 10));
}

TEST(NormalPrior, IsZeroAtItsMean) {
  OnePrior t("N", 7, 0.5);
  EXPECT_EQ(t.At(7), 0);
  EXPECT_EQ(t.At(8), 2);
}

TEST(NormalPrior, ADeviationOfZeroIsARuntimeFailure) {
  OnePrior t("N", 7, 0);
  EXPECT_THROW(t.At(8), RuntimeFailure);
  EXPECT_THROW(t.At(7), RuntimeFailure);
}

TEST(GammaPrior, IsZeroAtItsMode) {
  // Mean 6, deviation 3: a = 4, b = 1.5, mode 4.5; elsewhere x/b - 3 ln x less the same at the mode.
  OnePrior t("G", 6, 3);
  EXPECT_NEAR(t.At(4.5), 0, 1e-15);
  EXPECT_NEAR(t.At(9), (9 / 1.5 - 3 * std::log(9.0)) - (3 - 3 * std::log(4.5)), 1e-14);
}

TEST(GammaPrior, ANegativeMeanHasTheScaleOfItsMagnitude) {
  OnePrior negative("G", -6, 3), positive("G", 6, 3);
  EXPECT_EQ(negative.At(2.5), positive.At(2.5));
}

TEST(GammaPrior, OutsideItsDomainThePenaltyIsShownButNotAdded) {
  OnePrior t("G", 6, 3);
  EXPECT_EQ(t.At(5e-07), 0);
  EXPECT_DOUBLE_EQ(t.NegLnL(), 25e6);
}

TEST(GammaPrior, ADeviationNotBelowTheMeanIsARuntimeFailure) {
  OnePrior t("G", 3, 3);
  EXPECT_THROW(t.At(1), RuntimeFailure);
}

TEST(ExponentialPrior, MultipliesByTheFirstTermAsItStands) {
  OnePrior t("E", 0.25, 0.25);
  EXPECT_EQ(t.At(8), 2);
  t.priors.PriorFirstMean(1) = -0.25;
  EXPECT_EQ(t.At(8), 2);
}

TEST(ExponentialPrior, AtZeroAndBelowNothingIsAdded) {
  OnePrior t("E", 0.25, 0.25);
  EXPECT_EQ(t.At(0), 0);
  EXPECT_EQ(t.NegLnL(), 0);
  EXPECT_EQ(t.At(-1), 0);
  EXPECT_EQ(t.NegLnL(), 1e20);
}

TEST(LnNormalPrior, IsZeroAtItsMode) {
  // Mean e, variance such that sigma^2 = ln(s^2 + m^2) - 2 ln m = 1: mode exp(1/2 - 1).
  const double m = std::exp(1.0);
  OnePrior t("L", m, m * std::sqrt(m - 1));
  EXPECT_NEAR(t.At(std::exp(-0.5)), 0, 1e-14);
  // One sigma above mu = 1/2: ln x = 1.5, so 1.5 + 0.5, less the value -0.5 + 0.5 at the mode.
  EXPECT_NEAR(t.At(std::exp(1.5)), 2, 1e-14);
}

TEST(LnNormalPrior, OutsideItsDomainThePenaltyIsShownButNotAdded) {
  OnePrior t("L", 1, 1);
  EXPECT_EQ(t.At(-1), 0);
  EXPECT_DOUBLE_EQ(t.NegLnL(), (-1 - 1e-06) * (-1 - 1e-06) * 1e20);
}

TEST(LnNormalPrior, AMeanThatIsNotPositiveIsARuntimeFailure) {
  OnePrior t("L", 0, 1);
  EXPECT_THROW(t.At(1), RuntimeFailure);
}

TEST(BetaPrior, IsZeroAtItsMode) {
  // Mean 0.4, variance 0.04: a = 2, b = 3, mode 1/3.
  OnePrior t("B", 0.4, 0.2);
  EXPECT_NEAR(t.At(1.0 / 3), 0, 1e-14);
  EXPECT_NEAR(t.At(0.5), -std::log(0.5) - 2 * std::log(0.5) + std::log(1.0 / 3) + 2 * std::log(2.0 / 3), 1e-13);
}

TEST(BetaPrior, OutsideItsDomainThePenaltyIsShownButNotAdded) {
  OnePrior t("B", 0.4, 0.2);
  EXPECT_EQ(t.At(-0.5), 0);
  EXPECT_DOUBLE_EQ(t.NegLnL(), (-0.5 - 1e-06) * (-0.5 - 1e-06) * 1e20);
  EXPECT_EQ(t.At(1), 0);
  EXPECT_DOUBLE_EQ(t.NegLnL(), (1 - 0.999999) * (1 - 0.999999) * 1e20);
}

TEST(BetaPrior, ClampsItsModeIntoTheDomain) {
  // Mean 0.05, variance 0.01: a = 0.1875, b = 3.5625, so that the mode would be 0.8125 / -1.75.
  OnePrior t("B", 0.05, 0.1);
  EXPECT_NEAR(t.At(1e-06), 0, 1e-12);
  EXPECT_GT(t.At(0.5), 0);
}

TEST(BetaPrior, ShapesThatAddUpToTwoAreARuntimeFailure) {
  // Mean 1/4, variance 1/16: a = 1/2, b = 3/2, all exact.
  EXPECT_THROW(OnePrior("B", 0.25, 0.25).At(0.3), RuntimeFailure);
}

TEST(LeftCliff, AtItsFootHalfOfTheLikelihoodIsLost) {
  OnePrior t("S", 0, 1);
  EXPECT_NEAR(t.At(0), std::log(2.0), 1e-7);
  EXPECT_NEAR(t.At(10), 0, 1e-15);
}

TEST(LeftCliff, BeyondUnderflowThePenaltyIsAdded) {
  OnePrior t("S", 0, 1);
  EXPECT_NEAR(t.At(-30) / 454.3212439, 1, 1e-6) << "-ln Phi(-30) is still a number";
  EXPECT_EQ(t.At(-40), 1600e20);
}

TEST(RightCliff, BeyondEightDeviationsThePenaltyIsAddedInFull) {
  OnePrior t("D", 0, 1);
  EXPECT_EQ(t.At(9), 81e20);
  EXPECT_NEAR(t.At(-9), 0, 1e-15);
  EXPECT_NEAR(t.At(0), std::log(2.0), 1e-7);
}

TEST(RightCliff, WithADeviationOfZeroContributesNothing) {
  OnePrior t("D", 5, 0);
  EXPECT_EQ(t.At(6), 0);
  EXPECT_EQ(t.NegLnL(), 0);
  EXPECT_EQ(t.At(4), 0);
}

TEST(RightCliff, WithADeviationOfZeroIsJudgedByWhatAnEarlierParameterLeft) {
  OnePrior t("U");
  t.priors.Reset(2);
  test::SetPrior(t.priors, 1, "S", 0, 1);
  test::SetPrior(t.priors, 2, "D", 5, 0);
  EvaluatePrior(Array1<double>{0, 6}, 1, t.priors);
  EXPECT_NEAR(t.priors.PriorNegLnL(2), std::log(2.0), 1e-7);
  EvaluatePrior(Array1<double>{0, 6}, 1, t.priors);
  EXPECT_NEAR(t.priors.PriorNegLnL(2), std::log(2.0), 1e-7);
}

TEST(LeftCliff, WithADeviationOfZeroIsARuntimeFailureUnlessAnEarlierParameterLeftAProbability) {
  OnePrior t("S", 5, 0);
  EXPECT_THROW(t.At(4), RuntimeFailure);
  EXPECT_THROW(t.At(6), RuntimeFailure);
  t.priors.Reset(2);
  test::SetPrior(t.priors, 1, "S", 0, 1);
  test::SetPrior(t.priors, 2, "S", 5, 0);
  EvaluatePrior(Array1<double>{0, 4}, 1, t.priors);
  EXPECT_NEAR(t.priors.PriorNegLnL(2), std::log(2.0), 1e-7);
}

TEST(BoundedPrior, IsAboutZeroBetweenFeetThatLieFarApart) {
  OnePrior t("T", 0, 1, "100", "2");
  EXPECT_NEAR(t.At(50), 0, 1e-15);
}

TEST(BoundedPrior, PastAFootByOneDeviationItIsAboutOnePointEightFour) {
  OnePrior t("T", 0, 1, "100", "2");
  EXPECT_NEAR(t.At(-1), 1.841, 5e-4);
  EXPECT_NEAR(t.At(102), 1.841, 5e-4);
}

TEST(BoundedPrior, FarBehindItsRightFootThePenaltyOfBothFeetAddsUp) {
  OnePrior t("T", 0, 1, "10", "1");
  EXPECT_EQ(t.At(20), 1e22);
}

TEST(BoundedPrior, ASharpRightFootIsJudgedByWhatTheLeftFootLeft) {
  // The left foot leaves c = 1 at eight deviations and more, so 1 - c is 0 and z is divided by zero; nearer, its c
  // counts.
  OnePrior t("T", 0, 1, "1", "0");
  EXPECT_THROW(t.At(20), RuntimeFailure);
  const double c = NormalCDF(2);
  EXPECT_DOUBLE_EQ(t.At(2), 1e20 - std::log(1 - c)) << "its own penalty replaces what the left foot gave";
  const double inside = NormalCDF(0.5);
  EXPECT_DOUBLE_EQ(t.At(0.5), -std::log(inside) - std::log(1 - inside));
}

TEST(BoundedPrior, ThePenaltyOfASharpRightFootReplacesWhatTheLeftFootGaveBehindItOnly) {
  // Both feet at 0, and so near them that a penalty is no larger than what the left foot gives.
  OnePrior t("T", 0, 1, "0", "0");
  const double left = -std::log(NormalCDF(0)), right = -std::log(1 - NormalCDF(0));
  EXPECT_EQ(t.At(0), left + right);
  EXPECT_NEAR(t.At(1e-10), 1 + right, 1e-9) << "not the sum of all three";
}

TEST(BoundedPrior, ReadsItsSecondTermsAsTextWithABlankBehindTheSign) {
  OnePrior t("T", -100, 1, "- 1.000E+001", " 2 ");
  EXPECT_NEAR(t.At(-8), 1.841, 5e-4);
  OnePrior plain("T", -100, 1, "-10", "2");
  EXPECT_EQ(t.At(-8), plain.At(-8));
}

TEST(BoundedPrior, TakesSecondTermsThatAreNumbers) {
  OnePrior numbers("T", -100, 1, -10.0, 2.0);
  OnePrior texts("T", -100, 1, "-10", "2");
  EXPECT_EQ(numbers.At(-8), texts.At(-8));
}

TEST(BoundedPrior, AnUnusedSecondTermIsARuntimeFailure) {
  EXPECT_THROW(OnePrior("T", 0, 1).At(0), RuntimeFailure);
  EXPECT_THROW(OnePrior("T", 0, 1, "5", "Unused").At(0), RuntimeFailure);
}

TEST(Cliffs, ANegativeDeviationUsesWhatAnEarlierParameterLeft) {
  OnePrior t("D", 5, -1);
  EXPECT_EQ(t.At(6), 0);
  OnePrior left("S", 5, -1);
  EXPECT_EQ(left.At(6), 1e20) << "none left anything: the penalty of the distance";
}

TEST(Priors, AnOverflowIsARuntimeFailure) {
  EXPECT_THROW(OnePrior("N", 0, 1e-200).At(1), RuntimeFailure);
  EXPECT_THROW(OnePrior("E", 1, 1).At(-1e200), RuntimeFailure);
}

TEST(Priors, AFailureNamesTheParameterWhosePriorCannotBeComputed) {
  OnePrior t("U");
  t.priors.Reset(3);
  test::SetPrior(t.priors, 2, "N", 7, 0);
  try {
    EvaluatePrior(Array1<double>{0, 8, 0}, 1, t.priors);
    FAIL() << "a deviation of 0";
  } catch (const RuntimeFailure& failure) {
    EXPECT_STREQ(failure.what(), "the prior of parameter 2 cannot be computed: division by zero");
  }
}

TEST(NormalCDF, IsAHalfAtZeroToWithinTheErrorOfTheFit) { EXPECT_NEAR(NormalCDF(0), 0.5, 1e-7); }

TEST(NormalCDF, AgreesWithTheErrorFunctionToWithinTheErrorOfTheFit) {
  for (double z = -37; z <= 37; z += 0.01) {
    const double exact = 0.5 * std::erfc(-z / std::sqrt(2.0));
    const double smaller = std::min(exact, 1 - exact);
    EXPECT_NEAR(NormalCDF(z), exact, 1.2e-7 * smaller + 2e-16) << z;
  }
}

// Every digit follows from the order of operations; computed once more by an independent program, with the same
// elementary functions.

TEST(NormalCDF, HasTheBitsOfItsStepsInTheirOrder) {
  const std::pair<double, double> known[] = {{0, 0x1.fffffefe4d4d2p-2},     {1.33, 0x1.d104f229c167ep-1},
                                             {-2.11, 0x1.1d8f438e173bap-6}, {0.7, 0x1.841d579c29f35p-1},
                                             {-0.31, 0x1.835bf5e0fc01bp-2}, {5.5, 0x1.ffffff5ce1835p-1}};
  for (const auto& [z, p] : known) EXPECT_EQ(NormalCDF(z), p) << z;
}

TEST(EvaluatePrior, HasTheBitsOfItsFormulasInTheirOrder) {
  EXPECT_EQ(OnePrior("G", 7.65, 1.54).At(1.92), 0x1.c88d037f29932p+3);
  EXPECT_EQ(OnePrior("L", 2.25, 1.71).At(1.31), 0x1.6f346e6e55f90p-6);
  EXPECT_EQ(OnePrior("B", 0.63, 0.2).At(0.46), 0x1.97ce1f1b3e01cp-2);
}

TEST(NormalCDF, ReachesOneSomeEightDeviationsAboveAndZeroOnlyWhereTheExponentialUnderflows) {
  EXPECT_LT(NormalCDF(8), 1);
  EXPECT_EQ(NormalCDF(9), 1);
  EXPECT_GT(NormalCDF(-38), 0);
  EXPECT_EQ(NormalCDF(-40), 0);
}

}  // namespace
}  // namespace merlane::test
