// What follows upon a results summary, when the run has changed since.
#include <gmock/gmock.h>

#include "program/analysis.h"

namespace merlane {
namespace {

using test::Analysis;
using test::Folder;
using test::Golden;
using ::testing::HasSubstr;

struct ReportedFitTest : ::testing::Test, Analysis {
  FrmSummary& summary = program.frmSummary;

  void SetUp() override {
    Ready("juveniles_only");
    windows.Enter("1", "More simulations improve the goodness-of-fit (GOF) estimate");
    windows.Yes("Choose among output options");
    ASSERT_TRUE(desk.Press(menu.cmdUserSummary));
    ASSERT_TRUE(desk.Press(program.frmMain.mnuMenu));
  }
  void ExpectRefused(const std::string& reason) {
    for (Button* follows : {&summary.cmdPlots, &summary.cmdBootstrap}) {
      windows.messages.clear();
      ASSERT_TRUE(desk.Press(*follows));
      EXPECT_EQ(windows.messages.size(), 1U);
      EXPECT_EQ(windows.LastText(), "What the summary reports is not the present fit: " + reason +
                                        ".\r\n\r\nClose the summary, and make it again for the "
                                        "present fit.");
    }
    EXPECT_TRUE(desk.Usable(summary.cmdSaveSummary)) << "it can still be saved";
  }
};

TEST_F(ReportedFitTest, PlotsAndBootstrapOfOtherAlgorithmDataAreRefusedInWords) {
  LoadDefaults();
  ExpectRefused("other parameters are free, parameter values have been changed");
}

TEST_F(ReportedFitTest, PlotsAndBootstrapBehindAnEditAreRefusedInWords) {
  state.algorithm.Value(17) = 0.05;
  ExpectRefused("parameter values have been changed");
}

TEST_F(ReportedFitTest, PlotsAndBootstrapOfOtherFreeParametersAreRefusedInWords) {
  state.algorithm.Step(17) = 0;
  ExpectRefused("other parameters are free");
}

TEST_F(ReportedFitTest, PlotsAndBootstrapUnderOtherPriorsAreRefusedInWords) {
  program.priors.PriorCode(17) = "N";
  program.priors.PriorFirstMean(17) = 0.05;
  program.priors.PriorFirstSD(17) = 0.01;
  state.flags.BayesOn = true;
  ExpectRefused("the priors have been changed");
}

TEST_F(ReportedFitTest, TablesThatAnotherCalculationHasWrittenAreNotPlotted) {
  Array1<double> elsewhere = state.algorithm.Value;
  elsewhere(17) = 0.05;
  program.objective.Call(elsewhere, 1);  // as covariances and profiles do, who put the values back
  ExpectRefused("other calculations have been made since");
}

TEST_F(ReportedFitTest, TheSameFitIsPlottedAndBootstrapped) {
  const Folder folder("reported_fit");
  desk.host.bootstrapFolder = folder / "";
  windows.No("Data and prediction plots");
  windows.No("Data and prediction plots");
  ASSERT_TRUE(desk.Press(summary.cmdPlots));
  windows.Enter("1", "Parametric bootstrap");
  windows.Enter("40", "Parametric bootstrap");
  windows.Yes("Choose minimization algorithm");
  for (int report = 1; report <= 2; ++report) {
    windows.No("Confirmation request");
    windows.Yes("Confirmation request");
  }
  ASSERT_TRUE(desk.Press(summary.cmdBootstrap));
  EXPECT_THAT(summary.rtbOut.text, HasSubstr("Results from execution of 1 parametric bootstraps:"));
  windows.No("Data and prediction plots");
  windows.No("Data and prediction plots");
  EXPECT_TRUE(desk.Press(summary.cmdPlots)) << "behind a bootstrap too";
}

}  // namespace
}  // namespace merlane
