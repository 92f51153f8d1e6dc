#include "data/record_places.h"

#include <gmock/gmock.h>

#include "base/runtime_failure.h"
#include "data/data_text.h"

namespace merlane {
namespace {

using test::Header;
using test::Reading;
using test::Record;
using ::testing::ElementsAre;

/// Sorted by code and day: the brood of 1995 has a gap where that of 1996 stands between.
const std::string Apart = Header + "\n" + Record(1995, "A", 160, 150, 10, 9) + Record(1996, "A", 161, 150, 11, 8) +
                          Record(1996, "A", 165, 150, 15, 7) + Record(1995, "A", 170, 150, 20, 5);

/// The same records as a program writes them: year after year, none for the gap.
std::string Sorted(int lastCount) {
  return Header + "\n" + Record(1995, "A", 160, 150, 10, 9) + Record(1995, "A", 170, 150, 20, lastCount) +
         Record(1996, "A", 161, 150, 11, 8) + Record(1996, "A", 165, 150, 15, 7);
}

TEST(RecordPlaces, VisitsGoBackToWhereTheyWereWrittenFrom) {
  Reading original(1995, 1996), replicate(1995, 1996);
  original.Of(Apart);
  ASSERT_THAT(original.data.VisitsOf, ElementsAre(3, 2));
  replicate.Of(Sorted(4), true);
  ASSERT_THAT(replicate.data.VisitsOf, ElementsAre(2, 2));
  RecordPlaces(original.data).GiveTo(replicate.data);
  EXPECT_THAT(replicate.data.VisitsOf, ElementsAre(3, 2));
  EXPECT_THAT(replicate.data.FirstVisit, ElementsAre(0, 3));
  EXPECT_THAT(replicate.data.VisitCount, ElementsAre(9, Missing, 4, 8, 7));
  EXPECT_EQ(replicate.data.VisitAge, original.data.VisitAge);
  EXPECT_EQ(replicate.data.VisitDate, original.data.VisitDate);
  EXPECT_EQ(replicate.data.VisitStage, original.data.VisitStage);
  EXPECT_EQ(replicate.data.VisitYear, original.data.VisitYear);
  EXPECT_EQ(replicate.data.BroodCode, original.data.BroodCode);
  EXPECT_EQ(replicate.data.HatchDate, original.data.HatchDate);
  EXPECT_EQ(replicate.data.MaxVisits, 3);
}

TEST(RecordPlaces, OtherRecordsAreRefused) {
  Reading original(1995, 1996), other(1995, 1996);
  original.Of(Apart);
  other.Of(Header + "\n" + Record(1995, "A", 160, 150, 10, 9));
  EXPECT_THROW(RecordPlaces(original.data).GiveTo(other.data), RuntimeFailure);
}

}  // namespace
}  // namespace merlane
