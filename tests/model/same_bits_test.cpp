// The objective against its plain evaluation: same bits in everything that an evaluation leaves behind, from one vector
// to the next, whatever the vector.

#include <gmock/gmock.h>

#include <random>

#include "base/runtime_failure.h"
#include "control/algorithm_file.h"
#include "data/data_text.h"
#include "data/golden_case.h"
#include "data/standard_anomalies.h"
#include "field_data.h"
#include "likelihood/likelihood.h"
#include "plain_objective.h"
#include "platform/files.h"
#include "survival/catalogue.h"
#include "survival/same_bits.h"

namespace merlane {
namespace {

/// One of the two ways to evaluate, with all that it keeps.
struct Side {
  Side(const BroodData& data, const Array1<double>& vector) : Value(vector), Step(vector.Size(), 0.1) {
    Names.Dimension(vector.Size());
    Fuse.Dimension(vector.Size(), "~~");
    state.Dimension(data);
    setting.tell = [this](const Message& message) { told.push_back(message.title + "|" + message.text); };
    setting.turn = [this](long more) { turns += more; };
  }
  LikelihoodState state;
  EvaluationSetting setting;
  Array1<double> Value, Step;
  Array1<std::string> Names, Fuse;
  std::vector<std::string> told;
  long turns = 0;
  double F = -1;
  std::int32_t SampleSize = -1;
  bool failed = false;
};

void ExpectSameColumn(const char* name, const std::vector<double>& a, const std::vector<double>& b) {
  ASSERT_EQ(a.size(), b.size());
  for (std::size_t i = 0; i < a.size(); ++i)
    ASSERT_PRED2(SameBits, a[i], b[i]) << name << " at " << i << ": " << a[i] << " and " << b[i];
}

void ExpectSameTables(const SurvivalTables& a, const SurvivalTables& b) {
  ExpectSameColumn("EHatchR", a.EHatchR, b.EHatchR);
  ExpectSameColumn("EHatchC", a.EHatchC, b.EHatchC);
  ExpectSameColumn("EHatch", a.EHatch, b.EHatch);
  ExpectSameColumn("PCorrHatch", a.PCorrHatch, b.PCorrHatch);
  ExpectSameColumn("JuvRR", a.JuvRR, b.JuvRR);
  ExpectSameColumn("JuvCR", a.JuvCR, b.JuvCR);
  ExpectSameColumn("JuvRC", a.JuvRC, b.JuvRC);
  ExpectSameColumn("JuvCC", a.JuvCC, b.JuvCC);
  ExpectSameColumn("EVisitR", a.EVisitR, b.EVisitR);
  ExpectSameColumn("EVisitC", a.EVisitC, b.EVisitC);
  ExpectSameColumn("EVisit", a.EVisit, b.EVisit);
  ExpectSameColumn("PCorrEgg", a.PCorrEgg, b.PCorrEgg);
  ExpectSameColumn("PCorrJuv", a.PCorrJuv, b.PCorrJuv);
  EXPECT_EQ(a.ClutchIntervals, b.ClutchIntervals);
  EXPECT_EQ(a.BroodIntervals, b.BroodIntervals);
  EXPECT_EQ(a.BroodSizeDeficient, b.BroodSizeDeficient);
  EXPECT_EQ(a.HatchDateDeficient, b.HatchDateDeficient);
}

/// What is there at once, whoever looks.
void ExpectSameNumbers(const Side& a, const Side& b) {
  EXPECT_PRED2(SameBits, a.F, b.F);
  EXPECT_PRED2(SameBits, a.state.Penalty, b.state.Penalty);
  EXPECT_PRED2(SameBits, a.state.BestObjective, b.state.BestObjective);
  EXPECT_EQ(a.state.EggsAtRisk, b.state.EggsAtRisk);
  EXPECT_EQ(a.state.JuvsAtRisk, b.state.JuvsAtRisk);
  EXPECT_EQ(a.SampleSize, b.SampleSize);
  EXPECT_EQ(a.told, b.told);
  EXPECT_EQ(a.turns, b.turns);
  EXPECT_EQ(a.Value, b.Value);
  EXPECT_EQ(a.Step, b.Step);
  EXPECT_EQ(a.Names, b.Names);
  EXPECT_EQ(a.Fuse, b.Fuse);
  EXPECT_EQ(a.state.best.Value, b.state.best.Value);
}

void ExpectSameTables(const Side& a, const Side& b) {
  EXPECT_PRED2(SameBits, a.state.MinDeviance, b.state.MinDeviance);
  EXPECT_PRED2(SameBits, a.state.MaxDeviance, b.state.MaxDeviance);
  ExpectSameTables(a.state.survival, b.state.survival);
  ExpectSameTables(a.state.best.survival, b.state.best.survival);
  ExpectSameColumn("VisitDeviance", a.state.VisitDeviance, b.state.VisitDeviance);
  ExpectSameColumn("VarR", a.state.VarR, b.state.VarR);
  ExpectSameColumn("VarC", a.state.VarC, b.state.VarC);
  ExpectSameColumn("best VisitDeviance", a.state.best.VisitDeviance, b.state.best.VisitDeviance);
  ExpectSameColumn("best VarR", a.state.best.VarR, b.state.best.VarR);
  ExpectSameColumn("best VarC", a.state.best.VarC, b.state.best.VarC);
}

/// Evaluates both ways at one vector after another and compares; the tables only where somebody looks at them.
class Pair {
 public:
  explicit Pair(const BroodData& data, int lookEvery = 1, Workers* workers = nullptr)
      : data_(data), product_(data, Zeros()), plain_(data, Zeros()), engine_(data, workers), lookEvery_(lookEvery) {}

