#include "data/standard_anomalies.h"

#include <cmath>

#include "base/runtime_failure.h"
#include "data/data_text.h"

namespace merlane {
namespace {

using test::Header;
using test::Reading;
using test::Record;
using ::testing::ElementsAre;

TEST(StandardAnomalies, UseThePopulationFormAndLeaveMissingValues) {
  Reading r(1995, 1996, 1);
  r.Of(Header + "\n" + Record(1995, "A", 160, 170, -10, 5, {"1"}) + Record(1995, "B", 160, 170, -10, 5, {"-999"}) +
       Record(1996, "A", 160, 170, -10, 5, {"4"}));
  StandardiseCovariates(r.data);
  EXPECT_THAT(r.data.Covariate, ElementsAre(-1, -999, 1));
}

TEST(StandardAnomalies, AConstantCovariateFailsAsItsRoundingMayHaveIt) {
  const auto standardise = [](int records, const char* value) {
    std::string text = Header + "\n";
    for (int i = 1; i <= records; ++i) text += Record(1995, std::to_string(i), 160, 170, -10, 5, {value});
    Reading r(1995, 1995, 1);
    r.Of(text);
    StandardiseCovariates(r.data);
    return r.data.Covariate;
  };
  EXPECT_THROW(standardise(2, "2"), RuntimeFailure);
  EXPECT_THROW(standardise(3, "0.1"), RuntimeFailure);
  EXPECT_THROW(standardise(5, "0.1"), RuntimeFailure);
  EXPECT_THAT(standardise(7, "0.1"), ::testing::Each(::testing::Truly([](double x) { return std::fabs(x) < 1e-7; })));
  EXPECT_THROW(standardise(0, "1"), RuntimeFailure);
}

}  // namespace
}  // namespace merlane
