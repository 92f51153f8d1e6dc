#include "platform/apart.h"

#include <unistd.h>

#include <csignal>
#include <stdexcept>

#include "base/runtime_failure.h"

namespace merlane {
namespace {

using testing::HasSubstr;
using testing::ThrowsMessage;

TEST(RunApart, ReturnsTheBytes) {
  EXPECT_EQ(RunApart([] { return std::string("a\0b", 3); }), std::string("a\0b", 3));
  EXPECT_EQ(RunApart([] { return std::string(); }), "");
  const std::string large(3'000'000, 'x');
  EXPECT_EQ(RunApart([&] { return large; }), large);
}

TEST(RunApart, PassesAFailureOn) {
  EXPECT_THAT([] { RunApart([]() -> std::string { throw std::runtime_error("no such sheet"); }); },
              ThrowsMessage<RuntimeFailure>(HasSubstr("no such sheet")));
}

TEST(RunApart, ACrashThereIsAFailureHere) {
  EXPECT_THAT(
      [] {
        RunApart([]() -> std::string {
          std::signal(SIGABRT, SIG_DFL);
          std::abort();
        });
      },
      ThrowsMessage<RuntimeFailure>(HasSubstr("damaged")));
}

TEST(RunApart, WhoWaitsHasTurnsAndCanEndIt) {
  int turns = 0;
  const auto slow = [] {
    ::usleep(200'000);
    return std::string("done");
  };
  EXPECT_EQ(RunApart(slow, {}, [&](double) { ++turns; }), "done");
  EXPECT_GT(turns, 0);
  EXPECT_THROW(RunApart(slow, {}, [](double) { throw Cancelled(); }), Cancelled);
}

TEST(RunApart, WhatIsChangedThereStaysThere) {
  int here = 1;
  EXPECT_EQ(RunApart([&] { return std::to_string(++here); }), "2");
  EXPECT_EQ(here, 1);
}

TEST(RunApart, MemoryBeyondItsLimitIsToldInWords) {
  EXPECT_THAT(
      [] { RunApart([] { return std::string(std::size_t{100} << 20, 'x'); }, {.bytes = std::uint64_t{64} << 20}); },
      ThrowsMessage<RuntimeFailure>(HasSubstr("more memory than a file is given, 64 MB")));
  EXPECT_EQ(RunApart([] { return std::string(std::size_t{10} << 20, 'x'); }).size(), std::size_t{10} << 20);
}

TEST(RunApart, ProcessorTimeBeyondItsLimitIsToldInWords) {
  EXPECT_THAT(
      [] {
        RunApart(
            []() -> std::string {
              for (volatile bool goOn = true; goOn;) {
              }
              return {};
            },
            {.processorSeconds = 1});
      },
      ThrowsMessage<RuntimeFailure>(HasSubstr("takes too long")));
}

TEST(RunApart, WaitingBeyondItsLimitIsToldInWords) {
  EXPECT_THAT(
      [] {
        RunApart(
            []() -> std::string {
              for (;;) ::pause();
            },
            {.seconds = 1});
      },
      ThrowsMessage<RuntimeFailure>(HasSubstr("takes too long")));
}

}  // namespace
}  // namespace merlane
