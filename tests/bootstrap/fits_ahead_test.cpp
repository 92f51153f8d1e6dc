// What is calculated ahead stands for a calculation only where that would be the very same.
#include "bootstrap/fits_ahead.h"

#include <gmock/gmock.h>
#include <pthread.h>

#include <atomic>
#include <chrono>
#include <thread>

#include "base/runtime_failure.h"
#include "data/data_text.h"
#include "likelihood/likelihood.h"
#include "likelihood/streams.h"
#include "model/simulator.h"

namespace merlane {
namespace {

/// Clutches of unknown age, a fit to them, and the vectors at which "minimising" evaluates the objective.
struct FitsAheadTest : ::testing::Test {
  test::Reading real;
  LikelihoodState fit;
  RunState run;
  test::Streams streams;
  RandomStreams& random = streams.random;
  std::vector<Array1<double>> vectors;
  long turns = 0;
  std::atomic<int> minimised = 0, called = 0;
  bool endless = false;
  const ReplicateDataText text = Clutches();

  /// Reads the real data.
  ReplicateDataText Clutches() {
    std::string records = test::Header + "\n";
    for (const char* code : {"A", "B", "C"})
      for (const int day : {140, 150, 155})
        records += test::Record("1995", code, std::to_string(day), "160", "-?", "6");
    real.Of(records, true);
    return ReplicateDataText(real.data);
  }

  FitsAheadTest() {
    random.SetSeed(4);

    AlgorithmData& a = run.algorithm;
    a.NPAR = 34;
    a.Value.Dimension(a.NPAR);
    a.Step.Dimension(a.NPAR);
    a.Fuse.Dimension(a.NPAR, "~~");
    a.ParName.Dimension(a.NPAR);
    for (const auto& [number, value] : {std::pair(1, 1.0), {2, 1.0}, {3, 2.0}, {4, 2.0}, {15, 0.02}})
      a.Value(number) = value;
    for (const double rate : {0.02, 0.03, 0.05}) {
      vectors.push_back(a.Value);
      vectors.back()(15) = rate;
    }
    fit.Dimension(real.data);
    Evaluator(real.data, fit).At(a.Value, 1);
  }

  /// The objective as it is evaluated without anybody ahead.
  struct Evaluator {
    Evaluator(const BroodData& data, LikelihoodState& s, std::shared_ptr<EvaluationPlans> plans = nullptr)
        : state(s), likelihood(data, nullptr, std::move(plans)) {
      setting.BootstrapMode = true;
      setting.tell = [](const Message&) {};
      setting.turn = [this](long more) { turns += more; };
    }
    double At(Array1<double> vector, int NF) {
      Array1<double> step(34);
      Array1<std::string> names(34), fuses(34, "~~");
      double F = 0;
      std::int32_t sample = 0;
      likelihood.EvaluateObjective(setting, state, F, vector, step, names, fuses, 34, NF, sample);
      likelihood.FillTables(state);
      return F;
    }
    LikelihoodState& state;
    Likelihood likelihood;
    EvaluationSetting setting;
    long turns = 0;
  };

  /// The data of a replicate as the bootstrap simulates them.
  std::string DataOf(int attempt) {
    RandomStreams own = random;
    for (int earlier = 1; earlier < attempt; ++earlier) own.BeginNext();
    LikelihoodState state = fit;
    Simulation simulation;
    simulation.Preset(real.data);
    SimulateData(real.data, {.BootstrapMode = true}, state.best, own, {}, simulation);
    return text.Of(simulation.SimCount);
  }
  std::unique_ptr<FitsAhead> Ahead(int threads) {
    const auto minimise = [this](RunState&, Objective& objective) {
      if (endless) ++minimised;
      do {
        for (std::size_t i = 0; i < vectors.size(); ++i) {
          Array1<double> vector = vectors[i];
          ++called;
          try {
            objective(vector, static_cast<std::int32_t>(i) + 1);
          } catch (const RuntimeFailure&) {  // a trial that fails need not end a minimiser
          }
        }
      } while (endless);
      ++minimised;
      return true;
    };
    return std::make_unique<FitsAhead>(FitOrigin{real.data, fit, text, random, run, nullptr, minimise},
                                       FitsAhead::Watch{[this](long more) { turns += more; }, [](const Message&) {}},
                                       threads);
  }
  /// All of so many attempts have been fitted ahead.
  std::unique_ptr<FitsAhead> AheadOf(int attempts) {
    auto ahead = Ahead(2);
    ahead->Begin(1, attempts);
    while (minimised < attempts) std::this_thread::yield();
    return ahead;
  }

