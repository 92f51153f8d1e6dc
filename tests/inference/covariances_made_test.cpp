#include "inference/covariances_made.h"

#include <gtest/gtest.h>

namespace merlane {
namespace {

struct CovariancesMadeTest : ::testing::Test {
  CovariancesMade made;
  Covariances calculated;
  CovarianceFile file;  // as they come back, by the digits of files

  CovariancesMadeTest() {
    calculated.CovBaseValue = {0.0123456789, 1.5};
    calculated.CovCount = 1;
    calculated.CovIndex = {std::int16_t{2}};
    for (CovarianceGrid& grid : calculated.grid) grid.standardErrors = {0.123456789};
    calculated.grid(3).standardErrors(1) = -1;
    file.values = {0.012345679, 1.5};
    file.rows = {CovarianceFile::Row{2, {0.12345679, 0.12345679, -1}}};
  }
};

TEST_F(CovariancesMadeTest, OfAnotherSessionTheirPriorsAreUnknown) { EXPECT_EQ(made.OtherPriors(file, "N"), ""); }

TEST_F(CovariancesMadeTest, TheirPriorsAreComparedWithTheModels) {
  made.Keep(calculated, "N");
  EXPECT_EQ(made.OtherPriors(file, "N"), "");
  EXPECT_EQ(made.OtherPriors(file, ""), "it was calculated with priors, the model is ranked without");
  EXPECT_EQ(made.OtherPriors(file, "B"), "it was calculated with other priors than the model's");
}

TEST_F(CovariancesMadeTest, CovariancesWithoutPriorsAreNoneOfAModelThatIsRankedWithThem) {
  made.Keep(calculated, "");
  EXPECT_EQ(made.OtherPriors(file, ""), "");
  EXPECT_EQ(made.OtherPriors(file, "N"), "it was calculated without priors, the model is ranked with them");
}

TEST_F(CovariancesMadeTest, CovariancesThatCameOutAlikeUnderBothAreTheModels) {
  made.Keep(calculated, "N");
  made.Keep(calculated, "");
  EXPECT_EQ(made.OtherPriors(file, ""), "");
  EXPECT_EQ(made.OtherPriors(file, "N"), "");
}

TEST_F(CovariancesMadeTest, OtherValuesParametersOrErrorsAreOtherCovariances) {
  made.Keep(calculated, "N");
  CovarianceFile other = file;
  other.values(1) = 0.01234;
  EXPECT_EQ(made.OtherPriors(other, ""), "");
  other = file;
  other.rows(1).parameter = 1;
  EXPECT_EQ(made.OtherPriors(other, ""), "");
  other = file;
  other.rows(1).standardErrors[1] = 0.125;
  EXPECT_EQ(made.OtherPriors(other, ""), "");
}

}  // namespace
}  // namespace merlane
