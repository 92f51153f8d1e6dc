// The parametric bootstrap: known ones to the last character, and every way out of one.
#include <gmock/gmock.h>

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <nlohmann/json.hpp>
#include <set>

#include "base/runtime_failure.h"
#include "base/text.h"
#include "bootstrap/bootstrap_reports.h"
#include "control/algorithm_file.h"
#include "data/record_layout.h"
#include "platform/files.h"
#include "priors/set_prior.h"
#include "program/analysis.h"

namespace merlane {
namespace {

using nlohmann::json;
using test::Analysis;
using test::Folder;
using test::Golden;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::IsSupersetOf;
using ::testing::SizeIs;
using ::testing::StartsWith;
using Minimiser = BootstrapResults::Minimiser;

constexpr std::uint64_t KeptSeed = 12345;

const json& Index() {
  static const json index = json::parse(ReadWholeFile(Golden("results/index.json")));
  return index;
}

/// The lines agree; one that is known to hold a citation may cite in our words.
void ExpectLines(const std::string& text, const std::string& knownFile) {
  const std::vector<std::string> lines = Lines(text), known = Lines(ReadWholeFile(Golden("results/" + knownFile)));
  ASSERT_EQ(lines.size(), known.size()) << knownFile;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    const std::size_t citation = known[i].find("@CITATION@");
    if (citation == std::string::npos)
      ASSERT_EQ(lines[i], known[i]) << knownFile << ", line " << i + 1;
    else
      EXPECT_THAT(lines[i], StartsWith(known[i].substr(0, citation)));
  }
}

struct BootstrapTest : ::testing::Test, Analysis {
  Folder folder{"bootstrap"};

  BootstrapTest() {
    desk.host.bootstrapFolder = folder / "";
    desk.host.bootstrapFolder.pop_back();
    host.random.SetSeed(KeptSeed);
  }

  BootstrapResults Run(int replicates, Minimiser minimiser = Minimiser::Simplex, int age = 40) {
    return program.parametricBootstrap.Run(
        {static_cast<std::int16_t>(replicates), static_cast<std::int16_t>(age), minimiser});
  }
  /// A results summary on the screen.
  void Summary() {
    windows.Enter("1", "More simulations improve the goodness-of-fit (GOF) estimate");
    windows.Yes("Choose among output options");
    ASSERT_TRUE(desk.Press(menu.cmdUserSummary));
  }
  /// Answers to the questions at the beginning of a bootstrap.
  void AnswerOptions(const std::string& replicates, const std::string& age, bool simplex) {
    windows.Enter(replicates, "Parametric bootstrap");
    windows.Enter(age, "Parametric bootstrap");
    windows.Reply(simplex ? Answer::Yes : Answer::No, "Choose minimization algorithm");
  }
  /// Answers that decline both reports.
  void DeclineReports() {
    for (int report = 1; report <= 2; ++report) {
      windows.No("Confirmation request");
      windows.Yes("Confirmation request");
    }
  }
  std::vector<std::string> DataFiles() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(desk.host.bootstrapFolder))
      names.push_back(entry.path().filename());
    std::sort(names.begin(), names.end());
    return names;
  }
  std::vector<std::string> Statuses(const std::string& bar) const {
    std::vector<std::string> texts;
    for (const auto& status : windows.statuses)
      if (status.bar == bar && status.panel == 1) texts.push_back(status.text);
    return texts;
  }
};

// ---- Known bootstraps

class KnownBootstrap : public BootstrapTest, public ::testing::WithParamInterface<int> {};