  struct Answer {
    bool known;
    double F;
  };
  Answer Ask(FitsAhead& ahead, Array1<double> vector, std::int32_t NF) {
    AlgorithmData& a = run.algorithm;
    std::int32_t observations = 0, sample = 0;
    double F = -1;
    ModelCall call{F, vector, a.Step, a.ParName, a.Fuse, a.NPAR, NF, observations, run.Gradient, run.Hessian, sample};
    const bool known = ahead.Answer(call);
    return {known, F};
  }
};

TEST_F(FitsAheadTest, HandOverTheDataAndThePlansOfTheVeryText) {
  const auto ahead = AheadOf(2);
  for (const int attempt : {1, 2}) {
    ahead->Begin(attempt, 2);
    const std::optional<MerlaneModel::ReadElsewhere> read = ahead->Read(attempt, DataOf(attempt));
    ASSERT_TRUE(read);
    test::Reading alone;
    alone.Of(DataOf(attempt), true);
    EXPECT_TRUE(read->data->HasSameRecords(alone.data));
    EXPECT_EQ(read->data->VisitCount, alone.data.VisitCount);
    LikelihoodState ofRead = fit, ofAlone = fit;
    EXPECT_EQ(Evaluator(*read->data, ofRead, read->plans).At(vectors[1], 1),
              Evaluator(alone.data, ofAlone).At(vectors[1], 1));
    EXPECT_FALSE(ahead->Read(attempt, DataOf(attempt))) << "handed over once";
  }
}

TEST_F(FitsAheadTest, HandOverNoDataOfAnotherText) {
  const auto ahead = AheadOf(2);
  EXPECT_FALSE(ahead->Read(1, DataOf(2)));
  EXPECT_FALSE(ahead->Read(3, DataOf(3))) << "which nobody has begun";
}

TEST_F(FitsAheadTest, GiveTheOutcomeAndTheTurnsOfEachCallInOrder) {
  const auto ahead = AheadOf(3);
  for (const int attempt : {1, 2, 3}) {
    ahead->Begin(attempt, 3);
    ahead->Follow(attempt, DataOf(attempt));
    test::Reading simulated;
    simulated.Of(DataOf(attempt), true);
    LikelihoodState state;
    state.Dimension(simulated.data);
    Evaluator plain(simulated.data, state);
    turns = 0;
    for (int i = 1; i <= 3; ++i) {
      const Array1<double>& vector = vectors[static_cast<std::size_t>(i) - 1];
      const Answer answer = Ask(*ahead, vector, i);
      EXPECT_TRUE(answer.known);
      EXPECT_EQ(answer.F, plain.At(vector, i)) << "attempt " << attempt << ", call " << i;
    }
    EXPECT_EQ(turns, plain.turns);
    EXPECT_GT(turns, 0);
    EXPECT_FALSE(Ask(*ahead, vectors[0], 4).known) << "the fit ahead made no more calls";
  }
}

TEST_F(FitsAheadTest, DoNotAnswerAnotherVectorNorAnythingBehindIt) {
  vectors[1](15) = 0.0;
  const auto ahead = AheadOf(1);
  ahead->Follow(1, DataOf(1));
  EXPECT_TRUE(Ask(*ahead, vectors[0], 1).known);
  Array1<double> other = vectors[1];
  other(15) = -0.0;  // equal, but not the same
  EXPECT_FALSE(Ask(*ahead, other, 2).known);
  EXPECT_FALSE(Ask(*ahead, vectors[1], 2).known);
}

TEST_F(FitsAheadTest, DoNotAnswerAnotherCode) {
  const auto ahead = AheadOf(1);
  ahead->Follow(1, DataOf(1));
  EXPECT_FALSE(Ask(*ahead, vectors[0], 2).known);
}

TEST_F(FitsAheadTest, DoNotAnswerForOtherData) {
  const auto ahead = AheadOf(2);
  ASSERT_NE(DataOf(1), DataOf(2));
  ahead->Follow(1, DataOf(2));
  EXPECT_FALSE(Ask(*ahead, vectors[0], 1).known);
}

TEST_F(FitsAheadTest, DoNotAnswerOnceTheFitIsLeft) {
  const auto ahead = AheadOf(1);
  ahead->Follow(1, DataOf(1));
  EXPECT_TRUE(Ask(*ahead, vectors[0], 1).known);
  ahead->Leave();
  EXPECT_FALSE(Ask(*ahead, vectors[1], 2).known);
}

TEST_F(FitsAheadTest, RaiseTheFailureOfACall) {
  vectors[1](5) = 0.2;  // an overdispersion that overflows at an unknown age
  vectors[1](6) = 0.8;
  vectors[1](11) = 0.5;
  vectors[1](19) = 0.02;
  const auto ahead = AheadOf(1);
  ahead->Follow(1, DataOf(1));
  EXPECT_TRUE(Ask(*ahead, vectors[0], 1).known);
  EXPECT_THROW(Ask(*ahead, vectors[1], 2), RuntimeFailure);
  EXPECT_TRUE(Ask(*ahead, vectors[2], 3).known);
}

TEST_F(FitsAheadTest, DoNotGoFurtherThanIsCertainlyWanted) {
  const auto ahead = AheadOf(2);
  ahead->Follow(3, DataOf(3));
  EXPECT_FALSE(Ask(*ahead, vectors[0], 1).known);
  EXPECT_EQ(minimised, 2);
}

TEST_F(FitsAheadTest, EndInTheMiddleOfALongFit) {
  endless = true;
  auto ahead = Ahead(2);
  ahead->Begin(1, 2);
  while (minimised < 2) std::this_thread::yield();
  ahead.reset();  // or this test would never end
  EXPECT_EQ(minimised, 2);
}

/// Waits until the number is reached, however busy the machine, and gives it time to go beyond.
int SettledFrom(int least, const std::atomic<int>& number) {
  while (number < least) std::this_thread::yield();
  std::this_thread::sleep_for(std::chrono::milliseconds(300));
  return number;
}

TEST_F(FitsAheadTest, WaitWhereTheyAreVeryManyCallsAhead) {
  endless = true;
  auto ahead = Ahead(1);
  ahead->Begin(1, 1);
  const int most = CallsAhead(34) + 1;  // the last one waits
  EXPECT_EQ(SettledFrom(most, called), most);
  ahead->Follow(1, DataOf(1));
  for (int i = 0; i < 10; ++i) EXPECT_TRUE(Ask(*ahead, vectors[static_cast<std::size_t>(i % 3)], i % 3 + 1).known);
  EXPECT_EQ(SettledFrom(most + 10, called), most + 10);
  ahead.reset();
}

TEST_F(FitsAheadTest, EndOneThatWaitsFarAheadWhenTheBootstrapPassesIt) {
  endless = true;
  auto ahead = Ahead(1);
  ahead->Begin(1, 2);
  const int most = CallsAhead(34) + 1;
  EXPECT_EQ(SettledFrom(most, called), most);
  ahead->Begin(2, 2);  // the first was never followed
  EXPECT_EQ(SettledFrom(2 * most, called), 2 * most) << "the thread went on to the second";
}

TEST_F(FitsAheadTest, LeaveAFitThatBreaksOffToTheBootstrap) {
  struct Odd {};  // no standard exception
  const auto minimise = [this](RunState&, Objective& objective) -> bool {
    Array1<double> vector = vectors[0];
    objective(vector, 1);
    ++minimised;
    throw Odd{};
  };
  FitsAhead ahead({real.data, fit, text, random, run, nullptr, minimise}, {[](long) {}, [](const Message&) {}}, 1);
  ahead.Begin(1, 1);
  while (minimised < 1) std::this_thread::yield();
  ahead.Follow(1, DataOf(1));
  EXPECT_TRUE(Ask(ahead, vectors[0], 1).known);
  EXPECT_FALSE(Ask(ahead, vectors[1], 2).known);
}

TEST_F(FitsAheadTest, LeaveAllToTheBootstrapWhereTheSystemGivesNoThread) {
  struct NoRoomForStacks {
    NoRoomForStacks() {
      pthread_getattr_default_np(&usual);
      pthread_attr_t huge = usual;
      pthread_attr_setstacksize(&huge, std::size_t{1} << 50);
      pthread_setattr_default_np(&huge);
    }
    ~NoRoomForStacks() { pthread_setattr_default_np(&usual); }
    pthread_attr_t usual;
  } const noRoom;
  ASSERT_THROW(std::thread([] {}), std::system_error);
  const auto ahead = Ahead(2);
  ahead->Begin(1, 2);
  ahead->Follow(1, DataOf(1));
  EXPECT_FALSE(Ask(*ahead, vectors[0], 1).known);
}

TEST_F(FitsAheadTest, HoldFewCallsOfManyParameters) {
  EXPECT_EQ(CallsAhead(34), 22058);
  EXPECT_EQ(CallsAhead(634), 1182);
}

TEST_F(FitsAheadTest, HoldLargeDataInFewThreads) {
  EXPECT_EQ(ThreadsAhead(8, 0), 8);
  EXPECT_EQ(ThreadsAhead(8, 300), 8);
  EXPECT_EQ(ThreadsAhead(8, 1'000'000), 4);
  EXPECT_EQ(ThreadsAhead(8, 5'000'000), 0);
}

}  // namespace
}  // namespace merlane
