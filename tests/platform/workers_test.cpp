#include "platform/workers.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstddef>
#include <new>
#include <thread>
#include <vector>

#include "base/at_end.h"

#ifdef __linux__
#include <sched.h>
#endif

namespace merlane {
namespace {

class SharedWork : public testing::TestWithParam<int> {};

TEST_P(SharedWork, EachItemIsDoneOnceHoweverManyShareIt) {
  Workers workers(GetParam());
  EXPECT_LE(workers.Count(), GetParam());
  for (const int items : {0, 1, 2, 3, 100}) {
    std::vector<int> done(static_cast<std::size_t>(items));
    workers.Share(items, [&](int item, int) { ++done[static_cast<std::size_t>(item)]; });
    EXPECT_EQ(done, std::vector<int>(static_cast<std::size_t>(items), 1));
  }
}

TEST_P(SharedWork, NoWorkerDoesTwoItemsAtATime) {
  Workers workers(GetParam());
  std::vector<std::atomic<int>> busy(static_cast<std::size_t>(workers.Count()));
  std::atomic<bool> twice = false;
  for (int round = 0; round < 200; ++round)
    workers.Share(20, [&](int, int worker) {
      std::atomic<int>& mine = busy[static_cast<std::size_t>(worker)];
      if (++mine > 1) twice = true;
      --mine;
    });
  EXPECT_FALSE(twice);
}

#ifdef __linux__
TEST(Cores, AreThoseThatTheProcessIsKeptTo) {
  cpu_set_t before;
  ASSERT_EQ(sched_getaffinity(0, sizeof before, &before), 0);
  const AtEnd putBack([&] { sched_setaffinity(0, sizeof before, &before); });
  EXPECT_EQ(Workers::Cores(), CPU_COUNT(&before));
  cpu_set_t one;
  CPU_ZERO(&one);
  for (std::size_t core = 0; CPU_COUNT(&one) == 0; ++core)
    if (CPU_ISSET(core, &before)) CPU_SET(core, &one);
  ASSERT_EQ(sched_setaffinity(0, sizeof one, &one), 0);
  EXPECT_EQ(Workers::Cores(), 1);
}
#endif

TEST_P(SharedWork, WhatAnItemRaisesIsRaisedWhenAllThatHaveBegunAreDoneAndTheNextWorkIsSharedAsEver) {
  Workers workers(GetParam());
  for (int raising : {0, 1, 57}) {
    std::atomic<int> working = 0;
    EXPECT_THROW(workers.Share(100,
                               [&](int item, int) {
                                 ++working;
                                 if (item == raising) {
                                   --working;
                                   throw std::bad_alloc();
                                 }
                                 std::this_thread::yield();
                                 --working;
                               }),
                 std::bad_alloc);
    EXPECT_EQ(working, 0) << "nobody is at work that has gone";
    std::vector<int> done(20);
    workers.Share(20, [&](int item, int) { ++done[static_cast<std::size_t>(item)]; });
    EXPECT_EQ(done, std::vector<int>(20, 1));
  }
}

INSTANTIATE_TEST_SUITE_P(Threads, SharedWork, testing::Values(1, 2, 5));

}  // namespace
}  // namespace merlane
