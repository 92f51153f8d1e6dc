#include <gtest/gtest.h>

#include "control/frm_edit_vs.h"
#include "control/save_pane.h"
#include "model/survival_run.h"
#include "support/golden_covariances.h"
#include "uncertainty/covariance_dialogue.h"
#include "uncertainty/covariance_report.h"

namespace merlane {
namespace {

using test::GoldenCovariances;

/// The covariance command over the survival model behind a simplex, as its figures and texts were kept.
class GoldenCovariance : public ::testing::TestWithParam<GoldenCovariances> {
 protected:
  void SetUp() override {
    run_.OneFunctionCall();
    run_.Minimise();
    test::ScriptedWindows& windows = run_.host.windows;
    windows.No("Covariance calculator");
    windows.Reply(Answer::Ok, "Covariance calculator");
    windows.AtWait([this] { run_.desk.Press(algo_.cmdFinish); });
    for (const char* factor : {"1", "0.1", "0.01"}) windows.Enter(factor, "Covariance calculator");
    windows.Yes("Covariance calculator");
    windows.Enter("0.5", "Enter constant");
    windows.Reply(GetParam().covariances.OptimisticSE ? Answer::Yes : Answer::No, "Calculate optimistic SEs only?");
    ASSERT_TRUE(dialogue_.CalculateCovariances());
  }

  test::SurvivalRun run_{test::GoldenCaseNamed(GetParam().name)};
  LogFile log_;
  FrmMain main_{run_.desk};
  FrmAlgo algo_{run_.desk, run_.state, log_, main_};
  FrmEditVS editValues_{run_.desk, run_.state, algo_};
  Covariances calculated_;
  FrmCovData data_{run_.desk};
  FrmCovDisplay display_{run_.desk, run_.state, run_.objective, calculated_, main_, data_};
  CovarianceDialogue dialogue_{run_.desk, run_.state, run_.objective, calculated_, main_, algo_, data_, display_};
};
class GoldenReport : public GoldenCovariance {};

TEST_P(GoldenCovariance, FiguresAgree) {
  const Covariances& kept = GetParam().covariances;
  EXPECT_EQ(calculated_.CovF0, kept.CovF0) << "objective at the base point";
  ASSERT_EQ(calculated_.CovIndex, kept.CovIndex);
  EXPECT_EQ(calculated_.CovStep, kept.CovStep);
  for (int i = 1; i <= kept.CovBaseValue.Size(); ++i)
    EXPECT_EQ(calculated_.CovBaseValue(i), kept.CovBaseValue(i)) << "parameter " << i;
  for (int g = 1; g <= 3; ++g) {
    const CovarianceGrid& actual = calculated_.grid(g);
    const CovarianceGrid& expected = kept.grid(g);
    const std::string grid = "grid " + std::to_string(g) + ": ";
    EXPECT_EQ(actual.GridFactor, expected.GridFactor);
    EXPECT_EQ(actual.ending, expected.ending);
    EXPECT_EQ(actual.failedAt, expected.failedAt);
    EXPECT_EQ(actual.GridMean, expected.GridMean) << grid << "mean";
    EXPECT_EQ(actual.GridSD, expected.GridSD) << grid << "deviation";
    EXPECT_EQ(actual.determinant, expected.determinant) << grid << "determinant";
    EXPECT_EQ(actual.productOfVariances, expected.productOfVariances) << grid << "product";
    for (int a = 1; a <= kept.CovCount; ++a) {
      EXPECT_EQ(actual.standardErrors(a), expected.standardErrors(a)) << grid << "standard error";
      for (int b = 1; b <= kept.CovCount; ++b) {
        EXPECT_EQ(actual.covariances(a, b), expected.covariances(a, b)) << grid << a << b;
      }
    }
  }
}

TEST_P(GoldenCovariance, PaneToldTheSameCourse) { EXPECT_EQ(data_.rtbCovData.text, GetParam().pane); }

TEST_P(GoldenReport, AgreesByteForByte) {
  EXPECT_TRUE(run_.desk.Press(display_.cmdScreen));
  EXPECT_EQ(SavedUnder(GetParam().name + ".cov") + data_.rtbCovData.text, GetParam().report);
}

INSTANTIATE_TEST_SUITE_P(AfterSimplex, GoldenCovariance, ::testing::ValuesIn(test::KeptCovariances()),
                         [](const auto& kept) {
                           return kept.param.name + (kept.param.covariances.OptimisticSE ? "_optimistic" : "");
                         });
INSTANTIATE_TEST_SUITE_P(AfterSimplex, GoldenReport, ::testing::ValuesIn(test::KeptReports()),
                         [](const auto& kept) { return kept.param.name; });

}  // namespace
}  // namespace merlane
