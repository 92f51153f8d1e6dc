#include "survival/shares_by_time.h"

#include <gtest/gtest.h>

#include "platform/random_streams.h"

namespace merlane {
namespace {

TEST(SharesByTime, AreThoseOfTheMortalityThatIsAskedAbout) {
  RandomStream random(2026, 3);
  SharesByTime kept;
  Mortality mortality;
  for (int i = 0; i < 5000; ++i) {
    if (i % 50 == 0) mortality = {random.Uniform(), 1 + random.Uniform(), random.Uniform(), 1, random.Uniform(), 0.1};
    if (i % 400 == 0) mortality.f = 0;
    kept.Under(mortality);
    // More times than are kept, most of them again and again.
    const double t = i % 3 == 0 ? random.Uniform() * 40 : static_cast<double>(i % 30);
    const SharesAlive alive = kept.At(t), fresh = SurvivalFunctions(mortality).At(t);
    EXPECT_PRED2(SameBits, alive.SR, fresh.SR);
    EXPECT_PRED2(SameBits, alive.SC, fresh.SC);
    EXPECT_EQ(alive.failed, fresh.failed);
  }
}

}  // namespace
}  // namespace merlane
