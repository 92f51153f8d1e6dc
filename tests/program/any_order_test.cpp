// Somebody presses whatever can be pressed, in any order, and gives any answer: the program neither breaks nor leaves
// its user without a way on, and what it tells is what a fresh program in the same place tells.
#include <gtest/gtest.h>

#include <cstdlib>
#include <iostream>

#include "base/at_end.h"
#include "program/any_hand.h"

namespace merlane {
namespace {

/// Of all walks of this process; printed behind them when the environment says how many are gone.
test::Tally tally;

class TellsTally : public ::testing::Environment {
 public:
  void TearDown() override {
    if (std::getenv("MERLANE_WALKS") == nullptr) return;
    for (const auto& [kind, times] : tally.compared) std::cout << times << " x " << kind << "\n";
  }
};
const auto* const tellsTally = ::testing::AddGlobalTestEnvironment(new TellsTally);

class AnyOrderTest : public ::testing::TestWithParam<unsigned> {};

TEST_P(AnyOrderTest, NeitherBreaksNorStrandsItsUser) {
  const test::Folder folder("any_order_" + std::to_string(GetParam()));
  test::FixedClock clock;
  RandomStreams random(clock);
  random.SetSeed(GetParam());
  test::NoWorkbooks workbooks;
  test::AnyHand hand(GetParam(), folder);
  Program program({hand, clock, random, workbooks, folder / "", folder / ""});
  hand.desk = &program.desk;
  hand.algorithm = &program.state.algorithm;
  // Some walks are gone with the threads that share work, and held against programs that have none.
  if (GetParam() % 8 != 0) program.model.cores = program.parametricBootstrap.cores = 1;
  program.Start();
  if (GetParam() % 3 != 0) hand.Begin(program, GetParam() % 3 == 1);
  test::HeldAgainstFresh held(program, GetParam() % 4 != 0, tally);
  for (int i = 0; i < 250 && !hand.ended; ++i) {
    held.Before();
    ASSERT_TRUE(hand.Act()) << hand.Story();
    if (hand.ended) break;
    {
      const auto looking = Meanwhile(hand.watches, true);
      held.Behind(hand.step);
    }
    ASSERT_FALSE(HasFailure()) << hand.Story();
    ASSERT_TRUE(test::ThereIsAWayOn(program)) << hand.Story();
    ASSERT_TRUE(test::TheMenuRestsBesideAnother(program)) << hand.Story();
  }
}

/// How many walks are gone; more than by default when the environment says so.
unsigned Walks() {
  const char* const asked = std::getenv("MERLANE_WALKS");
  return asked == nullptr ? 60 : static_cast<unsigned>(std::stoul(asked));
}

INSTANTIATE_TEST_SUITE_P(Seeds, AnyOrderTest, ::testing::Range(1U, Walks() + 1));

}  // namespace
}  // namespace merlane
