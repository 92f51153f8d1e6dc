#include "bootstrap/replicate_data_text.h"

#include <gmock/gmock.h>

#include "base/runtime_failure.h"
#include "data/data_text.h"

namespace merlane {
namespace {

using ::testing::ElementsAre;

TEST(ReplicateDataText, DeathIsWrittenAsZeroInEachRecordBehindItAndTheFileReadsBackVisitByVisit) {
  test::Reading reading;
  std::string text = test::Header + "\n";
  for (const int age : {-10, -5, 3, 8}) text += test::Record(1995, "  A B", 160 + age, 160, age, 8);
  reading.Of(text);
  const std::string written = ReplicateDataText(reading.data).Of({8, 0, Missing, Missing});
  test::Reading again;
  again.Of(written, true);
  EXPECT_THAT(again.data.VisitCount, ElementsAre(8, 0, 0, 0));
  EXPECT_EQ(again.data.VisitAge, reading.data.VisitAge);
  EXPECT_EQ(again.data.VisitDate, reading.data.VisitDate);
  EXPECT_EQ(again.data.BroodCode, reading.data.BroodCode);
}

TEST(ReplicateDataText, CodesKeepTheirLettersInColumnsThatReadBack) {
  for (const std::string code : {"   M\u00D6WE1", "   M\xD6WE1"}) {
    test::Reading reading, again;
    reading.Of(test::Header + "\n    1995," + code + ",     150,     160,     -10,       8\n");
    ASSERT_EQ(reading.data.BroodCode, std::vector{code});
    again.Of(ReplicateDataText(reading.data).Of({7}), true);
    EXPECT_EQ(again.data.BroodCode, std::vector{code});
    EXPECT_THAT(again.data.VisitDate, ElementsAre(150));
    EXPECT_THAT(again.data.VisitCount, ElementsAre(7));
  }
}

TEST(ReplicateDataText, CovariatesStandBehindEachRecordUnderTheHeaderOfSixWords) {
  test::Reading reading(1995, 1995, 2);
  reading.Of(test::Header + ",      Lake_1,      Lake_2\n" +
             test::Record(1995, "A", 150, 160, -10, 8, {"1.25", "-0.001234567"}));
  const std::vector<std::string> lines = Lines(ReplicateDataText(reading.data).Of({7}));
  EXPECT_EQ(lines[0], test::Header);
  EXPECT_EQ(lines[1], "    1995,       A,     150,     160,     -10,       7, 1.25000E+00,-1.23457E-03");
}

TEST(ReplicateDataText, GapsBetweenRecordsThatStandApartAreNoRecords) {
  test::Reading reading(1995, 1996);  // sorted by code and day
  reading.Of(test::Header + "\n" + test::Record(1995, "A", 160, 150, 10, 9) + test::Record(1996, "A", 161, 150, 11, 8) +
             test::Record(1996, "A", 165, 150, 15, 7) + test::Record(1995, "A", 170, 150, 20, 5));
  ASSERT_EQ(reading.data.Visits(), 5);
  EXPECT_THAT(Lines(ReplicateDataText(reading.data).Of({9, Missing, 4, 8, 6})),
              ElementsAre(test::Header, "    1995,       A,     160,     150,      10,       9",
                          "    1995,       A,     170,     150,      20,       4",
                          "    1996,       A,     161,     150,      11,       8",
                          "    1996,       A,     165,     150,      15,       6"));
}

TEST(ReplicateDataText, ACovariateWithALongExponentLosesADigitAndNotItsSize) {
  test::Reading reading(1995, 1995, 2);
  reading.Of(test::Header + ",      Lake_1,      Lake_2\n" +
             test::Record(1995, "A", 150, 160, -10, 8, {"-1.2345E+150", "-1.0E-120"}));
  const std::string record = Lines(ReplicateDataText(reading.data).Of({7}))[1];
  EXPECT_EQ(record.substr(53), ",-1.2345E+150,-1.0000E-120");
}

TEST(ReplicateDataText, ARecordThatDoesNotFitItsColumnsIsRefused) {
  test::Reading reading;
  reading.Of(test::Header + "\n" + test::Record("1995", "A", "150", "160", "1E9", "8"));
  EXPECT_THROW(ReplicateDataText(reading.data), RuntimeFailure);
}

}  // namespace
}  // namespace merlane
