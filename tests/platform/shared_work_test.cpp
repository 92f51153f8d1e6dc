#include "platform/shared_work.h"

#include <gmock/gmock.h>

#include "platform/digest.h"

namespace merlane {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

TEST(SharedWorkTest, ARunThatDoesAShareKeepsWhatItDoesAndKnowsNothing) {
  SharedWork work(Share{2, 3});
  work.Begin("first", 10, true);
  EXPECT_EQ(work.Mine(), (Share{2, 3}));
  work.Keep(5, {1, 2});
  EXPECT_EQ(work.Find(5), nullptr) << "what was done here is no news";
  work.Begin("second", 20, true);
  const std::vector<DoneWork> done = work.Done();
  ASSERT_THAT(done, SizeIs(2));
  EXPECT_EQ(done[0].name, "first");
  EXPECT_THAT(done[0].parts.at(5), ElementsAre(1, 2));
  EXPECT_THAT(done[1].parts, IsEmpty());
}

TEST(SharedWorkTest, AWorkThatComesOutOtherwiseEachTimeIsNotShared) {
  SharedWork work(Share{1, 1});
  bool told = true;
  work.onBegin = [&told](const std::string&, bool repeats) { told = repeats; };
  work.Begin("draws", 10, false);
  work.Keep(1, {1});
  EXPECT_FALSE(told);
  EXPECT_THAT(work.Done(), IsEmpty());
}

TEST(SharedWorkTest, PartsOfTheSameBasisComeTogetherAndThoseOfAnotherAreNotFound) {
  SharedWork work({{"a", 10, {{1, {11}}}}, {"b", 20, {{1, {21}}}}, {"a", 10, {{2, {12}}}}});
  EXPECT_FALSE(work.Mine());
  EXPECT_EQ(work.Find(1), nullptr) << "no work has begun";
  work.Begin("a", 10, true);
  EXPECT_THAT(*work.Find(1), ElementsAre(11));
  EXPECT_THAT(*work.Find(2), ElementsAre(12));
  EXPECT_EQ(work.Find(3), nullptr);
  work.Begin("c", 30, true);
  EXPECT_EQ(work.Find(1), nullptr);
}

TEST(SharedWorkTest, WorksOfTheSameBasisKeepThePartsOfBoth) {
  SharedWork work(Share{1, 1});
  work.Begin("the long one", 10);
  work.Keep(1, {1, 2});
  work.Keep(2, {3});
  work.Begin("the short one", 10);
  work.Keep(1, {1});  // which was broken off
  work.Keep(3, {4});
  const std::vector<DoneWork> done = work.Done();
  ASSERT_THAT(done, SizeIs(1));
  EXPECT_EQ(done[0].name, "the long one");
  EXPECT_EQ(done[0].parts, (std::map<std::int64_t, Words>{{1, {1, 2}}, {2, {3}}, {3, {4}}}));
}

TEST(SharedWorkTest, PartsAreCountedByWhatBecameOfThem) {
  SharedWork work({{"a", 10, {{1, {11}}}}});
  work.Begin("a", 10, true);
  work.Find(1);
  work.Count(true);
  work.Count(false);
  work.Begin("c", 30, true);
  ASSERT_THAT(work.Tallies(), SizeIs(2));
  EXPECT_EQ(work.Tallies()[0].taken, 1);
  EXPECT_EQ(work.Tallies()[0].missed, 1);
  EXPECT_EQ(work.Tallies()[1].taken, 0);
}

TEST(DigestTest, TellsContentsApartWhereverTheyDiffer) {
  const auto of = [](const char* a, const char* b) { return Digest().Add(a).Add(b).Value(); };
  EXPECT_EQ(of("few", "broods"), of("few", "broods"));
  EXPECT_NE(of("few", "broods"), of("fewb", "roods"));
  EXPECT_NE(of("", ""), Digest().Add("").Value());
  EXPECT_NE(Digest().Add(0.0).Value(), Digest().Add(-0.0).Value());
  EXPECT_NE(Digest().Add("12345678").Value(), Digest().Add("123456780").Value());
  EXPECT_NE(Digest().AddAll(std::vector{1, 2}).Value(), Digest().AddAll(std::vector{2, 1}).Value());
}

}  // namespace
}  // namespace merlane
