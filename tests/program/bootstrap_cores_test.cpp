// A bootstrap on several cores is the bootstrap on one: every text, event and turn.
#include <gmock/gmock.h>

#include <filesystem>
#include <optional>

#include "bootstrap/bootstrap_reports.h"
#include "control/algorithm_file.h"
#include "platform/files.h"
#include "priors/set_prior.h"
#include "program/analysis.h"

namespace merlane {
namespace {

using test::Analysis;
using test::Folder;
using test::Golden;
using ::testing::Contains;
using ::testing::HasSubstr;
using Minimiser = BootstrapResults::Minimiser;

/// Everything that anybody can see of a bootstrap.
struct Seen {
  std::string summary, parameters, survival, data;
  std::vector<std::string> events;
  int turns;
  double nextUniform;
};

/// A bootstrap in a program of its own that works on so many cores. `prepare` acts on the analysis before it begins.
Seen Bootstrap(int cores, Minimiser minimiser, const std::string& name,
               const std::function<void(Analysis&)>& prepare = {}, int replicates = 6) {
  const Folder folder("bootstrap_cores");
  Analysis analysis;
  const bool covariates = name == "covariates_original";
  analysis.Initialize(
      {.path = Golden(name + ".dat"), .endYear = covariates ? "1996" : "1995", .covariates = covariates ? "3" : "0"});
  analysis.LoadAlg(Golden(name + ".alg"));
  std::filesystem::create_directory(folder / "data");
  analysis.desk.host.bootstrapFolder = folder / "data";
  analysis.host.random.SetSeed(99);
  analysis.program.parametricBootstrap.cores = cores;
  if (prepare) prepare(analysis);
  analysis.windows.events.clear();
  const int before = analysis.windows.turns;
  const BootstrapResults results =
      analysis.program.parametricBootstrap.Run({static_cast<std::int16_t>(replicates), 35, minimiser});
  Seen seen{.summary = BootstrapSummary(results),
            .parameters = BootstrapParameterText(results),
            .survival = BootstrapSurvivalText(results, analysis.program.model.data),
            .data = {},
            .events = analysis.windows.events,
            .turns = analysis.windows.turns - before,
            .nextUniform = analysis.host.random.Uniform()};
  std::vector<std::filesystem::path> files;
  for (const auto& entry : std::filesystem::directory_iterator(folder / "data")) files.push_back(entry.path());
  std::sort(files.begin(), files.end());
  for (const std::filesystem::path& file : files) seen.data += file.filename().string() + "\n" + ReadWholeFile(file);
  return seen;
}

void ExpectSame(const Seen& a, const Seen& b) {
  EXPECT_EQ(a.summary, b.summary);
  EXPECT_EQ(a.parameters, b.parameters);
  EXPECT_EQ(a.survival, b.survival);
  EXPECT_EQ(a.data, b.data);
  EXPECT_EQ(a.events, b.events);
  EXPECT_EQ(a.turns, b.turns);
  EXPECT_EQ(a.nextUniform, b.nextUniform);
}

class BootstrapCores : public ::testing::TestWithParam<Minimiser> {
 protected:
  void ExpectSameOnAllCores(const std::string& name, const std::function<void(Analysis&)>& prepare = {}) {
    one_ = Bootstrap(1, GetParam(), name, prepare);
    for (const int cores : {2, 5}) ExpectSame(Bootstrap(cores, GetParam(), name, prepare), *one_);
  }
  std::optional<Seen> one_;
};

TEST_P(BootstrapCores, GiveTheSameReportsFilesTextsAndTurns) { ExpectSameOnAllCores("spanning_random"); }

TEST_P(BootstrapCores, GiveTheSameWithPriors) {
  ExpectSameOnAllCores("juveniles_only", [](Analysis& a) {
    a.state.flags.ObjectiveConstant = 2;
    a.program.priors.Reset(a.state.algorithm.NPAR);
    test::SetPrior(a.program.priors, 17, "N", 0.05, 0.01);
    a.state.flags.BayesOn = true;
  });
}

TEST_P(BootstrapCores, GiveTheSameWhereAttemptsAreRejected) {
  const Folder folder("bootstrap_rejected");
  ExpectSameOnAllCores("juveniles_only", [&folder](Analysis& a) {
    a.SaveForABootstrap(
        folder / "own.alg", [](AlgorithmData& algorithm) { algorithm.Value(13) = 1.5; },  // a probability above 1
        [](int attempt) { return attempt == 2; });
  });
  EXPECT_THAT(one_->summary, HasSubstr("due to a penalty being added to the Deviance was 1\r\n"));
}

TEST_P(BootstrapCores, GiveTheSameWhereACalculationFails) {
  const Folder folder("bootstrap_failing");
  ExpectSameOnAllCores("juveniles_only", [&folder](Analysis& a) {
    a.SaveForABootstrap(
        folder / "own.alg", [](AlgorithmData& algorithm) { algorithm.Value(5) = 1e200; },
        [](int attempt) { return attempt == 3; });
  });
  EXPECT_THAT(one_->summary, HasSubstr("due to a calculation that failed was 1\r\n"));
}

TEST_P(BootstrapCores, GiveTheSameWherePointsCannotBeEvaluated) {
  const Folder folder("bootstrap_unevaluated");
  ExpectSameOnAllCores("juveniles_only", [&folder](Analysis& a) {
    a.state.algorithm.Step(24) = 1e308;  // far beyond what can be evaluated, wherever it leads
    a.windows.File(folder / "own.alg");
    ASSERT_TRUE(a.desk.Press(a.menu.cmdSaveAlg));
  });
  EXPECT_THAT(one_->summary, ::testing::Not(HasSubstr("due to a calculation that failed was 1")));
}

TEST_P(BootstrapCores, GiveTheSameWhereTheUserAborts) {
  ExpectSameOnAllCores("juveniles_only", [](Analysis& a) {
    a.desk.Show(a.program.frmAbort);
    a.windows.AtTurn(2000, [&a] { a.desk.Press(a.program.frmAbort.cmdAbort); });
  });
  EXPECT_THAT(one_->events, Contains(HasSubstr("Bootstrap procedure will stop when this bootstrap has completed!")));
}

INSTANTIATE_TEST_SUITE_P(Both, BootstrapCores, ::testing::Values(Minimiser::Simplex, Minimiser::Marquardt),
                         [](const auto& p) { return p.param == Minimiser::Simplex ? "Simplex" : "Marquardt"; });

TEST(BootstrapCoresSimplex, GiveTheSameWithCovariates) {
  ExpectSame(Bootstrap(3, Minimiser::Simplex, "covariates_original", {}, 2),
             Bootstrap(1, Minimiser::Simplex, "covariates_original", {}, 2));
}

TEST(BootstrapCoresSimplex, StopAtTheSameVertexWhereAReplicateIsInterrupted) {
  const auto interrupt = [](Analysis& a) {
    for (const int turn : {3000, 9000, 9500})
      a.windows.AtTurn(turn, [&a] { a.desk.Press(a.program.frmSimplex.cmdStop); });
    a.windows.Yes("Simplex interrupt");
    a.windows.No("Simplex interrupt");
    a.windows.Yes("Simplex interrupt");
  };
  const Seen one = Bootstrap(1, Minimiser::Simplex, "juveniles_only", interrupt);
  EXPECT_THAT(one.events, Contains("message Simplex interrupt").Times(3));
  ExpectSame(Bootstrap(4, Minimiser::Simplex, "juveniles_only", interrupt), one);
}

/// Saves the algorithm data with a limit of function calls.
void SaveLimited(Analysis& a, std::int32_t MaxCalls, const std::string& path) {
  a.state.algorithm.MaxCalls = MaxCalls;
  a.windows.File(path);
  a.desk.Press(a.menu.cmdSaveAlg);
}

TEST(BootstrapCoresSimplex, GoBeyondTheCallLimitWhenTheUserWantsTo) {
  const Folder folder("bootstrap_limit");
  const auto limit = [&folder](Analysis& a) {
    SaveLimited(a, 20, folder / "limit.alg");
    for (const Answer answer : {Answer::Yes, Answer::Yes, Answer::No}) a.windows.Reply(answer, "Simplex minimization");
  };
  const Seen one = Bootstrap(1, Minimiser::Simplex, "juveniles_only", limit, 3);
  EXPECT_THAT(one.events, Contains("message Simplex minimization").Times(3));
  ExpectSame(Bootstrap(4, Minimiser::Simplex, "juveniles_only", limit, 3), one);
}

TEST(BootstrapCoresSimplex, StayWithTheModelThatWasInTheAlgorithmFileWhenItChangesOnTheWay) {
  const Folder folder("bootstrap_change");
  const auto save = [&folder](Analysis& a) {
    AlgorithmData& algorithm = a.state.algorithm;
    // Of clutches seen before laying none but a whole shape expects a number at hatch. Behind a vector with such a
    // shape their juveniles keep what it expected of them: the objective depends on the calls that were made.
    algorithm.Value(9) = -5;
    algorithm.Value(16) = 1.5;
    algorithm.Step(16) = 0.5;
    algorithm.Value(20) = 1;
    SaveLimited(a, 90, folder / "later.alg");
    SaveLimited(a, 20, folder / "change.alg");
    for (int replicate = 1; replicate <= 3; ++replicate) a.windows.No("Simplex minimization");
  };
  const auto change = [&](Analysis& a) {
    save(a);
    a.windows.AtTurn(500, [&folder] { WriteWholeFile(folder / "change.alg", ReadWholeFile(folder / "later.alg")); });
  };
  const Seen undisturbed = Bootstrap(1, Minimiser::Simplex, "spanning_mixture", save, 3);
  const Seen one = Bootstrap(1, Minimiser::Simplex, "spanning_mixture", change, 3);
  EXPECT_THAT(one.events, Contains("message Simplex minimization").Times(3));
  EXPECT_THAT(one.events, Contains("message Parametric bootstrap").Times(1)) << "that the file has been changed";
  EXPECT_EQ(one.summary, undisturbed.summary);
  EXPECT_EQ(one.parameters, undisturbed.parameters);
  EXPECT_EQ(one.survival, undisturbed.survival);
  EXPECT_EQ(one.data, undisturbed.data);
  ExpectSame(Bootstrap(4, Minimiser::Simplex, "spanning_mixture", change, 3), one);
}

}  // namespace
}  // namespace merlane
