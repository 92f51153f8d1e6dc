#include "data/data_digest.h"

#include <gtest/gtest.h>

namespace merlane {
namespace {

BroodData TwoVisits() {
  BroodData data;
  AllocateTables(data, {{2}});
  data.VisitAge = {1, 9};
  data.VisitCount = {6, 4};
  data.BroodCode = {"C1"};
  return data;
}

TEST(DataDigest, IsTheSameForTheSameRecordsWhateverTheirFile) {
  BroodData again = TwoVisits();
  again.DataFileName = "again.dat";
  EXPECT_EQ(DigestOf(again), DigestOf(TwoVisits()));
}

TEST(DataDigest, IsAnotherForAnotherCountAgeOrCode) {
  const std::uint64_t digest = DigestOf(TwoVisits());
  BroodData other = TwoVisits();
  other.VisitCount[1] = 5;
  EXPECT_NE(DigestOf(other), digest);
  other = TwoVisits();
  other.VisitAge[0] = 2;
  EXPECT_NE(DigestOf(other), digest);
  other = TwoVisits();
  other.BroodCode[0] = "C2";
  EXPECT_NE(DigestOf(other), digest);
}

}  // namespace
}  // namespace merlane
