#include "inference/covariances_made.h"

#include <gtest/gtest.h>

namespace merlane {
namespace {

struct CovariancesMadeTest : ::testing::Test {
  const Provenance plain{1, "here.dat", ""}, underN{1, "here.dat", "N"}, underB{1, "here.dat", "B"};
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

TEST_F(CovariancesMadeTest, OfAnotherSessionTheirPriorsAreUnknown) { EXPECT_EQ(made.Difference(file, underN), ""); }

TEST_F(CovariancesMadeTest, TheirPriorsAreComparedWithTheModels) {
  made.Keep(calculated, underN);
  EXPECT_EQ(made.Difference(file, underN), "");
  EXPECT_EQ(made.Difference(file, plain), "it was calculated with priors, the model is ranked without");
  EXPECT_EQ(made.Difference(file, underB), "it was calculated with other priors than the model's");
}

TEST_F(CovariancesMadeTest, CovariancesWithoutPriorsAreNoneOfAModelThatIsRankedWithThem) {
  made.Keep(calculated, plain);
  EXPECT_EQ(made.Difference(file, plain), "");
  EXPECT_EQ(made.Difference(file, underN), "it was calculated without priors, the model is ranked with them");
}

TEST_F(CovariancesMadeTest, CovariancesThatCameOutAlikeUnderBothAreTheModels) {
  made.Keep(calculated, underN);
  made.Keep(calculated, plain);
  EXPECT_EQ(made.Difference(file, plain), "");
  EXPECT_EQ(made.Difference(file, underN), "");
}

TEST_F(CovariancesMadeTest, CovariancesOfOtherDataAreKnownWhateverTheirGrids) {
  made.Keep(calculated, {2, "elsewhere.dat", ""});
  EXPECT_EQ(made.Difference(file, plain), "it was calculated with other data, those of elsewhere.dat");
  made.Keep(calculated, plain);
  EXPECT_EQ(made.Difference(file, plain), "");
}

TEST_F(CovariancesMadeTest, OtherValuesParametersOrErrorsAreOtherCovariances) {
  made.Keep(calculated, underN);
  CovarianceFile other = file;
  other.values(1) = 0.01234;
  EXPECT_EQ(made.Difference(other, plain), "");
  other = file;
  other.rows(1).parameter = 1;
  EXPECT_EQ(made.Difference(other, plain), "");
  other = file;
  other.rows(1).standardErrors[1] = 0.125;
  EXPECT_EQ(made.Difference(other, plain), "");
}

}  // namespace
}  // namespace merlane
