#include "priors/prior_review.h"

#include <fstream>
#include <nlohmann/json.hpp>

#include "priors/priors_file.h"
#include "priors/set_prior.h"

namespace merlane {
namespace {

using Json = nlohmann::json;

TEST(PriorReview, TellsTheKeptFigures) {
  std::ifstream file(std::string(MERLANE_GOLDEN_DIR) + "/plots/review.json");
  const Json kept = Json::parse(file);
  for (const auto& [name, review] : kept["reviews"].items()) {
    SCOPED_TRACE(name);
    Priors priors = ReadPriorsText(kept["file"].get<std::string>(), 9).priors;
    Array1<double> values(9);
    std::ranges::copy(review["values"].get<std::vector<double>>(), values.begin());
    std::string pane = PriorReview(values, review["ObjectiveConstant"], priors);
    std::string expected = review["pane"];
    while (expected.ends_with('\n')) expected.pop_back();
    EXPECT_EQ(pane, expected);
    for (int i = 1; i <= 9; ++i) {
      const double figure = review["PriorNegLnL"][static_cast<std::size_t>(i) - 1];
      EXPECT_NEAR(priors.PriorNegLnL(i), figure, 1e-12 * std::max(1.0, figure)) << i;
    }
    EXPECT_NEAR(priors.PriorTotal, review["PriorTotal"].get<double>(), 1e-11);
  }
}

TEST(PriorReview, AParameterWithCodeUAppearsInNoReviewLine) {
  Priors priors;
  priors.Reset(2);
  EXPECT_THAT(PriorReview(Array1<double>{1, 2}, 2, priors), testing::Not(testing::HasSubstr("Parameter 1")));
}

TEST(PriorReview, AConstantOfZeroGivesFiguresOfZeroAndLikelihoodsOfOne) {
  Priors priors = test::PriorsOf(1, "N", 0, 1);
  EXPECT_THAT(
      PriorReview(Array1<double>{3}, 0, priors),
      testing::HasSubstr("Parameter 1 at 3.000E+00 has a prior -ln[L] of 0.00 and a prior likelihood of 1.000000"));
}

}  // namespace
}  // namespace merlane
