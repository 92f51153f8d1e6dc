#include "program/held_against_fresh.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <utility>

#include "base/number_text.h"
#include "base/runtime_failure.h"
#include "control/fuses.h"
#include "minimise/evaluate_trial.h"
#include "platform/files.h"
#include "uncertainty/covariance_report.h"

namespace merlane::test {
namespace {

using ::testing::ElementsAreArray;

/// Everything that one call depends on, in full.
std::string InFull(const Whereabouts& there, std::int64_t reading) {
  std::string text = std::to_string(reading) + (there.BayesOn ? there.priors.InWords() : "") + " x " +
                     Shortest(there.ObjectiveConstant);
  const AlgorithmData& a = there.algorithm;
  for (int i = 1; i <= a.NPAR; ++i) text += "\n" + Shortest(a.Value(i)) + " " + Shortest(a.Step(i)) + " " + a.Fuse(i);
  return text;
}

OneCall CallFresh(const Whereabouts& there) {
  FreshProgram fresh(there);
  return CallOnce(fresh.program);
}

/// Gives up the grids that somebody else has given up, at their first call.
class AbandonsTheSame : public CovarianceWatch {
 public:
  explicit AbandonsTheSame(const Covariances& other) : other_(other) {}
  void OnGrid(int g) override { g_ = g; }
  bool AbandonGrid() override { return other_.grid(g_).ending == GridEnding::Abandoned; }

