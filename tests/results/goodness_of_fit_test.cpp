#include "results/goodness_of_fit.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>

#include "base/elementary.h"
#include "base/runtime_failure.h"
#include "base/text.h"
#include "likelihood/analysis.h"
#include "likelihood/evaluated_case.h"
#include "likelihood/streams.h"
#include "model/planned.h"
#include "results/aicc.h"
#include "results/effective_sizes.h"
#include "results/results_summary.h"

namespace merlane {
namespace {

using test::DailyJuveniles;
using test::Planned;
using test::Streams;
using ::testing::HasSubstr;

FitStatistic Statistic(double observed, std::vector<double> simulated) {
  FitStatistic s;
  s.observed = observed;
  s.simulated = std::move(simulated);
  Summarise(s);
  return s;
}

std::string Text(const FitStatistic& s) { return GoodnessOfFitText({s, s}); }

// --- Known figures ----------------------------------------------------------------------------------------------

nlohmann::json KnownSummaries() {
  const nlohmann::json index = test::GoldenJson("results/index.json");
  nlohmann::json withFigures = nlohmann::json::array();
  for (const auto& summary : index["summaries"])
    if (summary.contains("exact") && !summary["simplex"]) withFigures.push_back(summary);
  return withFigures;
}

double Number(const nlohmann::json& text) { return std::strtod(text.get<std::string>().c_str(), nullptr); }

class GoldenFigures : public testing::TestWithParam<nlohmann::json> {};

void ExpectSeries(const FitStatistic& statistic, const nlohmann::json& known) {
  EXPECT_EQ(statistic.observed, Number(known["observed"]));
  ASSERT_EQ(statistic.simulated.size(), known["series"].size());
  for (std::size_t r = 0; r < statistic.simulated.size(); ++r)
    EXPECT_EQ(statistic.simulated[r], Number(known["series"][r])) << "randomisation " << r + 1;
}

TEST_P(GoldenFigures, EverySumIsKnownToTheLastBit) {
  const nlohmann::json& exact = GetParam()["exact"];
  test::Evaluated e(test::GoldenCaseNamed(GetParam()["case"]));
  e.CallAgain();
  const auto free = static_cast<int>(std::ranges::count_if(e.run.algorithm.Step, [](double s) { return s != 0; }));
  EXPECT_EQ(e.state.BestObjective, Number(exact["BestObjective"]));
  EXPECT_EQ(e.SampleSize, exact["SampleSize"]);
  EXPECT_EQ(free, exact["FreeCount"]);
  const std::optional<double> aicc = AICc(e.state.BestObjective, e.SampleSize, free);
  if (aicc)
    EXPECT_EQ(*aicc, Number(exact["AICc"]));
  else
    EXPECT_EQ(exact["AICc"], "Undefined (too few degrees of freedom)");
  const EffectiveSizes sizes = FindEffectiveSizes(e.reading.data, e.state.best, {});
  EXPECT_EQ(sizes.EffSizeEggs, Number(exact["EffSizeEggs"]));
  EXPECT_EQ(sizes.EffSizeJuvs, Number(exact["EffSizeJuvs"]));
  if (!exact.contains("pearson")) return;  // nothing was predicted

  Streams streams;
  const auto fit = RandomisedGoodnessOfFit(e.reading.data, e.state.best, 20, streams.random, {});
  ASSERT_TRUE(fit);
  ExpectSeries(fit->pearson, exact["pearson"]);
  ExpectSeries(fit->deviance, exact["deviance"]);
  EXPECT_EQ(streams.random.StreamNumber(), 1u);
}

INSTANTIATE_TEST_SUITE_P(All, GoldenFigures, testing::ValuesIn(KnownSummaries().get<std::vector<nlohmann::json>>()),
                         [](const auto& one) { return one.param["case"].template get<std::string>(); });

// --- From the sums ----------------------------------------------------------------------------------------------

TEST(GoodnessOfFit, OneRandomisationLeavesPAndSDUndefinedAndCHatUncalculated) {
  const FitStatistic s = Statistic(10, {12.3456});
  EXPECT_EQ(s.Mean, 12.3456);
  EXPECT_FALSE(s.SD || s.CumulativeP || s.CumulativePSE || s.CHat || s.CHatSE);
  const std::string text = Text(s);
  EXPECT_THAT(text, HasSubstr("> n: 1; Mean: 12.346; SD: Undefined; Minimum: 12.346; Maximum: 12.346\r\n"));
  EXPECT_THAT(text, HasSubstr("> 10.000; Cumulative p[Deviance]: Undefined; SE cumulative p[Deviance]: Undefined\r\n"));
  EXPECT_THAT(text, HasSubstr("c-hat is: Uncalculated SE: Uncalculated\r\n"));
}

TEST(GoodnessOfFit, WithoutRandomisationsEverythingIsUndefined) {
  const FitStatistic s = Statistic(10, {});
  EXPECT_THAT(Text(s), HasSubstr("n: 0; Mean: Undefined; SD: Undefined; Minimum: Undefined; Maximum: Undefined\r\n"));
}

TEST(GoodnessOfFit, AMeanOfZeroGivesNoCHat) {
  const FitStatistic s = Statistic(10, {-1, 1});
  EXPECT_EQ(s.Mean, 0);
  EXPECT_EQ(s.SD, 1);
  EXPECT_FALSE(s.CHat || s.CHatSE);
  EXPECT_THAT(Text(s), HasSubstr("c-hat is: Uncalculated SE: Uncalculated\r\n"));
}

TEST(GoodnessOfFit, ATieWithTheObservedSumCountsIntoP) {
  const FitStatistic s = Statistic(5, {4, 5, 5, 6});
  EXPECT_EQ(s.CumulativeP, 0.75);
  EXPECT_EQ(s.CumulativePSE, std::sqrt(0.75 * 0.25 / 3));
}

TEST(GoodnessOfFit, TheSDIsThatOfAPopulation) { EXPECT_EQ(Statistic(1, {1, 3}).SD, 1); }

TEST(GoodnessOfFit, CHatIsRoundedBeforeItEntersItsStandardError) {
  const FitStatistic s = Statistic(1.0149, {0.5, 1.5});
  EXPECT_EQ(s.Mean, 1);
  EXPECT_EQ(s.SD, 0.5);
  EXPECT_EQ(s.CHat, 1.01);
  EXPECT_EQ(s.CHatSE, std::floor(100 * 0.505 + 0.5) / 100);
  const FitStatistic t = Statistic(1.0149, {0, 2});
  EXPECT_EQ(t.CHatSE, 1.01);
  const FitStatistic u = Statistic(1.4949, {0.3, 1.7});  // 0.7 x 1.49 = 1.043, where 0.7 x 1.4949 = 1.046
  EXPECT_EQ(u.CHatSE, 1.04);
}

TEST(GoodnessOfFit, RoundingOfCHatGoesDownAlsoBelowZero) {
  const FitStatistic s = Statistic(-1.237, {0.5, 1.5});
  EXPECT_EQ(s.CHat, -1.24);    // floor(-123.7 + 0.5) / 100
  EXPECT_EQ(s.CHatSE, -0.62);  // floor(-62 + 0.5) / 100, not truncated to -0.61
}

TEST(GoodnessOfFit, TheMaximumStartsAtZeroAndTheMinimumAtAVeryLargeNumber) {
  const FitStatistic s = Statistic(-1, {-3, -2});
  EXPECT_EQ(s.Maximum, 0);
  EXPECT_EQ(s.Minimum, -3);
  EXPECT_THAT(Text(s), HasSubstr("Mean:- 2.500;")) << "the sign stands before the template's own blank";
}

TEST(GoodnessOfFit, TheLinesOfBothStatisticsHaveTheirOwnWordsAndBlankLines) {
  const FitStatistic s = Statistic(2, {1, 3});
  const std::vector<std::string> lines = Lines(GoodnessOfFitText({s, s}));
  ASSERT_EQ(lines.size(), 20u);
  EXPECT_EQ(lines[2],
            "Simulated sum of Pearson-deviates> n: 2; Mean: 2.000; SD: 1.000; Minimum: 1.000; Maximum: 3.000");
  EXPECT_EQ(lines[12], "Simulated sum of Deviances> n: 2; Mean: 2.000; SD: 1.000; Minimum: 1.000; Maximum: 3.000");
  EXPECT_EQ(lines[13],
            "Observed sum of Deviances> 2.000; Cumulative p[Deviance]: 0.500; SE cumulative p[Deviance]: 0.500");
  EXPECT_THAT(lines[16], HasSubstr("overfits  the data"));
  EXPECT_EQ(lines[8], "A Pearson-deviates-based estimate of c-hat is: 1.00 SE: 0.50");
  EXPECT_EQ(lines[18], "A deviance-based estimate of c-hat is: 1.00 SE: 0.50");
  for (const std::size_t blank : {4u, 7u, 9u, 14u, 17u, 19u}) EXPECT_EQ(lines[blank], "") << blank;
}

// --- Randomising ------------------------------------------------------------------------------------------------

/// Two broods of juveniles under a constant random mortality.
test::Analysis Juveniles() {
  test::Analysis a;
  a.Visit("A", 2, 8).Visit("A", 6, 7).Visit("A", 12, 3).Visit("B", 1, 5).Visit("B", 9, 0).Visit("B", 12, 0);
  a.Read();
  a.Value(17) = 0.05;
  a.Evaluate();
  return a;
}

TEST(GoodnessOfFit, ObservedSumsAreThoseOfTheFit) {
  test::Analysis a = Juveniles();
  a.state.best.VisitDeviance[0] = 7;  // of a visit without a prediction
  Streams streams;
  const auto fit = RandomisedGoodnessOfFit(a.reading.data, a.state.best, 3, streams.random, {});
  EXPECT_EQ(fit->deviance.observed, a.F);
  double pearson = 0;
  for (const std::size_t v : {1u, 2u, 4u, 5u}) {
    const double P = Exp(-0.5 * a.state.VisitDeviance[v]);
    pearson = pearson + (1 - P) / P;
  }
  EXPECT_EQ(fit->pearson.observed, pearson);
}

TEST(GoodnessOfFit, EachDrawIsFromTheRealCountBefore) {
  // Picks are made from 8, 7 and 5; the visit behind a count of 0 is never predicted.
  test::Analysis a = Juveniles();
  Streams streams, counted;
  RandomisedGoodnessOfFit(a.reading.data, a.state.best, 4, streams.random, {});
  counted.random.BeginNext();
  for (int draw = 0; draw < 4 * 3; ++draw) counted.random.Uniform();
  EXPECT_EQ(streams.random.Uniform(), counted.random.Uniform()) << "three picks in each randomisation";
}

TEST(GoodnessOfFit, AnAbortLeavesNoResult) {
  test::Analysis a = Juveniles();
  Streams streams;
  int turns = 0;
  CalculationWatch watch;
  watch.turn = [&] { ++turns; };
  watch.aborted = [&] { return turns == 4; };
  std::vector<std::string> progress;
  watch.progress = [&](const std::string& text) { progress.push_back(text); };
  EXPECT_FALSE(RandomisedGoodnessOfFit(a.reading.data, a.state.best, 5, streams.random, watch));
  EXPECT_EQ(turns, 4);
  EXPECT_THAT(progress, testing::ElementsAre("Pearson-deviates & Deviance: Performing randomization # 1 of 5", "",
                                             "Pearson-deviates & Deviance: Performing randomization # 2 of 5", ""));
}

TEST(GoodnessOfFit, RefreshesTheVariancesOfWhatItPredicts) {
  test::Analysis a = Juveniles();
  Streams streams;
  EXPECT_EQ(a.state.best.VarAll[1], Missing);
  RandomisedGoodnessOfFit(a.reading.data, a.state.best, 1, streams.random, {});
  const double p = Exp(-0.05 * 4);
  EXPECT_NEAR(a.state.best.VarAll[1], 8 * p * (1 - p), 1e-8);
  EXPECT_NEAR(a.state.best.VarR[1], 8 * p * (1 - p), 1e-8);
  EXPECT_EQ(a.state.best.VarC[1], 0) << "a kind of mortality that cannot occur";
  EXPECT_EQ(a.state.best.VarAll[0], Missing);
  EXPECT_EQ(a.state.best.VarAll[5], Missing) << "a prediction from nothing";
}

TEST(GoodnessOfFit, HasTheSameSumsByAnyNumberOfThreads) {
  test::Analysis a;
  for (int brood = 0; brood < 300; ++brood)
    for (const int age : {2, 5, 9, 12}) a.Visit("B" + std::to_string(brood), age + brood % 7, 40 - 2 * age - brood % 9);
  a.Read();
  a.Value(17) = 0.03;
  a.Evaluate();
  const auto judged = [&](Workers* workers) {
    Streams streams;
    BestTables best = a.state.best;
    const auto fit = RandomisedGoodnessOfFit(a.reading.data, best, 3, streams.random, {}, workers);
    return std::tuple(fit->pearson.simulated, fit->deviance.simulated, best.VarAll);
  };
  const auto alone = judged(nullptr);
  for (const int threads : {1, 2, 5}) {
    Workers workers(threads);
    EXPECT_EQ(judged(&workers), alone) << threads;
  }
}

TEST(GoodnessOfFit, ADevianceBeyond1490FailsTheCommand) {
  test::Analysis a = Juveniles();
  a.state.best.VisitDeviance[1] = 1500;
  Streams streams;
  EXPECT_THROW(RandomisedGoodnessOfFit(a.reading.data, a.state.best, 1, streams.random, {}), RuntimeFailure);
}

TEST(GoodnessOfFit, TheMeansOfTheSumsAreTheirExpectations) {
  // E[(1-P)/P] of a pick from n is the number of possible counts less 1; E[-2 ln P] is twice the entropy.
  test::Analysis a = Juveniles();
  Streams streams;
  const int R = 20000;
  const auto fit = RandomisedGoodnessOfFit(a.reading.data, a.state.best, R, streams.random, {});
  double expected = 0;
  CountPredictor predictor(a.reading.data, a.state.best.parameters);
  CountPrediction prediction;
  for (const int visit : {1, 2, 4}) {
    const int n = a.reading.data.VisitCount[static_cast<std::size_t>(visit) - 1];
    predictor.Predict(visit, n, BestExpectation(a.reading.data, a.state.best.survival, visit < 3 ? 0 : 1, visit),
                      prediction);
    for (const double P : prediction.Pmf) expected += P * -2 * Log(P);
  }
  EXPECT_NEAR(*fit->deviance.Mean, expected, 4 * *fit->deviance.SD / std::sqrt(R));
}

// --- Simulated data ---------------------------------------------------------------------------------------------

TEST(RandomisedGoodnessOfFit, SimulatedDataFitTheirModelWithPSpreadEvenly) {
  // 60 data sets, each judged at the values it was simulated with: the cumulative p should be uniform (Kolmogorov and
  // Smirnov; 1.63 / sqrt(60) is exceeded once in a hundred times).
  std::vector<double> deviances, pearsons;
  for (std::uint64_t seed = 1; seed <= 60; ++seed) {
    SimulatorSettings settings{
        .MinInitSize = 5, .MaxInitSize = 9, .InitAge = -6, .FinalAge = 9, .SampFreq1 = 1, .SampFreq2 = 1};
    Planned p(settings, 25, seed);
    p.Value(11) = 0.3;
    p.Value(13) = 0.4;
    p.Value(15) = 0.02;
    p.Value(17) = 0.03;
    p.Value(19) = 0.1;
    p.Value(21) = 0.08;
    p.Simulate().Observe();
    const auto fit = RandomisedGoodnessOfFit(p.data, p.state.best, 99, p.streams.random, {});
    deviances.push_back(*fit->deviance.CumulativeP);
    pearsons.push_back(*fit->pearson.CumulativeP);
  }
  for (auto* p : {&deviances, &pearsons}) {
    std::ranges::sort(*p);
    double distance = 0;
    for (std::size_t i = 0; i < p->size(); ++i) {
      distance = std::max(distance, std::abs((*p)[i] - static_cast<double>(i) / 60));
      distance = std::max(distance, std::abs((*p)[i] - static_cast<double>(i + 1) / 60));
    }
    EXPECT_LT(distance, 1.63 / std::sqrt(60)) << testing::PrintToString(*p);
  }
}

TEST(RandomisedGoodnessOfFit, DataOfAnotherModelAreFoundToFitBadly) {
  SimulatorSettings settings = DailyJuveniles;
  Planned p(settings, 60);
  p.Value(13) = 1;  // nest mates share their fate ...
  p.Value(4) = 2;
  p.Value(7) = 0.9;
  p.Value(21) = 0.05;
  p.Simulate();
  for (const int i : {4, 7, 13, 21}) p.Value(i) = i == 4 ? 1 : 0;
  p.Value(17) = 0.05;  // ... and are judged as if they did not
  p.Observe();
  const auto fit = RandomisedGoodnessOfFit(p.data, p.state.best, 99, p.streams.random, {});
  EXPECT_EQ(fit->deviance.CumulativeP, 0);
  EXPECT_GT(*fit->deviance.CHat, 1.5);
}

}  // namespace
}  // namespace merlane
