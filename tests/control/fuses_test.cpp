#include "control/fuses.h"

#include <gmock/gmock.h>

namespace merlane {
namespace {

RunState StateOf(Array1<double> value, Array1<double> step, Array1<std::string> fuse) {
  RunState state;
  state.algorithm.NPAR = static_cast<std::int16_t>(value.Size());
  state.algorithm.Value = std::move(value);
  state.algorithm.Step = std::move(step);
  state.algorithm.Fuse = std::move(fuse);
  return state;
}

TEST(FusesTest, FollowerTakesValueOfTheFirstAndLosesItsStep) {
  RunState state = StateOf({1, 2}, {0.1, 0.1}, {"A", "A"});
  BuildFuseGroups(state);
  EXPECT_EQ(state.algorithm.Value, (Array1<double>{1, 1}));
  EXPECT_EQ(state.algorithm.Step, (Array1<double>{0.1, 0}));
  EXPECT_EQ(state.fuses.FuseCount, 1);
  EXPECT_EQ(state.fuses.FuseMembers(1), 2);
  EXPECT_EQ(state.fuses.FuseValue(1), 1);
}

TEST(FusesTest, FuseOfOneParameterIsRemovedAndItsStepStays) {
  RunState state = StateOf({1, 2}, {0.1, 0.2}, {"~~", "B"});
  BuildFuseGroups(state);
  EXPECT_EQ(state.algorithm.Fuse(2), "~~");
  EXPECT_EQ(state.algorithm.Step(2), 0.2);
  EXPECT_EQ(state.fuses.FuseCount, 1) << "the group itself stays in the list";
}

TEST(FusesTest, TildeOfARepairIsAFuseOfOneParameterAndIsRemoved) {
  RunState state = StateOf({1, 2}, {0.1, 0.2}, {"~", "~~"});
  BuildFuseGroups(state);
  EXPECT_EQ(state.algorithm.Fuse(1), "~~");
}

TEST(FusesTest, OneAndTwoLettersAreDifferentGroups) {
  RunState state = StateOf({1, 2, 3, 4}, {1, 1, 1, 1}, {"A", "AA", "A", "AA"});
  BuildFuseGroups(state);
  EXPECT_EQ(state.fuses.FuseCount, 2);
  EXPECT_EQ(state.algorithm.Value, (Array1<double>{1, 2, 1, 2}));
}

TEST(FusesTest, FusedLeaderWithStepZeroFreezesTheGroup) {
  RunState state = StateOf({5, 2, 3}, {0, 0.1, 0.3}, {"A", "A", "~~"});
  BuildFuseGroups(state);
  PackFree(state);
  EXPECT_EQ(state.free.NFREE, 1);
  EXPECT_EQ(state.free.FreeIndex(1), 3);
  EXPECT_EQ(state.algorithm.Value, (Array1<double>{5, 5, 3}));
}

TEST(FusesTest, ApplyOnATrialVectorMovesFollowersAndLeavesValue) {
  RunState state = StateOf({1, 7, 1, 1}, {0.1, 0.1, 0, 0}, {"A", "~~", "A", "A"});
  BuildFuseGroups(state);
  Array1<double> trial{4, 8, 1, 1};
  ApplyFuses(trial, state);
  EXPECT_EQ(trial, (Array1<double>{4, 8, 4, 4}));
  EXPECT_EQ(state.algorithm.Value, (Array1<double>{1, 7, 1, 1}));
}

TEST(FusesTest, ApplyTakesTheStepOfFollowersAgain) {
  RunState state = StateOf({1, 1}, {0.1, 0.1}, {"A", "A"});
  BuildFuseGroups(state);
  state.algorithm.Step(2) = 0.3;  // edited since
  ApplyFuses(state.algorithm.Value, state);
  EXPECT_EQ(state.algorithm.Step, (Array1<double>{0.1, 0}));
}

TEST(FusesTest, ProfileOfAFollowerPassesItsValueToMembersBehind) {
  for (const bool integrating : {false, true}) {
    RunState state = StateOf({1, 1, 1, 1}, {0.1, 0, 0, 0}, {"A", "A", "A", "A"});
    BuildFuseGroups(state);
    (integrating ? state.profile.IntegrationOn : state.profile.ProfileOn) = true;
    state.profile.ProfileParameter = 3;
    Array1<double> trial{1, 1, 9, 1};
    ApplyFuses(trial, state);
    EXPECT_EQ(trial, (Array1<double>{1, 1, 9, 9}));
  }
}

TEST(FusesTest, PinnedLeaderPassesItsValueToAll) {
  RunState state = StateOf({1, 1}, {0, 0}, {"A", "A"});
  BuildFuseGroups(state);
  state.profile.ProfileOn = true;
  state.profile.ProfileParameter = 1;
  Array1<double> trial{6, 1};
  ApplyFuses(trial, state);
  EXPECT_EQ(trial, (Array1<double>{6, 6}));
}

TEST(FusesTest, ProfiledFollowerWithAStepIsNotPinned) {
  RunState state = StateOf({1, 1}, {0.1, 0}, {"A", "A"});
  BuildFuseGroups(state);
  state.algorithm.Step(2) = 0.5;
  state.profile.ProfileOn = true;
  state.profile.ProfileParameter = 2;
  Array1<double> trial{3, 9};
  ApplyFuses(trial, state);
  EXPECT_EQ(trial, (Array1<double>{3, 3}));
  EXPECT_EQ(state.algorithm.Step(2), 0);
}

TEST(FusesTest, FuseThatNoGroupHasIsPassedOver) {
  RunState state = StateOf({1, 2, 3}, {0.1, 0, 0}, {"A", "A", "~~"});
  BuildFuseGroups(state);
  state.algorithm.Fuse(3) = "B";  // typed since the groups were made
  Array1<double> trial{5, 2, 3};
  ApplyFuses(trial, state);
  EXPECT_EQ(trial, (Array1<double>{5, 5, 3}));
}

TEST(FusesTest, AfterARepairTheNextMemberLeadsUntilGroupsAreRebuilt) {
  RunState state = StateOf({1, 2, 3}, {0.1, 0.1, 0.1}, {"A", "A", "A"});
  BuildFuseGroups(state);
  state.algorithm.Fuse(1) = "~";
  Array1<double> trial{5, 7, 9};
  ApplyFuses(trial, state);
  EXPECT_EQ(trial, (Array1<double>{5, 7, 7}));
}

TEST(FusesTest, PackFreeTakesParametersWithAStep) {
  RunState state = StateOf({1, 2, 3, 4}, {0, -0.5, 0, 0.25}, {"~~", "~~", "~~", "~~"});
  state.profile.ProfileState = 1;
  PackFree(state);
  EXPECT_EQ(state.free.NFREE, 2);
  EXPECT_EQ(state.free.FreeValue(1), 2);
  EXPECT_EQ(state.free.FreeValue(2), 4);
  EXPECT_EQ(state.free.FreeStep(1), -0.5);
  EXPECT_EQ(state.free.FreeIndex(2), 4);
  EXPECT_EQ(state.profile.ProfileState, 0);
}

TEST(FusesTest, NoStepAtAllGivesNoFreeParameter) {
  RunState state = StateOf({1, 2}, {0, 0}, {"~~", "~~"});
  PackFree(state);
  EXPECT_EQ(state.free.NFREE, 0);
}

}  // namespace
}  // namespace merlane
