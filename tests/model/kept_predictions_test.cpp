#include "model/kept_predictions.h"

#include <gmock/gmock.h>

#include "base/runtime_failure.h"
#include "field_data.h"
#include "likelihood/evaluated_case.h"
#include "survival/best_tables.h"
#include "survival/same_bits.h"

namespace merlane {
namespace {

void ExpectSame(const CountPrediction& a, const CountPrediction& b) {
  EXPECT_TRUE(std::ranges::equal(a.Pmf, b.Pmf, SameBits));
  EXPECT_TRUE(std::ranges::equal(a.Cum, b.Cum, SameBits));
  EXPECT_PRED2(SameBits, a.VarR, b.VarR);
  EXPECT_PRED2(SameBits, a.VarC, b.VarC);
  EXPECT_PRED2(SameBits, a.VarAll, b.VarAll);
  EXPECT_EQ(a.inaccurateComponents, b.inaccurateComponents);
  EXPECT_EQ(a.inaccurateSums, b.inaccurateSums);
}

/// Calls `action`(brood, visit, n) for each visit that is predicted from n individuals.
template <class Action>
void ForEachPrediction(const BroodData& data, const BestTables& best, const Action& action) {
  for (int brood = 0; brood < data.Broods(); ++brood) {
    const int first = data.FirstVisit[static_cast<std::size_t>(brood)];
    for (int visit = first + 1; visit < first + data.VisitsOf[static_cast<std::size_t>(brood)]; ++visit) {
      const auto v = static_cast<std::size_t>(visit);
      if (best.survival.EVisit[v] != Missing && data.VisitCount[v - 1] > 0)
        action(brood, visit, data.VisitCount[v - 1]);
    }
  }
}

class KeptPredictionsOfCases : public testing::TestWithParam<test::GoldenCase> {};

TEST_P(KeptPredictionsOfCases, AreThoseThatAreBuiltForEachVisit) {
  test::Evaluated e(GetParam());
  e.CallAgain();
  const BroodData& data = e.reading.data;
  KeptPredictions kept(data, e.state.best.parameters);
  CountPredictor predictor(data, e.state.best.parameters);
  ForEachPrediction(data, e.state.best, [&](int brood, int visit, int n) {
    const CountExpectation expected = BestExpectation(data, e.state.best.survival, brood, visit);
    CountPrediction fresh;
    predictor.Predict(visit, n, expected, fresh);
    ExpectSame(kept.Of(visit, n, expected), fresh);
  });
}

INSTANTIATE_TEST_SUITE_P(Cases, KeptPredictionsOfCases, testing::ValuesIn(test::SoundCases()),
                         [](const auto& c) { return c.param.name; });

/// Field data after one evaluation.
struct Field {
  explicit Field(FieldDataPlan::Covariates covariates)
      : data(ReadFieldData({.years = 1, .broodsPerYear = 100, .covariates = covariates})) {
    Array1<double> Value = FieldVector(data, true), Step(Value.Size());
    Array1<std::string> Names(Value.Size()), Fuse(Value.Size());
    double F = 0;
    std::int32_t SampleSize = 0;
    state.Dimension(data);
    Likelihood likelihood(data);
    EvaluationSetting setting;
    setting.tell = [](const Message&) {};
    likelihood.EvaluateObjective(setting, state, F, Value, Step, Names, Fuse, static_cast<std::int16_t>(Value.Size()),
                                 1, SampleSize);
    likelihood.FillTables(state);
  }
  const BroodData data;
  LikelihoodState state;
};

class KeptPredictionsByWorkers : public testing::TestWithParam<int> {};

TEST_P(KeptPredictionsByWorkers, AreThoseThatAreBuiltForEachVisit) {
  for (const auto covariates : {FieldDataPlan::Covariates::None, FieldDataPlan::Covariates::Continuous}) {
    Field field(covariates);
    Workers workers(GetParam());
    KeptPredictions kept(field.data, field.state.best.parameters);
    CountPredictor predictor(field.data, field.state.best.parameters);
    std::vector<std::size_t> numbers;
    const auto expectedOf = [&](int brood, int visit) {
      return BestExpectation(field.data, field.state.best.survival, brood, visit);
    };
    ForEachPrediction(field.data, field.state.best, [&](int brood, int visit, int n) {
      numbers.push_back(kept.Number(visit, n, expectedOf(brood, visit)));
      if (numbers.size() == 300) kept.Build(&workers);  // the others later
    });
    kept.Build(&workers);
    ASSERT_GT(numbers.size(), 500u);
    if (covariates == FieldDataPlan::Covariates::None) {
      EXPECT_LT(kept.Size(), numbers.size()) << "visits share theirs";
    }
    auto number = numbers.begin();
    ForEachPrediction(field.data, field.state.best, [&](int brood, int visit, int n) {
      CountPrediction fresh;
      predictor.Predict(visit, n, expectedOf(brood, visit), fresh);
      ExpectSame(kept[*number++], fresh);
    });
  }
}

INSTANTIATE_TEST_SUITE_P(Threads, KeptPredictionsByWorkers, testing::Values(1, 2, 5));

TEST(KeptPredictions, WhatCannotBeBuiltFailsWhereverItIsAskedFor) {
  Field field(FieldDataPlan::Covariates::None);
  field.state.best.parameters.v_N = -1e300;  // an overdispersion that overflows
  KeptPredictions kept(field.data, field.state.best.parameters);
  int withoutResult = 0;
  ForEachPrediction(field.data, field.state.best, [&](int brood, int visit, int n) {
    const CountExpectation expected = BestExpectation(field.data, field.state.best.survival, brood, visit);
    CountPredictor predictor(field.data, field.state.best.parameters);
    CountPrediction fresh;
    std::string failure;
    try {
      predictor.Predict(visit, n, expected, fresh);
    } catch (const RuntimeFailure& caught) {
      failure = caught.what();
    }
    for (int again = 0; again < 2; ++again) {
      if (failure.empty()) {
        ExpectSame(kept.Of(visit, n, expected), fresh);
        continue;
      }
      ++withoutResult;
      try {
        kept.Of(visit, n, expected);
        ADD_FAILURE() << "visit " << visit;
      } catch (const RuntimeFailure& caught) {
        EXPECT_EQ(caught.what(), failure);
      }
    }
  });
  EXPECT_GT(withoutResult, 10);
}

}  // namespace
}  // namespace merlane
