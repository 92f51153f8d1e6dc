#include "results/simulated_data_text.h"

#include <gmock/gmock.h>

#include "base/runtime_failure.h"
#include "base/text.h"
#include "model/planned.h"

namespace merlane {
namespace {

using test::DailyJuveniles;
using test::Planned;
using test::Streams;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// The counts that are written for one brood of daily visits from age 1 with these simulated counts.
std::vector<std::string> Written(const std::vector<std::int16_t>& counts, std::int16_t least = 1,
                                 std::int16_t most = 1) {
  SimulatorSettings settings = DailyJuveniles;
  settings.FinalAge = static_cast<std::int16_t>(counts.size());
  settings.SampFreq1 = least;
  settings.SampFreq2 = most;
  Planned p(settings, 1);
  std::vector<std::string> lines = Lines(SimulatedDataText(p.data, counts, p.streams.random, {}));
  EXPECT_EQ(lines.front(), "    Year,    Code,    DofY,HatchDay,BroodAge,   #EorJ");
  lines.erase(lines.begin());
  for (std::string& line : lines)
    line = std::string(Trim(Columns(line, 37, 44))) + ":" + std::string(Trim(Columns(line, 46, 53)));
  return lines;
}

TEST(SimulatedDataText, OneLineForEachVisitInFixedColumns) {
  SimulatorSettings settings{.MinInitSize = 7,
                             .MaxInitSize = 7,
                             .InitAge = -3,
                             .FinalAge = 0,
                             .MinHatchDay = 0,
                             .MaxHatchDay = 0,
                             .SampFreq1 = 1,
                             .SampFreq2 = 1};
  Planned p(settings, 1);
  EXPECT_EQ(SimulatedDataText(p.data, {7, 6, 6, 5}, p.streams.random, {}),
            "    Year,    Code,    DofY,HatchDay,BroodAge,   #EorJ\r\n"
            "       1,Y01B0001,      -3,       0,      -3,       7\r\n"
            "       1,Y01B0001,      -2,       0,      -2,       6\r\n"
            "       1,Y01B0001,      -1,       0,      -1,       6\r\n"
            "       1,Y01B0001,       0,       0,       0,       5\r\n");
}

TEST(SimulatedDataText, ADeadBroodEndsWithItsFirstVisitOfCountZero) {
  EXPECT_THAT(Written({9, 5, 0, Missing, Missing}), ElementsAre("1:9", "2:5", "3:0"));
}

TEST(SimulatedDataText, ADeathBetweenTwoVisitsIsSeenAtTheNext) {
  EXPECT_THAT(Written({9, 5, 0, Missing, Missing, Missing, Missing}, 3, 3), ElementsAre("1:9", "4:0"));
}

TEST(SimulatedDataText, CountsThatWereNotSimulatedAreNotWritten) {
  EXPECT_THAT(Written({9, 5, Missing, Missing}), ElementsAre("1:9", "2:5")) << "that brood is not dead";
  EXPECT_THAT(Written({Missing, Missing}), IsEmpty());
}

TEST(SimulatedDataText, TheFirstVisitIsAlwaysMadeAndTheStepsLieBetweenTheLimits) {
  const std::vector<std::string> lines = Written(std::vector<std::int16_t>(400, 5), 3, 6);
  int before = 1;
  std::vector<int> steps(7);
  EXPECT_EQ(lines.front(), "1:5");
  for (std::size_t i = 1; i < lines.size(); ++i) {
    const int age = std::stoi(lines[i]);
    ASSERT_GE(age - before, 3);
    ASSERT_LE(age - before, 6);
    ++steps[static_cast<std::size_t>(age - before)];
    before = age;
  }
  for (int step = 3; step <= 6; ++step) EXPECT_GT(steps[static_cast<std::size_t>(step)], 5) << step;
}

TEST(SimulatedDataText, DrawsForEachStepAlsoForDeadBroodsAndForTheStepThatLeaves) {
  SimulatorSettings settings = DailyJuveniles;  // 15 days
  settings.SampFreq1 = settings.SampFreq2 = 4;  // days 1, 5, 9, 13 and out
  Planned p(settings, 2);
  Streams counted;
  counted.random.BeginNext();
  p.streams.random.BeginNext();
  counted.random.BeginNext();
  std::vector<std::int16_t> counts(30, Missing);
  counts[0] = 9;
  counts[1] = 0;
  SimulatedDataText(p.data, counts, p.streams.random, {});
  for (int i = 0; i < 8; ++i) counted.random.Uniform();
  EXPECT_EQ(p.streams.random.Uniform(), counted.random.Uniform());
}

TEST(SimulatedDataText, VisitsLessThanADayApartAreRefused) { EXPECT_THROW(Written({9, 5}, 0, 2), RuntimeFailure); }

TEST(SimulatedDataText, AnAbortEndsTheText) {
  Planned p(DailyJuveniles, 2);
  CalculationWatch watch;
  watch.aborted = [] { return true; };
  std::string progress;
  watch.progress = [&](const std::string& text) { progress = text; };
  EXPECT_EQ(Lines(SimulatedDataText(p.data, p.data.VisitCount, p.streams.random, watch)).size(), 1u);
  EXPECT_EQ(progress, "Virtually writing the summary record for visit 1 of brood 1 in year 1");
}

}  // namespace
}  // namespace merlane