 private:
  const Covariances& other_;
  int g_ = 0;
};

}  // namespace

void HeldAgainstFresh::Before() {
  before_ = Whereabouts::Of(walked_);
  summaryBefore_ = walked_.frmSummary.rtbOut.text;
  longCommands_.Before();
}

bool HeldAgainstFresh::DataFileIsAsRead() {
  const std::string& path = walked_.model.data.DataFileName;
  if (!std::filesystem::is_regular_file(path)) return false;
  std::string bytes = ReadWholeFile(path);
  if (!read_ || read_->reading != walked_.state.reading) read_ = Read{walked_.state.reading, bytes};
  return read_->bytes == bytes;
}

void HeldAgainstFresh::Behind(const Doing& step) {
  if (!DataFileIsAsRead()) return;
  if (step.control == "frmMenu.cmdOneFunction")
    CompareCommand(
        step, [](Program& p) -> Button& { return p.frmMenu.cmdOneFunction; },
        [](Program& p) -> Pane& { return p.frmOneFunction.rtbOneFunction; }, "");
  if (step.control == "frmMenu.cmdUserSummary")
    CompareCommand(
        step, [](Program& p) -> Button& { return p.frmMenu.cmdUserSummary; },
        [](Program& p) -> Pane& { return p.frmSummary.rtbOut; }, summaryBefore_);
  if (step.control == "frmCovDisplay.cmdScreen" && !step.failed) CompareCovarianceReport();
  if (step.control == "frmRank.cmdAICc") CompareRow(step);
  longCommands_.Behind(step);
  CompareCovariances();
  CompareMinimisation();
  CompareReview();
  if (evaluates_) CompareOneCall();
}

void HeldAgainstFresh::CompareOneCall() {
  const std::optional<Whereabouts> there = Whereabouts::Of(walked_);
  if (!there) return;
  const std::string at = InFull(*there, walked_.state.reading);
  if (!called_ || called_->at != at) called_ = Called{at, CallFresh(*there)};
  EXPECT_EQ(CallOnce(walked_), called_->call) << "one call";
  tally_.Count("one call");
}

void HeldAgainstFresh::CompareCommand(const Doing& step, Button& (*button)(Program&), Pane& (*pane)(Program&),
                                      const std::string& before) {
  // What is done beside it, as an interruption, would have to be done once more at the same turn.
  if (!before_ || step.anythingBeside) return;
  FreshProgram fresh(*before_);
  fresh.windows.replies.assign(step.replies.begin(), step.replies.end());
  EXPECT_TRUE(fresh.program.desk.Press(button(fresh.program)));
  EXPECT_THAT(step.Questions(), ElementsAreArray(fresh.windows.asked)) << step.control;
  // A command that is refused or fails leaves what it showed before.
  const std::string& shown = pane(fresh.program).text;
  EXPECT_EQ(pane(walked_).text, shown.empty() ? before : shown) << step.control;
  const AlgorithmData &walked = walked_.state.algorithm, &there = fresh.program.state.algorithm;
  EXPECT_EQ(walked.Value, there.Value) << step.control;
  EXPECT_EQ(walked.Step, there.Step) << step.control;
  EXPECT_EQ(walked.Fuse, there.Fuse) << step.control;
  tally_.Count(step.control);
}

void HeldAgainstFresh::CompareMinimisation() {
  const Fit& fit = walked_.fit;
  if (!fit.basis || !fit.minimisation || !fit.basis->SameEstimates(walked_.objective.Present())) return;
  const std::optional<Whereabouts> there = Whereabouts::Of(walked_);
  if (!there || fit.minimisation->ending == "zero value") return;  // which leaves the estimates as they were
  const std::pair reached(fit.basis->search, fit.objective);
  if (checkedFit_ == reached) return;
  checkedFit_ = reached;
  const OneCall call = CallFresh(*there);
  if (!call.F) {
    // A search that moves an age goes on with predictions of earlier calls, to where a single one has none; it says so.
    EXPECT_EQ(fit.ofOneCall, UnevaluatedF)
        << "a minimum of " << fit.objective << " cannot be evaluated: " << call.failure << " at\n"
        << InFull(*there, 0);
    ReportSaysOneOf({"one function call at these values cannot be evaluated"});
    return;
  }
  // Values out of range are brought into it by the first call, and penalised in that one alone.
  if (call.Value != std::vector<double>(there->algorithm.Value.begin(), there->algorithm.Value.end())) return;
  // The axial search steps away from the minimum and back, which may change the last bit of a value.
  // A search that moves an age at laying or fledging, or has brought a value back to its limit, may have another
  // objective, and so may a function call that has checked the values; they say so.
  EXPECT_NEAR(fit.ofOneCall.value_or(fit.objective), *call.F, 1e-10 * std::max(1.0, std::fabs(*call.F)))
      << "the objective of a minimisation that ended by " << fit.minimisation->ending << " at\n"
      << InFull(*there, 0);
  EXPECT_EQ(fit.freeParameters, call.K) << "K of a minimisation";
  tally_.Count("minimisation");
  const std::string once = Format(*call.F, "####0.000000");
  if (Format(fit.objective, "####0.000000") != once)
    ReportSaysOneOf(
        {"one function call at these values gives " + once, "at these values a minimization finds " + once});
}

void HeldAgainstFresh::ReportSaysOneOf(const std::vector<std::string>& words) {
  const std::string reported = Format(walked_.fit.objective, "####0.000000");
  for (const Pane* report :
       {&walked_.frmOneFunction.rtbOneFunction, &walked_.frmSimplex.rtbSimplex, &walked_.frmMarquardt.rtbMarquardt}) {
    const auto contains = [report](const std::string& part) { return report->text.find(part) != std::string::npos; };
    EXPECT_TRUE(!contains(reported) || std::ranges::any_of(words, contains))
        << "does not say \"" << words.front() << "\":\n"
        << report->text;
  }
}

void HeldAgainstFresh::CompareCovariances() {
  const Covariances& kept = walked_.covariances;
  if (!kept.basis) return;
  const Basis now = walked_.objective.Present();
  const std::optional<Whereabouts> there = Whereabouts::Of(walked_);
  // Behind any other change there is no knowing the data and the priors of then.
  if (!there || !kept.AreOf(now)) return;
  // Values out of range, which have since been brought into it, are the same point, but were penalised.
  if (kept.basis->Value != now.Value) return;
  // As often as the program says of another run that they are its own, that is put to the test.
  const std::string of = InFull(*there, now.search);
  if (of == std::exchange(checkedCovariances_, of)) return;
  Whereabouts calculated = *there;
  calculated.algorithm.Step = kept.basis->Step;  // others may since have been taken from them
  FreshProgram fresh(calculated);
  CovarianceOptions options{.mode = kept.mode};
  if (kept.mode == CovarianceMode::Numerical)
    for (int g = 1; g <= 3; ++g) options.GridFactor(g) = kept.grid(g).GridFactor;
  Program& program = fresh.program;
  // Before a constant has been entered for the first time a prior counts for nothing, at the base point too.
  double& constant = program.state.flags.ObjectiveConstant;
  if (before_ && before_->ObjectiveConstant == 0) constant = 0;
  Covariances again;
  try {
    BuildFuseGroups(program.state);
    again = PrepareCovariances(options, program.state, program.objective);
    constant = kept.CovConstantInverse;
    AbandonsTheSame watch(kept);
    CalculateCovariances(again, kept.OptimisticSE, program.state, program.objective, watch);
  } catch (const RuntimeFailure& failure) {
    ADD_FAILURE() << "covariances that stand fail in a fresh program: " << failure.what();
    return;
  }
  tally_.Count(kept.basis->Step == now.Step ? "covariances" : "covariances from which steps were taken");
  EXPECT_EQ(kept.CovF0, again.CovF0);
  EXPECT_EQ(kept.CovBaseValue, again.CovBaseValue);
  EXPECT_EQ(kept.CovIndex, again.CovIndex);
  for (int g = 1; g <= 3; ++g) {
    EXPECT_EQ(kept.grid(g).ending, again.grid(g).ending) << "grid " << g;
    EXPECT_EQ(kept.grid(g).standardErrors, again.grid(g).standardErrors) << "grid " << g;
    EXPECT_EQ(kept.grid(g).GridMean, again.grid(g).GridMean) << "grid " << g;
  }
}

void HeldAgainstFresh::CompareCovarianceReport() {
  const Covariances& kept = walked_.covariances;
  tally_.Count("covariance report");
  EXPECT_EQ(walked_.frmCovData.rtbCovData.text, CovarianceReport(kept));
  // Whose they are is said where they are not of the present run, and where it has taken other steps from them.
  const Basis now = walked_.objective.Present();
  if (!kept.AreOf(now) || kept.basis->Step != now.Step) {
    EXPECT_THAT(walked_.frmCovDisplay.lblFit.text, ::testing::HasSubstr("Since then"));
  }
}

void HeldAgainstFresh::CompareReview() {
  const FrmReviewPriors& review = walked_.frmReviewPriors;
  const std::string& whose = review.lblFit.text;
  if (!review.Loaded() || whose.find("Since then") != std::string::npos) return;
  const std::optional<Whereabouts> there = Whereabouts::Of(walked_);
  if (!there) return;
  const std::string shown = InFull(*there, 0) + review.rtbReview.text;
  if (shown == std::exchange(checkedReview_, shown)) return;
  tally_.Count("review of priors");
  FreshProgram fresh(*there);
  fresh.program.frmSimplex.reviewPriors();
  // Saved, it has its name on top.
  EXPECT_THAT(review.rtbReview.text, ::testing::EndsWith(fresh.program.frmReviewPriors.rtbReview.text)) << whose;
}

void HeldAgainstFresh::CompareRow(const Doing& step) {
  const std::vector<Competitor>& rows = walked_.frmRank.Models().entered;
  const std::optional<Whereabouts> there = Whereabouts::Of(walked_);
  // A row that failed is half done.
  if (!before_ || !there || step.failed || rows.empty() || rows.back().RankAlgFile.empty()) return;
  // Before a constant has been entered for the first time a prior counts for nothing.
  if (before_->ObjectiveConstant != 0) before_->ObjectiveConstant = there->ObjectiveConstant;
  const OneCall call = CallFresh(*before_);
  ASSERT_TRUE(call.F);
  EXPECT_EQ(rows.back().RankNegLnL, *call.F / there->ObjectiveConstant) << "a row of the ranking";
  EXPECT_EQ(rows.back().RankK, call.K) << "K of a row of the ranking";
  tally_.Count("row of the ranking");
}

}  // namespace merlane::test
