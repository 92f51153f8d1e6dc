// The objective and all tables behind one function call, over all known cases.

#include <gmock/gmock.h>

#include <cstdlib>
#include <map>

#include "base/text.h"
#include "likelihood/evaluated_case.h"
#include "platform/files.h"

namespace merlane {
namespace {

using test::Evaluated;
using test::GoldenCase;

/// The lines of a comma-separated file by the names of its columns; the text of a column in line i.
class Csv {
 public:
  explicit Csv(const std::string& path) {
    for (const std::string& line : Lines(ReadWholeFile(path))) rows_.push_back(Fields(line));
    for (std::size_t i = 0; i < rows_.front().size(); ++i) columns_[rows_.front()[i]] = i;
  }
  std::size_t Size() const { return rows_.size() - 1; }
  const std::string& Text(std::size_t i, const std::string& column) const { return rows_[i + 1][columns_.at(column)]; }
  /// An empty field is a missing value.
  double Number(std::size_t i, const std::string& column) const {
    const std::string& text = Text(i, column);
    return text.empty() ? Missing : std::strtod(text.c_str(), nullptr);
  }

 private:
  static std::vector<std::string> Fields(const std::string& line) {
    std::vector<std::string> fields(1);
    for (const char c : line) {
      if (c == ',')
        fields.emplace_back();
      else
        fields.back() += c;
    }
    return fields;
  }
  std::vector<std::vector<std::string>> rows_;
  std::map<std::string, std::size_t> columns_;
};

class GoldenObjective : public testing::TestWithParam<GoldenCase> {};

TEST_P(GoldenObjective, AgreesInObjectivePenaltyAndCounts) {
  const nlohmann::json known = GetParam().Expected();
  const Evaluated e(GetParam());
  // F itself holds the prior term where there are priors; without one the two are the same.
  EXPECT_EQ(e.F, known["BestObjective"]);
  EXPECT_EQ(e.state.BestObjective, known["BestObjective"]);
  EXPECT_EQ(e.state.Penalty, known["Penalty"]);
  EXPECT_EQ(e.state.EggsAtRisk, known["EggsAtRisk"]);
  EXPECT_EQ(e.state.JuvsAtRisk, known["JuvsAtRisk"]);
  EXPECT_EQ(e.SampleSize, known["SampleSize"]);
  EXPECT_EQ(e.state.survival.ClutchIntervals, known["ClutchIntervals"]);
  EXPECT_EQ(e.state.survival.BroodIntervals, known["BroodIntervals"]);
  EXPECT_EQ(e.state.survival.BroodSizeDeficient, known["BroodSizeDeficient"] == -1);
  EXPECT_EQ(e.state.survival.HatchDateDeficient, known["HatchDateDeficient"] == -1);
  EXPECT_EQ(e.state.MinDeviance, known["MinDeviance"]);
  EXPECT_EQ(e.state.MaxDeviance, known["MaxDeviance"]);
}

TEST_P(GoldenObjective, HasTheKnownBits) {
  const nlohmann::json known = GetParam().Expected();
  const Evaluated e(GetParam());
  EXPECT_EQ(e.F, known["BestObjective"].get<double>());
  if (!known.contains("PriorTotal")) {
    EXPECT_EQ(e.F, std::strtod(known["F_hex"].get<std::string>().c_str(), nullptr));
  }
}

TEST_P(GoldenObjective, LeavesTheVectorAndTheMessagesAsKnown) {
  const nlohmann::json known = GetParam().Expected();
  const Evaluated e(GetParam());
  const AlgorithmData& a = e.run.algorithm;
  for (int i = 1; i <= a.NPAR; ++i) {
    const std::size_t at = static_cast<std::size_t>(i) - 1;
    EXPECT_EQ(a.Value(i), known["Value"][at]) << i;
    EXPECT_EQ(a.Step(i), known["Step"][at]) << i;
    EXPECT_EQ(a.Fuse(i), known["Fuse"][at]) << i;
    EXPECT_EQ(e.state.best.Value(i), known["Value"][at]) << i;
  }
  std::vector<Message> told = e.reading.messages;
  told.push_back({"Analysis update", "Data read successfully - analysis can continue"});
  told.insert(told.end(), e.messages.begin(), e.messages.end());
  ASSERT_EQ(told.size(), known["messages"].size());
  for (std::size_t i = 0; i < told.size(); ++i) {
    EXPECT_EQ(told[i].title, known["messages"][i]["title"]);
    EXPECT_EQ(told[i].text, known["messages"][i]["text"]);
  }
}

/// The cases that also have figures for each visit and brood.
class GoldenTables : public testing::TestWithParam<GoldenCase> {};

std::vector<GoldenCase> CasesWithTables() {
  std::vector<GoldenCase> cases = test::SoundCases();
  std::erase_if(cases, [](const GoldenCase& c) { return c.name == "large" || c.name == "header_alone"; });
  return cases;
}

TEST_P(GoldenTables, AgreeForTheVisits) {
  const Csv known(test::GoldenPath(GetParam().name + ".visits.csv"));
  const Evaluated e(GetParam());
  const BroodData& data = e.reading.data;
  const SurvivalTables& t = e.state.survival;
  ASSERT_EQ(static_cast<std::size_t>(data.Visits()), known.Size());
  double counted = 0;
  const std::pair<const char*, const std::vector<double>&> columns[] = {{"EVisitR", t.EVisitR},
                                                                        {"EVisitC", t.EVisitC},
                                                                        {"EVisit", t.EVisit},
                                                                        {"PCorrEgg", t.PCorrEgg},
                                                                        {"PCorrJuv", t.PCorrJuv},
                                                                        {"VarR", e.state.VarR},
                                                                        {"VarC", e.state.VarC},
                                                                        {"VisitDeviance", e.state.VisitDeviance},
                                                                        {"age", data.VisitAge},
                                                                        {"EVisitR", e.state.best.survival.EVisitR},
                                                                        {"EVisitC", e.state.best.survival.EVisitC},
                                                                        {"EVisit", e.state.best.survival.EVisit},
                                                                        {"VisitDeviance", e.state.best.VisitDeviance},
                                                                        {"VarR", e.state.best.VarR},
                                                                        {"VarC", e.state.best.VarC}};
  for (std::size_t v = 0; v < known.Size(); ++v) {
    for (const auto& [name, column] : columns)
      EXPECT_EQ(column[v], known.Number(v, name)) << name << " of line " << v + 2;
    if (known.Text(v, "counted") == "True") counted += e.state.VisitDeviance[v];
  }
  if (e.state.Penalty == 0) {
    EXPECT_EQ(counted, e.F) << "sum over the visits that count";
  }
}

TEST_P(GoldenTables, AgreeForTheBroods) {
  const Csv known(test::GoldenPath(GetParam().name + ".broods.csv"));
  const Evaluated e(GetParam());
  const SurvivalTables& t = e.state.survival;
  ASSERT_EQ(t.EHatch.size(), known.Size());
  const std::pair<const char*, const std::vector<double>&> columns[] = {
      {"EHatchR", t.EHatchR}, {"EHatchC", t.EHatchC}, {"EHatch", t.EHatch}, {"PCorrHatch", t.PCorrHatch},
      {"JuvRR", t.JuvRR},     {"JuvCR", t.JuvCR},     {"JuvRC", t.JuvRC},   {"JuvCC", t.JuvCC}};
  for (std::size_t b = 0; b < known.Size(); ++b)
    for (const auto& [name, column] : columns)
      EXPECT_EQ(column[b], known.Number(b, name)) << name << " of line " << b + 2;
}

INSTANTIATE_TEST_SUITE_P(Cases, GoldenObjective, testing::ValuesIn(test::SoundCases()),
                         [](const auto& c) { return c.param.name; });

INSTANTIATE_TEST_SUITE_P(Cases, GoldenTables, testing::ValuesIn(CasesWithTables()),
                         [](const auto& c) { return c.param.name; });

/// Killdeer nests of unknown age, the example of the R package RMark (Laake; method of Dinsmore, White and Knopf 2002),
/// whose published minimum is -2 ln[L] = 42.510280 at a daily survival of 0.972267.
TEST(RealData, KilldeerNestsHaveThePublishedLikelihoodAtThePublishedSurvival) {
  test::Reading reading(1995, 1995, 0);
  reading.Of(ReadWholeFile(test::GoldenPath("real/killdeer.dat")));
  Likelihood likelihood(reading.data);
  LikelihoodState state;
  state.Dimension(reading.data);
  EvaluationSetting setting;
  Array1<double> Value(34), Step(34);
  Array1<std::string> Names(34), Fuse(34);
  const auto deviance = [&](double dailySurvival, std::int32_t NF) {
    double F = 0;
    std::int32_t SampleSize = 0;
    for (const int i : {1, 2, 3, 4, 16, 18, 20, 22}) Value(i) = 1;
    Value(15) = -std::log(dailySurvival);
    likelihood.EvaluateObjective(setting, state, F, Value, Step, Names, Fuse, 34, NF, SampleSize);
    return F;
  };
  const double atPublished = deviance(0.972267, 1);
  EXPECT_NEAR(atPublished, 42.510280, 1e-6);
  EXPECT_GT(deviance(0.9715, 2), atPublished);
  EXPECT_GT(deviance(0.9730, 3), atPublished);
}

}  // namespace
}  // namespace merlane