  /// At all of them, which have been announced before.
  void AtAll(const std::vector<Array1<double>>& vectors, bool bootstrap) {
    product_.setting.BootstrapMode = bootstrap;
    engine_.EvaluateAhead(product_.setting, vectors, product_.Step, NF_ + 1);
    for (const Array1<double>& vector : vectors) At(vector, false, bootstrap);
  }

  void At(const Array1<double>& vector, bool oneCall = false, bool bootstrap = false) {
    ++NF_;
    for (Side* side : {&product_, &plain_}) {
      side->Value = vector;
      side->setting.OneCallRun = oneCall;
      side->setting.BootstrapMode = bootstrap;
      side->failed = false;
    }
    const auto NPAR = static_cast<std::int16_t>(vector.Size());
    Guarded(product_, [&](Side& s) {
      engine_.EvaluateObjective(s.setting, s.state, s.F, s.Value, s.Step, s.Names, s.Fuse, NPAR, NF_, s.SampleSize);
    });
    Guarded(plain_, [&](Side& s) {
      plain::EvaluateObjective(data_, s.setting, s.state, s.F, s.Value, s.Step, s.Names, s.Fuse, NPAR, NF_,
                               s.SampleSize);
    });
    ASSERT_EQ(product_.failed, plain_.failed);
    if (product_.failed) {
      ++failures;
      NF_ = 0;  // a command that failed begins anew
    } else {
      ++evaluations;
      withoutTables += product_.state.owed.last;
      ExpectSameNumbers(product_, plain_);
      if (evaluations % lookEvery_ != 0) return;
      engine_.FillTables(product_.state);
      ExpectSameTables(product_, plain_);
    }
  }
  void BeginAnew() { NF_ = 0; }

  int evaluations = 0, failures = 0;
  int withoutTables = 0;  // evaluations that have left them

 private:
  Array1<double> Zeros() const { return Array1<double>(ParameterCount(data_.NCov)); }
  template <class Evaluate>
  static void Guarded(Side& side, Evaluate evaluate) {
    try {
      evaluate(side);
    } catch (const RuntimeFailure&) {
      side.failed = true;
    }
  }

