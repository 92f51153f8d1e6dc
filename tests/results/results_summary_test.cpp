#include "results/results_summary.h"
#include "results/aicc.h"

#include <gmock/gmock.h>

#include "base/runtime_failure.h"
#include "base/text.h"
#include "likelihood/analysis.h"

namespace merlane {
namespace {

using test::Analysis;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;

// --- AICc -------------------------------------------------------------------------------------------------------

TEST(Aicc, AddsTwiceKNOverTheDegreesOfFreedom) { EXPECT_EQ(AICc(100, 20, 3), 100 + 120.0 / 16); }

TEST(Aicc, WithTooFewDegreesOfFreedomThereIsNone) {
  EXPECT_TRUE(AICc(100, 5, 3));
  EXPECT_FALSE(AICc(100, 4, 3));
  EXPECT_FALSE(AICc(100, 0, 0));
}

TEST(Aicc, LargeSamplesDoNotOverflow) { EXPECT_EQ(AICc(0, 2000000000, 600), 2.0 * 600 * 2e9 / (2e9 - 601)); }

// --- Effective sizes --------------------------------------------------------------------------------------------

/// Two clutch visits, the hatch crossed, two brood visits; everything is correlated and overdispersed.
Analysis Correlated() {
  Analysis a;
  a.Visit("A", -9, 8).Visit("A", -4, 7).Visit("A", 5, 6).Visit("A", 12, 4).Read();
  for (const int i : {3, 4}) a.Value(i) = 2;
  a.Value(5) = 0.5;
  a.Value(6) = 0.1;
  a.Value(7) = 0.25;
  a.Value(8) = 0.2;
  a.Value(11) = a.Value(13) = 1;
  a.Value(19) = 0.02;
  a.Value(21) = 0.03;
  a.Evaluate();
  return a;
}

TEST(EffectiveSizes, TheUnitBelongsToTheStartOfAnIntervalButAcrossHatchToItsEnd) {
  const Analysis a = Correlated();
  const EffectiveSizes s = FindEffectiveSizes(a.reading.data, a.state.best, {});
  EXPECT_NEAR(s.EIU[0], 1 + 7 * 0.5 * std::exp(-0.1 * (-9 + 28)), 1e-14);
  EXPECT_EQ(s.EIU[1], Missing) << "the last clutch visit before hatch";
  // Across hatch the later visit gets the unit of 7 juveniles at hatch; the interval behind it overwrites that.
  EXPECT_NEAR(s.EIU[2], 1 + 5 * 0.25 * std::exp(-0.2 * 5), 1e-14);
  EXPECT_EQ(s.EIU[3], Missing) << "the last visit of a brood";
  const double acrossHatch = 1 + 6 * 0.5 * std::exp(-0.1 * (-4 + 28));
  EXPECT_NEAR(s.EffSizeEggs, 8 / s.EIU[0] + 7 / acrossHatch, 1e-12);
  EXPECT_NEAR(s.EffSizeJuvs, 6 / s.EIU[2], 1e-12);
}

TEST(EffectiveSizes, AVisitDirectlyBehindHatchThatIsTheLastKeepsItsUnit) {
  Analysis a;
  a.Visit("A", -4, 7).Visit("A", 5, 6).Read();
  a.Value(4) = 2;
  a.Value(7) = 0.25;
  a.Value(8) = 0.2;
  a.Value(11) = a.Value(13) = 1;
  a.Value(19) = 0.02;
  a.Value(21) = 0.03;
  a.Evaluate();
  EXPECT_THAT(FindEffectiveSizes(a.reading.data, a.state.best, {}).EIU, ElementsAre(Missing, 1 + 6 * 0.25));
}

TEST(EffectiveSizes, WithoutOverdispersionTheyAreTheIndividualsAtRisk) {
  Analysis a;
  a.Visit("A", -9, 8).Visit("A", -4, 7).Visit("A", 5, 6).Visit("A", 12, 4).Read();
  a.Value(15) = 0.02;
  a.Value(17) = 0.03;
  a.Evaluate();
  const EffectiveSizes s = FindEffectiveSizes(a.reading.data, a.state.best, {});
  EXPECT_EQ(s.EffSizeEggs, a.state.EggsAtRisk);
  EXPECT_EQ(s.EffSizeJuvs, a.state.JuvsAtRisk);
}

TEST(EffectiveSizes, AUnitOfZeroFails) {
  Analysis a;
  a.Visit("A", 2, 8).Visit("A", 4, 0).Visit("A", 6, 0).Read();
  a.Value(17) = 0.03;
  a.Evaluate();
  a.state.best.parameters.ThetaJuvC = 1;  // of none alive
  EXPECT_THROW(FindEffectiveSizes(a.reading.data, a.state.best, {}), RuntimeFailure);
}

// --- Head -------------------------------------------------------------------------------------------------------

/// The text of an analysis, with the names that the test gives.
struct Summary {
  explicit Summary(Analysis& analysis)
      : a(analysis),
        sizes(FindEffectiveSizes(a.reading.data, a.state.best, {})),
        subject{.data = a.reading.data,
                .fitted = a.state,
                .Value = a.Value,
                .Names = a.Names,
                .SampleSize = a.SampleSize,
                .FreeCount = 2,
                .AlgName = "/home/me/ducks.alg",
                .PriorFileName = ""} {}
  std::string Head() const { return ResultsHead(subject, sizes); }
  /// The rows of a listing, each as its fields without blanks.
  std::vector<std::vector<std::string>> Rows(Listing listing) {
    estimates.Preset(a.reading.data);
    if (simulation.SimCount.empty()) simulation.Preset(a.reading.data);
    std::vector<std::vector<std::string>> rows;
    for (const std::string& line : Lines(ListingRows(subject, listing, sizes, estimates, simulation, {}))) {
      auto& fields = rows.emplace_back();
      std::size_t from = 0;
      for (std::size_t comma = 0; comma != std::string::npos; from = comma + 1) {
        comma = line.find(',', from);
        fields.emplace_back(Trim(std::string_view(line).substr(from, comma - from)));
      }
    }
    return rows;
  }

