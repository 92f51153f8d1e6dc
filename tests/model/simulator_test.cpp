#include "model/simulator.h"

#include <fmt/format.h>
#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>

#include "likelihood/analysis.h"
#include "likelihood/evaluated_case.h"
#include "model/forward_expectation.h"
#include "model/planned.h"
#include "platform/files.h"

namespace merlane {
namespace {

using test::Analysis;
using test::DailyJuveniles;
using test::Planned;
using test::Streams;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

/// Simulates for the best state of an analysis of typed visits.
Simulation Simulated(Analysis& a, const SimulationSetting& setting, std::uint64_t seed = 1,
                     const CalculationWatch& watch = {}) {
  Streams streams(seed);
  Simulation simulation;
  SimulateData(a.reading.data, setting, a.state.best, streams.random, watch, simulation);
  return simulation;
}

// --- One brood after the other ----------------------------------------------------------------------------------

TEST(SimulateData, ABroodStartsAtItsFirstCountAndNeverRises) {
  Planned p(DailyJuveniles, 30);
  p.Value(17) = 0.1;
  p.Simulate();
  for (int brood = 0; brood < 30; ++brood) {
    const int first = p.data.FirstVisit[static_cast<std::size_t>(brood)];
    EXPECT_EQ(p.Count(first), p.data.VisitCount[static_cast<std::size_t>(first)]);
    for (int visit = first + 1; visit < first + 15; ++visit)
      EXPECT_TRUE(p.Count(visit) == Missing || p.Count(visit) <= p.Count(visit - 1)) << visit;
  }
  EXPECT_THAT(p.told, IsEmpty());
}

TEST(SimulateData, BehindACountOfZeroThereAreNoCountsAndNoDraws) {
  Planned p(DailyJuveniles, 40);
  p.Value(17) = 1.5;
  p.Simulate();
  int draws = 0;
  for (int brood = 0; brood < 40; ++brood) {
    const int first = p.data.FirstVisit[static_cast<std::size_t>(brood)];
    int visit = first + 1;
    for (; visit < first + 15 && p.Count(visit - 1) > 0; ++visit) ++draws;
    for (; visit < first + 15; ++visit) EXPECT_EQ(p.Count(visit), Missing);
  }
  Streams counted;
  counted.random.BeginNext();  // the plan
  counted.random.BeginNext();  // the simulation
  for (int i = 0; i < draws; ++i) counted.random.Uniform();
  EXPECT_EQ(p.streams.random.Uniform(), counted.random.Uniform());
}

TEST(SimulateData, BeginsTheNextStreamEachTime) {
  Planned p(DailyJuveniles, 3);
  p.Value(17) = 0.1;
  p.Simulate();
  EXPECT_EQ(p.streams.random.StreamNumber(), 2u);
  const auto first = p.simulation.SimCount;
  p.Simulate();
  EXPECT_EQ(p.streams.random.StreamNumber(), 3u);
  EXPECT_NE(p.simulation.SimCount, first);
  Planned again(DailyJuveniles, 3);
  again.Value(17) = 0.1;
  EXPECT_EQ(again.Simulate().simulation.SimCount, first) << "the same seed gives the same counts";
}

TEST(SimulateData, AHatchDayFirstVisitSetsTheThreeHatchTablesToItsCount) {
  SimulatorSettings settings = DailyJuveniles;
  settings.InitAge = 0;
  Planned p(settings, 1);
  p.Value(17) = 0.1;
  p.Simulate();
  EXPECT_EQ(p.simulation.SimEHatch[0], p.Count(0));
  EXPECT_EQ(p.simulation.SimEHatchR[0], p.Count(0));
  EXPECT_EQ(p.simulation.SimEHatchC[0], p.Count(0));

  settings.InitAge = -5;
  settings.FinalAge = -1;
  Planned clutch(settings, 1);
  clutch.Value(15) = 0.1;
  clutch.Simulate();
  EXPECT_EQ(clutch.simulation.SimEHatch[0], Missing) << "a clutch that is not followed to its hatch has none";
}

TEST(SimulateData, APlanIsSimulatedWhateverTheFitCouldPredict) {
  Planned p(DailyJuveniles, 1);
  p.Value(17) = 0.01;
  p.Simulate();
  std::ranges::fill(p.state.best.survival.EVisit, static_cast<double>(Missing));
  SimulateData(p.data, {.SimulationMode = true}, p.state.best, p.streams.random, p.watch, p.simulation);
  EXPECT_NE(p.Count(1), Missing);
}

TEST(SimulateData, TheSizeAtHatchIsThatOfTheSimulatedClutch) {
  Analysis a;
  a.Visit("A", -20, 10).Visit("A", -2, 9).Visit("A", 4, 8).Read();
  a.Value(15) = 0.05;
  a.Value(17) = 0.01;
  a.Evaluate();
  const Simulation s = Simulated(a, {});
  ASSERT_GT(s.SimCount[1], 0);
  ASSERT_NE(s.SimCount[1], 9) << "another seed is needed";
  EXPECT_NEAR(s.SimEHatch[0], s.SimCount[1] * std::exp(-0.05 * 2), 1e-12);
  EXPECT_NEAR(a.state.best.survival.EHatch[0], 9 * std::exp(-0.05 * 2), 1e-12);
}

TEST(SimulateData, CorrelatedMortalityAloneCanBeSimulatedThoughAPlanHasNoCounts) {
  // The weight of the correlated state comes from the forward values; the fit's own table holds 0 where no count is.
  Planned p(DailyJuveniles, 5);
  p.Value(13) = 1;
  p.Value(21) = 0.05;
  p.Simulate();
  EXPECT_THAT(p.told, IsEmpty());
  EXPECT_GT(p.Count(1), 0);
}

TEST(SimulateData, AVisitWithoutPredictionBreaksTheChain) {
  Analysis a;  // the second age is unknown
  a.Visit("A", 2, 9).UnknownAge("A", 164, " ?", 8).Visit("A", 6, 8).Visit("A", 9, 7).Read();
  a.reading.data.BroodAgeKnown[0] = 1;  // as when another brood's record told otherwise
  a.Value(17) = 0.02;
  a.engine = std::make_unique<Likelihood>(a.reading.data);
  a.Evaluate();
  EXPECT_THAT(Simulated(a, {}).SimCount, ElementsAre(9, Missing, Missing, Missing));
  const Simulation bootstrap = Simulated(a, {.BootstrapMode = true});
  EXPECT_EQ(bootstrap.SimCount[1], 8) << "the real count";
  EXPECT_EQ(bootstrap.SimCount[2], 8) << "the real count, since the age before is unknown";
  EXPECT_LE(bootstrap.SimCount[3], 8);
}

TEST(SimulateData, AgesAtOrPastFledgingAreNotPredicted) {
  Analysis a;
  a.Visit("A", 2, 9).Visit("A", 6, 8).Visit("A", 10, 8).Visit("A", 12, 7).Read();
  a.Value(10) = 10;
  a.Value(17) = 0.001;
  a.Evaluate();
  EXPECT_THAT(Simulated(a, {}).SimCount, ElementsAre(9, testing::Ge(8), Missing, Missing));
  EXPECT_THAT(Simulated(a, {.BootstrapMode = true}).SimCount, ElementsAre(9, testing::Ge(8), 8, 7));
}

TEST(SimulateData, AVisitBeforeLayingIsNotPredicted) {
  Analysis a;
  a.Visit("A", -20, 9).Visit("A", -15, 9).Visit("A", -8, 9).Visit("A", -4, 9).Read();
  a.Value(9) = -10;
  a.Value(15) = 0.5;
  a.Evaluate();
  const Simulation bootstrap = Simulated(a, {.BootstrapMode = true});
  EXPECT_EQ(bootstrap.SimCount[1], 9) << "the real count";
  EXPECT_LT(bootstrap.SimCount[3], 9) << "few of which survive four days";
}

TEST(SimulateData, AnArithmeticErrorLeavesTheRealCountInABootstrapAndNoneOtherwise) {
  Analysis a;
  a.Visit("A", 2, 9).Visit("A", 6, 7).Visit("A", 10, 6).Read();
  a.Value(17) = 0.02;
  a.Evaluate();
  a.state.best.parameters.Alpha_BR = 0;  // no rate at all: 0 / 0
  EXPECT_THAT(Simulated(a, {}).SimCount, ElementsAre(9, Missing, Missing));
  EXPECT_THAT(Simulated(a, {.BootstrapMode = true}).SimCount, ElementsAre(9, 7, 6));
}

TEST(SimulateData, BehindAClutchOfUnknownAgeTheJuvenilesAreSimulatedFromTheirFirstRealCount) {
  Analysis a;
  a.UnknownAge("A", 140, "-?", 9).UnknownAge("A", 145, "-?", 8).Visit("A", 3, 6).Visit("A", 8, 5).Read();
  a.Value(15) = 0.5;
  a.Value(17) = 0.5;
  a.Evaluate();
  const Simulation s = Simulated(a, {.BootstrapMode = true});
  EXPECT_LT(s.SimCount[1], 8) << "by date";
  EXPECT_EQ(s.SimCount[2], 6) << "the real count: how many hatched is not known";
  EXPECT_LT(s.SimCount[3], 5) << "by age";
  EXPECT_THAT(Simulated(a, {}).SimCount, ElementsAre(9, testing::Lt(8), Missing, Missing));
}

TEST(SimulateData, AClutchOfKnownAgeIsSimulatedByAgeThoughItsJuvenilesAreOfUnknownAge) {
  Analysis a;
  a.Visit("A", -20, 9).Visit("A", -15, 8).UnknownAge("A", 164, " ?", 6).UnknownAge("A", 169, " ?", 5).Read();
  a.Value(15) = 0.5;
  a.Value(17) = 0.5;
  a.Evaluate();
  const Simulation s = Simulated(a, {.BootstrapMode = true});
  EXPECT_LT(s.SimCount[1], 8) << "by age";
  EXPECT_EQ(s.SimCount[2], 6) << "the real count: ages of juveniles are not known";
  EXPECT_LT(s.SimCount[3], 5) << "by date";
  EXPECT_THAT(Simulated(a, {}).SimCount, ElementsAre(9, testing::Lt(8), Missing, Missing));
}

TEST(SimulateData, OntoTheHatchDayAClutchOfKnownAgeIsSimulatedWhateverIsKnownOfItsJuveniles) {
  Analysis a;
  a.Visit("A", -20, 9).Visit("A", 0, 8).UnknownAge("A", 169, " ?", 5).Read();
  a.Value(15) = 0.5;
  a.Value(17) = 0.01;
  a.Evaluate();
  ASSERT_FALSE(a.reading.data.BroodAgeKnown[0]);
  EXPECT_LT(Simulated(a, {.BootstrapMode = true}).SimCount[1], 8);
}

TEST(SimulateData, AnAbortLeavesWhatHasBeenSimulated) {
  Analysis a;
  a.Visit("A", 2, 9).Visit("A", 3, 9).Visit("A", 4, 9).Visit("B", 2, 7).Read();
  a.Value(17) = 0.02;
  a.Evaluate();
  int turns = 0;
  CalculationWatch watch;
  watch.turn = [&] { ++turns; };
  watch.aborted = [&] { return turns == 2; };
  std::vector<std::string> progress;
  watch.progress = [&](const std::string& text) { progress.push_back(text); };
  EXPECT_THAT(Simulated(a, {}, 1, watch).SimCount, ElementsAre(9, testing::Ge(0), Missing, Missing));
  EXPECT_THAT(progress, ElementsAre("Simulating data, one moment please...", ""));
  turns = 0;
  const Simulation bootstrap = Simulated(a, {.BootstrapMode = true}, 1, watch);
  EXPECT_EQ(bootstrap.SimCount[3], 7) << "a bootstrap finishes the data set that it has begun";
  EXPECT_THAT(progress, ElementsAre("Simulating data, one moment please...", "", ""))
      << "and clears the text it has shown";
}

TEST(SimulateData, AFailingCalculationIsToldAndWhatIsSimulatedStays) {
  // Hopeless juveniles: over hatch no count has a probability.
  Analysis a;
  a.Visit("A", 2, 9).Visit("A", 3, 9).Visit("B", -4, 8).Visit("B", 60, 0).Visit("C", 5, 3).Read();
  a.Value(15) = 0.001;
  a.Value(17) = 0.01;
  a.Evaluate();
  a.state.best.parameters.Alpha_BR = 0.01;
  a.state.best.parameters.Beta_BR = 4;
  std::vector<Message> told;
  CalculationWatch watch;
  watch.tell = [&](const Message& m) { told.push_back(m); };
  const Simulation s = Simulated(a, {}, 1, watch);
  ASSERT_EQ(told.size(), 1u);
  EXPECT_EQ(told[0].title, "Simulation Error");
  EXPECT_EQ(told[0].text, "Check that algorithm data are loaded and parameters have appropriate values");
  EXPECT_EQ(s.SimCount[0], 9);
  EXPECT_NE(s.SimCount[1], Missing);
  EXPECT_EQ(s.SimCount[4], Missing) << "the brood behind the failure";
  Streams streams(1);
  Simulation again;
  EXPECT_THROW(SimulateData(a.reading.data, {.BootstrapMode = true}, a.state.best, streams.random, {}, again),
               RuntimeFailure)
      << "an attempt of a bootstrap fails as a whole";
}

TEST(SimulateData, DeficienciesAreNoted) {
  Planned p(DailyJuveniles, 2);  // first seen behind hatch, on hatch day 0
  p.Value(17) = 0.05;
  p.Simulate();
  EXPECT_FALSE(p.simulation.SimBroodSizeDeficient || p.simulation.SimHatchDateDeficient);
  p.state.best.parameters.UsesBroodSize = p.state.best.parameters.UsesHatchDate = true;
  SimulateData(p.data, {.SimulationMode = true}, p.state.best, p.streams.random, p.watch, p.simulation);
  EXPECT_TRUE(p.simulation.SimBroodSizeDeficient);
  EXPECT_TRUE(p.simulation.SimHatchDateDeficient) << "hatch day 0 counts as missing";

  SimulatorSettings settings = DailyJuveniles;
  settings.InitAge = -5;
  Planned clutch(settings, 1);
  clutch.Value(15) = clutch.Value(17) = 0.01;
  clutch.Simulate();
  clutch.state.best.parameters.UsesHatchDate = true;
  SimulateData(clutch.data, {.SimulationMode = true}, clutch.state.best, clutch.streams.random, {}, clutch.simulation);
  EXPECT_FALSE(clutch.simulation.SimHatchDateDeficient) << "only a second visit behind hatch is looked at, as in a fit";
}

TEST(SimulateData, PresetsEveryCount) {
  Planned p(DailyJuveniles, 2);
  p.simulation.SimCount.assign(3, 77);
  p.Value(17) = 5;
  p.Simulate();
  EXPECT_EQ(p.simulation.SimCount.size(), 30u);
  EXPECT_THAT(p.simulation.SimCount, testing::Not(testing::Contains(77)));
}

// --- Forward values ---------------------------------------------------------------------------------------------

class GoldenForward : public testing::TestWithParam<test::GoldenCase> {};

/// From the real counts there are forward values exactly where the fit predicts, and they are its own. Returns how many
/// were compared.
int CompareForwardValues(const test::Evaluated& e, const SurvivalTables& t) {
  const BroodData& data = e.reading.data;
  const Parameters& p = e.state.best.parameters;
  Simulation simulation;
  simulation.Preset(data);
  simulation.SimCount = data.VisitCount;
  ForwardShares shares;
  int compared = 0;
  for (int brood = 0; brood < data.Broods(); ++brood) {
    const auto b = static_cast<std::size_t>(brood);
    const int first = data.FirstVisit[b];
    if (data.VisitAge[static_cast<std::size_t>(first)] == 0) simulation.SimEHatch[b] = t.EHatch[b];
    for (int visit = first + 1; visit < first + data.VisitsOf[b]; ++visit) {
      const auto v = static_cast<std::size_t>(visit);
      if (data.VisitCount[v - 1] < 1) continue;
      const auto forward = ForwardExpectation(data, p, false, brood, visit, shares, simulation);
      const bool predicted = std::abs(t.EVisit[v] - Missing) > 1e-9;
      EXPECT_EQ(forward.has_value(), predicted) << "visit " << visit;
      if (!forward || !predicted) continue;
      EXPECT_TRUE(HasForwardExpectation(data, p, brood, visit)) << "visit " << visit;
      const CountExpectation fitted = BestExpectation(data, t, brood, visit);
      EXPECT_EQ(forward->q, fitted.q) << "visit " << visit;
      EXPECT_EQ(forward->r, fitted.r) << "visit " << visit;
      if (forward->overHatch.juveniles[RR] != Missing) {
        EXPECT_EQ(forward->overHatch.EHatchR, fitted.overHatch.EHatchR);
        EXPECT_EQ(forward->overHatch.EHatchC, fitted.overHatch.EHatchC);
        EXPECT_EQ(forward->overHatch.juveniles, fitted.overHatch.juveniles);
      } else {
        EXPECT_EQ(forward->ER, fitted.ER) << "visit " << visit;
        // The beta-binomial distribution of the fit keeps a count within its range in the table itself.
        EXPECT_NEAR(forward->EC, fitted.EC, 2e-6 * data.VisitCount[v - 1]) << "visit " << visit;
      }
      ++compared;
    }
  }
  return compared;
}

TEST_P(GoldenForward, ForwardValuesOnRealCountsAreThoseOfTheFit) {
  test::Evaluated e(GetParam());
  e.CallAgain();
  const int compared = CompareForwardValues(e, e.state.best.survival);
  const bool known = e.reading.data.AllClutchAgesKnown && e.reading.data.AllBroodAgesKnown;
  EXPECT_TRUE(!known || e.SampleSize <= 100 || compared > 30) << compared;
}

INSTANTIATE_TEST_SUITE_P(Cases, GoldenForward, testing::ValuesIn(test::SmallCases()),
                         [](const auto& c) { return c.param.name; });

// --- Known bootstrap data ---------------------------------------------------------------------------------------

class GoldenBootstrapData : public testing::TestWithParam<nlohmann::json> {};

std::vector<nlohmann::json> KnownBootstraps() {
  return test::GoldenJson("results/index.json")["bootstraps"].get<std::vector<nlohmann::json>>();
}

TEST_P(GoldenBootstrapData, CountsAndFileNumbersAreTheReferences) {
  const test::GoldenCase& golden = test::GoldenCaseNamed(GetParam()["case"]);
  test::Evaluated e(golden);
  e.setting.BootstrapMode = true;
  e.CallAgain();
  Streams streams;
  streams.random.BeginNext();  // the start of the bootstrap
  for (const auto& attempt : GetParam()["attempts"]) {
    const std::string file = attempt["file"];
    const double number = std::floor(streams.random.Uniform() * 1000000 + 0.5);
    EXPECT_THAT(file, HasSubstr(fmt::format("_{:06.0f}.dat", number)));
    Simulation simulation;
    SimulateData(e.reading.data, {.BootstrapMode = true}, e.state.best, streams.random, {}, simulation);
    EXPECT_EQ(streams.random.StreamNumber(), attempt["stream"]);

    test::Reading written(golden.choices.FirstYear, golden.choices.LastYear);
    written.Of(ReadWholeFile(test::GoldenPath("results/" + GetParam()["data_files"].get<std::string>() + file)), true);
    std::vector<std::int16_t> counts = simulation.SimCount;
    std::ranges::replace(counts, std::int16_t{Missing}, std::int16_t{0});
    EXPECT_EQ(counts, written.data.VisitCount) << file;
  }
}

INSTANTIATE_TEST_SUITE_P(All, GoldenBootstrapData, testing::ValuesIn(KnownBootstraps()), [](const auto& one) {
  return one.param["case"].template get<std::string>() + "_" + one.param["method"].template get<std::string>();
});

// --- Statistics -------------------------------------------------------------------------------------------------

TEST(SimulateData, TheMeanShareAliveIsTheSurvivalFunction) {
  SimulatorSettings settings{
      .MinInitSize = 8, .MaxInitSize = 12, .InitAge = -8, .FinalAge = 10, .SampFreq1 = 1, .SampFreq2 = 1};
  Planned p(settings, 400);
  p.Value(15) = 0.02;
  p.Value(17) = 0.04;
  p.Simulate();
  double start = 0, hatched = 0, alive = 0;
  for (int brood = 0; brood < 400; ++brood) {
    const int first = p.data.FirstVisit[static_cast<std::size_t>(brood)];
    start += p.Count(first);
    hatched += std::max(0, p.Count(first + 8));
    alive += std::max(0, p.Count(first + 18));
  }
  const auto expectShare = [](double share, double from, double expected) {
    EXPECT_NEAR(share / from, expected, 3.5 * std::sqrt(expected * (1 - expected) / from));
  };
  expectShare(hatched, start, std::exp(-0.02 * 8));
  expectShare(alive, start, std::exp(-0.02 * 8 - 0.04 * 10));
}

TEST(SimulateData, TheRateIsRecoveredWithinItsStandardError) {
  // Constant random mortality seen daily has the estimate -ln(survivors / at risk).
  for (const double rate : {0.01, 0.05, 0.2}) {
    Planned p(DailyJuveniles, 200, 7);
    p.Value(17) = rate;
    p.Simulate();
    double atRisk = 0, survivors = 0;
    for (std::size_t v = 1; v < p.simulation.SimCount.size(); ++v) {
      if (v % 15 == 0 || p.simulation.SimCount[v] == Missing) continue;
      atRisk += p.simulation.SimCount[v - 1];
      survivors += p.simulation.SimCount[v];
    }
    const double s = survivors / atRisk;
    EXPECT_NEAR(-std::log(s), rate, 3.5 * std::sqrt((1 - s) / (s * atRisk))) << rate;
  }
}

}  // namespace
}  // namespace merlane