  const BroodData& data_;
  Side product_, plain_;
  Likelihood engine_;
  const int lookEvery_;
  std::int32_t NF_ = 0;
};

/// Vectors around a start: small moves, parameters at and beyond their limits, hypotheses switched on and off, rates at
/// which the arithmetic fails.
class Wanderer {
 public:
  Wanderer(const Array1<double>& start, unsigned seed) : start_(start), random_(seed) {}

  Array1<double> Next() {
    Array1<double> vector = start_;
    for (double& x : vector) x *= 1 + 0.1 * (Uniform() - 0.5);
    for (const int i : {1, 2, 3, 4}) vector(i) = start_(i);
    vector(9) = start_(9);
    vector(10) = start_(10);
    for (int changes = Pick(4); changes > 0; --changes) Change(vector);
    return vector;
  }

 private:
  double Uniform() { return static_cast<double>(random_() >> 8) / (1 << 24); }
  int Pick(int n) { return static_cast<int>(random_() % static_cast<unsigned>(n)); }

  void Change(Array1<double>& v) {
    switch (Pick(16)) {
      case 0:
        v(3) = v(4) = 1 + Pick(2);
        v(5) = 0.3 * Uniform();
        v(7) = 1.2 * Uniform();
        break;
      case 1:
        v(6) = v(8) = 0.1 * Uniform();
        break;
      case 2:
        v(9) = -Pick(35);
        break;
      case 3:
        v(10) = Pick(30);
        break;
      case 4:
        v(11) = Pick(2);
        break;
      case 5:
        v(13) = Pick(2);
        break;
      case 6:
        v(12) = v(14) = 0;
        break;
      case 7:
        v(12) = v(14) = 0.3 * Uniform();
        break;
      case 8:
        v(15) = v(19) = 0;
        break;
      case 9:
        v(17) = v(21) = 0;
        break;
      case 10:
        v(15 + 2 * Pick(4)) = 5;
        break;  // too few survivors
      case 11:
        v(15 + 2 * Pick(4)) = 1e300;
        break;  // overflows
      case 12: {
        const int whole = Pick(3), halves = Pick(2);
        v(16 + 2 * Pick(4)) = 1 + whole + 0.5 * halves;
        break;
      }
      case 13:
        v(23 + Pick(8)) = 0.01 * (Uniform() - 0.5);
        break;
      case 14:
        v(23 + Pick(v.Size() - 22)) = Uniform() - 0.5;
        break;  // also beyond the limit of 10
      case 15:
        v(11) = v(13) = 1.5 * Uniform();
        break;
    }
  }

