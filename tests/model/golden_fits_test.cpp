#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "control/frm_menu.h"
#include "minimise/frm_marquardt.h"
#include "minimise/frm_simplex.h"
#include "model/survival_run.h"

// The survival model fitted to data sets whose fits are known from an implementation in another language by another
// author: counts, actions, messages and values exactly.

namespace merlane::test {
namespace {

using nlohmann::json;

/// A golden case and the windows of both minimisers.
class Analysis : public SurvivalRun {
 public:
  using SurvivalRun::SurvivalRun;

  /// Checks the case by function calls as a user would, so that it is ready to be minimised.
  void OneFunctionCalls(std::size_t times) {
    for (std::size_t i = 0; i < times; ++i) OneFunctionCall();
    host.windows.messages.clear();
    Pack();
  }

  FrmMain frmMain{desk};
  FrmMenu frmMenu{desk, state};
  LogFile log;
  ProfileRun profile;
  SimplexState simplex;
  FrmSimplex frmSimplex{desk, frmMain, state, objective, simplex, log, profile};
  FrmMarquardt frmMarquardt{desk, frmMain, state, objective, log, profile};
};

/// One entry of the file of fits, with its case.
struct GoldenFit {
  GoldenCase golden;
  json expected;
};

void PrintTo(const GoldenFit& fit, std::ostream* out) { *out << fit.golden.name; }

std::vector<GoldenFit> Fits(const std::string& what, bool traced = false) {
  std::vector<GoldenFit> fits;
  const json all = GoldenJson("fits.json");
  for (const json& fit : all["fits"]) {
    if (fit["what"] != what || (traced && !fit["fit"].contains("trace"))) continue;
    fits.push_back({GoldenCaseNamed(fit["case"]), fit});
  }
  return fits;
}

void ExpectValues(const RunState& state, const json& expected) {
  ASSERT_EQ(state.algorithm.NPAR, static_cast<int>(expected.size()));
  for (int i = 1; i <= state.algorithm.NPAR; ++i) {
    EXPECT_EQ(state.algorithm.Value(i), expected[static_cast<std::size_t>(i - 1)]) << "parameter " << i;
  }
}

void ExpectMessages(const std::vector<Message>& messages, const json& expected) {
  ASSERT_EQ(messages.size(), expected.size());
  for (std::size_t i = 0; i < messages.size(); ++i) {
    EXPECT_EQ(messages[i].title, expected[i]["title"]);
    EXPECT_EQ(messages[i].text, expected[i]["text"]);
    EXPECT_EQ(messages[i].style, expected[i]["style"]);
  }
}

std::string CaseName(const testing::TestParamInfo<GoldenFit>& fit) { return fit.param.golden.name; }

class SimplexFit : public testing::TestWithParam<GoldenFit> {};

TEST_P(SimplexFit, TakesTheSameStepsToTheSameValues) {
  const json& expected = GetParam().expected;
  const json& fit = expected["fit"];
  Analysis a(GetParam().golden);
  a.OneFunctionCalls(expected["one_function_calls"].size());
  ASSERT_EQ(a.state.free.NFREE, expected["NFREE"]);

  const SimplexResult result = a.frmSimplex.Minimise();
  EXPECT_EQ(EndingText(result.ending), fit["ending"]);
  EXPECT_EQ(result.Iterations, fit["iterations"]);
  EXPECT_EQ(result.NF, fit["NF"]);
  EXPECT_EQ(result.calls, fit["calls"]);
  EXPECT_EQ(result.Restarts, fit["restarts"]);
  EXPECT_EQ(result.F, fit["F"]);
  ExpectValues(a.state, fit["Value"]);
  ExpectMessages(a.host.windows.messages, fit["messages"]);
  EXPECT_EQ(a.state.flags.SampleSize, expected["model"]["SampleSize"]);
}

INSTANTIATE_TEST_SUITE_P(, SimplexFit, testing::ValuesIn(Fits("simplex")), CaseName);

class SimplexTrace : public testing::TestWithParam<GoldenFit>, private SimplexWatch {
 protected:
  void Follow(Analysis& a) {
    a.state.algorithm.TerminalFreq = 1;
    MinimiseSimplex(a.state, a.objective, a.simplex, *this);
  }
  json trace_ = json::array();

