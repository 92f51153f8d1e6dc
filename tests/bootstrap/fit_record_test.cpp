// A fit that is recorded in one run answers the same calls in another, and no others.
#include "bootstrap/fit_record.h"

#include <gmock/gmock.h>

#include <bit>
#include <limits>
#include <stdexcept>

#include "platform/digest.h"

namespace merlane {
namespace {

struct FitRecordTest : ::testing::Test {
  FitRecord record;
  RunState run;
  long turns = 0;

  FitRecordTest() {
    record.OnData("the data");
    run.algorithm.NPAR = 3;
  }
  /// A call of the fit that is recorded.
  void Record(std::int32_t NF, const Array1<double>& vector, double F, long given = 7) {
    FitCall& call = record.OnCall(NF, vector);
    call.F = F;
    call.turns = given;
    record.OnDone();
  }
  struct Answer {
    bool known;
    double F;
    Array1<double> vector;
  };
  Answer Ask(RecordedFit& fit, std::int32_t NF, Array1<double> vector) {
    AlgorithmData& a = run.algorithm;
    std::int32_t observations = 0, sample = 0;
    double F = -1;
    ModelCall call{F, vector, a.Step, a.ParName, a.Fuse, a.NPAR, NF, observations, run.Gradient, run.Hessian, sample};
    const bool known = fit.Answer(call);
    return {known, F, vector};
  }
  RecordedFit Follow() {
    return RecordedFit(record.words, [this](long more) { turns += more; });
  }
};

TEST_F(FitRecordTest, GivesEachOutcomeWithItsTurns) {
  Record(1, {1, 2, 3}, 10);
  Record(2, {1, 2, 4}, 20, 8);
  RecordedFit fit = Follow();
  EXPECT_TRUE(fit.IsTo("the data"));
  EXPECT_FALSE(fit.IsTo("other data"));
  EXPECT_EQ(Ask(fit, 1, {1, 2, 3}).F, 10);
  EXPECT_EQ(turns, 7);
  EXPECT_EQ(Ask(fit, 2, {1, 2, 4}).F, 20);
  EXPECT_EQ(turns, 15);
  EXPECT_TRUE(fit.Fitted());
  EXPECT_FALSE(Ask(fit, 3, {1, 2, 5}).known) << "the record is at its end";
}

TEST_F(FitRecordTest, GivesWhatTheModelHasRewrittenOfTheVector) {
  FitCall& call = record.OnCall(1, {-1, 2, 3});
  call.left = {1, 2, 3.5};
  record.OnDone();
  RecordedFit fit = Follow();
  const Answer answer = Ask(fit, 1, {-1, 2, 3});
  EXPECT_TRUE(answer.known);
  EXPECT_EQ(answer.vector, (Array1<double>{1, 2, 3.5}));
}

TEST_F(FitRecordTest, ACallThatFailedOrToldSomethingIsCalculatedAndThoseBehindItAreNot) {
  record.OnCall(1, {1, 2, 3}).failure = std::make_exception_ptr(std::runtime_error("overflow"));
  record.OnDone();
  record.OnCall(2, {1, 2, 4}).messages.push_back({"title", "text"});
  record.OnDone();
  Record(3, {1, 2, 5}, 30);
  RecordedFit fit = Follow();
  EXPECT_FALSE(Ask(fit, 1, {1, 2, 3}).known);
  EXPECT_FALSE(Ask(fit, 2, {1, 2, 4}).known);
  EXPECT_EQ(Ask(fit, 3, {1, 2, 5}).F, 30);
}

TEST_F(FitRecordTest, ACallOfAnotherVectorOrNumberEndsTheFollowing) {
  Record(1, {1, 2, 3}, 10);
  for (const auto& [NF, vector] :
       {std::pair(1, Array1<double>{1, 2, 3.0000000000000004}), {2, Array1<double>{1, 2, 3}}}) {
    RecordedFit fit = Follow();
    EXPECT_FALSE(Ask(fit, NF, vector).known);
    EXPECT_FALSE(fit.Fitted());
    EXPECT_FALSE(Ask(fit, 1, {1, 2, 3}).known);
  }
}

TEST_F(FitRecordTest, WordsThatAreNoRecordAnswerNothing) {
  Record(1, {1, 2, 3}, 10);
  FitCall& call = record.OnCall(2, {1, 2, 4});
  call.left(1) = 5;
  record.OnDone();
  const Words whole = record.words;
  const auto answers = [&](const Words& words) {
    record.words = words;
    RecordedFit fit = Follow();
    int known = 0;
    known += Ask(fit, 1, {1, 2, 3}).known;
    known += Ask(fit, 2, {1, 2, 4}).known;
    return known;
  };
  ASSERT_EQ(answers(whole), 2);
  for (std::size_t length = 0; length < whole.size(); ++length) {
    Words cut = whole;
    cut.resize(length);
    EXPECT_EQ(answers(cut), length < 5 ? 0 : 1) << length;
  }
  const auto with = [&](std::size_t i, std::uint64_t word) {
    Words changed = whole;
    changed[i] = word;
    return answers(changed);
  };
  EXPECT_EQ(with(2, ~0ull), 0) << "more elements than there are";
  EXPECT_EQ(with(3, ~0ull), 0) << "more turns than can be";
  EXPECT_EQ(with(4, std::bit_cast<std::uint64_t>(std::numeric_limits<double>::quiet_NaN())), 0);
  EXPECT_EQ(with(9, 0), 1) << "no such element";
  EXPECT_EQ(with(9, 4), 1) << "no such element";
  EXPECT_EQ(with(10, std::bit_cast<std::uint64_t>(std::numeric_limits<double>::infinity())), 1);
}

}  // namespace
}  // namespace merlane
