// The counts of the reader over all known cases.

#include <gmock/gmock.h>

#include "base/runtime_failure.h"
#include "data/data_text.h"
#include "data/golden_case.h"
#include "data/standard_anomalies.h"
#include "platform/files.h"

namespace merlane {
namespace {

class GoldenReader : public testing::TestWithParam<test::GoldenCase> {};

TEST_P(GoldenReader, FindsWhatIsKnownToStandInTheFile) {
  const test::GoldenCase& c = GetParam();
  const nlohmann::json expected = c.Expected();
  test::Reading reading(c.choices.FirstYear, c.choices.LastYear, c.choices.NCov);
  reading.data.CensorEggs = c.choices.CensorEggs;
  reading.data.CensorJuvs = c.choices.CensorJuvs;
  const std::string bytes = ReadWholeFile(c.dataFile);
  if (c.exitStatus == 2) {
    try {
      reading.Of(bytes);
      FAIL() << "no fatal error";
    } catch (const FatalDataError& error) {
      EXPECT_EQ(error.message.title, expected["fatal"]["title"]);
      EXPECT_EQ(error.message.text, expected["fatal"]["text"]);
    }
    return;
  }
  const BroodData& d = reading.Of(bytes).data;
  if (c.exitStatus == 4) {
    EXPECT_THROW(StandardiseCovariates(reading.data), RuntimeFailure);
    return;
  }
  const nlohmann::json& r = expected["reader"];
  EXPECT_EQ(d.TotalRecords, r["RecordsRead"]);
  EXPECT_EQ(d.EggTotal, r["EggTotal"]);
  EXPECT_EQ(d.JuvTotal, r["JuvTotal"]);
  EXPECT_EQ(d.DistinctCodes, r["DistinctCodes"]);
  EXPECT_EQ(d.MaxBroods, r["MaxBroods"]);
  EXPECT_EQ(d.MaxVisits, r["MaxVisits"]);
  EXPECT_EQ(d.MinDate, r["MinDate"]);
  EXPECT_EQ(d.MaxDate, r["MaxDate"]);
  EXPECT_EQ(d.MaxCount, r["MaxCount"]);
  EXPECT_EQ(d.MinAge, r["MinAge"]);
  EXPECT_EQ(d.AllClutchAgesKnown, r["AllClutchAgesKnown"] == -1);
  EXPECT_EQ(d.AllBroodAgesKnown, r["AllBroodAgesKnown"] == -1);
  ASSERT_EQ(d.CovariateName.Size(), static_cast<int>(r["CovariateNames"].size()));
  for (int m = 1; m <= d.NCov; ++m) EXPECT_EQ(d.CovariateName(m), r["CovariateNames"][static_cast<std::size_t>(m) - 1]);
  ASSERT_EQ(d.FirstBrood.size(), r["years"].size());
  for (std::size_t y = 0; y < d.FirstBrood.size(); ++y) {
    EXPECT_EQ(d.YearAt(static_cast<int>(y)), r["years"][y]["year"]);
    EXPECT_EQ(d.BroodsInYear[y], r["years"][y]["BroodsInYear"]);
    EXPECT_EQ(d.ClutchesInYear[y], r["years"][y]["ClutchesInYear"]);
    EXPECT_EQ(d.JuvBroodsInYear[y], r["years"][y]["JuvBroodsInYear"]);
  }
}

INSTANTIATE_TEST_SUITE_P(Cases, GoldenReader, testing::ValuesIn(test::GoldenCases()),
                         [](const auto& c) { return c.param.name; });

}  // namespace
}  // namespace merlane
