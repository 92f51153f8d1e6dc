#include "survival/catalogue.h"

#include <cmath>

#include "base/runtime_failure.h"

namespace merlane {
namespace {

BroodData WithCovariates(std::vector<std::string> names) {
  BroodData data;
  data.NCov = static_cast<std::int16_t>(names.size());
  data.InteractionBase = static_cast<std::int16_t>(InteractionBaseOf(data.NCov));
  data.CovariateName.Dimension(data.NCov);
  for (int m = 1; m <= data.NCov; ++m) data.CovariateName(m) = names[static_cast<std::size_t>(m) - 1];
  return data;
}

Array1<std::string> Descriptions(const BroodData& data) {
  const int NPAR = ParameterCount(data.NCov);
  Array1<std::string> names(NPAR);
  FillParameterDescriptions(names, static_cast<std::int16_t>(NPAR), data);
  return names;
}

/// A vector and steps of 0, and what decoding them gives.
struct Decoding {
  explicit Decoding(int covariates = 0)
      : NCov(static_cast<std::int16_t>(covariates)),
        NPAR(static_cast<std::int16_t>(ParameterCount(covariates))),
        Value(NPAR),
        Step(NPAR) {}
  const Parameters& operator()() {
    DecodeParameters(Value, Step, ParameterLayout(NCov, InteractionBaseOf(NCov)), decoded, Penalty);
    return decoded;
  }
  std::int16_t NCov, NPAR;
  Array1<double> Value, Step;
  Parameters decoded;
  double Penalty = 0;
};

TEST(Catalogue, EveryDescriptionHas81CharactersAndEndsWithItsNullValue) {
  for (const bool known : {true, false}) {
    BroodData data = WithCovariates({"Depth", "Lake_Productivity", "Year1995"});
    data.AllClutchAgesKnown = data.AllBroodAgesKnown = known;
    const Array1<std::string> names = Descriptions(data);
    ASSERT_EQ(names.Size(), 70);
    for (int i = 1; i <= names.Size(); ++i) {
      EXPECT_EQ(names(i).back(), ']') << i;
      EXPECT_EQ(names(i).size(), 81u) << i << names(i);
    }
  }
}

TEST(Catalogue, WithoutCovariatesThereAre34ParametersAndTheLastFourAreTheAttributeInteractions) {
  const Array1<std::string> names = Descriptions(WithCovariates({}));
  ASSERT_EQ(names.Size(), 34);
  EXPECT_EQ(names(1), "Error dist'n for eggs      (random mortality):        Fix and DNE>         BI [1]");
  EXPECT_EQ(names(16), "Weibull Beta_NR  for egg survival to hatch (random mortality)                 [1]");
  EXPECT_EQ(names(30), "Gamma_BC(02) (on Beta_BC): Hatch date          (brood correlated mortality)   [0]");
  EXPECT_EQ(names(31), "Interaction term coefficients Zeta_BR(01) x  Zeta_BR(02)                      [0]");
  EXPECT_EQ(names(32), "Interaction term coefficients Gamma_BR(01) x Gamma_BR(02)                     [0]");
  EXPECT_EQ(names(33), "Interaction term coefficients  Zeta_BC(01) x  Zeta_BC(02)                     [0]");
  EXPECT_EQ(names(34), "Interaction term coefficients Gamma_BC(01) x Gamma_BC(02)                     [0]");
}

TEST(Catalogue, WithTwoCovariatesTheLastNumberIs58AndIsGamma_BC02xGamma_BC04) {
  const Array1<std::string> names = Descriptions(WithCovariates({"Depth", "Area"}));
  ASSERT_EQ(names.Size(), 58);
  EXPECT_EQ(names(58), "Interaction term coefficients Gamma_BC(02) x Gamma_BC(04)                Area [0]");
  EXPECT_EQ(names(31), "Zeta_BR(03) (on Alpha_BR): Brood covariate 01 (random mortality)        Depth [0]");
  EXPECT_EQ(names(34), "Zeta_BC(04) (on Alpha_BC): Brood covariate 02 (corr'd mortality)         Area [0]");
  EXPECT_EQ(names(35), "Gamma_BR(03) (on Beta_BR): Brood covariate 01 (random mortality)        Depth [0]");
  EXPECT_EQ(names(38), "Gamma_BC(04) (on Beta_BC): Brood covariate 02 (corr'd mortality)         Area [0]");
  EXPECT_EQ(names(43), "Interaction term coefficients  Zeta_BR(01) x  Zeta_BR(03)               Depth [0]");
  EXPECT_EQ(names(45), "Interaction term coefficients  Zeta_BR(02) x  Zeta_BR(03)               Depth [0]");
  EXPECT_EQ(names(51), "Interaction term coefficients  Zeta_BC(01) x  Zeta_BC(03)               Depth [0]");
}

TEST(Catalogue, ALongCovariateNameIsCutToItsFirst12CharactersAndAShortOneStandsFlushRight) {
  const Array1<std::string> names = Descriptions(WithCovariates({"Lake_Productivi", "Ice"}));
  EXPECT_NE(names(31).find("mortality) Lake_Product [0]"), std::string::npos);
  EXPECT_NE(names(32).find("mortality)          Ice [0]"), std::string::npos);
}

TEST(Catalogue, ParametersThatNeedAnUnknownAgeAreNotToBeEstimated) {
  BroodData data = WithCovariates({"Depth"});
  data.AllClutchAgesKnown = false;
  Array1<std::string> names = Descriptions(data);
  EXPECT_EQ(names(12), "DO NOT ESTIMATE (MUST=0) Clutch age attenuation coef   (egg corr'd mortality) [0]");
  EXPECT_EQ(names(14), "Brood age attenuation coefficient for correlated mortality (f_B)              [0]");
  data.AllBroodAgesKnown = false;
  names = Descriptions(data);
  EXPECT_EQ(names(14), "DO NOT ESTIMATE (MUST=0) Brood age attenuation coef    (juv corr'd mortality) [0]");
  EXPECT_EQ(names(26), "DO NOT ESTIMATE (MUST=0) Gamma_BR(02) (on Beta_BR):  Hatch date               [0]");
  EXPECT_EQ(names(31), "DO NOT ESTIMATE (MUST=0) Brood covariates                                     [0]");
  EXPECT_EQ(names(34), "DO NOT ESTIMATE (MUST=0) Brood covariates                                     [0]");
  EXPECT_EQ(names(35), "DO NOT ESTIMATE (MUST=0) Interaction term coef  Zeta_BR(01) x  Zeta_BR(02)    [0]");
  EXPECT_EQ(names(39), "DO NOT ESTIMATE (MUST=0) Brood covariate interaction terms                    [0]");
  EXPECT_EQ(names(46), "DO NOT ESTIMATE (MUST=0) Brood covariate interaction terms                    [0]");
}

TEST(Catalogue, ASimulationWithCovariatesChosenLeavesTheirTextsEmpty) {
  BroodData data = WithCovariates({});
  data.InteractionBase = 38;  // two covariates were chosen
  Array1<std::string> names(58);
  FillParameterDescriptions(names, 58, data);
  EXPECT_EQ(names(31), "");
  EXPECT_EQ(names(39), "Interaction term coefficients Zeta_BR(01) x  Zeta_BR(02)                      [0]");
  EXPECT_EQ(names(58), "");
}

TEST(Decoding, ACodeThatIsNeither1Nor2IsStoredBackAs1) {
  Decoding d;
  d.Value(1) = 3.7;
  d.Value(2) = -2;
  d.Value(3) = 1.5;
  d.Value(4) = 2;
  d();
  EXPECT_EQ(d.Value(1), 1);
  EXPECT_EQ(d.Value(2), 2);
  EXPECT_EQ(d.Value(3), 1);
  EXPECT_EQ(d.decoded.CodeEggR, 1);
  EXPECT_EQ(d.decoded.CodeJuvR, 2);
  EXPECT_EQ(d.decoded.CodeEggC, 1);
  EXPECT_EQ(d.decoded.CodeJuvC, 2);
}

TEST(Decoding, LayAgeIsNegativeWhateverSignTheVectorHas) {
  for (const double age : {28.0, -28.0}) {
    Decoding d;
    d.Value(9) = age;
    EXPECT_EQ(d().LayAge, -28);
    EXPECT_EQ(d.Value(9), -28);
    EXPECT_EQ(d().LayAge, -28) << "a second decoding turns the sign round again";
    EXPECT_EQ(d.Value(9), -28);
  }
}

TEST(Decoding, AgesRoundHalfToEven) {
  Decoding d;
  d.Value(9) = 27.5;
  d.Value(10) = -40.5;
  EXPECT_EQ(d().LayAge, -28);
  EXPECT_EQ(d.decoded.FledgeAge, 40);
  d.Value(9) = -26.5;
  EXPECT_EQ(d().LayAge, -26);
}

TEST(Decoding, ALayAgeOf0LeavesANegativeZero) {
  Decoding d;
  EXPECT_EQ(d().LayAge, 0);
  EXPECT_TRUE(std::signbit(d.Value(9)));
}

TEST(Decoding, AnAgeBeyond32767IsARunTimeFailure) {
  Decoding d;
  d.Value(9) = 32767;
  EXPECT_EQ(d().LayAge, -32767);
  d.Value(9) = 40000;
  EXPECT_THROW(d(), RuntimeFailure);
  d.Value(9) = 0;
  d.Value(10) = 1e9;
  EXPECT_THROW(d(), RuntimeFailure);
}

TEST(Decoding, AZeroCoefficientWithAStepStillRaisesTheAttributeFlag) {
  Decoding size, date, both;
  size.Step(27) = 0.1;
  EXPECT_TRUE(size().UsesBroodSize);
  EXPECT_FALSE(size.decoded.UsesHatchDate);
  date.Value(26) = -0.1;
  EXPECT_TRUE(date().UsesHatchDate);
  EXPECT_FALSE(date.decoded.UsesBroodSize);
  both.Step(33) = 0.1;
  EXPECT_TRUE(both().UsesHatchDate && both.decoded.UsesBroodSize);
  EXPECT_FALSE(Decoding()().UsesBroodSize);
}

TEST(Decoding, AnInteractionWithACovariateRaisesTheFlagOfItsAttribute) {
  for (int block = 0; block < 8; ++block) {
    Decoding d(2);
    d.Value(38 + 4 + block * 2 + 2) = 0.5;
    d();
    EXPECT_EQ(d.decoded.UsesBroodSize, block % 2 == 0) << block;
    EXPECT_EQ(d.decoded.UsesHatchDate, block % 2 == 1) << block;
  }
}

TEST(Decoding, EveryCoefficientFindsItsTable) {
  Decoding d(2);
  for (int i = 23; i <= d.NPAR; ++i) d.Value(i) = -i;
  const Parameters& p = d();
  EXPECT_EQ(p.ZetaBR, (Array1<double>{-23, -24, -31, -32}));
  EXPECT_EQ(p.GammaBR, (Array1<double>{-25, -26, -35, -36}));
  EXPECT_EQ(p.ZetaBC, (Array1<double>{-27, -28, -33, -34}));
  EXPECT_EQ(p.GammaBC, (Array1<double>{-29, -30, -37, -38}));
  const Matrix1<double>* families[] = {&p.ZetaBRx, &p.GammaBRx, &p.ZetaBCx, &p.GammaBCx};
  for (int f = 0; f < 4; ++f) {
    EXPECT_EQ((*families[f])(1, 2), -(39 + f));
    for (int m = 1; m <= 2; ++m) {
      EXPECT_EQ((*families[f])(1, m + 2), -(42 + 4 * f + m));
      EXPECT_EQ((*families[f])(2, m + 2), -(42 + 4 * f + 2 + m));
    }
  }
}

TEST(Decoding, ProbabilitiesAndOverdispersionsAbove1ArePenalisedAndCapped) {
  for (const int i : {5, 7, 11, 13}) {
    Decoding d;
    d.Value(i) = -1.25;
    d();
    EXPECT_EQ(d.Penalty, 0.0625 * 1e20) << i;
    EXPECT_EQ(d.Value(i), 1) << i;
  }
  Decoding d;
  d.Value(5) = d.Value(7) = 1;
  d();
  EXPECT_EQ(d.Penalty, 0);
  EXPECT_EQ(d.decoded.ThetaEggC, 0.999999);
  EXPECT_EQ(d.decoded.ThetaJuvC, 0.999999);
}

TEST(Decoding, EggExponentsAbove10ArePenalisedAndTheVectorKeepsThem) {
  Decoding d;
  d.Value(16) = 10.5;
  d.Value(20) = -12;
  d.Value(18) = d.Value(22) = 50;
  d();
  EXPECT_EQ(d.Penalty, 0.25 * 1e20 + 4 * 1e20);
  EXPECT_EQ(d.decoded.Beta_NR, 10);
  EXPECT_EQ(d.decoded.Beta_NC, 10);
  EXPECT_EQ(d.Value(16), 10.5);
  EXPECT_EQ(d.Value(20), 12);
  EXPECT_EQ(d.decoded.Beta_BR, 50);
  EXPECT_EQ(d.decoded.Beta_BC, 50);
}

TEST(Decoding, APenaltyThatOverflowsIsARunTimeFailure) {
  Decoding d;
  d.Value(11) = 1e150;
  EXPECT_THROW(d(), RuntimeFailure);
}

TEST(Decoding, OnlyTheFirst22ValuesLoseTheirSign) {
  Decoding d;
  d.Value.Fill(-0.5);
  d();
  EXPECT_EQ(d.Value(22), 0.5);
  EXPECT_EQ(d.Value(23), -0.5);
  EXPECT_EQ(d.decoded.ThetaEggR, 0);
  EXPECT_EQ(d.decoded.ThetaJuvR, 0);
}

}  // namespace
}  // namespace merlane
