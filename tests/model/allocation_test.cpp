// An evaluation allocates nothing. This test program counts what it allocates.

#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <new>

#include "field_data.h"
#include "model/likelihood.h"

namespace {

std::atomic<long> allocations = 0;

}  // namespace

// All other forms of new and delete end in these. Not inlined, lest the compiler take malloc and delete for a mismatch.
[[gnu::noinline]] void* operator new(std::size_t size) {
  ++allocations;
  if (void* memory = std::malloc(size == 0 ? 1 : size)) return memory;
  throw std::bad_alloc();
}
[[gnu::noinline]] void operator delete(void* memory) noexcept { std::free(memory); }
[[gnu::noinline]] void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }

namespace merlane {
namespace {

TEST(Allocation, IsCounted) {
  const long before = allocations;
  ::operator delete(::operator new(1));  // calls that a compiler may not leave out, as it may an allocation of its own
  EXPECT_EQ(allocations, before + 1);
}

TEST(Allocation, AnEvaluationNeedsNone) {
  for (const auto covariates : {FieldDataPlan::Covariates::None, FieldDataPlan::Covariates::Continuous}) {
    const BroodData data = ReadFieldData({.years = 2, .broodsPerYear = 50, .covariates = covariates});
    Likelihood likelihood(data);
    LikelihoodState state;
    state.Dimension(data);
    long turns = 0;
    EvaluationSetting setting;
    setting.turn = [&turns](long more) { turns += more; };
    const Array1<double> start = FieldVector(data, true);
    Array1<double> Value = start, Step(start.Size());
    Array1<std::string> Names(start.Size()), Fuse(start.Size());
    double F = 0;
    std::int32_t SampleSize = 0;
    const auto evaluate = [&](std::int32_t NF, double factor) {
      for (int i = 11; i <= 22; ++i) Value(i) = start(i) * factor;
      likelihood.EvaluateObjective(setting, state, F, Value, Step, Names, Fuse, static_cast<std::int16_t>(Value.Size()),
                                   NF, SampleSize);
    };
    evaluate(1, 1);
    const long before = allocations;
    evaluate(2, 1.01);  // judged and forgotten, or
    evaluate(3, 0.99);
    state.BestObjective = 1e300;  // a new best
    evaluate(4, 0.98);
    EXPECT_EQ(allocations, before);
    EXPECT_EQ(state.BestObjective, F);
    EXPECT_GT(turns, 0);
  }
}

}  // namespace
}  // namespace merlane
