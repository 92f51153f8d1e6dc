// Every known results summary and simulated data set through a batch file, byte for byte. The texts were written by an
// independent program from the same random streams.

#include <algorithm>

#include "base/text.h"
#include "batch/golden_batch.h"

namespace merlane {
namespace {

using nlohmann::json;

const json& Index() {
  static const json index = Parse("results/index.json");
  return index;
}

std::vector<std::string> KnownLines(const std::string& file) { return Lines(ReadFile(golden + "results/" + file)); }

/// The lines agree; one that is known to hold a citation may cite in our words.
void ExpectLines(const std::string& text, const std::vector<std::string>& known) {
  const std::vector<std::string> lines = Lines(text);
  ASSERT_EQ(lines.size(), known.size());
  for (std::size_t i = 0; i < lines.size(); ++i) {
    if (known[i].find("@CITATION@") != std::string::npos)
      EXPECT_THAT(lines[i], testing::MatchesRegex(".*[A-Z].* [(]?19[0-9][0-9].*")) << "line " << i + 1;
    else
      ASSERT_EQ(lines[i], known[i]) << "line " << i + 1;
  }
}

class GoldenSummary : public testing::TestWithParam<json> {};

TEST_P(GoldenSummary, IsTheReferencesToTheLastCharacter) {
  const json summary = GetParam();
  const json golden_case = CaseNamed(summary["case"]);
  ASSERT_EQ(golden_case["args"], summary["args"]);
  std::string text = BatchFor(golden_case) + "press frmMenu.cmdOneFunction\nclose frmOneFunction\n";
  if (summary["simplex"]) text += "press frmMenu.cmdSimplex\nreply yes at \"Just checking\"\n";
  text += "seed " + Index()["seed"].dump() + "\npress frmMenu.cmdUserSummary\nenter " +
          Index()["randomisations"].dump() +
          " at \"More simulations improve the goodness-of-fit (GOF) estimate\"\nreply " +
          summary["answer"].get<std::string>() + " at \"Choose among output options\"\n";
  if (summary["answer"] == "cancel") text += "reply no\nreply no\n";  // no plots either
  text += "save-text frmSummary.rtbOut summary.txt\n";
  const Replay replay(text);
  ASSERT_EQ(replay.status, 0) << replay.errors;
  ExpectLines(replay.File("summary.txt"), KnownLines(summary["file"]));
}

std::string NameOf(const json& entry) {
  std::string name = entry["file"];
  std::replace(name.begin(), name.end(), '.', '_');
  return name;
}

INSTANTIATE_TEST_SUITE_P(All, GoldenSummary, testing::ValuesIn(Index()["summaries"].get<std::vector<json>>()),
                         [](const auto& one) { return NameOf(one.param); });

class GoldenSimulation : public testing::TestWithParam<json> {};

TEST_P(GoldenSimulation, IsTheReferencesToTheLastCharacterAndCanBeReadBack) {
  const json simulation = GetParam();
  const json& settings = simulation["settings"];
  std::string text =
      "seed " + Index()["seed"].dump() + "\npress frmMenu.cmdInitialize\nchoose frmInitialize.optSimulate\n";
  const std::map<std::string, std::string> boxes{
      {"min_size", "cboMinInitBroodSize"}, {"max_size", "cboMaxInitBroodSize"}, {"init_age", "cboInitBroodAge"},
      {"final_age", "cboFinalBroodAge"},   {"broods", "cboNClutchesBroods"},    {"min_hatch", "cboMinHatchDay"},
      {"max_hatch", "cboMaxHatchDay"},     {"freq1", "cboSampFreq1"},           {"freq2", "cboSampFreq2"}};
  for (const auto& [setting, value] : settings.items())
    text += "set frmInitialize." + boxes.at(setting) + " " + value.dump() + "\n";
  text += "press frmInitialize.cmdDone\npress frmMenu.cmdLoadAlg\nreply yes\nfile " +
          InQuotes(golden + simulation["alg"].get<std::string>()) +
          "\npress frmMenu.cmdUserSummary\npress frmSummary.cmdSaveSummary\nfile simulated at \"Save simulated data "
          "in...\"\nclose frmSummary\n";
  text +=
      "press frmMenu.cmdInitialize\nreply no\npress frmInitialize.cmdLoadData\nfile simulated.sim\n"
      "set frmInitialize.cboStartYear 1\nset frmInitialize.cboEndYear 1\npress frmInitialize.cmdDone\n"
      "press frmMenu.cmdLoadAlg\nreply yes\nfile " +
      InQuotes(golden + simulation["alg"].get<std::string>()) +
      "\npress frmMenu.cmdOneFunction\nexport visits visits.csv\nexport fit fit.json\n";
  const Replay replay(text);
  ASSERT_EQ(replay.status, 0) << replay.errors;
  ExpectLines(replay.File("simulated.sim"), KnownLines(simulation["file"]));
  EXPECT_EQ(Csv(replay.File("visits.csv")).size(), KnownLines(simulation["file"]).size() - 1);
  EXPECT_GT(replay.Fit()["sample_size"], 0);
}

INSTANTIATE_TEST_SUITE_P(All, GoldenSimulation, testing::ValuesIn(Index()["simulations"].get<std::vector<json>>()),
                         [](const auto& one) { return NameOf(one.param); });

}  // namespace
}  // namespace merlane
