// Every golden case through the whole program: from the form of initialisation to the pane of one call, to the minimum
// and to the saved covariances.
#include <gmock/gmock.h>

#include "base/number_text.h"
#include "platform/files.h"
#include "program/analysis.h"

namespace merlane {
namespace {

using nlohmann::json;
using test::Analysis;
using test::Golden;
using ::testing::StartsWith;

json ReadJson(const std::string& name) { return json::parse(ReadWholeFile(Golden(name))); }

struct GoldenCase {
  std::string name;
  test::DataChoices choices;
  friend void PrintTo(const GoldenCase& c, std::ostream* os) { *os << c.name; }
};

std::vector<GoldenCase> GoldenCases() {
  std::vector<GoldenCase> cases;
  const json listed = ReadJson("cases.json");
  for (const json& each : listed["cases"]) {
    const std::vector<std::string> args = each["args"];
    GoldenCase c{each["name"], {.path = Golden(each["data"])}};
    bool priors = false;
    for (std::size_t i = 0; i < args.size(); ++i) {
      if (args[i] == "--ncov") c.choices.covariates = args[i + 1];
      if (args[i] == "--format") c.choices.format = args[i + 1];
      if (args[i] == "--years") c.choices.startYear = args[i + 1], c.choices.endYear = args[i + 2];
      c.choices.censorEggs |= args[i] == "--censor-eggs";
      c.choices.censorJuvs |= args[i] == "--censor-juvs";
      priors |= args[i] == "--priors";
    }
    if (!priors) cases.push_back(c);
  }
  return cases;
}

struct OneCallTest : ::testing::TestWithParam<GoldenCase>, Analysis {
  /// Messages of the program that the golden figures know of: not the loading of algorithm data.
  std::vector<std::pair<std::string, std::string>> Told() const {
    std::vector<std::pair<std::string, std::string>> told;
    for (const Message& message : windows.messages)
      if (message.title != "Load algorithm data") told.emplace_back(message.title, message.text);
    return told;
  }
};

TEST_P(OneCallTest, FollowsTheGoldenFigures) {
  const json golden = ReadJson(GetParam().name + ".json");
  if (golden.contains("failure")) {
    windows.ExpectFailure("frmInitialize.cmdDone");
    Initialize(GetParam().choices);
    EXPECT_TRUE(program.frmInitialize.TakesInput()) << "the form can be used again";
    return;
  }
  Initialize(GetParam().choices);
  if (golden.contains("fatal")) {
    EXPECT_EQ(windows.messages.back().title, golden["fatal"]["title"]);
    EXPECT_EQ(windows.messages.back().text, golden["fatal"]["text"]);
    EXPECT_EQ(windows.exitStatus, 2);
    return;
  }
  LoadAlg(Golden(GetParam().name + ".alg"));
  desk.Press(menu.cmdOneFunction);
  std::vector<std::pair<std::string, std::string>> expected;
  for (const json& message : golden["messages"]) expected.emplace_back(message["title"], message["text"]);
  EXPECT_EQ(Told(), expected);
  const double F = golden["F"];
  EXPECT_EQ(program.model.Evaluated().BestObjective, golden["BestObjective"].get<double>());
  EXPECT_THAT(program.frmOneFunction.rtbOneFunction.text,
              StartsWith("\r\nCurrent minimum of " + Format(F, "####0.000000") + " found at the following"));
  EXPECT_EQ(state.flags.SampleSize, golden["SampleSize"].get<int>());
  EXPECT_EQ(state.free.NFREE, golden["NFREE"].get<int>());
  for (int i = 1; i <= state.algorithm.NPAR; ++i) {
    EXPECT_EQ(state.algorithm.Value(i), golden["Value"][static_cast<std::size_t>(i) - 1].get<double>()) << i;
    EXPECT_EQ(state.algorithm.Step(i), golden["Step"][static_cast<std::size_t>(i) - 1].get<double>()) << i;
    EXPECT_EQ(state.algorithm.Fuse(i), golden["Fuse"][static_cast<std::size_t>(i) - 1].get<std::string>()) << i;
  }
}

INSTANTIATE_TEST_SUITE_P(Golden, OneCallTest, ::testing::ValuesIn(GoldenCases()),
                         [](const auto& tested) { return tested.param.name; });

TEST(GoldenPriorsTest, OneCallHoldsThePriorTerm) {
  Analysis analysis;
  const json golden = ReadJson("priors.json");
  analysis.Initialize({.path = Golden(golden["data"])});
  analysis.LoadAlg(Golden("priors.alg"));
  analysis.LoadPriors(Golden("priors.pri"));
  analysis.OpenAndCancelPriors();  // only now the priors count
  ASSERT_TRUE(analysis.desk.Press(analysis.menu.cmdOneFunction));
  EXPECT_EQ(analysis.program.fit.objective, golden["F"].get<double>());
  EXPECT_EQ(analysis.program.priors.PriorTotal, golden["PriorTotal"].get<double>());
  EXPECT_TRUE(analysis.program.frmReviewPriors.Visible());
}

// ---- Minimisations

/// A golden minimisation, as it is begun from the menu.
struct GoldenFit {
  GoldenCase of;
  std::string what;
  json figures;
  std::string Name() const { return of.name + "_" + what; }
  friend void PrintTo(const GoldenFit& fit, std::ostream* os) { *os << fit.Name(); }
};

/// The golden fits of which this is told.
std::vector<GoldenFit> GoldenFits(const std::vector<std::string>& told) {
  const json listed = ReadJson("fits.json");
  const std::vector<GoldenCase> cases = GoldenCases();
  std::vector<GoldenFit> fits;
  for (const json& fit : listed["fits"])
    if (std::ranges::find(told, fit["what"].get<std::string>()) != told.end())
      fits.push_back({*std::ranges::find(cases, fit["case"].get<std::string>(), &GoldenCase::name), fit["what"], fit});
  return fits;
}

struct FitAnalysis : Analysis {
  /// Goes from the start to the calls that come before a minimisation.
  void BeginFit(const GoldenFit& golden) {
    Initialize(golden.of.choices);
    LoadAlg(Golden(golden.of.name + ".alg"));
    for (const json& call : golden.figures["one_function_calls"]) {
      OneFunction();
      EXPECT_EQ(program.fit.objective, call["F"].get<double>());
    }
  }
};

struct FitTest : ::testing::TestWithParam<GoldenFit>, FitAnalysis {};

TEST_P(FitTest, ReachesTheGoldenMinimumFromTheMenu) {
  BeginFit(GetParam());
  program.covariances.CovBaseValue = state.algorithm.Value;
  program.covariances.basis = program.objective.Present();
  const bool simplex = GetParam().what == "simplex";
  simplex ? Simplex() : Marquardt();
  const json& fit = GetParam().figures["fit"];
  EXPECT_EQ(program.fit.objective, fit["F"].get<double>());
  EXPECT_EQ(program.fit.minimisation->iterations, fit["iterations"].get<int>());
  EXPECT_EQ(program.fit.minimisation->functionCalls, fit["calls"].get<int>());
  for (int i = 1; i <= state.algorithm.NPAR; ++i)
    EXPECT_EQ(state.algorithm.Value(i), fit["Value"][static_cast<std::size_t>(i) - 1].get<double>()) << i;
  EXPECT_FALSE(program.covariances.AreOf(program.objective.Present()));
  EXPECT_EQ(program.simplex.ResumesAt(program.objective.Present()), simplex);
  EXPECT_TRUE(ApplicationMenuUsable());
  EXPECT_EQ(Usable().size(), 13U);
}

INSTANTIATE_TEST_SUITE_P(Golden, FitTest, ::testing::ValuesIn(GoldenFits({"simplex", "marquardt"})),
                         [](const auto& tested) { return tested.param.Name(); });

// ---- Covariances

struct SavedCovarianceTest : ::testing::TestWithParam<GoldenFit>, FitAnalysis {
  /// Answers all questions of the covariances as they are proposed.
  void AnswerQuestions() {
    windows.No("Covariance calculator");                 // numerical covariances
    windows.Reply(Answer::Ok, "Covariance calculator");  // their explanation
    windows.AtWait([this] { desk.Press(program.frmAlgo.cmdFinish); });
    for (const char* factor : {"1.000E+00", "1.000E-01", "1.000E-02"}) windows.Enter(factor, "Covariance calculator");
    windows.Yes("Covariance calculator");
    windows.Enter("0.5", "Enter constant");
    windows.No("Calculate optimistic SEs only?");
  }
};

TEST_P(SavedCovarianceTest, IsTheGoldenReportByteForByte) {
  const test::Folder folder("covariance");
  BeginFit(GetParam());
  Simplex();
  AnswerQuestions();
  ASSERT_TRUE(desk.Press(menu.cmdCovariance));
  EXPECT_TRUE(program.covariances.AreOf(program.objective.Present()));
  EXPECT_TRUE(ApplicationMenuUsable());
  ASSERT_TRUE(desk.Press(program.frmCovDisplay.cmdScreen));
  windows.File(folder / "saved.cov");
  ASSERT_TRUE(desk.Press(program.frmCovDisplay.cmdFile));
  const auto withoutName = [](const std::string& text) { return text.substr(text.find("\r\n")); };
  EXPECT_EQ(withoutName(ReadWholeFile(folder / "saved.cov")),
            withoutName(ReadWholeFile(Golden(GetParam().of.name + ".cov"))));
  desk.Press(program.frmCovDisplay.cmdFinish);
  EXPECT_EQ(Usable().size(), 13U);
}

INSTANTIATE_TEST_SUITE_P(Golden, SavedCovarianceTest, ::testing::ValuesIn(GoldenFits({"simplex, then covariances"})),
                         [](const auto& tested) { return tested.param.of.name; });

}  // namespace
}  // namespace merlane