TEST_P(KnownBootstrap, IsTheReferencesToTheLastCharacter) {
  const json& known = Index()["bootstraps"][static_cast<std::size_t>(GetParam())];
  Ready(known["case"]);
  windows.messages.clear();
  const bool simplex = known["method"] == "simplex";
  const BootstrapResults results =
      Run(known["replicates"], simplex ? Minimiser::Simplex : Minimiser::Marquardt, known["age"]);
  EXPECT_EQ(results.originalDeviance, std::stod(known["original_deviance"].get<std::string>()));
  ASSERT_EQ(results.BootCount(), known["replicates"].get<int>());
  std::vector<std::string> files;
  for (std::size_t i = 0; i < known["attempts"].size(); ++i) {
    const json& attempt = known["attempts"][i];
    files.push_back(attempt["file"]);
    EXPECT_EQ(results.BootDeviance[i], std::stod(attempt["F_hex"].get<std::string>())) << "replicate " << i + 1;
    for (std::size_t j = 0; j < attempt["free"].size(); ++j)
      EXPECT_EQ(results.BootEstimates[i](static_cast<int>(j) + 1), std::stod(attempt["free"][j].get<std::string>()));
    const std::string data = "results/" + known["data_files"].get<std::string>() + files.back();
    EXPECT_EQ(Lines(ReadWholeFile(folder / files.back())), Lines(ReadWholeFile(Golden(data)))) << data;
  }
  EXPECT_EQ(DataFiles(), files);
  const std::string name = std::filesystem::path(known["files"][0].get<std::string>()).stem();
  ExpectLines(BootstrapParameterText(results), name + ".bpv");
  ExpectLines(BootstrapSurvivalText(results, program.model.data), name + ".bse");
  ExpectLines(BootstrapSummary(results), name + ".txt");
  EXPECT_THAT(windows.Titles(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(All, KnownBootstrap, ::testing::Range(0, 4));

TEST_F(BootstrapTest, KnownBootstrapsAreFour) { EXPECT_THAT(Index()["bootstraps"], SizeIs(4)); }

TEST_F(BootstrapTest, FirstUniformNumbersAreTheKnownOnes) {
  for (const auto& [stream, numbers] : Index()["first uniforms of seed 12345"].items()) {
    RandomStream random(KeptSeed, static_cast<std::uint64_t>(stream.back() - '0'));
    for (const json& number : numbers) EXPECT_EQ(random.Uniform(), std::stod(number.get<std::string>()));
  }
}

// ---- The loop

TEST_F(BootstrapTest, SameSeedRepeatsItToTheLastDigit) {
  Ready("spanning_random");
  host.random.SetSeed(7);
  const BootstrapResults first = Run(3);
  const std::string data = ReadWholeFile(folder / DataFiles()[2]);
  host.random.SetSeed(7);
  const BootstrapResults second = Run(3);
  EXPECT_EQ(BootstrapParameterText(first), BootstrapParameterText(second));
  EXPECT_EQ(BootstrapSurvivalText(first, program.model.data), BootstrapSurvivalText(second, program.model.data));
  EXPECT_THAT(DataFiles(), SizeIs(3)) << "under the same names";
  EXPECT_EQ(ReadWholeFile(folder / DataFiles()[2]), data);
  const BootstrapResults third = Run(3);
  EXPECT_NE(BootstrapParameterText(first), BootstrapParameterText(third)) << "streams go on";
}

TEST_F(BootstrapTest, FileThatAnotherProgramChangesIsNotWhatIsFitted) {
  Ready("spanning_random");
  const std::string undisturbed = BootstrapParameterText(Run(3));
  const std::string another = ReadWholeFile(folder / DataFiles()[0]);
  windows.onStatus = [&](const auto& status) {
    if (status.text != "Reading simulated data") return;
    for (const std::string& file : DataFiles()) WriteWholeFile(folder / file, another);
  };
  for (const int cores : {1, 4}) {
    program.parametricBootstrap.cores = cores;
    host.random.SetSeed(KeptSeed);
    EXPECT_EQ(BootstrapParameterText(Run(3)), undisturbed) << cores << " cores";
  }
}

TEST_F(BootstrapTest, OfADataFileThatHasChangedSinceItWasReadThereIsNone) {
  const std::string text = ReadWholeFile(Golden("juveniles_only.dat"));
  WriteWholeFile(folder / "own.data", text);
  Initialize({.path = folder / "own.data"});
  LoadAlg(Golden("juveniles_only.alg"));
  OneFunction();
  const BroodData before = program.model.data;
  EXPECT_EQ(Run(1).endedEarly, "");
  windows.messages.clear();
  WriteWholeFile(folder / "own.data", text.substr(0, text.find('\n', text.size() / 2) + 1));
  const BootstrapResults results = Run(3);
  EXPECT_EQ(results.BootCount(), 0);
  EXPECT_THAT(results.endedEarly, HasSubstr("the data file has changed since it was read"));
  ASSERT_THAT(windows.messages, SizeIs(1));
  EXPECT_EQ(windows.toldFailures, 1);
  EXPECT_TRUE(program.model.data.HasSameRecords(before)) << "the fit keeps the data that it was made of";
}

TEST_F(BootstrapTest, FilesOfAnotherBootstrapAreToldOnceBeforeTheyAreReplaced) {
  Ready("spanning_random");
  windows.messages.clear();
  Run(3);
  EXPECT_THAT(windows.messages, IsEmpty());
  std::filesystem::remove(folder / DataFiles()[0]);
  const std::string first = DataFiles()[0];
  WriteWholeFile(folder / first, "another");
  std::string stood;
  windows.onStatus = [&](const auto& status) {
    if (status.text == "Reading simulated data" && stood.empty() && !windows.messages.empty()) stood = first;
  };
  host.random.SetSeed(KeptSeed);
  Run(3);
  ASSERT_THAT(windows.messages, SizeIs(1));
  EXPECT_THAT(windows.messages[0].text,
              HasSubstr("Data files of another bootstrap stand where this one writes its own"));
  EXPECT_EQ(windows.messages[0].details, folder / first);
  EXPECT_EQ(windows.toldFailures, 0);
  EXPECT_NE(ReadWholeFile(folder / first), "another");
}

/// Juveniles of two years sorted by code and day: records of a brood stand apart, the other year between. A visit is
/// numbered on over what stands between, so that each brood has gaps where no record is.
std::string RecordsThatStandApart() {
  std::string text = std::string(record::Header) + "\n";
  const auto add = [&text](int year, int brood, int age, int count) {
    text +=
        fmt::format("{:8},{:>8},{:8},{:8},{:8},{:8}\n", year, fmt::format("A{}", brood), 150 + age, 150, age, count);
  };
  for (int brood = 1; brood <= 12; ++brood) {
    add(1995, brood, 2, 12);
    add(1996, brood, 2, 12);
    add(1996, brood, 5, 11 - brood % 3);
    add(1995, brood, 6, 11 - brood % 2);
    add(1995, brood, 9, 9 - brood % 3);
    add(1996, brood, 9, 8 - brood % 4);
    add(1996, brood, 12, 4);
  }
  return text;
}

TEST_F(BootstrapTest, GapsBetweenRecordsThatStandApartAreNoRecords) {
  WriteWholeFile(folder / "apart.data", RecordsThatStandApart());
  Initialize({.path = folder / "apart.data", .startYear = "1995", .endYear = "1996"});
  LoadAlg(Golden("juveniles_only.alg"));
  const BroodData original = program.model.data;
  ASSERT_EQ(original.Visits(), 12 * 10);
  ASSERT_EQ(original.TotalRecords, 12 * 7);
  AtEachFit([&](int) {
    EXPECT_EQ(program.model.data.VisitsOf, original.VisitsOf);
    EXPECT_EQ(program.model.data.VisitStage, original.VisitStage) << "the same intervals are predicted";
    EXPECT_EQ(program.model.data.VisitAge, original.VisitAge);
  });
  const BootstrapResults results = Run(3);
  EXPECT_EQ(results.BootCount(), 3);

  const auto isRecord = [](const std::string& line) { return line.starts_with("    199"); };
  for (const std::string& file : DataFiles()) {
    if (!file.starts_with("Bootstrapped")) continue;
    const std::vector<std::string> lines = Lines(ReadWholeFile(folder / file));
    EXPECT_EQ(lines.size(), 1u + 12 * 7);
    EXPECT_EQ(std::count_if(lines.begin(), lines.end(), isRecord), 12 * 7);
  }
  std::map<std::string, std::set<std::string>> figuresAtAge;
  const std::vector<std::string> lines = Lines(BootstrapSurvivalText(results, program.model.data));
  EXPECT_EQ(lines.size(), 1u + 12 * 7);
  for (std::size_t i = 1; i < lines.size(); ++i)
    figuresAtAge[lines[i].substr(record::Age.first - 1, record::Width)].insert(lines[i].substr(record::Count.last));
  EXPECT_THAT(figuresAtAge, SizeIs(5));
  for (const auto& [age, figures] : figuresAtAge) EXPECT_THAT(figures, SizeIs(1)) << "survival depends on age alone";

  OneFunction();
  Summary();
  const std::vector<std::string> summary = Lines(program.frmSummary.rtbOut.text);
  EXPECT_EQ(
      std::count_if(summary.begin(), summary.end(),
                    [](const std::string& line) { return line.starts_with("      A") || line.starts_with("     A1"); }),
      12 * 7);
  EXPECT_THAT(program.frmSummary.rtbOut.text, HasSubstr("to a clutch or brood in any year is:            4\r\n"));
}

TEST_F(BootstrapTest, RecordsThatStandApartAreFittedAheadAsTheyAreAlone) {
  WriteWholeFile(folder / "apart.data", RecordsThatStandApart());
  Initialize({.path = folder / "apart.data", .startYear = "1995", .endYear = "1996"});
  LoadAlg(Golden("juveniles_only.alg"));
  std::vector<std::string> texts;
  for (const int cores : {1, 4}) {
    program.parametricBootstrap.cores = cores;
    host.random.SetSeed(KeptSeed);
    texts.push_back(BootstrapSurvivalText(Run(2), program.model.data));
  }
  EXPECT_EQ(texts[0], texts[1]);
}

TEST_F(BootstrapTest, EachAttemptTellsItsSteps) {
  Ready("juveniles_only");
  windows.statuses.clear();
  Run(1);
  std::vector<std::string> steps;
  for (const std::string& text : Statuses("stbMain5"))
    if (text.ends_with("data") || text.starts_with("Performing") || text.ends_with("brood # 1 of 60"))
      steps.push_back(text);
    else if (text.empty() && steps.back() == "Simulating new data")
      steps.push_back("cleared");
  EXPECT_THAT(steps, ElementsAre("Performing parametric bootstrap 1 of 1", "Reading original data",
                                 "Simulating new data", "cleared", "Writing simulated data", "Reading simulated data",
                                 "Estimating parameters for simulated data",
                                 "1995Calculating p[survive 1 day]  brood # 1 of 60",
                                 "1995Calculating p[fledge(a,D)] for  brood # 1 of 60"));
  EXPECT_THAT(Statuses("stbMain2"),
              ElementsAre("Estimated time remaining (h:mm:ss) will be calculated after the 1st bootstrap estimate is "
                          "complete",
                          "Estimated time remaining (h:mm:ss) is 0:00:00", ""));
}

TEST_F(BootstrapTest, RunAcrossMidnightKeepsAPositiveEstimateOfTheTimeRemaining) {
  Ready("juveniles_only");
  host.clock.now = {2024, 6, 1, 23, 59, 50};
  AtEachFit([this](int attempt) {
    host.clock.now = attempt == 1 ? DateTime{2024, 6, 1, 23, 59, 55} : DateTime{2024, 6, 2, 0, 0, 5.0 * (attempt - 2)};
  });
  Run(4);
  EXPECT_THAT(Statuses("stbMain2"), IsSupersetOf({"Estimated time remaining (h:mm:ss) is 0:00:15",
                                                  "Estimated time remaining (h:mm:ss) is 0:00:10",
                                                  "Estimated time remaining (h:mm:ss) is 0:00:05"}));
}

TEST_F(BootstrapTest, PenaltyRejectsTheAttemptAndTheReplicateKeepsItsNumber) {
  Ready("juveniles_only");
  SaveForABootstrap(
      folder / "own.alg",
      [](AlgorithmData& a) {
        a.Value(13) = 1.5;  // a probability above 1 ...
        a.Step(15) = 0.1;   // ... comes before a failed matrix
      },
      [](int attempt) { return attempt == 2; });
  const BootstrapResults results = Run(2, Minimiser::Marquardt);
  EXPECT_EQ(results.BootCount(), 2);
  EXPECT_EQ(results.BootPenaltyRejects, 1);
  EXPECT_EQ(results.BootMatrixRejects, 0);
  EXPECT_GT(results.BootPenaltySum, 1e19);
  EXPECT_THAT(DataFiles(), ElementsAre(StartsWith("BootstrappedData00001_"), StartsWith("BootstrappedData00002_"),
                                       StartsWith("BootstrappedData00002_"), "own.alg"));
  EXPECT_THAT(Statuses("stbMain5"), Contains("Last bootstrap attempt rejected due to a penalty added to the Deviance"));
}

TEST_F(BootstrapTest, MatrixThatCannotBeInvertedRejectsTheAttemptAndIsForgottenAtTheNext) {
  Ready("juveniles_only");
  // Mortality of eggs that the data do not have.
  SaveForABootstrap(
      folder / "own.alg", [](AlgorithmData& a) { a.Step(15) = 0.1; }, [](int attempt) { return attempt <= 2; });
  const BootstrapResults results = Run(1, Minimiser::Marquardt);
  EXPECT_EQ(results.BootCount(), 1);
  EXPECT_EQ(results.BootMatrixRejects, 2);
  EXPECT_EQ(results.BootPenaltySum, 0);
  EXPECT_THAT(Statuses("stbMain5"), Contains("Last bootstrap attempt rejected due to a matrix inversion failure"));
}

TEST_F(BootstrapTest, DeadParameterMakesMarquardtRejectEachAttemptUntilTheUserAborts) {
  Ready("juveniles_only");
  state.algorithm.Step(15) = 0.1;  // mortality of eggs that the data do not have
  windows.File(folder / "dead.alg");
  desk.Press(menu.cmdSaveAlg);
  Summary();
  AnswerOptions("3", "40", false);
  AtEachFit([this](int attempt) {
    if (attempt == 4) desk.Press(program.frmAbort.cmdAbort);
  });
  desk.Press(program.frmSummary.cmdBootstrap);
  EXPECT_THAT(program.frmSummary.rtbOut.text, HasSubstr("Results from execution of 0 parametric bootstraps:"));
  EXPECT_THAT(program.frmSummary.rtbOut.text, HasSubstr("due to a maxtrix inversion failure was 4\r\n"));
}

TEST_F(BootstrapTest, AbortAfterTwoKeptReplicatesLeavesTwoForTheReports) {
  Ready("juveniles_only");
  Summary();
  AnswerOptions("5", "40", true);
  AtEachFit([this](int attempt) {
    if (attempt == 2) desk.Press(program.frmAbort.cmdAbort);
    EXPECT_LE(attempt, 2) << "the present replicate finishes, no other begins";
  });
  windows.Yes("Confirmation request");
  windows.File(folder / "kept.bpv");
  windows.Yes("Confirmation request");
  windows.File(folder / "kept.bse");
  desk.Press(program.frmSummary.cmdBootstrap);
  EXPECT_THAT(Statuses("stbMain2"), Contains("Bootstrap procedure will stop when this bootstrap has completed!"));
  EXPECT_THAT(program.frmSummary.rtbOut.text, HasSubstr("Results from execution of 2 parametric bootstraps:"));
  EXPECT_THAT(Lines(ReadWholeFile(folder / "kept.bpv")), SizeIs(3));
  EXPECT_FALSE(state.flags.AbortRun || state.flags.BootstrapMode);
}

TEST_F(BootstrapTest, AbortBeforeTheFirstReplicateIsNotLost) {
  Ready("juveniles_only");
  Summary();
  AnswerOptions("5", "40", true);
  DeclineReports();
  windows.AtTurn(1, [this] { EXPECT_TRUE(desk.Press(program.frmAbort.cmdAbort)); });
  desk.Press(program.frmSummary.cmdBootstrap);
  EXPECT_THAT(program.frmSummary.rtbOut.text, HasSubstr("Results from execution of 1 parametric bootstraps:"));
}

TEST_F(BootstrapTest, UnsavedValuesAreNotUsed) {
  Ready("juveniles_only");
  const std::string saved = BootstrapParameterText(Run(2));
  state.algorithm.Value(17) = 0.2;
  state.algorithm.Step(18) = 0;
  host.random.SetSeed(KeptSeed);
  EXPECT_EQ(BootstrapParameterText(Run(2)), saved);
  EXPECT_EQ(state.algorithm.Value(17), 0.2);
  EXPECT_EQ(state.algorithm.Step(18), 0);
}

TEST_F(BootstrapTest, PriorsDoNotEnterTheDeviances) {
  Ready("juveniles_only");
  const BootstrapResults plain = Run(1);
  state.flags.ObjectiveConstant = 2;
  program.priors.Reset(state.algorithm.NPAR);
  program.priors.PriorCode(17) = "N";
  program.priors.PriorFirstMean(17) = 0.05;
  program.priors.PriorFirstSD(17) = 0.01;
  state.flags.BayesOn = true;
  host.random.SetSeed(KeptSeed);
  const BootstrapResults informed = Run(1);
  EXPECT_EQ(informed.originalDeviance, plain.originalDeviance);
  EXPECT_NE(informed.BootEstimates[0](1), plain.BootEstimates[0](1));
  EXPECT_NEAR(informed.BootDeviance[0], plain.BootDeviance[0], 1);
}

TEST_F(BootstrapTest, ToleranceTooSmallBecomesAnAbsoluteOneOfAMillionth) {
  Ready("juveniles_only");
  for (const double tolerance : {1e-9, -1e-7, 0.0}) {
    state.algorithm.Tolerance = tolerance;
    windows.File(folder / "small.alg");
    desk.Press(menu.cmdSaveAlg);
    EXPECT_EQ(Run(1).Tolerance, 1e-6);
    EXPECT_EQ(state.algorithm.Tolerance, tolerance);
  }
}

TEST_F(BootstrapTest, AgeThatTheUserEntersIsTheTargetOfFledgingAndTheFittedOneLimitsADay) {
  Ready("juveniles_only");
  const BootstrapResults results = Run(1, Minimiser::Simplex, 20);
  const BroodData& data = program.model.data;
  for (std::size_t v = 0; v < data.VisitAge.size(); ++v) {
    EXPECT_EQ(results.survival[3][v].Count() == 1, data.VisitAge[v] < 20) << data.VisitAge[v];
    EXPECT_EQ(results.survival[0][v].Count() == 1, data.VisitAge[v] < 40) << data.VisitAge[v];
  }
  EXPECT_THAT(Lines(BootstrapSurvivalText(results, data))[0], HasSubstr("Mean p[Fledge(a;020)]_R"));
}

TEST_F(BootstrapTest, CovariatesAreSimulatedWithAndTheirNamesComeBack) {
  for (const std::string format : {"O", "A"}) {
    const bool original = format == "O";
    const std::string name = original ? "covariates_original" : "covariates_anomaly";
    if (!original) windows.No("Initialize");
    Initialize({.path = Golden(name + ".dat"),
                .endYear = original ? "1996" : "1997",
                .covariates = original ? "3" : "2",
                .format = format});
    LoadAlg(Golden(name + ".alg"));
    const Array1<std::string> names = program.model.data.CovariateName;
    const std::vector<double> covariates = program.model.data.Covariate;
    // The likelihood of these data needs many calls; what is tested is the way of the covariates.
    state.algorithm.Tolerance = 1e9;
    windows.File(folder / "coarse.alg");
    desk.Press(menu.cmdSaveAlg);
    int fits = 0;
    windows.onStatus = nullptr;
    AtEachFit([this, covariates, &fits](int) {
      ++fits;
      const std::vector<double>& simulated = program.model.data.Covariate;
      EXPECT_EQ(simulated.size(), covariates.size());
      for (std::size_t i = 0; i < covariates.size(); ++i)
        EXPECT_NEAR(simulated[i], covariates[i], 1e-5 * std::max(1.0, std::fabs(covariates[i])));
    });
    const BootstrapResults results = Run(1);
    EXPECT_EQ(fits, 1);
    EXPECT_EQ(results.BootCount(), 1);
    EXPECT_GT(results.BootDeviance[0], 0);
    EXPECT_EQ(program.model.data.CovariateName, names);
    EXPECT_EQ(program.model.data.Covariate, covariates);
  }
}

// ---- What comes back

/// Everything a bootstrap replaces on its way.
struct RunAsItStands {
  std::string algorithm;
  std::vector<std::string> names;
  std::vector<std::int16_t> counts;
  std::vector<double> expected, deviances, fledging;
  Array1<double> best;
  bool flags;
  bool resumes;
  explicit RunAsItStands(const Program& p)
      : algorithm(AlgorithmText(p.state.algorithm, AlgorithmForm::Ranking) + p.state.algorithm.AlgName),
        names(p.state.algorithm.ParName.begin(), p.state.algorithm.ParName.end()),
        counts(p.model.data.VisitCount),
        expected(p.model.Evaluated().best.survival.EVisit),
        deviances(p.model.Evaluated().best.VisitDeviance),
        fledging(p.model.Estimates().FledgeFrom),
        best(p.model.Evaluated().best.Value),
        flags(!p.state.flags.ReadSimulatedFile && !p.state.flags.BootstrapMode),
        resumes(p.simplex.ResumesAt(p.objective.Present())) {}
  bool operator==(const RunAsItStands&) const = default;
};

struct RestoreTest : BootstrapTest {
  void SetUp() override {
    Ready("juveniles_only");
    OneFunction();
    state.algorithm.Value(17) = 0.05;
    state.algorithm.ParName(17) = "changed by the first call";
    Summary();
    ASSERT_FALSE(program.simplex.left);
  }
  /// The saved model is meant, although the present values are others.
  void AnswerOptions(const std::string& replicates, const std::string& age, bool simplex) {
    windows.Yes("Parametric bootstrap");
    BootstrapTest::AnswerOptions(replicates, age, simplex);
  }
  /// Presses for a bootstrap of three replicates that will end after `kept` of them with this reason.
  void EndsWith(int kept, const std::string& reason) {
    const RunAsItStands before(program);
    AnswerOptions("3", "40", true);
    if (kept > 0) DeclineReports();
    desk.Press(program.frmSummary.cmdBootstrap);
    EXPECT_TRUE(RunAsItStands(program) == before);
    ExpectWindowsBack();
    const auto message =
        std::ranges::find_if(windows.messages, [](const Message& m) { return m.text.starts_with("The bootstrap"); });
    ASSERT_NE(message, windows.messages.end());
    EXPECT_THAT(message->text, StartsWith("The bootstrap cannot go on and ends with " + std::to_string(kept) +
                                          " of 3 replicates:\r\n"));
    EXPECT_THAT(message->text, HasSubstr(reason));
    EXPECT_GT(windows.toldFailures, 0);
    EXPECT_THAT(program.frmSummary.rtbOut.text,
                HasSubstr(" parametric bootstraps:\r\n\r\n" + std::to_string(kept) + " of 3 replicates: "));
    EXPECT_THAT(program.frmSummary.rtbOut.text,
                HasSubstr("Results from execution of " + std::to_string(kept) + " parametric bootstraps:"));
  }
  void ExpectWindowsBack() {
    EXPECT_TRUE(desk.Usable(program.frmSummary.cmdBootstrap));
    EXPECT_FALSE(program.frmAbort.Loaded() || program.frmSimplex.Loaded() || program.frmMarquardt.Loaded());
    EXPECT_FALSE(menu.Visible());
    EXPECT_TRUE(ApplicationMenuUsable());
    EXPECT_EQ(program.frmMain.stbMain5.Get(1), "");
    EXPECT_EQ(program.frmMain.stbMain2.Get(1), "");
  }
};

TEST_F(RestoreTest, DataParametersResultsAndWindowsAreAsTheyWereBehindABootstrap) {
  const RunAsItStands before(program);
  for (const bool simplex : {true, false}) {
    AnswerOptions("2", "40", simplex);
    DeclineReports();
    windows.events.clear();
    desk.Press(program.frmSummary.cmdBootstrap);
    EXPECT_TRUE(RunAsItStands(program) == before);
    ExpectWindowsBack();
    EXPECT_THAT(windows.events,
                IsSupersetOf({"shown frmAbort", "hidden frmSummary", "unloaded frmAbort", "shown frmSummary"}));
  }
}

TEST_F(RestoreTest, UnwritableFolderEndsItWithAMessage) {
  desk.host.bootstrapFolder = folder / "missing";
  EndsWith(0, "missing/BootstrappedData00001_");
}

TEST_F(RestoreTest, FolderThatIsLostOnTheWayEndsItWithWhatItHas) {
  AtEachFit([this](int attempt) {
    if (attempt == 2) desk.host.bootstrapFolder = "/dev/full";  // like a disk that has filled up
  });
  EndsWith(2, "/dev/full/BootstrappedData00003_");
}

// A brood's attribute that drives a rate beyond all numbers.
void Overflow(AlgorithmData& a) { a.Value(5) = 1e200; }

TEST_F(BootstrapTest, CalculationThatFailsCostsTheAttemptAndNotTheRun) {
  Ready("juveniles_only");
  SaveForABootstrap(folder / "own.alg", Overflow, [](int attempt) { return attempt % 3 == 2; });
  for (const Minimiser minimiser : {Minimiser::Simplex, Minimiser::Marquardt}) {
    const BootstrapResults results = Run(2, minimiser);
    EXPECT_EQ(results.BootCount(), 2);
    EXPECT_EQ(results.BootFailureRejects, 1);
    EXPECT_THAT(BootstrapSummary(results),
                HasSubstr("The number of bootstraps rejected due to a calculation that failed was 1\r\n"));
  }
  EXPECT_THAT(Statuses("stbMain5"), Contains(StartsWith("Last bootstrap attempt rejected due to a calculation that "
                                                        "failed: ")));
  EXPECT_THAT(windows.Titles(), testing::Not(Contains("Parametric bootstrap")));
}

TEST_F(BootstrapTest, HundredRejectionsInARowAreToldAndTheUserIsAskedWhetherToGoOn) {
  Ready("juveniles_only");
  SaveForABootstrap(folder / "own.alg", Overflow, [](int attempt) { return attempt != 2; });
  windows.Yes("Parametric bootstrap");
  windows.No("Parametric bootstrap");
  const BootstrapResults results = Run(2);
  EXPECT_EQ(results.BootCount(), 1);
  EXPECT_EQ(results.BootFailureRejects, 201);
  EXPECT_THAT(windows.LastText(), StartsWith("The last 100 attempts were all rejected, the last one due to a "
                                             "calculation that failed: "));
  EXPECT_THAT(windows.LastText(),
              EndsWith("So far 1 of 2 replicates are kept; 0 attempts were rejected for a penalty, 0 for a matrix that "
                       "could not be inverted, and 201 for a calculation that failed.\r\n\r\nGo on?"));
}

TEST_F(RestoreTest, RealDataThatAreGoneWhenItBeginsEndIt) {
  program.model.data.TextFileName = folder / "vanished.dat";
  EndsWith(0, "the data could not be read");
  EXPECT_THAT(windows.Titles(), Contains("Problem finding data file or reading data"));
}

TEST_F(RestoreTest, RealDataThatAreLostOnTheWayAreNotMissed) {
  AtEachFit([this](int) { program.model.data.TextFileName = folder / "vanished.dat"; });
  EXPECT_EQ(Run(3).BootCount(), 3);
}

TEST_F(RestoreTest, ClosingTheProgramOnTheWayEndsIt) {
  AnswerOptions("3", "40", true);
  AtEachFit([this](int) { desk.Close(program.frmMain); });
  windows.Yes("Exit Tolvane");
  windows.No("What about algorithm data?");
  desk.Press(program.frmSummary.cmdBootstrap);
  EXPECT_EQ(windows.exitStatus, 0);
  EXPECT_FALSE(program.frmAbort.Loaded());
}

TEST_F(RestoreTest, WhoSavesOverTheModelAndThenStaysGetsReplicatesOfTheModelThatWasBootstrapped) {
  desk.Press(program.frmMain.mnuMenu);
  windows.File(folder / "own.alg");
  ASSERT_TRUE(desk.Press(menu.cmdSaveAlg));
  state.algorithm.Value(17) = 0.2;
  state.algorithm.Step(18) = 0;
  program.priors.PriorCode(17) = "N";
  const auto bootstrap = [this](const std::function<void()>& onTheWay) {
    desk.Press(program.frmMain.mnuMenu);
    Summary();
    const std::size_t before = program.frmSummary.rtbOut.text.size();
    host.random.SetSeed(KeptSeed);
    AnswerOptions("3", "40", true);
    onTheWay();
    DeclineReports();
    EXPECT_TRUE(desk.Press(program.frmSummary.cmdBootstrap));
    return program.frmSummary.rtbOut.text.substr(before);
  };
  const std::string undisturbed = bootstrap([] {});
  const std::string disturbed = bootstrap([this] {
    AtEachFit([this](int attempt) {
      if (attempt == 2) desk.Close(program.frmMain);
    });
    windows.Yes("Exit Tolvane");
    windows.Yes("What about algorithm data?");
    windows.File(folder / "own.alg", "Save algorithm data in...");
    windows.Yes("What about Bayesian priors?");
    windows.CancelFile("Save Bayesian priors file in...");
  });
  EXPECT_FALSE(desk.Ended());
  EXPECT_THAT(undisturbed, HasSubstr("Results from execution of 3 parametric bootstraps:"));
  EXPECT_EQ(disturbed, undisturbed);
  const auto told = std::ranges::count(windows.messages,
                                       "The algorithm file own.alg has been changed since the bootstrap began. All "
                                       "replicates are of the model that was in it then.",
                                       &Message::text);
  EXPECT_EQ(told, 1);
  AlgorithmData saved;
  saved.NPAR = state.algorithm.NPAR;
  ReadAlgorithm(ReadWholeFile(folder / "own.alg"), saved);
  EXPECT_EQ(saved.Value(17), 0.2);
  EXPECT_EQ(state.algorithm.Value(17), 0.2);
}

TEST_F(RestoreTest, QuittingOnTheWaySavesTheUsersEstimatesAndNoReplicates) {
  AnswerOptions("3", "40", true);
  for (const char* when : {"Reading simulated data", "1995Calculating p[survive 1 day]  brood # 2 of 60"})
    AtEachAttempt(when, [this, when](int attempt) {
      const double replicates = state.algorithm.Value(17);
      EXPECT_NE(replicates, 0.05) << when;
      {
        const auto users = program.parametricBootstrap.UsersRun();
        EXPECT_EQ(state.algorithm.Value(17), 0.05) << when;
      }
      EXPECT_EQ(state.algorithm.Value(17), replicates) << when << ": who stays goes on";
      if (attempt == 2) desk.Close(program.frmMain);
    });
  windows.Yes("Exit Tolvane");
  windows.Yes("What about algorithm data?");
  windows.File(folder / "kept.alg", "Save algorithm data in...");
  desk.Press(program.frmSummary.cmdBootstrap);
  EXPECT_EQ(windows.exitStatus, 0);
  AlgorithmData kept;
  kept.NPAR = state.algorithm.NPAR;
  ReadAlgorithm(ReadWholeFile(folder / "kept.alg"), kept);
  EXPECT_EQ(kept.Value(17), 0.05);
}

TEST_F(RestoreTest, ReviewOfThePriorsIsTheRealFitsBehindABootstrap) {
  state.flags.ObjectiveConstant = 2;
  program.priors.PriorCode(17) = "N";
  program.priors.PriorFirstMean(17) = 0.05;
  program.priors.PriorFirstSD(17) = 0.01;
  state.flags.BayesOn = true;
  Run(2);
  EXPECT_THAT(windows.events, Contains("shown frmReviewPriors")) << "by each minimum";
  EXPECT_THAT(program.frmReviewPriors.rtbReview.text, HasSubstr("Parameter 17 at 5.000E-02 has a prior"));
}

TEST_F(RestoreTest, ReviewBehindABootstrapIsAtWhatTheModelMakesOfAMirroredEstimate) {
  state.flags.ObjectiveConstant = 2;
  test::SetPrior(program.priors, 17, "N", 0.05, 0.01);
  state.flags.BayesOn = true;
  state.algorithm.Value(17) = -0.05;  // as a vertex of the simplex may be
  Run(2);
  EXPECT_THAT(program.frmReviewPriors.rtbReview.text, HasSubstr("Parameter 17 at 5.000E-02 has a prior"));
  EXPECT_EQ(program.frmReviewPriors.lblFit.text, "Priors at the estimates of juveniles_only.alg.");
}

TEST_F(RestoreTest, FilesOfABootstrapThatBrokeOffSayInTheirHeadHowManyThereAreAndWhy) {
  AnswerOptions("3", "40", true);
  windows.Yes("Confirmation request");
  windows.File(folder / "kept.bpv");
  windows.Yes("Confirmation request");
  windows.File(folder / "kept.bse");
  AtEachFit([this](int attempt) {
    if (attempt == 2) desk.host.bootstrapFolder = folder / "missing";
  });
  desk.Press(program.frmSummary.cmdBootstrap);
  for (const char* file : {"kept.bpv", "kept.bse"})
    EXPECT_THAT(ReadWholeFile(folder / file), StartsWith("\"2 of 3 replicates: cannot write the file "));
}

// ---- What is kept as it grows

struct KeptAsItGrows : RestoreTest {
  std::string Path() const { return folder / "BootstrappedParameters_06011030.bpv"; }
};

TEST_F(KeptAsItGrows, TheReplicatesSoFarStandInAFileUntilTheReportsHaveBeenOffered) {
  host.clock.now = {2024, 6, 1, 10, 30, 0};
  AnswerOptions("3", "40", true);
  windows.Yes("Confirmation request");
  windows.File(folder / "saved.bpv");
  windows.No("Confirmation request");
  windows.Yes("Confirmation request");
  std::string soFar;
  AtEachFit([&](int attempt) {
    EXPECT_EQ(std::filesystem::exists(Path()), attempt > 1);
    if (attempt == 3) soFar = ReadWholeFile(Path());
  });
  desk.Press(program.frmSummary.cmdBootstrap);
  EXPECT_THAT(Lines(soFar), SizeIs(3));
  EXPECT_THAT(ReadWholeFile(folder / "saved.bpv"), StartsWith(soFar));
  EXPECT_FALSE(std::filesystem::exists(Path()));
}

TEST_F(KeptAsItGrows, AReportThatCannotBeMadeLeavesThemAndSaysWhere) {
  host.clock.now = {2024, 6, 1, 10, 30, 0};
  AnswerOptions("2", "40", true);
  AtEachAttempt("1995Calculating p[survive 1 day]  brood # 1 of 60",
                [this](int) { state.algorithm.Value(17) = 1.7e308; });  // whose sum is no number
  windows.ExpectFailure("The parameter values of all replicates so far are kept in " + Path());
  desk.Press(program.frmSummary.cmdBootstrap);
  EXPECT_THAT(Lines(ReadWholeFile(Path())), SizeIs(3));
  ExpectWindowsBack();
}

TEST_F(KeptAsItGrows, AFailureBetweenTheLastReplicateAndTheReportsLeavesThemAndSaysWhere) {
  host.clock.now = {2024, 6, 1, 10, 30, 0};
  AnswerOptions("2", "40", true);
  windows.onStatus = [](const test::ScriptedWindows::Status& shown) {
    if (shown.bar == "stbMain2" && shown.text.empty()) throw std::bad_alloc();  // once all are done
  };
  windows.ExpectFailure("there is not enough memory. The parameter values of all replicates so far are kept in " +
                        Path());
  desk.Press(program.frmSummary.cmdBootstrap);
  windows.onStatus = nullptr;
  EXPECT_THAT(Lines(ReadWholeFile(Path())), SizeIs(3));
  ExpectWindowsBack();
}

TEST_F(KeptAsItGrows, WhoLeavesTheProgramOnTheWayFindsThemAndIsToldWhere) {
  host.clock.now = {2024, 6, 1, 10, 30, 0};
  WriteWholeFile(Path(), "of another run");
  AnswerOptions("3", "40", true);
  AtEachFit([this](int attempt) {
    if (attempt == 3) desk.Close(program.frmMain);
  });
  windows.Yes("Exit Tolvane");
  windows.No("What about algorithm data?");
  desk.Press(program.frmSummary.cmdBootstrap);
  EXPECT_EQ(ReadWholeFile(Path()), "of another run");
  const std::string kept = folder / "BootstrappedParameters_06011030_2.bpv";
  EXPECT_THAT(Lines(ReadWholeFile(kept)), SizeIs(3));
  EXPECT_THAT(Statuses("stbMain5"), Contains("The parameter values of all replicates so far are kept in " + kept));
}

// ---- Algorithm files

struct AlgorithmFileOfABootstrap : BootstrapTest {
  void ExpectNoAlgorithmFile() {
    const std::string text = program.frmSummary.rtbOut.text;
    desk.Press(program.frmSummary.cmdBootstrap);
    EXPECT_EQ(windows.messages.back().title, "No Algorithm File");
    EXPECT_EQ(windows.messages.back().text, "Please try again and choose an existing algorithm file name.");
    EXPECT_EQ(program.frmSummary.rtbOut.text, text);
    EXPECT_TRUE(desk.Usable(program.frmSummary.cmdBootstrap));
    EXPECT_FALSE(program.frmAbort.Loaded());
  }
};

TEST_F(AlgorithmFileOfABootstrap, ThatWasNeverSavedStopsIt) {
  Initialize({.path = Golden("juveniles_only.dat")});
  LoadDefaults();
  Summary();
  ExpectNoAlgorithmFile();
}

TEST_F(AlgorithmFileOfABootstrap, ThatIsBrokenStopsItAndTheRunKeepsItsParameters) {
  Ready("juveniles_only");
  Summary();
  WriteWholeFile(folder / "broken.alg", "            34\r\n 0.1\r\n");
  state.algorithm.AlgName = folder / "broken.alg";
  const Array1<double> value = state.algorithm.Value;
  ExpectNoAlgorithmFile();
  EXPECT_EQ(state.algorithm.Value, value);
}

TEST_F(AlgorithmFileOfABootstrap, ThatVanishesOnTheWayEndsItWithWhatItHas) {
  Ready("juveniles_only");
  windows.File(folder / "own.alg");
  desk.Press(menu.cmdSaveAlg);
  Summary();
  AtEachFit([this](int) { std::filesystem::remove(folder / "own.alg"); });
  AnswerOptions("3", "40", true);
  DeclineReports();
  desk.Press(program.frmSummary.cmdBootstrap);
  EXPECT_THAT(windows.Titles(), Contains("No Algorithm File"));
  EXPECT_EQ(windows.toldFailures, 1);
  EXPECT_THAT(program.frmSummary.rtbOut.text, HasSubstr("Results from execution of 1 parametric bootstraps:"));
}

TEST_F(BootstrapTest, OfDataThatPredictNothingIsRefusedBeforeAnyQuestion) {
  Ready("header_alone");
  Summary();
  const std::string text = program.frmSummary.rtbOut.text;
  desk.Press(program.frmSummary.cmdBootstrap);
  EXPECT_EQ(windows.LastText(),
            "There is nothing to do: no count can be predicted from these data, so that none can be simulated");
  EXPECT_EQ(program.frmSummary.rtbOut.text, text);
}

TEST_F(AlgorithmFileOfABootstrap, WithoutAFreeParameterIsRefusedBeforeAnyQuestion) {
  Initialize({.path = Golden("juveniles_only.dat")});
  LoadDefaults();
  windows.File(folder / "fixed.alg");
  desk.Press(menu.cmdSaveAlg);
  Summary();
  const std::string text = program.frmSummary.rtbOut.text;
  desk.Press(program.frmSummary.cmdBootstrap);
  EXPECT_EQ(windows.LastText(), "There is nothing to do: all step sizes are zero in fixed.alg");
  EXPECT_THAT(DataFiles(), ElementsAre("fixed.alg"));
  EXPECT_EQ(program.frmSummary.rtbOut.text, text);
}

TEST_F(AlgorithmFileOfABootstrap, ThatMakesOneGroupOfTwoWhoseFusesHaveTwoLettersIsAskedAbout) {
  Ready("fuses_two_letters");
  windows.File(folder / "two.alg");
  desk.Press(menu.cmdSaveAlg);
  Summary();
  windows.No("Parametric bootstrap");
  desk.Press(program.frmSummary.cmdBootstrap);
  EXPECT_EQ(windows.messages.back().title, "Parametric bootstrap");
  EXPECT_THAT(windows.LastText(),
              HasSubstr("What is bootstrapped is the model as it was saved in two.alg. It has another value, step size "
                        "or fuse than the present one for parameter "));
}

TEST_F(AlgorithmFileOfABootstrap, WhoseFusesHaveOneLetterLeftIsTheModelAllTheSameWhereTheGroupsAre) {
  Ready("juveniles_only");
  state.algorithm.Fuse(17) = state.algorithm.Fuse(18) = "AB";
  OneFunction();
  windows.File(folder / "one.alg");
  desk.Press(menu.cmdSaveAlg);
  Summary();
  windows.Enter("", "Parametric bootstrap");
  desk.Press(program.frmSummary.cmdBootstrap);
  EXPECT_NE(windows.messages.back().title, "Parametric bootstrap");
}

TEST_F(AlgorithmFileOfABootstrap, ThatIsNotThePresentModelIsAskedAbout) {
  Ready("juveniles_only");
  state.algorithm.Value(17) = 0.05;
  state.algorithm.Step(18) = 0;
  Summary();
  windows.No("Parametric bootstrap");
  desk.Press(program.frmSummary.cmdBootstrap);
  EXPECT_EQ(windows.LastText(),
            "What is bootstrapped is the model as it was saved in juveniles_only.alg. It has another value, step size "
            "or fuse than the present one for parameter 17, 18.\r\n\r\nBootstrap the saved model nevertheless?");
  EXPECT_THAT(DataFiles(), IsEmpty());
}

TEST_F(AlgorithmFileOfABootstrap, ThatKeepsFewerDigitsThanTheModelIsThePresentOne) {
  Ready("juveniles_only");
  state.algorithm.Value(17) = 0.0123456789012345;
  windows.File(folder / "own.alg");
  desk.Press(menu.cmdSaveAlg);
  Summary();
  windows.CancelInput("Parametric bootstrap");
  desk.Press(program.frmSummary.cmdBootstrap);
  EXPECT_THAT(windows.inputs, Contains(testing::Field(&InputRequest::title, "Parametric bootstrap")));
}

// ---- Questions and reports

struct BootstrapQuestions : BootstrapTest {
  void SetUp() override {
    Ready("juveniles_only");
    Summary();
    windows.messages.clear();
    windows.inputs.clear();
    windows.files.clear();
  }
  void Press() { ASSERT_TRUE(desk.Press(program.frmSummary.cmdBootstrap)); }
};

TEST_F(BootstrapQuestions, AskForTheNumberTheAgeAndTheMinimiser) {
  AnswerOptions("1", "40", true);
  DeclineReports();
  Press();
  EXPECT_EQ(windows.inputs[0].defaultText, "100");
  EXPECT_EQ(windows.inputs[1].defaultText, "40") << "the fitted age at fledging";
  EXPECT_EQ(windows.messages[0].text, "Choose 'Yes' to minimize with Simplex, 'No' for Marquardt");
  EXPECT_EQ(windows.messages[0].style, style::YesNoQuestion);
}

TEST_F(BootstrapQuestions, CancelledBoxBeginsNothing) {
  const std::string text = program.frmSummary.rtbOut.text;
  windows.CancelInput();
  Press();
  windows.Enter("5");
  windows.CancelInput();
  Press();
  EXPECT_EQ(program.frmSummary.rtbOut.text, text);
  EXPECT_THAT(DataFiles(), IsEmpty());
  EXPECT_TRUE(ApplicationMenuUsable());
}

TEST_F(BootstrapQuestions, NumbersTooSmallAreAskedForAgain) {
  windows.Enter("0");
  windows.Enter("-3");
  windows.Enter("1");
  windows.Enter("-1");
  windows.Enter("0");
  windows.Yes("Choose minimization algorithm");
  DeclineReports();
  Press();
  EXPECT_THAT(windows.inputs, SizeIs(5));
}

TEST_F(BootstrapQuestions, NumbersTooLargeAreAskedForAgain) {
  windows.Enter("2000000000");
  windows.Enter("40000");
  windows.Enter("40000");
  windows.CancelInput();
  Press();
  EXPECT_THAT(windows.inputs, SizeIs(4)) << "40000 replicates can be had, but no such age";
}

TEST_F(BootstrapQuestions, ReportsAreSavedUnderTheNameOfTheAlgorithmFile) {
  AnswerOptions("1", "40", true);
  windows.Yes("Confirmation request");
  windows.File(folder / "kept", "Save bootstrapped parameter values (*.bpv) in...");
  windows.Yes("Confirmation request");
  windows.File(folder / "kept.txt", "Save bootstrapped survival estimates (*.bse) in...");
  Press();
  EXPECT_EQ(windows.messages[1].text, "Save the bootstrapped parameter values in a text file?");
  EXPECT_EQ(windows.messages[2].text, "Save the bootstrapped survival estimates and statistics in a text file?");
  EXPECT_EQ(windows.files[0].filter,
            "All files (*.*)|*.*|Bootstrapped parameter value files (*.bpv)|*.bpv|Named for algorithm file "
            "(juveniles_only.*)|juveniles_only.*|");
  EXPECT_EQ(windows.files[1].filter,
            "All files (*.*)|*.*|Bootstrapped parameter value files (*.bse)|*.bse|Named for algorithm file "
            "(juveniles_only.*)|juveniles_only.*|");
  EXPECT_EQ(windows.files[0].startName, "juveniles_only.bpv");
  EXPECT_EQ(windows.files[0].PathOf("kept"), "kept.bpv") << "what is asked whether to overwrite";
  EXPECT_EQ(windows.files[1].PathOf("runs.1/kept"), "runs.1/kept.bse");
  EXPECT_EQ(windows.files[1].PathOf("kept.txt"), "kept.txt");
  EXPECT_THAT(ReadWholeFile(folder / "kept.bpv"), StartsWith("Parameter # etc. >,"));
  EXPECT_THAT(ReadWholeFile(folder / "kept.txt"), StartsWith("    Year,    Code,"));
}

TEST_F(BootstrapQuestions, NoLeadsToTheQuestionWhetherTheEstimatesAreSaved) {
  AnswerOptions("1", "40", true);
  windows.No("Confirmation request");
  windows.No("Confirmation request");  // not certain: asked again
  windows.Yes("Confirmation request");
  windows.File(folder / "kept.bpv");
  windows.No("Confirmation request");
  windows.Yes("Confirmation request");  // certain
  Press();
  EXPECT_EQ(windows.messages[2].text,
            "Are you certain you have successfully saved your hard-won bootstrapped estimates?");
  EXPECT_TRUE(std::filesystem::exists(folder / "kept.bpv"));
  EXPECT_THAT(windows.files, SizeIs(1));
}

TEST_F(BootstrapQuestions, CancelledSaveDialogueLeavesTheFileUnwrittenAndAsksWhetherThatIsMeant) {
  AnswerOptions("1", "40", true);
  windows.Yes("Confirmation request");
  windows.CancelFile();
  windows.Yes("Confirmation request");
  windows.No("Confirmation request");
  windows.Yes("Confirmation request");
  windows.writes.clear();
  Press();
  EXPECT_THAT(windows.writes, ElementsAre(HasSubstr("BootstrappedData00001_")));
}

TEST_F(BootstrapQuestions, ReportThatCannotBeWrittenIsOfferedAgain) {
  AnswerOptions("1", "40", true);
  windows.Yes("Confirmation request");
  windows.File(folder / "missing/kept.bpv");
  windows.No("Confirmation request");
  windows.Yes("Confirmation request");
  windows.File(folder / "kept.bpv");
  windows.No("Confirmation request");
  windows.Yes("Confirmation request");
  Press();
  EXPECT_THAT(windows.messages[2].text, HasSubstr("missing/kept.bpv"));
  EXPECT_EQ(windows.toldFailures, 1);
  EXPECT_TRUE(std::filesystem::exists(folder / "kept.bpv"));
}

TEST_F(BootstrapQuestions, LinesAreAddedBelowTheSummaryAsItStands) {
  desk.SetText(program.frmSummary.rtbOut, "edited\r\n");
  AnswerOptions("1", "40", true);
  DeclineReports();
  Press();
  EXPECT_THAT(program.frmSummary.rtbOut.text,
              StartsWith("edited\r\n\r\nResults from execution of 1 parametric bootstraps:\r\n"));
}

TEST_F(BootstrapQuestions, DataFilesStandBesideTheDataUnlessTheHostHasAnotherPlace) {
  std::filesystem::copy(Golden("juveniles_only.dat"), folder / "own.dat");
  desk.Close(program.frmSummary);
  windows.No("Initialize");
  Initialize({.path = folder / "own.dat"});
  LoadAlg(Golden("juveniles_only.alg"));
  const std::string place = desk.host.bootstrapFolder;
  desk.host.bootstrapFolder.clear();
  Run(1);
  desk.host.bootstrapFolder = place;
  EXPECT_THAT(DataFiles(), ElementsAre(StartsWith("BootstrappedData00001_"), "own.dat"));
}

TEST_F(BootstrapQuestions, NothingFollowsUponTheSummaryOfDataThatAreGone) {
  desk.Press(program.frmMain.mnuMenu);
  windows.No("Initialize");
  Initialize({.path = Golden("eggs_only.dat")});
  EXPECT_FALSE(desk.Usable(program.frmSummary.cmdBootstrap) || desk.Usable(program.frmSummary.cmdPlots));
  EXPECT_TRUE(desk.Usable(program.frmSummary.cmdSaveSummary));
}

}  // namespace
}  // namespace merlane