 private:
  void OnTerminalReport(const SimplexState& s, const SimplexProgress& now) override {
    trace_.push_back({{"iteration", now.Iterations},
                      {"action", now.ActionAccepted},
                      {"improved", now.ImprovedCount},
                      {"ilow", s.ILow},
                      {"ihigh", s.IHigh},
                      {"best", s.SimplexF(s.ILow)},
                      {"worst", s.SimplexF(s.IHigh)},
                      {"nf", now.NF}});
  }
};

TEST_P(SimplexTrace, IsTheSameActionByAction) {
  const json& expected = GetParam().expected;
  Analysis a(GetParam().golden);
  a.OneFunctionCalls(expected["one_function_calls"].size());
  Follow(a);
  const json& trace = expected["fit"]["trace"];
  ASSERT_EQ(trace_.size(), trace.size());
  for (std::size_t i = 0; i < trace_.size(); ++i) {
    for (const char* key : {"iteration", "action", "improved", "ilow", "ihigh", "best", "worst", "nf"})
      EXPECT_EQ(trace_[i][key], trace[i][key]) << "iteration " << i + 1 << " " << key;
  }
}

INSTANTIATE_TEST_SUITE_P(, SimplexTrace, testing::ValuesIn(Fits("simplex", true)), CaseName);

class MarquardtFit : public testing::TestWithParam<GoldenFit> {};

TEST_P(MarquardtFit, TakesTheSameStepsToTheSameValues) {
  const json& expected = GetParam().expected;
  const json& fit = expected["fit"];
  Analysis a(GetParam().golden);
  a.OneFunctionCalls(expected["one_function_calls"].size());
  a.host.windows.No("Marquardt minimization");
  a.host.windows.No("Marquardt minimization");
  ASSERT_EQ(a.frmMarquardt.ChooseDerivatives(), DerivativeMode::Numerical);
  a.host.windows.messages.clear();

  const MarquardtResult result = a.frmMarquardt.Minimise();
  EXPECT_EQ(EndingText(result.ending), fit["ending"]);
  EXPECT_EQ(result.Iterations, fit["iterations"]);
  EXPECT_EQ(result.NF, fit["NF"]);
  EXPECT_EQ(result.calls, fit["calls"]);
  EXPECT_EQ(result.axialCalls, fit["axial_calls"]);
  EXPECT_EQ(result.verifications, fit["verifications"]);
  EXPECT_EQ(result.F, fit["F"]);
  EXPECT_EQ(result.FBest, fit["FBest"]);
  EXPECT_EQ(result.FTrial, fit["FTrial"]);
  ExpectValues(a.state, fit["Value"]);
  ExpectMessages(a.host.windows.messages, fit["messages"]);
}

INSTANTIATE_TEST_SUITE_P(, MarquardtFit, testing::ValuesIn(Fits("marquardt")), CaseName);

// A rejected trial of this run has so absurd an exponent that a visit's variance overflows; no objective rests on it.
// The case is not among the kept runs because its steps hang on last bits, so the figure is held loosely.
TEST(MarquardtRun, GoesOnWhenATrialMakesAVarianceOverflow) {
  Analysis a(GoldenCaseNamed("beyond_the_ages"));
  a.OneFunctionCalls(1);
  a.host.windows.No("Marquardt minimization");
  a.host.windows.No("Marquardt minimization");
  a.frmMarquardt.ChooseDerivatives();
  EXPECT_NEAR(a.frmMarquardt.Minimise().F, 301.59942217274056, 1e-4);
}

class MarquardtTrace : public testing::TestWithParam<GoldenFit>, private MarquardtWatch {
 protected:
  void Follow(Analysis& a) { MinimiseMarquardt(a.state, a.objective, DerivativeMode::Numerical, *this); }
  std::vector<MarquardtProgress> passes_;  // as each pass begins, and the end

 private:
  void OnPass(const MarquardtProgress& now) override { passes_.push_back(now); }
  void OnEnd(MarquardtEnding, const MarquardtProgress& now) override { passes_.push_back(now); }
};

TEST_P(MarquardtTrace, IsTheSamePassByPass) {
  const json& expected = GetParam().expected;
  Analysis a(GetParam().golden);
  a.OneFunctionCalls(expected["one_function_calls"].size());
  Follow(a);
  const json& trace = expected["fit"]["trace"];
  ASSERT_EQ(passes_.size(), trace.size() + 1);
  for (std::size_t i = 0; i < trace.size(); ++i) {
    const json& pass = trace[i];
    const MarquardtProgress& begin = passes_[i];
    const MarquardtProgress& end = passes_[i + 1];
    EXPECT_EQ(begin.TrialCount, pass["trial_count"]) << "pass " << i + 1;
    EXPECT_EQ(begin.Lambda, pass["lambda_of_trial"]) << "pass " << i + 1;
    EXPECT_EQ(end.FTrial, pass["ftrial"]) << "pass " << i + 1;
    EXPECT_EQ(end.NF, pass["nf"]) << "pass " << i + 1;
    if (!pass["accepted"].is_null()) {
      EXPECT_EQ(end.Iterations - begin.Iterations, pass["accepted"] ? 1 : 0) << "pass " << i + 1;
    }
    if (pass.contains("lambda")) {
      EXPECT_EQ(end.Lambda, pass["lambda"]) << "pass " << i + 1;
    }
    if (pass.contains("gradient"))
      for (std::size_t k = 0; k < pass["gradient"].size(); ++k) {
        EXPECT_EQ(end.GradientShown(static_cast<int>(k) + 1), pass["gradient"][k]) << "pass " << i + 1;
      }
  }
}

INSTANTIATE_TEST_SUITE_P(, MarquardtTrace, testing::ValuesIn(Fits("marquardt", true)), CaseName);

/// Larger fits of which the counts and the objective are known.
struct KnownCounts {
  const char* name;
  int Iterations, NF, Restarts;
  double F;
};

class LargeSimplexFit : public testing::TestWithParam<KnownCounts> {};

TEST_P(LargeSimplexFit, TakesTheSameNumberOfStepsToTheSameMinimum) {
  const KnownCounts& known = GetParam();
  Analysis a(GoldenCaseNamed(known.name));
  a.OneFunctionCalls(1);
  const SimplexResult result = a.frmSimplex.Minimise();
  EXPECT_EQ(result.Iterations, known.Iterations);
  EXPECT_EQ(result.NF, known.NF);
  EXPECT_EQ(result.Restarts, known.Restarts);
  EXPECT_EQ(result.F, known.F);
}

INSTANTIATE_TEST_SUITE_P(, LargeSimplexFit,
                         testing::Values(KnownCounts{"attenuated_mixture", 494, 808, 1, 956.1172825193398},
                                         KnownCounts{"spanning_mixture", 323, 580, 2, 803.4379484493614}),
                         [](const auto& which) { return which.param.name; });

}  // namespace
}  // namespace merlane::test
