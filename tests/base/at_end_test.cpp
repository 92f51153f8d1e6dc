#include "base/at_end.h"

#include <gtest/gtest.h>

#include <new>
#include <stdexcept>
#include <string>

namespace merlane {
namespace {

TEST(AtEnd, ActsOnceWhenTheScopeEnds) {
  int acted = 0;
  {
    const AtEnd end([&] { ++acted; });
    EXPECT_EQ(acted, 0);
  }
  EXPECT_EQ(acted, 1);
}

TEST(AtEnd, ActsWhenTheScopeFails) {
  int acted = 0;
  try {
    const AtEnd end([&] { ++acted; });
    throw std::runtime_error("failed");
  } catch (const std::runtime_error&) {
    EXPECT_EQ(acted, 1);
  }
}

TEST(AtEnd, WhatTheActionRaisesGoesOn) {
  EXPECT_THROW({ const AtEnd end([] { throw std::runtime_error("failed at the end"); }); }, std::runtime_error);
}

TEST(AtEnd, MemoryThatLacksWhereTheScopeFailsDoesNotReplaceTheFailure) {
  const auto fail = [] {
    const AtEnd end([] { throw std::bad_alloc(); });
    throw std::runtime_error("failed");
  };
  EXPECT_THROW(fail(), std::runtime_error);
}

TEST(AtEnd, KnowsItsOwnScopeWhereAnotherFails) {
  int told = 0;
  const auto fail = [&told] {
    const AtEnd outer([&told] {
      try {
        const AtEnd inner([] { throw std::bad_alloc(); });
      } catch (const std::bad_alloc&) {
        ++told;
      }
    });
    throw std::runtime_error("failed");
  };
  EXPECT_THROW(fail(), std::runtime_error);
  EXPECT_EQ(told, 1);
}

TEST(Meanwhile, TheVariableHasItsOwnValueAgainBehindTheScope) {
  std::string text = "own";
  {
    const auto other = Meanwhile<std::string>(text, "other");
    EXPECT_EQ(text, "other");
  }
  EXPECT_EQ(text, "own");
}

TEST(Meanwhile, ScopesWithinEachOtherGiveBackWhatEachFound) {
  int depth = 0;
  {
    const auto outer = Meanwhile(depth, depth + 1);
    {
      const auto inner = Meanwhile(depth, depth + 1);
      EXPECT_EQ(depth, 2);
    }
    EXPECT_EQ(depth, 1);
  }
  EXPECT_EQ(depth, 0);
}

}  // namespace
}  // namespace merlane
