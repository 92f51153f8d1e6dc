#include "inference/fits_made.h"

#include <gtest/gtest.h>

#include "control/fuses.h"

namespace merlane {
namespace {

struct FitsMadeTest : ::testing::Test {
  const Provenance here{1, "here.dat", ""}, elsewhere{2, "elsewhere.dat", ""};
  FitsMade fits;
  AlgorithmData estimates;

  FitsMadeTest() {
    estimates.Value = {0.0123456789, 1.5};
    estimates.Step = {0.1, 0};
    estimates.Fuse = {Unfused, Unfused};
  }
};

TEST_F(FitsMadeTest, EstimatesThatNobodyFittedHereAreOfUnknownData) { EXPECT_EQ(fits.OtherData(estimates, here), ""); }

TEST_F(FitsMadeTest, EstimatesOfOtherDataAreKnownAgainByTheirDigitsInFiles) {
  fits.Keep(estimates, elsewhere);
  estimates.Value(1) = 0.012345679;
  EXPECT_EQ(fits.OtherData(estimates, here), "elsewhere.dat");
  EXPECT_EQ(fits.OtherData(estimates, elsewhere), "");
}

TEST_F(FitsMadeTest, EstimatesThatWereFittedToBothAreOfThese) {
  fits.Keep(estimates, here);
  fits.Keep(estimates, elsewhere);
  EXPECT_EQ(fits.OtherData(estimates, here), "");
}

TEST_F(FitsMadeTest, OtherValuesFreeParametersOrFusesAreOtherEstimates) {
  fits.Keep(estimates, elsewhere);
  AlgorithmData other = estimates;
  other.Value(2) = 1.6;
  EXPECT_EQ(fits.OtherData(other, here), "");
  other = estimates;
  other.Step(2) = 0.1;
  EXPECT_EQ(fits.OtherData(other, here), "");
  other = estimates;
  other.Fuse = {"A", "A"};
  EXPECT_EQ(fits.OtherData(other, here), "");
  other = estimates;
  other.Step(1) = 0.2;
  EXPECT_EQ(fits.OtherData(other, here), "elsewhere.dat") << "another step leads nowhere else";
}

TEST_F(FitsMadeTest, WhatAGroupIsCalledMakesNoOtherEstimates) {
  estimates.Fuse = {"AB", "AB"};
  fits.Keep(estimates, elsewhere);
  estimates.Fuse = {"B", "B"};
  EXPECT_EQ(fits.OtherData(estimates, here), "elsewhere.dat");
}

TEST_F(FitsMadeTest, EstimatesUnderOtherPriorsAreKnownUnlessTheyWereFittedUnderTheseToo) {
  const Provenance underN{1, "here.dat", "N"}, underB{1, "here.dat", "B"};
  EXPECT_EQ(fits.OtherPriors(estimates, here, "the model is ranked"), "");
  fits.Keep(estimates, underN);
  EXPECT_EQ(fits.OtherPriors(estimates, underN, "the model is ranked"), "");
  EXPECT_EQ(fits.OtherPriors(estimates, here, "the model is ranked"), "with priors, the model is ranked without");
  EXPECT_EQ(fits.OtherPriors(estimates, underB, "the model is ranked"), "with other priors than the model's");
  EXPECT_EQ(fits.OtherPriors(estimates, elsewhere, "the model is ranked"), "") << "those are other data, which is told";
  fits.Keep(estimates, here);
  EXPECT_EQ(fits.OtherPriors(estimates, here, "the model is ranked"), "");
  EXPECT_EQ(fits.OtherPriors(estimates, underB, "the model is ranked"),
            "without priors, the model is ranked with them");
}

}  // namespace
}  // namespace merlane