  const Array1<double> start_;
  std::mt19937 random_;
};

class SameBitsAsPlain : public testing::TestWithParam<test::GoldenCase> {};

TEST_P(SameBitsAsPlain, FromVectorToVector) {
  const test::GoldenCase& c = GetParam();
  test::Reading reading(c.choices.FirstYear, c.choices.LastYear, c.choices.NCov);
  reading.data.CensorEggs = c.choices.CensorEggs;
  reading.data.CensorJuvs = c.choices.CensorJuvs;
  reading.Of(ReadWholeFile(c.dataFile));
  if (c.choices.CovariateFormat == "A") StandardiseCovariates(reading.data);
  AlgorithmData a;
  a.NPAR = static_cast<std::int16_t>(ParameterCount(c.choices.NCov));
  SetDefaultAlgorithm(a);
  ASSERT_EQ(ReadAlgorithm(ReadWholeFile(c.algFile), a).failure, AlgorithmReading::Failure::None);

  for (const int lookEvery : {1, 4}) {
    Pair pair(reading.data, lookEvery);
    pair.At(a.Value, true);
    pair.At(a.Value, true);
    Wanderer wanderer(a.Value, 7);
    const int steps = reading.data.Visits() > 1000 ? 20 : 60;
    for (int i = 0; i < steps && !HasFatalFailure(); ++i) {
      if (i % 15 == 0) pair.BeginAnew();
      const Array1<double> vector = wanderer.Next();
      pair.At(vector, i % 5 == 0);
      if (i % 6 == 1) pair.At(vector, false, true);  // the same in a bootstrap
    }
    EXPECT_GT(pair.evaluations, steps / 4);
  }
}

INSTANTIATE_TEST_SUITE_P(Cases, SameBitsAsPlain, testing::ValuesIn(test::SoundCases()),
                         [](const auto& c) { return c.param.name; });

class SameBitsOnFieldData : public testing::TestWithParam<FieldDataPlan::Covariates> {};

TEST_P(SameBitsOnFieldData, FromVectorToVector) {
  const BroodData data = ReadFieldData({.years = 3, .broodsPerYear = 60, .covariates = GetParam()});
  for (const bool overdispersed : {false, true})
    for (const int lookEvery : {1, 5}) {
      Pair pair(data, lookEvery);
      Wanderer wanderer(FieldVector(data, overdispersed), 11);
      for (int i = 0; i < 40 && !HasFatalFailure(); ++i) {
        if (i % 10 == 0) pair.BeginAnew();
        pair.At(wanderer.Next());
      }
      EXPECT_GT(pair.evaluations, 10);
      EXPECT_GT(pair.withoutTables, 10);
    }
}

/// Whatever is kept from one vector to the next depends on each parameter that goes into it. With an age at fledging,
/// entries of vectors before stay in the tables beside those that follow the parameter.
TEST_P(SameBitsOnFieldData, WhenOneParameterMovesAtATime) {
  const BroodData data = ReadFieldData({.years = 2, .broodsPerYear = 25, .covariates = GetParam()});
  for (const double fledging : {0.0, 8.0}) {
    Array1<double> start = FieldVector(data, true);
    for (int i = 23; i <= start.Size(); ++i) start(i) = 0;
    start(10) = 0;
    Pair pair(data, fledging == 0 ? 3 : 1);
    for (int i = 1; i <= start.Size() && !HasFatalFailure(); ++i) {
      pair.At(start);
      Array1<double> moved = start;
      moved(10) = fledging;
      moved(i) = i <= 4 ? 3 - start(i) : i == 9 ? start(i) - 1 : i >= 23 ? 0.001 : 1.05 * start(i);
      pair.At(moved);
    }
    EXPECT_EQ(pair.failures, 0);
  }
}

/// The share of a mortality that does not act is 0 / 0, and nobody asks for it.
TEST_P(SameBitsOnFieldData, WhereOneMortalityActsAlone) {
  const BroodData data = ReadFieldData({.years = 1, .broodsPerYear = 40, .covariates = GetParam()});
  for (const bool correlated : {false, true}) {
    Array1<double> vector = FieldVector(data, false);
    for (const int i : {12, 14}) vector(i) = 0;
    for (const int i : {11, 13}) vector(i) = correlated ? 1 : 0;
    for (const int i : {15, 17}) vector(i + (correlated ? 0 : 4)) = 0;
    for (const int i : {15, 17}) vector(i + (correlated ? 4 : 0)) = 0.02;
    Pair pair(data);
    for (int i = 0; i < 3; ++i) pair.At(vector);
    EXPECT_EQ(pair.withoutTables, 3) << correlated;
  }
}

INSTANTIATE_TEST_SUITE_P(Covariates, SameBitsOnFieldData,
                         testing::Values(FieldDataPlan::Covariates::None, FieldDataPlan::Covariates::Recurring,
                                         FieldDataPlan::Covariates::Continuous),
                         [](const auto& c) {
                           return std::string(c.param == FieldDataPlan::Covariates::None        ? "None"
                                              : c.param == FieldDataPlan::Covariates::Recurring ? "Recurring"
                                                                                                : "Continuous");
                         });

class SameBitsByWorkers : public testing::TestWithParam<int> {
 protected:
  /// Vectors as a command evaluates them in a row, and one far off among them.
  static std::vector<Array1<double>> Around(const Array1<double>& start, Wanderer& wanderer, std::mt19937& random) {
    std::vector<Array1<double>> vectors(6, start);
    for (Array1<double>& vector : vectors)
      for (int i = 15; i <= 22; ++i) vector(i) *= 1 + 0.01 * static_cast<double>(random() % 10);
    vectors.push_back(vectors[2]);
    vectors.push_back(wanderer.Next());
    return vectors;
  }
};

TEST_P(SameBitsByWorkers, WhereVectorsAreAnnounced) {
  Workers workers(GetParam());
  for (const auto covariates : {FieldDataPlan::Covariates::None, FieldDataPlan::Covariates::Continuous}) {
    const BroodData data = ReadFieldData({.years = 1, .broodsPerYear = 60, .covariates = covariates});
    const Array1<double> start = FieldVector(data, true);
    Pair pair(data, 3, &workers);
    Wanderer wanderer(start, 5);
    std::mt19937 random(5);
    for (int batch = 0; batch < 8 && !HasFatalFailure(); ++batch) {
      pair.BeginAnew();
      pair.AtAll(Around(start, wanderer, random), batch % 3 == 2);
    }
    EXPECT_GT(pair.withoutTables, 40);
  }
}

TEST_P(SameBitsByWorkers, WhereTheDataAreLarge) {
  Workers workers(GetParam());
  for (const auto covariates : {FieldDataPlan::Covariates::Recurring, FieldDataPlan::Covariates::Continuous}) {
    const BroodData data = ReadFieldData({.years = 4, .broodsPerYear = 250, .covariates = covariates});
    const Array1<double> start = FieldVector(data, true);
    Pair pair(data, 3, &workers);
    Wanderer wanderer(start, 5);
    std::mt19937 random(5);
    pair.AtAll(Around(start, wanderer, random), false);
    EXPECT_GE(pair.withoutTables, 7);
  }
}

INSTANTIATE_TEST_SUITE_P(Threads, SameBitsByWorkers, testing::Values(1, 2, 5));

/// Broods such as no biologist would enter: ages and counts that are missing, rise, fall or stand still, clutches
/// behind broods, several visits on the hatch day.
std::string OddData(unsigned seed) {
  std::mt19937 random(seed);
  const auto pick = [&](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
  const std::vector<std::string> oddAges = {"-?", "?", "-999", "0", "-5", "3"};
  std::string text = test::Header + "\n";
  for (int brood = 1; brood <= 3; ++brood) {
    int age = -25 + pick(20);
    int count = 1 + pick(9);
    const int hatchDay = brood % 7 == 0 ? 0 : 150 + pick(20);
    for (int visit = 1; visit <= 6; ++visit) {
      const std::string ageText = pick(5) == 0 ? oddAges[random() % oddAges.size()] : std::to_string(age);
      const std::string countText = pick(40) == 0 ? "-999" : std::to_string(count);
      text += test::Record("1995", std::to_string(brood), std::to_string(150 + age), std::to_string(hatchDay), ageText,
                           countText);
      age += 1 + pick(9);
      if (pick(3) == 0) count += pick(20) == 0 ? 1 : -std::min(count, pick(3));
    }
  }
  return text;
}

TEST(SameBitsOnOddData, FromVectorToVector) {
  int evaluations = 0, withoutTables = 0;
  for (unsigned seed = 1; seed <= 400 && !HasFatalFailure(); ++seed) {
    test::Reading reading;
    reading.Of(OddData(seed), true);
    Pair pair(reading.data, 1 + static_cast<int>(seed % 3));
    Wanderer wanderer(FieldVector(reading.data, seed % 2 == 0), seed);
    for (int i = 0; i < 12 && !HasFatalFailure(); ++i) pair.At(wanderer.Next(), i % 8 == 0);
    pair.BeginAnew();
    for (int i = 0; i < 6 && !HasFatalFailure(); ++i) pair.At(wanderer.Next());
    evaluations += pair.evaluations;
    withoutTables += pair.withoutTables;
  }
  EXPECT_GT(withoutTables, 500);
  EXPECT_GT(evaluations, 2000);
}

}  // namespace
}  // namespace merlane
