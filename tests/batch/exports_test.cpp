#include "batch/exports.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "base/text.h"
#include "batch/golden_batch.h"
#include "batch/replay.h"
#include "minimise/evaluate_trial.h"

namespace merlane {
namespace {

TEST(Exports, ParametersAreOneToALineInShortestForm) {
  AlgorithmData algorithm;
  algorithm.Value = {1, 0.1, -1e-100};
  algorithm.Step = {0, 0.01, -2};
  algorithm.Fuse = {"~~", "A", "AB"};
  algorithm.ParName = {"plain", "a, b", "a \"b\""};
  EXPECT_EQ(ParametersCsv(algorithm),
            "number,value,step,fuse,free,name\n"
            "1,1,0,~~,0,plain\n"
            "2,0.1,0.01,A,1,\"a, b\"\n"
            "3,-1e-100,-2,AB,1,\"a \"\"b\"\"\"\n");
}

TEST(Exports, ParametersOfARunWithoutAlgorithmDataAreNone) {
  AlgorithmData algorithm;
  algorithm.ParName = {"a"};
  EXPECT_EQ(ParametersCsv(algorithm), "number,value,step,fuse,free,name\n");
}

TEST(Exports, VisitsAreOneToALineWithMissingValuesEmpty) {
  BroodData data;
  data.FirstYear = 1995;
  data.LastYear = 1996;
  AllocateTables(data, {{2}, {1}});
  data.BroodYear = {1995, 1996};
  data.BroodCode = {"   A", "B,C"};
  data.HatchDate = {172, Missing};
  data.VisitDate = {161, 186, 170};
  data.VisitAge = {-11, 14.5, Missing};
  data.VisitStage = {-1, 1, -1};
  data.VisitCount = {5, Missing, 4};
  BestTables best;
  best.survival.Dimension(data);
  best.survival.Preset();
  best.survival.EVisitR = {Missing, 4.25, -998.9999999999999};
  best.VarR = best.VarC = {0, 0.1, 0};
  best.VisitDeviance = {0, 1e-17, 0};
  EXPECT_EQ(VisitsCsv(data, best),
            "year,code,brood,visit,date,hatch_day,age,stage,count,E_R,E_C,E,pcorr_egg,pcorr_juv,var_R,var_C,deviance\n"
            "1995,   A,1,1,161,172,-11,-1,5,,,,,,0,0,0\n"
            "1995,   A,1,2,186,172,14.5,1,,4.25,,,,,0.1,0.1,1e-17\n"
            "1996,\"B,C\",1,1,170,,,-1,4,-998.9999999999999,,,,,0,0,0\n");
}

TEST(Exports, VisitsThatWereNotEvaluatedHaveNoFigures) {
  BroodData data;
  data.FirstYear = data.LastYear = 1995;
  AllocateTables(data, {{1}});
  data.BroodYear = {1995};
  data.VisitStage = {1};
  EXPECT_THAT(VisitsCsv(data, BestTables()), testing::EndsWith(",,,,,,,,\n"));
}

TEST(Exports, AGapBetweenRecordsThatStandApartIsNoVisit) {
  BroodData data;
  data.FirstYear = data.LastYear = 1995;
  AllocateTables(data, {{3}});
  data.BroodYear = {1995};
  data.VisitStage = {1, 0, 1};
  EXPECT_EQ(Lines(VisitsCsv(data, BestTables())).size(), 3u);
}

TEST(Exports, AFitWithoutMinimisationHasNoneOfItsFigures) {
  Fit fit;
  fit.objective = 790.6039292891389;
  const nlohmann::json read = nlohmann::json::parse(FitJson(fit));
  EXPECT_EQ(read["objective"], 790.6039292891389);
  EXPECT_TRUE(read["minimiser"].is_null());
  EXPECT_EQ(read.size(), 14U);
}

TEST(Exports, AFitTellsHowItEnded) {
  Fit fit;
  fit.objective = 592.7;
  fit.minimisation = Minimisation{"simplex", "minimum", 56, 25, 0};
  const nlohmann::json read = nlohmann::json::parse(FitJson(fit));
  EXPECT_EQ(read["function_calls"], 56);
  EXPECT_EQ(read["iterations"], 25);
  EXPECT_EQ(read["restarts"], 0);
  EXPECT_EQ(read["minimiser"], "simplex");
  EXPECT_EQ(read["ending"], "minimum");
}

TEST(Exports, AFitTellsAnObjectiveOfOneCallThatIsAnother) {
  Fit fit;
  fit.objective = 694.25;
  fit.ofOneCall = 564.75;
  EXPECT_EQ(nlohmann::json::parse(FitJson(fit))["objective_of_one_call"], 564.75);
  fit.ofOneCall = UnevaluatedF;
  EXPECT_TRUE(nlohmann::json::parse(FitJson(fit)).at("objective_of_one_call").is_null());
}

const std::string uptoLoaded = "press frmMenu.cmdInitialize\npress frmInitialize.cmdLoadData\nfile " +
                               InQuotes(golden + "juveniles_only.dat") +
                               "\npress frmInitialize.cmdDone\npress frmMenu.cmdLoadAlg\nreply yes\nfile " +
                               InQuotes(golden + "juveniles_only.alg") + "\n";
const std::string edited = "press frmMenu.cmdEditAlg\ntype frmAlgo.grdVS 17 1 0.2\npress frmAlgo.cmdFinish\n";

TEST(Exports, AFitThatIsNoLongerThatOfThePresentValuesSaysSoWithItsVisits) {
  const Replay run(uptoLoaded +
                   "press frmMenu.cmdSimplex\nreply yes\n"
                   "export fit then.json\nexport visits then.csv\n" +
                   edited +
                   "press frmMenu.cmdUserSummary\nenter 1\nreply no\n"
                   "export fit fit.json\nexport visits visits.csv\nexport parameters parameters.csv\n");
  ASSERT_EQ(run.status, 0) << run.errors;
  const std::string note =
      "this is the last function call or minimization of juveniles_only.alg. Since then parameter values have been "
      "changed, step sizes have been changed.";
  EXPECT_THAT(run.All("note"), testing::ElementsAre(note, note)) << "of the fit and the visits";
  EXPECT_NEAR(std::stod(Csv(run.File("visits.csv"))[1]["E"]), std::stod(Csv(run.File("then.csv"))[1]["E"]), 1e-9);
  nlohmann::json fit = run.Fit();
  EXPECT_EQ(fit["changed_since"], "parameter values have been changed, step sizes have been changed");
  fit.erase("changed_since");
  EXPECT_EQ(fit, nlohmann::json::parse(run.File("then.json")));
}

TEST(Exports, VisitsOfASummaryBehindAnEditSayThatTheyAreOfOtherValues) {
  const Replay run(uptoLoaded +
                   "press frmMenu.cmdUserSummary\nenter 1\nreply no\nexport visits then.csv\n"
                   "press frmMain.mnuMenu\n" +
                   edited + "export visits visits.csv\n");
  ASSERT_EQ(run.status, 0) << run.errors;
  EXPECT_THAT(run.All("note"),
              testing::ElementsAre("this is of parameter values that were evaluated before, not of the present ones."));
  EXPECT_EQ(run.File("visits.csv"), run.File("then.csv"));
}

TEST(Exports, ParametersThatDoNotYetFollowTheFirstOfTheirFuseAreNamed) {
  const std::string load = Replaced(uptoLoaded, "juveniles_only", "fuses");
  const Replay run(load +
                   "press frmMenu.cmdSimplex\nreply yes\nexport parameters behind.csv\n"
                   "press frmMenu.cmdOneFunction\nexport parameters called.csv\n");
  ASSERT_EQ(run.status, 0) << run.errors;
  const auto behind = Csv(run.File("behind.csv")), called = Csv(run.File("called.csv"));
  std::vector<std::string> notYet;
  for (std::size_t i = 0; i < behind.size(); ++i)
    if (behind[i].at("value") != called[i].at("value")) notYet.push_back(behind[i].at("number"));
  ASSERT_FALSE(notYet.empty());
  EXPECT_THAT(run.All("note"), testing::ElementsAre(fmt::format(
                                   "fused, but not yet with the value of the first of the same fuse, which is what the "
                                   "model takes: parameter {}. They follow with the next function call.",
                                   fmt::join(notYet, ", "))));
}

}  // namespace
}  // namespace merlane
