// Every golden case through a batch file: data read, algorithm data loaded, one function call made. The figures were
// computed by an independent program.

#include <algorithm>

#include "batch/golden_batch.h"

namespace merlane {
namespace {

using nlohmann::json;

/// Compares a field of ours with one of theirs; empty fields must be empty in both.
void CompareField(const std::string& ours, const std::string& theirs, const std::string& what) {
  if (ours.empty() || theirs.empty())
    EXPECT_EQ(ours, theirs) << what;
  else
    EXPECT_EQ(std::stod(ours), std::stod(theirs)) << what;
}

/// Title and text of the messages that the reading and the evaluation show.
std::vector<std::string> Told(const std::vector<json>& messages) {
  const std::vector<std::string> ofLoading{"Load algorithm data", "Bayes information", "Just so you know",
                                           "Save Bayesian priors"};
  std::vector<std::string> told;
  for (const json& message : messages)
    if (std::find(ofLoading.begin(), ofLoading.end(), message["title"]) == ofLoading.end())
      told.push_back(message["title"].get<std::string>() + ": " + message["text"].get<std::string>());
  return told;
}

class GoldenCase : public testing::TestWithParam<json> {};

TEST_P(GoldenCase, OneFunctionCallGivesItsFigures) {
  const json golden_case = GetParam();
  const std::string name = golden_case["name"];
  const json expected = Parse(name + ".json");

  const Replay replay(BatchFor(golden_case) +
                      "press frmMenu.cmdOneFunction\n"
                      "export fit fit.json\nexport parameters parameters.csv\nexport visits visits.csv\n");
  ASSERT_EQ(replay.status, golden_case["exit_status"].get<int>()) << replay.errors;

  std::vector<json> messagesInReference = expected["messages"];
  if (expected.contains("fatal")) messagesInReference.push_back(expected["fatal"]);
  EXPECT_EQ(Told(replay.All("message")), Told(messagesInReference));
  if (!expected.contains("F")) return;  // the data were refused

  const json fit = replay.Fit();
  EXPECT_EQ(fit["objective"].get<double>(), expected["F"].get<double>());
  EXPECT_EQ(fit["penalty"].get<double>(), expected["Penalty"].get<double>());
  EXPECT_EQ(fit["prior"].get<double>(), expected.value("PriorTotal", 0.0));
  EXPECT_EQ(fit["sample_size"], expected["SampleSize"]);
  EXPECT_EQ(fit["eggs_at_risk"], expected["EggsAtRisk"]);
  EXPECT_EQ(fit["juveniles_at_risk"], expected["JuvsAtRisk"]);
  EXPECT_EQ(fit["clutch_intervals"], expected["ClutchIntervals"]);
  EXPECT_EQ(fit["brood_intervals"], expected["BroodIntervals"]);
  // Behind the call, whose repairs may freeze parameters.
  EXPECT_EQ(fit["free_parameters"],
            std::ranges::count_if(expected["Step"], [](const json& step) { return step.get<double>() != 0; }));

  const auto parameters = Csv(replay.File("parameters.csv"));
  ASSERT_EQ(parameters.size(), expected["Value"].size());
  for (std::size_t i = 0; i < parameters.size(); ++i) {
    EXPECT_EQ(std::stod(parameters[i].at("value")), expected["Value"][i].get<double>());
    EXPECT_EQ(std::stod(parameters[i].at("step")), expected["Step"][i].get<double>());
    EXPECT_EQ(parameters[i].at("fuse"), expected["Fuse"][i]) << "parameter " << i + 1;
  }
  for (const json& changed : expected["changed_names"])
    EXPECT_EQ(parameters[changed["number"].get<std::size_t>() - 1].at("name"), changed["text"]);

  const std::map<std::string, std::string> columns{
      {"year", "year"},           {"brood", "brood"}, {"visit", "visit"}, {"date", "date"},
      {"hatch_day", "hatch_day"}, {"age", "age"},     {"stage", "stage"}, {"count", "count"},
      {"E_R", "EVisitR"},         {"E_C", "EVisitC"}, {"E", "EVisit"},    {"pcorr_egg", "PCorrEgg"},
      {"pcorr_juv", "PCorrJuv"},  {"var_R", "VarR"},  {"var_C", "VarC"},  {"deviance", "VisitDeviance"}};
  if (!std::filesystem::exists(golden + name + ".visits.csv")) return;  // the large case keeps its sums alone
  const auto ours = Csv(replay.File("visits.csv"));
  const auto theirs = Csv(ReadFile(golden + name + ".visits.csv"));
  ASSERT_EQ(ours.size(), theirs.size());
  for (std::size_t i = 0; i < ours.size() && !HasFailure(); ++i) {
    EXPECT_EQ(ours[i].at("code"), theirs[i].at("code"));
    for (const auto& [mine, reference] : columns)
      CompareField(ours[i].at(mine), theirs[i].at(reference), mine + " of line " + std::to_string(i + 2));
  }
}

TEST(GoldenFailure, AnAnomalyOfAConstantCovariateFailsBehindTheReading) {
  const json expected = Parse("constant_covariate.json");
  const std::vector<json> cases = Cases();
  const auto constant =
      std::find_if(cases.begin(), cases.end(), [](const json& one) { return one["name"] == "constant_covariate"; });
  ASSERT_NE(constant, cases.end());
  const std::string text = BatchFor(*constant);
  const Replay replay(text.substr(0, text.find("press frmMenu.cmdLoadAlg")));
  EXPECT_EQ(replay.status, (*constant)["exit_status"]);
  EXPECT_EQ(Told(replay.All("message")),
            std::vector<std::string>{"Analysis update: Data read successfully - analysis can continue"});
  ASSERT_EQ(replay.All("failure").size(), 1U);
  EXPECT_THAT(expected["failure"].get<std::string>(), testing::EndsWith("division by zero"));
  EXPECT_THAT(replay.All("failure")[0].get<std::string>(), testing::HasSubstr("division by zero"));
}

/// The cases that read their data and come to an evaluation, or to a fatal error.
std::vector<json> Evaluations() {
  std::vector<json> evaluations = Cases();
  std::erase_if(evaluations, [](const json& one) { return one["exit_status"] == 4; });
  return evaluations;
}

INSTANTIATE_TEST_SUITE_P(All, GoldenCase, testing::ValuesIn(Evaluations()),
                         [](const auto& one) { return one.param["name"].template get<std::string>(); });

/// The minimisations that end in a fit alone; what follows on other runs is tested where it is computed.
std::vector<json> Fits() {
  std::vector<json> fits;
  const json kept = Parse("fits.json");
  for (const json& fit : kept["fits"])
    if (fit["what"] == "simplex" || fit["what"] == "marquardt") fits.push_back(fit);
  return fits;
}

class GoldenFit : public testing::TestWithParam<json> {};

TEST_P(GoldenFit, MinimisationEndsWhereTheReferenceDid) {
  const json expected = GetParam();
  const bool simplex = expected["what"] == "simplex";
  json golden_case;
  for (const json& one : Cases())
    if (one["name"] == expected["case"]) golden_case = one;
  ASSERT_FALSE(golden_case.is_null());

  std::string text = BatchFor(golden_case);
  for (std::size_t call = 0; call < expected["one_function_calls"].size(); ++call)
    text += "press frmMenu.cmdOneFunction\nexport fit one" + std::to_string(call) + ".json\nclose frmOneFunction\n";
  if (simplex)
    text += "press frmMenu.cmdSimplex\nreply yes at \"Just checking\"\n";
  else
    text +=
        "press frmMenu.cmdMarquardt\nreply yes at \"Just checking\"\nreply no at \"Marquardt minimization\"\n"
        "reply no at \"Marquardt minimization\"\n";
  text += "export fit fit.json\nexport parameters parameters.csv\n";
  const Replay replay(text);
  ASSERT_EQ(replay.status, 0) << replay.errors;

  for (std::size_t call = 0; call < expected["one_function_calls"].size(); ++call)
    EXPECT_EQ(json::parse(replay.File("one" + std::to_string(call) + ".json"))["objective"].get<double>(),
              expected["one_function_calls"][call]["F"].get<double>());

  const json& run = expected["fit"];
  const json fit = replay.Fit();
  EXPECT_EQ(fit["minimiser"], run["method"]);
  EXPECT_EQ(fit["ending"], run["ending"]);
  EXPECT_EQ(fit["function_calls"], run["calls"]);
  EXPECT_EQ(fit["iterations"], run["iterations"]);
  EXPECT_EQ(fit["restarts"], run["restarts"]);
  EXPECT_EQ(fit["free_parameters"], expected["NFREE"]);
  EXPECT_EQ(fit["sample_size"], expected["model"]["SampleSize"]);
  EXPECT_EQ(fit["objective"].get<double>(), run["F"].get<double>());
  EXPECT_EQ(fit["penalty"].get<double>(), expected["model"]["Penalty"].get<double>());
  const auto parameters = Csv(replay.File("parameters.csv"));
  ASSERT_EQ(parameters.size(), expected["final_value"].size());
  for (std::size_t i = 0; i < parameters.size(); ++i)
    EXPECT_EQ(std::stod(parameters[i].at("value")), expected["final_value"][i].get<double>());

  // The last message is the minimiser's.
  ASSERT_FALSE(run["messages"].empty());
  const json told = replay.All("message").back();
  EXPECT_EQ(told["title"], run["messages"].back()["title"]);
  EXPECT_EQ(told["text"], run["messages"].back()["text"]);
  EXPECT_EQ(told["style"], run["messages"].back()["style"]);
}

INSTANTIATE_TEST_SUITE_P(All, GoldenFit, testing::ValuesIn(Fits()), [](const auto& one) {
  return one.param["case"].template get<std::string>() + "_" + one.param["what"].template get<std::string>();
});

/// The file without its first line, which holds the path it was saved in.
std::string BehindFirstLine(const std::string& text) {
  std::string behind = text.substr(text.find('\n') + 1);
  std::erase(behind, '\r');
  return behind;
}

class GoldenCovariances : public testing::TestWithParam<std::string> {};

TEST_P(GoldenCovariances, TheSavedReportIsTheReferencesToTheLastCharacter) {
  const std::string name = GetParam();
  const json fits = Parse("fits.json");
  const auto fit = std::find_if(fits["fits"].begin(), fits["fits"].end(), [&](const json& one) {
    return one["case"] == name && one["what"] == "simplex, then covariances";
  });
  ASSERT_NE(fit, fits["fits"].end());
  const std::vector<json> cases = Cases();
  const auto golden_case =
      std::find_if(cases.begin(), cases.end(), [&](const json& one) { return one["name"] == name; });

  std::string text = BatchFor(*golden_case);
  for (std::size_t call = 0; call < (*fit)["one_function_calls"].size(); ++call)
    text += "press frmMenu.cmdOneFunction\nclose frmOneFunction\n";
  const Replay replay(text +
                      "press frmMenu.cmdSimplex\nreply yes at \"Just checking\"\n"
                      "press frmMenu.cmdCovariance\nreply no at \"Covariance calculator\"\nreply ok\n"
                      "press frmAlgo.cmdFinish\nenter 1\nenter 0.1\nenter 0.01\nreply yes\n"
                      "enter 0.5 at \"Enter constant\"\nreply no at \"Calculate optimistic SEs only?\"\n"
                      "press frmCovDisplay.cmdScreen\npress frmCovDisplay.cmdFile\nfile saved.cov\n");
  ASSERT_EQ(replay.status, 0) << replay.errors;
  EXPECT_EQ(BehindFirstLine(replay.File("saved.cov")), BehindFirstLine(ReadFile(golden + name + ".cov")));
}

INSTANTIATE_TEST_SUITE_P(All, GoldenCovariances,
                         testing::Values("juveniles_only", "spanning_random", "censored_eggs", "fuses_two_letters",
                                         "single_individuals"),
                         [](const auto& one) { return one.param; });

}  // namespace
}  // namespace merlane
