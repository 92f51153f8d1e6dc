#include "model/count_prediction.h"

#include <gmock/gmock.h>

#include "base/elementary.h"
#include "base/runtime_failure.h"
#include "likelihood/analysis.h"
#include "likelihood/evaluated_case.h"
#include "likelihood/streams.h"
#include "model/simulator.h"
#include "plain_distributions.h"

namespace merlane {
namespace {

using plain::ProbBinomial;
using plain::ProbVisit;

using test::Analysis;
using test::Streams;

/// The distribution of a visit's count, one ahead of the real counts.
CountPrediction PredictionOfVisit(const Analysis& a, int brood, int visit) {
  CountPredictor predictor(a.reading.data, a.state.best.parameters);
  CountPrediction prediction;
  predictor.Predict(visit, a.reading.data.VisitCount[static_cast<std::size_t>(visit) - 1],
                    BestExpectation(a.reading.data, a.state.best.survival, brood, visit), prediction);
  return prediction;
}

/// A clutch counted at -9, -4 and, hatched, at 5 and 12.
Analysis Nest() {
  Analysis a;
  a.Visit("A", -9, 8).Visit("A", -4, 7).Visit("A", 5, 6).Visit("A", 12, 4).Read();
  return a;
}
constexpr int ClutchVisit = 1, SpanningVisit = 2, BroodVisit = 3;

/// Eggs and juveniles under both kinds of mortality.
Analysis MixedNest() {
  Analysis a = Nest();
  a.Value(11) = 0.3;
  a.Value(13) = 0.4;
  a.Value(15) = 0.02;
  a.Value(17) = 0.03;
  a.Value(19) = 0.05;
  a.Value(21) = 0.06;
  a.Evaluate();
  return a;
}

void ExpectBinomial(const CountPrediction& prediction, int n, double p) {
  ASSERT_EQ(prediction.Pmf.size(), static_cast<std::size_t>(n) + 1);
  for (int k = 0; k < n; ++k) EXPECT_EQ(prediction.Pmf[static_cast<std::size_t>(k)], ProbBinomial(n, k, p)) << k;
  EXPECT_NEAR(prediction.Pmf.back(), ProbBinomial(n, n, p), 1e-8);
  EXPECT_NEAR(prediction.VarAll, n * p * (1 - p), 1e-7);
}

TEST(CountPrediction, RandomMortalityAloneIsBinomial) {
  Analysis a = Nest();
  a.Value(15) = 0.02;
  a.Value(17) = 0.03;
  a.Evaluate();
  const SurvivalTables& t = a.state.best.survival;
  ExpectBinomial(PredictionOfVisit(a, 0, ClutchVisit), 8, t.EVisitR[ClutchVisit] / 8);
  ExpectBinomial(PredictionOfVisit(a, 0, BroodVisit), 6, t.EVisitR[BroodVisit] / 6);
  EXPECT_EQ(PredictionOfVisit(a, 0, ClutchVisit).VarC, 0) << "what cannot occur contributes nothing to any count";
}

TEST(CountPrediction, CorrelatedMortalityAloneHasNoRandomPart) {
  Analysis a = Nest();
  a.Value(11) = a.Value(13) = 1;
  a.Value(19) = 0.05;
  a.Value(21) = 0.06;
  a.Evaluate();
  const CountPrediction prediction = PredictionOfVisit(a, 0, ClutchVisit);
  ExpectBinomial(prediction, 8, a.state.best.survival.EVisitC[ClutchVisit] / 8);
  EXPECT_EQ(prediction.VarR, 0);
  EXPECT_EQ(prediction.inaccurateSums, 0) << "a sum of 0 is no inaccuracy";
}

TEST(CountPrediction, BothMortalitiesMixByTheProbabilityOfTheCorrelatedState) {
  const Analysis a = MixedNest();
  const SurvivalTables& t = a.state.best.survival;
  const double q = t.PCorrEgg[ClutchVisit];
  ASSERT_GT(q, 0);
  const CountPrediction prediction = PredictionOfVisit(a, 0, ClutchVisit);
  for (int k = 0; k < 8; ++k)
    EXPECT_EQ(prediction.Pmf[static_cast<std::size_t>(k)], (1 - q) * ProbBinomial(8, k, t.EVisitR[ClutchVisit] / 8) +
                                                               q * ProbBinomial(8, k, t.EVisitC[ClutchVisit] / 8));
}

TEST(CountPrediction, OverHatchTheMeanIsThatOfFourFates) {
  const Analysis a = MixedNest();
  const SurvivalTables& t = a.state.best.survival;
  const double q = t.PCorrHatch[0], r = t.PCorrJuv[SpanningVisit];
  const CountPrediction prediction = PredictionOfVisit(a, 0, SpanningVisit);
  double mean = 0;
  for (std::size_t k = 0; k < prediction.Pmf.size(); ++k) mean += static_cast<double>(k) * prediction.Pmf[k];
  EXPECT_NEAR(mean,
              (1 - r) * (1 - q) * t.JuvRR[0] + (1 - r) * q * t.JuvCR[0] + (1 - q) * r * t.JuvRC[0] + q * r * t.JuvCC[0],
              1e-7);
  EXPECT_GT(prediction.VarR, 0);
  EXPECT_GT(prediction.VarC, 0);
}

TEST(CountPrediction, OverdispersionOfEggsWidensTheDistribution) {
  Analysis a = Nest();
  a.Value(3) = 2;
  a.Value(5) = 0.5;
  a.Value(6) = 0.1;
  a.Value(11) = 1;
  a.Value(13) = 1;
  a.Value(19) = 0.05;
  a.Value(21) = 0.06;
  a.Evaluate();
  const double theta = 0.5 * Exp(-0.1 * (-9 + 28));
  const double p = a.state.best.survival.EVisitC[ClutchVisit] / 8;
  EXPECT_NEAR(PredictionOfVisit(a, 0, ClutchVisit).VarAll, 8 * p * (1 - p) * (7 * theta + 1), 1e-6);
}

TEST(CountPrediction, TheDistributionIsClosedAtExactlyOne) {
  const Analysis a = MixedNest();
  for (const int visit : {ClutchVisit, SpanningVisit, BroodVisit}) {
    const CountPrediction prediction = PredictionOfVisit(a, 0, visit);
    EXPECT_EQ(prediction.Cum.back(), 1);
    EXPECT_EQ(prediction.Pmf.back(), 1 - prediction.Cum[prediction.Cum.size() - 2]);
    EXPECT_EQ(prediction.inaccurateSums, 0);
  }
}

TEST(CountPrediction, ASumThatIsOffByMoreThanRoundingButLessThanAMillionthIsClosed) {
  // Next to no overdispersion: ln Gamma of very large numbers.
  Analysis a;
  a.Visit("A", -9, 60).Visit("A", -4, 50).Visit("A", 5, 6).Read();
  a.Value(3) = 2;
  a.Value(5) = 1.5e-6;
  a.Value(11) = 1;
  a.Value(19) = 0.05;
  a.Value(17) = 0.03;
  a.Evaluate();
  const double E = a.state.best.survival.EVisitC[ClutchVisit];
  double sum = 0;
  for (int k = 0; k <= 60; ++k) {
    double expected = E, Var = 0;
    sum += ProbVisit(2, 1.5e-6, 60, k, expected, Var);
  }
  ASSERT_GT(std::abs(sum - 1), 1e-10) << "another rate is needed";
  const CountPrediction prediction = PredictionOfVisit(a, 0, ClutchVisit);
  EXPECT_EQ(prediction.inaccurateSums, 0);
  EXPECT_EQ(prediction.Cum.back(), 1);
}

TEST(CountPrediction, OverHatchWithoutJuvenileRatesEveryCountHasProbabilityOneAndTheSumIsInaccurate) {
  CountExpectation nothing;  // all fates missing
  nothing.q = 0.25;
  nothing.r = 0.5;
  Analysis a = MixedNest();
  CountPredictor predictor(a.reading.data, a.state.best.parameters);
  CountPrediction prediction;
  predictor.Predict(SpanningVisit, 7, nothing, prediction);
  for (const double P : prediction.Pmf) EXPECT_NEAR(P, 1, 1e-15);
  EXPECT_EQ(prediction.inaccurateSums, 3) << "the random, the correlated and the mixed one, each by itself";
  EXPECT_EQ(prediction.Cum.back(), 8);

  Streams streams;
  int told = 0;
  CalculationWatch watch;
  watch.tell = [&](const Message& m) {
    ++told;
    EXPECT_EQ(m.title, "Calculation problem");
    EXPECT_EQ(m.text,
              "Unacceptably poor numerical accuracy in probability calculation in procedure 'Simulate_Pick_ChiSq'");
  };
  double SumPearson = 0, SumDeviance = 0;
  EXPECT_EQ(Simulate_Pick_ChiSq(prediction, streams.random, watch, SumPearson, SumDeviance), 0);
  EXPECT_EQ(told, 3);
  EXPECT_NEAR(SumPearson, 0, 1e-15);
  EXPECT_NEAR(SumDeviance, 0, 1e-15);
}

TEST(CountPrediction, AnExpectedNumberOfZeroOverHatchGivesNoCountAProbability) {
  CountExpectation none;
  none.overHatch.EHatchR = none.overHatch.EHatchC = 5;
  none.overHatch.juveniles.fill(0);
  Analysis a = MixedNest();
  CountPredictor predictor(a.reading.data, a.state.best.parameters);
  CountPrediction prediction;
  predictor.Predict(SpanningVisit, 7, none, prediction);
  for (const double P : prediction.Pmf) EXPECT_EQ(P, 0);
  EXPECT_EQ(prediction.inaccurateSums, 0);
  Streams streams;
  double SumPearson = 0, SumDeviance = 0;
  EXPECT_THROW(Simulate_Pick_ChiSq(prediction, streams.random, {}, SumPearson, SumDeviance), RuntimeFailure);
}

// --- Picking ----------------------------------------------------------------------------------------------------

constexpr double FirstUniformOfStream1 = 0.8379735161471105;

int PickFirst(const std::vector<double>& Cum) {
  Streams streams;
  streams.random.BeginNext();
  double SumPearson = 0, SumDeviance = 0;
  return Simulate_Pick_ChiSq({.Pmf = std::vector<double>(Cum.size(), 0.5), .Cum = Cum}, streams.random, {}, SumPearson,
                             SumDeviance);
}

TEST(Pick, IsTheFirstCountWhoseCumulativeProbabilityTheDrawDoesNotExceed) {
  EXPECT_EQ(PickFirst({0.1, FirstUniformOfStream1, 1}), 1) << "a tie is not above";
  EXPECT_EQ(PickFirst({0.1, std::nextafter(FirstUniformOfStream1, 0), 1}), 2);
  EXPECT_EQ(PickFirst({FirstUniformOfStream1, 0.9, 1}), 0);
}

TEST(Pick, IsTheLargestCountWhenTheDrawExceedsAll) { EXPECT_EQ(PickFirst({0.1, 0.2, 0.3}), 2); }

TEST(Pick, DrawsOnceEvenFromACertainDistribution) {
  Streams streams, counted;
  double SumPearson = 0, SumDeviance = 0;
  Simulate_Pick_ChiSq({.Pmf = {1, 0}, .Cum = {1, 1}}, streams.random, {}, SumPearson, SumDeviance);
  counted.random.Uniform();
  EXPECT_EQ(streams.random.Uniform(), counted.random.Uniform());
  EXPECT_EQ(SumPearson, 0);
  EXPECT_EQ(SumDeviance, 0);
}

TEST(Pick, TellsOfEachInaccurateFateOverHatch) {
  Streams streams;
  std::vector<std::string> told;
  CalculationWatch watch;
  watch.tell = [&](const Message& m) { told.push_back(m.text); };
  double SumPearson = 0, SumDeviance = 0;
  Simulate_Pick_ChiSq({.Pmf = {1}, .Cum = {1}, .inaccurateComponents = 2}, streams.random, watch, SumPearson,
                      SumDeviance);
  EXPECT_EQ(told, std::vector<std::string>(2,
                                           "Unacceptably poor numerical accuracy in probability calculation in "
                                           "procedure 'Calc_Probs_and_Theta'"));
}

TEST(Pick, AddsDeviateAndDevianceOfItsProbability) {
  Streams streams;
  double SumPearson = 1, SumDeviance = 2;
  Simulate_Pick_ChiSq({.Pmf = {0.25}, .Cum = {1}}, streams.random, {}, SumPearson, SumDeviance);
  EXPECT_EQ(SumPearson, 1 + 3);
  EXPECT_EQ(SumDeviance, 2 + -2 * Log(0.25));
}

/// The 0.999 quantile of chi-square (Wilson and Hilferty 1931).
double UpperChiSquare(int df) {
  const double a = 2.0 / (9 * df);
  const double root = 1 - a + 3.0902 * std::sqrt(a);
  return df * root * root * root;
}

TEST(Pick, ManyPicksFollowTheDistributionOfEachKindOfInterval) {
  const Analysis a = MixedNest();
  const int picks = 20000;
  for (const int visit : {ClutchVisit, SpanningVisit, BroodVisit}) {
    const CountPrediction prediction = PredictionOfVisit(a, 0, visit);
    Streams streams(static_cast<std::uint64_t>(visit));
    std::vector<int> found(prediction.Pmf.size());
    double SumPearson = 0, SumDeviance = 0;
    for (int i = 0; i < picks; ++i)
      ++found[static_cast<std::size_t>(Simulate_Pick_ChiSq(prediction, streams.random, {}, SumPearson, SumDeviance))];
    double chiSquare = 0, pooledExpected = 0, pooledFound = 0;
    int classes = 0;
    for (std::size_t k = 0; k < found.size(); ++k) {  // rare counts are pooled with the next
      pooledExpected += picks * prediction.Pmf[k];
      pooledFound += found[k];
      if (pooledExpected < 5) continue;
      chiSquare += (pooledFound - pooledExpected) * (pooledFound - pooledExpected) / pooledExpected;
      pooledExpected = pooledFound = 0;
      ++classes;
    }
    EXPECT_LT(chiSquare, UpperChiSquare(classes - 1)) << "visit " << visit << ", " << classes << " classes";
    EXPECT_GT(classes, 4);
  }
}

// --- Against the likelihood -------------------------------------------------------------------------------------

class GoldenPrediction : public testing::TestWithParam<test::GoldenCase> {};

TEST_P(GoldenPrediction, GivesTheObservedCountTheProbabilityOfTheLikelihood) {
  test::Evaluated e(GetParam());
  e.CallAgain();
  const BroodData& data = e.reading.data;
  CountPredictor predictor(data, e.state.best.parameters);
  CountPrediction prediction;
  for (int brood = 0; brood < data.Broods(); ++brood) {
    const int first = data.FirstVisit[static_cast<std::size_t>(brood)];
    for (int visit = first + 1; visit < first + data.VisitsOf[static_cast<std::size_t>(brood)]; ++visit) {
      const auto v = static_cast<std::size_t>(visit);
      if (e.state.best.survival.EVisit[v] == Missing || data.VisitCount[v - 1] < 1) continue;
      const auto k = static_cast<std::size_t>(data.VisitCount[v]);
      predictor.Predict(visit, data.VisitCount[v - 1], BestExpectation(data, e.state.best.survival, brood, visit),
                        prediction);
      // A probability of 0 costs nothing in the likelihood.
      if (prediction.Pmf[k] > 0 || e.state.best.VisitDeviance[v] != 0) {
        ASSERT_NEAR(prediction.Pmf[k], Exp(-0.5 * e.state.best.VisitDeviance[v]), 1e-8) << "visit " << visit;
      }
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Cases, GoldenPrediction, testing::ValuesIn(test::SmallCases()),
                         [](const auto& c) { return c.param.name; });

TEST(CountPrediction, ReadsTheSameBitsFromTheTableOfFactorials) {
  KeptGammaLn logGamma;
  const CountDistributions distributions(12);
  std::vector<double> Pmf(13);
  for (const double theta : {0.0, 0.3, 1.0})
    for (const int code : {1, 2}) {
      distributions.ProbVisits(logGamma, code, theta, 12, 7.5, Pmf);
      for (int k = 0; k <= 12; ++k) {
        double E = 7.5, Var = 0;
        EXPECT_EQ(Pmf[static_cast<std::size_t>(k)], ProbVisit(code, theta, 12, k, E, Var)) << theta << ' ' << k;
      }
    }
}

}  // namespace
}  // namespace merlane
