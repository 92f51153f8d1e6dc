// The parametric bootstrap: known ones to the last character, and every way out of one.
#include <gmock/gmock.h>

#include <filesystem>
#include <nlohmann/json.hpp>

#include "base/text.h"
#include "model/bootstrap_reports.h"
#include "platform/files.h"
#include "program/analysis.h"

namespace merlane {
namespace {

using nlohmann::json;
using test::Analysis;
using test::Folder;
using test::Golden;
using ::testing::Contains;
using ::testing::ElementsAre;
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

}  // namespace
}  // namespace merlane
