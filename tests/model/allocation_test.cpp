// An evaluation allocates nothing, and what is kept bears that there is no memory.

#include <gtest/gtest.h>

#include <new>

#include "field_data.h"
#include "likelihood/likelihood.h"
#include "model/kept_predictions.h"
#include "support/counted_memory.h"
#include "survival/best_tables.h"
#include "survival/same_bits.h"

namespace merlane {
namespace {

using test::allocations;
using test::failing;

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

/// The sums of the variances of all visits' distributions, asked for one after the other.
double AllVariances(KeptPredictions& kept, const BroodData& data, const LikelihoodState& state) {
  double sum = 0;
  for (int brood = 0; brood < data.Broods(); ++brood) {
    const int first = data.FirstVisit[static_cast<std::size_t>(brood)];
    for (int visit = first + 1; visit < first + data.VisitsOf[static_cast<std::size_t>(brood)]; ++visit)
      if (const int n = data.VisitCount[static_cast<std::size_t>(visit) - 1]; n > 0)
        sum += kept.Of(visit, n, BestExpectation(data, state.best.survival, brood, visit)).VarAll;
  }
  return sum;
}

TEST(Allocation, DistributionsAreKeptRightlyBehindEachThatFails) {
  const BroodData data = ReadFieldData({.years = 1, .broodsPerYear = 3, .covariates = FieldDataPlan::Covariates::None});
  Likelihood likelihood(data);
  LikelihoodState state;
  state.Dimension(data);
  Array1<double> Value = FieldVector(data, true), Step(Value.Size());
  Array1<std::string> Names(Value.Size()), Fuse(Value.Size());
  double F = 0;
  std::int32_t SampleSize = 0;
  likelihood.EvaluateObjective({}, state, F, Value, Step, Names, Fuse, static_cast<std::int16_t>(Value.Size()), 1,
                               SampleSize);
  KeptPredictions fresh(data, state.best.parameters);
  const double wanted = AllVariances(fresh, data, state);
  ASSERT_GT(wanted, 0);

  int failed = 0;
  for (bool failsYet = true; failsYet;) {
    KeptPredictions kept(data, state.best.parameters);
    failing = allocations + 1 + failed;
    try {
      AllVariances(kept, data, state);
      failsYet = false;
    } catch (const std::bad_alloc&) {
      ++failed;
    }
    failing = -1;
    ASSERT_PRED2(SameBits, AllVariances(kept, data, state), wanted) << "behind request " << failed;
  }
  EXPECT_GT(failed, 20);
}

}  // namespace
}  // namespace merlane