  Analysis& a;
  EffectiveSizes sizes;
  ResultsSubject subject;
  SurvivalEstimates estimates;
  Simulation simulation;
};

Analysis Plain() {
  Analysis a;
  a.Visit("A", -9, 8).Visit("A", -4, 7).Visit("A", 5, 6).Visit("A", 12, 4).Visit("B", 3, 5).Visit("B", 8, 0).Read();
  a.Value(15) = 0.02;
  a.Value(17) = 0.03;
  a.Evaluate();
  return a;
}

TEST(ResultsHead, NamesFilesWithoutTheirFolders) {
  Analysis a = Plain();
  a.reading.data.DataFileName = "C:\\data\\ducks.dat";
  a.reading.data.DataExt = "dat";
  EXPECT_THAT(Summary(a).Head(), HasSubstr("The brood size data file name is:\r\n     ducks.dat\r\nThe algorithm data "
                                           "file name is:\r\n     ducks.alg\r\nThe likelihood function for egg"));
}

TEST(ResultsHead, NamesTheWorksheetOfAWorkbook) {
  Analysis a = Plain();
  a.reading.data.DataFileName = "/data/ducks.XLS";
  a.reading.data.DataExt = "XLS";
  a.reading.data.SheetName = "Lake";
  EXPECT_THAT(Summary(a).Head(),
              HasSubstr("     ducks.XLS\r\nThe brood size worksheet chosen from the above EXCEL file is: Lake\r\n"));
}

TEST(ResultsHead, SaysWhatWasIgnored) {
  Analysis a = Plain();
  const std::string eggs =
      "\r\n      For this analysis all data records for eggs were ignored (hatch day records not ignored)\r\n";
  const std::string juveniles =
      "\r\n      For this analysis all data records for juveniles were ignored (hatch day records not ignored)\r\n";
  EXPECT_THAT(Summary(a).Head(), testing::AllOf(Not(HasSubstr(eggs)), Not(HasSubstr(juveniles))));
  a.reading.data.CensorEggs = true;
  EXPECT_THAT(Summary(a).Head(), HasSubstr(eggs));
  a.reading.data.CensorEggs = false;
  a.reading.data.CensorJuvs = true;
  EXPECT_THAT(Summary(a).Head(), HasSubstr(juveniles));
}

TEST(ResultsHead, NamesThePriorsOnlyWhenTheyAreOn) {
  Analysis a = Plain();
  Summary s(a);
  s.subject.PriorFileName = "/home/me/old.pri";
  EXPECT_THAT(s.Head(), Not(HasSubstr("Bayesian")));
  s.subject.BayesOn = true;
  EXPECT_THAT(s.Head(), HasSubstr("Important note: This analysis used Bayesian prior information\r\n"));
  EXPECT_THAT(s.Head(), HasSubstr("The Bayesian prior information file name is:         old.pri\r\n"));
}

TEST(ResultsHead, NamesNoFileForPriorsThatStandInNone) {
  Analysis a = Plain();
  Summary s(a);
  s.subject.BayesOn = true;
  s.subject.PriorFileName.clear();
  EXPECT_THAT(s.Head(), HasSubstr("The Bayesian prior information file name is:         (in no file)\r\n"));
}

TEST(ResultsHead, TellsOfUnknownAges) {
  Analysis a;
  a.UnknownAge("A", 140, "-?", 9).UnknownAge("A", 145, "-?", 8).UnknownAge("B", 165, " ?", 6).Read();
  a.Value(15) = 0.02;
  a.Evaluate();
  EXPECT_THAT(
      Summary(a).Head(),
      HasSubstr(
          "\r\nSince at least one clutch lacked age data, clutch mortality rates were calculated as a function of "
          "time, not age.\r\nSince at least one brood lacked age data, brood mortality rates were calculated as a "
          "function of time, not age.\r\nAnalyses that use age as a covariate, and related analyses and output, "
          "were unavailable\r\nThe observed frequency of juveniles in the data is:"));
}

TEST(ResultsHead, DistributionsAndAgesAreThoseOfTheBestState) {
  Analysis a = Plain();
  Parameters& best = a.state.best.parameters;
  best.CodeEggR = best.CodeJuvC = 1;
  best.CodeJuvR = best.CodeEggC = 2;
  best.LayAge = -30;
  best.FledgeAge = 45;
  EXPECT_THAT(
      Summary(a).Head(),
      HasSubstr(
          "\r\nThe likelihood function for egg      random mortality     is based on the binomial      (BI) "
          "distribution\r\nThe likelihood function for juvenile random mortality     is based on the "
          "beta-binomial (BB) distribution\r\nThe likelihood function for egg      correlated mortality is based "
          "on the beta-binomial (BB) distribution\r\nThe likelihood function for juvenile correlated mortality is "
          "based on the binomial      (BI) distribution\r\n"));
  EXPECT_THAT(Summary(a).Head(), testing::AllOf(HasSubstr(" is -30 days\r\n"), HasSubstr(" is  45 days\r\n")));
}

TEST(ResultsHead, TooFewDegreesOfFreedomArePrintedInPlaceOfTheAICc) {
  Analysis a = Plain();
  Summary s(a);
  s.subject.FreeCount = 500;
  EXPECT_THAT(s.Head(), HasSubstr("The Akaike Information Criterion (AICc) is:         Undefined (too few degrees of "
                                  "freedom)\r\n"));
}

TEST(ResultsRules, NameTheMortalitiesUnderNumber13AsUsersKnowThem) {
  const std::string rules = ResultsRules();
  EXPECT_THAT(rules, HasSubstr("If Parameter # 13 = 0            then Parameter #s  >30 pertaining to brood covariates "
                               "(random mortality)     MUST = 0\r\n"));
  EXPECT_THAT(rules, HasSubstr("If Parameter # 13 = 1 and 14 = 0 then Parameter #s  >30 pertaining to brood covariates "
                               "(correlated mortality) MUST = 0\r\n"));
  EXPECT_EQ(Lines(rules).size(), 19u);
}

TEST(ResultsParameters, ALineHoldsTheValueAndTheFirst16CharactersOfTheName) {
  Analysis a = Plain();
  a.Names(1) = "DO NOT ESTIMATE this one";
  a.Names(2) = "Short";
  a.Value(2) = -12.5;
  const std::vector<std::string> lines = Lines(ResultsParameters(Summary(a).subject));
  EXPECT_EQ(lines[0],
            "Note that not necessarily all 34 parameters are active for this analysis. (DNE = DO NOT ESTIMATE)");
  EXPECT_EQ(lines[1], "Parameter # 001 estimate: 1.0000000  DO NOT ESTIMATE ");
  EXPECT_EQ(lines[2], "Parameter # 002 estimate: -12.5000000             Short");
  EXPECT_EQ(lines.size(), 35u);
}

// --- Listing ----------------------------------------------------------------------------------------------------

TEST(Listing, OneRowForEachRecordWithMissingValuesAsAsterisks) {
  Analysis a = Plain();
  Summary s(a);
  const auto rows = s.Rows(Listing::Partitioning);
  ASSERT_EQ(rows.size(), 6u);
  EXPECT_THAT(std::vector<std::string>(rows[0].begin(), rows[0].begin() + 8),
              ElementsAre("A", "1995", "1", "1", "151", "160", "-9", "8"));
  for (const std::size_t field : {9u, 10u, 12u, 13u, 15u, 16u, 17u, 18u, 19u}) EXPECT_EQ(rows[0][field], "*") << field;
  EXPECT_EQ(rows[5].back(), "6");
  EXPECT_EQ(rows[4][2], "2") << "the brood's number within its year";
  EXPECT_NE(rows[1][18], "*");
}

TEST(Listing, TheAgeOfAClutchOfUnknownAgeIsAMinusAndAnAsterisk) {
  Analysis a;
  a.UnknownAge("A", 140, "-?", 9).UnknownAge("A", 145, "-?", 8).UnknownAge("B", 165, " ?", 6).Read();
  a.Value(15) = 0.02;
  a.Evaluate();
  Summary s(a);
  const auto rows = s.Rows(Listing::Partitioning);
  EXPECT_EQ(rows[0][6], "-*");
  EXPECT_EQ(rows[2][6], "*");
}

TEST(Listing, ANumberNextToTheMissingOneIsANumber) {
  Analysis a = Plain();
  a.state.best.survival.EVisit[1] = std::nextafter(Missing, 0);
  Summary s(a);
  EXPECT_EQ(s.Rows(Listing::Partitioning)[1][15], "-999.00");
}

TEST(Listing, AHatchDayOfZeroIsPrinted) {
  Analysis a;
  a.WithoutHatchDay("A", 150, 2, 5).WithoutHatchDay("A", 153, 5, 4).Read();
  a.Value(17) = 0.02;
  a.Evaluate();
  Summary s(a);
  EXPECT_EQ(s.Rows(Listing::Partitioning)[0][5], "0");
}

TEST(Listing, BehindACountOfZeroDevianceAndDeviateAreZero) {
  Analysis a;
  a.Visit("A", 2, 5).Visit("A", 5, 0).Visit("A", 9, 0).Read();
  a.Value(17) = 0.02;
  a.Evaluate();
  Summary s(a);
  const auto rows = s.Rows(Listing::SimulatedAndSurvival);
  EXPECT_EQ(rows[2][11], "0.00");
  EXPECT_EQ(rows[2][12], "0.00");
  EXPECT_EQ(rows[0][11], "*");
}

TEST(Listing, ABroodWithAMissingCovariateShowsAnAsterisk) {
  Analysis a;
  a.Visit("A", 2, 5, "0.6485").Visit("A", 5, 4, "0.6485").Visit("B", 2, 5, "-999").Read(1);
  a.Value(17) = 0.02;
  a.Evaluate();
  Summary s(a);
  const auto rows = s.Rows(Listing::SimulatedAndSurvival);
  EXPECT_EQ(rows[0].back(), "6.4850E-01");
  EXPECT_EQ(rows[2].back(), "*");
}

TEST(Listing, WithoutAnAgeAtFledgingTheSurvivalColumnsHoldAsterisks) {
  Analysis a = Plain();
  Summary s(a);
  for (const auto& row : s.Rows(Listing::SimulatedAndSurvival))
    for (std::size_t field = 13; field <= 16; ++field) EXPECT_EQ(row[field], "*");
}

TEST(Listing, EveryRowStandsUnderItsHeadings) {
  Analysis a = Plain();
  a.state.best.VisitDeviance[5] = 4;  // the death of brood B has a deviate too long for its column
  Summary s(a);
  s.estimates.Preset(a.reading.data);
  s.simulation.Preset(a.reading.data);
  for (const Listing listing : {Listing::Partitioning, Listing::SimulatedAndSurvival}) {
    const std::string heading = Lines(ListingHead(a.reading.data, listing)).back();
    for (const std::string& row : Lines(ListingRows(s.subject, listing, s.sizes, s.estimates, s.simulation, {}))) {
      ASSERT_EQ(row.size(), heading.size());
      for (std::size_t i = 0; i < row.size(); ++i) EXPECT_EQ(row[i] == ',', heading[i] == ',') << i;
    }
  }
}

TEST(Listing, ADeviateOfTenThousandAndMoreStandsWhole) {
  Analysis a = Plain();
  a.state.best.VisitDeviance[1] = -2 * std::log(1e-7);
  Summary s(a);
  EXPECT_EQ(s.Rows(Listing::SimulatedAndSurvival)[1][12], "9999999.00");
  EXPECT_EQ(s.Rows(Listing::Partitioning)[1][19], "9999999.00");
}

TEST(Listing, AGapBetweenRecordsThatStandApartIsNoRow) {
  Analysis a;
  a.reading = test::Reading(1995, 1996);
  a.reading.Of(test::Header + "\n" + test::Record(1995, "A", 160, 150, 10, 9) +
               test::Record(1996, "A", 161, 150, 11, 8) + test::Record(1996, "A", 165, 150, 15, 7) +
               test::Record(1995, "A", 170, 150, 20, 5));
  ASSERT_EQ(a.reading.data.Visits(), 5);
  a.Prepare().Value(17) = 0.03;
  a.Evaluate();
  Summary s(a);
  const auto rows = s.Rows(Listing::Partitioning);
  ASSERT_EQ(rows.size(), 5u) << "four records and the empty line between the years";
  EXPECT_EQ(rows[1][7], "5");
  EXPECT_EQ(rows[1].back(), "2");
  EXPECT_EQ(rows[4].back(), "4");
  EXPECT_THAT(s.Head(), HasSubstr("to a clutch or brood in any year is:            2\r\n"));
}

TEST(Listing, AnAbortEndsItWhereItStands) {
  Analysis a = Plain();
  Summary s(a);
  s.estimates.Preset(a.reading.data);
  int turns = 0;
  CalculationWatch watch;
  watch.turn = [&] { ++turns; };
  watch.aborted = [&] { return turns == 3; };
  EXPECT_EQ(Lines(ListingRows(s.subject, Listing::Partitioning, s.sizes, s.estimates, s.simulation, watch)).size(), 2u);
}

TEST(Listing, HasTheSameRowsByAnyNumberOfThreads) {
  Analysis a;
  for (int brood = 0; brood < 400; ++brood)  // more rows than are made at once
    for (const int age : {2, 5, 9, 12}) a.Visit("B" + std::to_string(brood), age, 9 - age / 4 - brood % 3);
  a.Read();
  a.Value(17) = 0.03;
  a.Evaluate();
  a.state.best.VisitDeviance[1402] = 1500;  // a deviate that is impossible
  Summary s(a);
  s.estimates.Preset(a.reading.data);
  s.simulation.Preset(a.reading.data);
  for (const Listing listing : {Listing::Partitioning, Listing::SimulatedAndSurvival}) {
    const auto rows = [&](Workers* workers) {
      std::vector<std::string> told;
      CalculationWatch watch;
      watch.progress = [&](const std::string& text) { told.push_back(text); };
      watch.impossible = [&](const ImpossibleStep& step) { told.push_back(step.step + " " + step.reason); };
      return std::pair(ListingRows(s.subject, listing, s.sizes, s.estimates, s.simulation, watch, workers), told);
    };
    const auto alone = rows(nullptr);
    EXPECT_EQ(Lines(alone.first).size(), 1600u);
    EXPECT_EQ(alone.second.size(), 1601u);
    for (const int threads : {1, 2, 5}) {
      Workers workers(threads);
      EXPECT_EQ(rows(&workers), alone) << threads;
    }
  }
}

TEST(Listing, NotesSayHowCovariatesWereTreated) {
  BroodData data;
  EXPECT_THAT(ListingHead(data, Listing::Partitioning),
              HasSubstr("    Brood covariates were analyzed and reported as originally read from the data file\r\n"));
  data.CovariateFormat = "A";
  EXPECT_THAT(ListingHead(data, Listing::SimulatedAndSurvival),
              HasSubstr("reported as a standard anomaly from the mean value of the originally read series\r\n"));
}

TEST(Listing, OnlyTheSimulationHasANoteOnIt) {
  EXPECT_THAT(ListingHead({}, Listing::Partitioning), Not(HasSubstr("Note 6:")));
  EXPECT_THAT(ListingHead({}, Listing::Partitioning), HasSubstr("corrleated"));
  EXPECT_THAT(ListingHead({}, Listing::SimulatedAndSurvival), HasSubstr("Note 6: Simulated data reported here"));
}

}  // namespace
}  // namespace merlane
