#include "data/simulation_plan.h"

#include "base/runtime_failure.h"
#include "data/data_text.h"
#include "data/golden_case.h"
#include "platform/files.h"

namespace merlane {
namespace {

using ::testing::ElementsAre;

TEST(SimulationPlan, HasOneVisitPerDayOfAgeDrawnFromTheNextStream) {
  SystemClock clock;
  RandomStreams random(clock), same(clock);
  random.SetSeed(7);
  same.SetSeed(7);
  BroodData d;
  d.FirstYear = d.LastYear = 1;
  d.simulator = {3, 9, -2, 1, 150, 160, 1, 1};
  PlanSimulation(d, 2, random);
  same.BeginNext();
  EXPECT_EQ(random.StreamNumber(), 1u);
  EXPECT_THAT(d.BroodsInYear, ElementsAre(2));
  EXPECT_THAT(d.BroodCode, ElementsAre("Y01B0001", "Y01B0002"));
  EXPECT_EQ(d.MaxBroods, 2);
  EXPECT_EQ(d.MaxVisits, 4);
  EXPECT_THAT(d.VisitAge, ElementsAre(-2, -1, 0, 1, -2, -1, 0, 1));
  EXPECT_THAT(d.VisitStage, ElementsAre(-1, -1, 1, 1, -1, -1, 1, 1));
  EXPECT_THAT(d.VisitYear, ::testing::Each(1));
  for (std::size_t b = 0; b < 2; ++b) {
    EXPECT_EQ(d.HatchDate[b], static_cast<int>(11 * same.Uniform()) + 150) << "the hatch day is drawn first";
    EXPECT_EQ(d.VisitCount[4 * b], static_cast<int>(7 * same.Uniform()) + 3);
    EXPECT_EQ(d.VisitCount[4 * b + 1], -999);
    EXPECT_EQ(d.VisitDate[4 * b + 3], d.HatchDate[b] + 1);
  }
  EXPECT_TRUE(d.AllClutchAgesKnown && d.AllBroodAgesKnown);
}

TEST(SimulationPlan, RefusesAgesInTheWrongOrderAndTablesTooLargeForAMachine) {
  SystemClock clock;
  RandomStreams random(clock);
  BroodData d;
  d.FirstYear = d.LastYear = 1;
  d.simulator.InitAge = 10;
  d.simulator.FinalAge = 1;
  EXPECT_THROW(PlanSimulation(d, 2, random), RuntimeFailure);
  d.simulator.FinalAge = 8;
  EXPECT_THROW(PlanSimulation(d, 2, random), RuntimeFailure);
  d.simulator.FinalAge = 9;
  EXPECT_THROW(PlanSimulation(d, 2, random), RuntimeFailure) << "broods without a visit";
  d.simulator.FinalAge = 10;
  EXPECT_NO_THROW(PlanSimulation(d, 2, random));
  d.simulator.MinInitSize = -3;
  EXPECT_THROW(PlanSimulation(d, 2, random), RuntimeFailure);
  d.simulator.MinInitSize = 0;
  d.simulator.FinalAge = 32000;
  EXPECT_THROW(PlanSimulation(d, 32000, random), RuntimeFailure);
  EXPECT_THROW(PlanSimulation(d, -1, random), RuntimeFailure);
  d.simulator.InitAge = -32000;
  EXPECT_THROW(PlanSimulation(d, 1, random), RuntimeFailure);
}

TEST(SimulationPlan, HatchDaysAndInitialSizesAreThoseOfKnownSimulations) {
  const nlohmann::json index = test::GoldenJson("results/index.json");
  for (const auto& simulation : index["simulations"]) {
    const nlohmann::json& settings = simulation["settings"];
    BroodData plan;
    plan.FirstYear = simulation["years"][0];
    plan.LastYear = simulation["years"][1];
    plan.simulator.MinInitSize = settings["min_size"];
    plan.simulator.MaxInitSize = settings["max_size"];
    plan.simulator.InitAge = settings["init_age"];
    plan.simulator.FinalAge = settings["final_age"];
    plan.simulator.MinHatchDay = settings["min_hatch"];
    plan.simulator.MaxHatchDay = settings["max_hatch"];
    SystemClock clock;
    RandomStreams random(clock);
    random.SetSeed(index["seed"]);
    PlanSimulation(plan, settings["broods"], random);

    test::Reading reading(plan.FirstYear, plan.LastYear);
    const BroodData& known =
        reading.Of(ReadWholeFile(test::GoldenPath("results/" + simulation["file"].get<std::string>()))).data;
    EXPECT_EQ(plan.BroodCode, known.BroodCode);
    EXPECT_EQ(plan.HatchDate, known.HatchDate);
    for (std::size_t b = 0; b < known.FirstVisit.size(); ++b) {
      const auto v = static_cast<std::size_t>(plan.FirstVisit[b]), w = static_cast<std::size_t>(known.FirstVisit[b]);
      EXPECT_EQ(plan.VisitCount[v], known.VisitCount[w]) << b;
      EXPECT_EQ(plan.VisitAge[v], known.VisitAge[w]) << b;
      EXPECT_EQ(plan.VisitDate[v], known.VisitDate[w]) << b;
    }
  }
}

}  // namespace
}  // namespace merlane
