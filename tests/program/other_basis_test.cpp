// Commands in orders in which a kept result belongs to another run than the present one.
#include <gmock/gmock.h>

#include "priors/set_prior.h"
#include "program/analysis.h"
#include "program/held_against_fresh.h"

namespace merlane {
namespace {

using test::Analysis;
using test::Golden;
using ::testing::Contains;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::Not;

struct OtherBasisTest : ::testing::Test, Analysis {
  /// The menu, while a window of results stays open.
  void CallForTheMenu() { ASSERT_TRUE(desk.Press(program.frmMain.mnuMenu)); }
  /// A fresh program that is brought to the present algorithm data and priors, and minimises.
  double FreshMinimum() const {
    Analysis fresh;
    fresh.Ready("juveniles_only");
    AlgorithmData& a = fresh.state.algorithm;
    const AlgorithmData& own = state.algorithm;
    a.Value = own.Value;
    a.Step = own.Step;
    a.Fuse = own.Fuse;
    fresh.program.priors = program.priors;
    fresh.state.flags.BayesOn = state.flags.BayesOn;
    fresh.state.flags.ObjectiveConstant = state.flags.ObjectiveConstant;
    fresh.Simplex();
    return fresh.program.fit.objective;
  }
};

TEST_F(OtherBasisTest, SimplexBehindACallThatRepairsIsTheOneThatAFreshProgramMakes) {
  Ready("juveniles_only");
  state.algorithm.Value(14) = 0.1;
  state.algorithm.Step(13) = 0.01;
  state.algorithm.Step(14) = 0.1 * 0.1;
  Simplex();
  EXPECT_EQ(state.algorithm.Step(21), 0);
  OneFunction();
  EXPECT_NE(state.algorithm.Step(21), 0);
  const double expected = FreshMinimum();
  Simplex();
  EXPECT_EQ(program.fit.objective, expected);
}

TEST_F(OtherBasisTest, SimplexUnderPriorsSetBehindItIsTheOneThatAFreshProgramMakes) {
  Ready("juveniles_only");
  OneFunction();
  Simplex();
  test::SetPrior(program.priors, 17, "N", 0.08, 0.002);
  state.flags.BayesOn = true;
  state.flags.ObjectiveConstant = 2;
  const double withPriors = FreshMinimum();
  Simplex();
  EXPECT_EQ(program.fit.objective, withPriors);
  state.flags.BayesOn = false;
  const double without = FreshMinimum();
  Simplex();
  EXPECT_EQ(program.fit.objective, without) << "switched off again";
}

TEST_F(OtherBasisTest, SimplexThatNothingHasComeBetweenGoesOnFromItsPolytope) {
  Ready("juveniles_only");
  OneFunction();
  Simplex();
  windows.events.clear();
  Simplex();
  EXPECT_THAT(windows.events, Not(Contains("status stbMain5 1 Building initial simplex...")));
}

TEST_F(OtherBasisTest, SummaryOfDataThatHaveJustBeenLoadedKnowsTheirFuses) {
  Ready("fuses");
  windows.Enter("1");
  windows.Yes("Choose among output options");
  ASSERT_TRUE(desk.Press(menu.cmdUserSummary));
  EXPECT_EQ(state.algorithm.Value(19), state.algorithm.Value(15));
  EXPECT_EQ(state.algorithm.Step(19), 0);
  EXPECT_THAT(program.frmSummary.rtbOut.text, HasSubstr("Parameter # 019 estimate: 0.0120000"));
}

TEST_F(OtherBasisTest, CovariancesOfALoadedFileBeforeAreNeitherOfferedNorTakenForSteps) {
  Ready("juveniles_only");
  OneFunction();
  Simplex();
  Covariances();
  CallForTheMenu();
  LoadAlg(Golden("juveniles_only.alg"));
  EXPECT_FALSE(program.covariances.AreOf(program.objective.Present()));
  windows.Reply(Answer::Cancel, "Covariance calculator");
  ASSERT_TRUE(desk.Press(menu.cmdCovariance)) << "without the question whether the last ones shall be seen";
}

TEST_F(OtherBasisTest, DisplayLeftOpenOverALargerModelShowsTheCovariancesThatItOffers) {
  Ready("juveniles_only");
  OneFunction();
  Simplex();
  Covariances();
  CallForTheMenu();
  windows.No("Initialize");
  Initialize({.path = Golden("attributes.dat"), .covariates = "3"});
  ASSERT_TRUE(desk.Press(program.frmCovDisplay.cmdScreen));
  EXPECT_THAT(program.frmCovData.rtbCovData.text, HasSubstr(" 034) "));
  EXPECT_THAT(program.frmCovData.rtbCovData.text, Not(HasSubstr(" 035) ")));
  EXPECT_THAT(program.frmCovDisplay.lblFit.text, HasSubstr("of juveniles_only.alg"));
  EXPECT_THAT(program.frmCovDisplay.lblFit.text, HasSubstr("other data have been read"));
}

TEST_F(OtherBasisTest, CovariancesUnderAPriorAreNotAveragedForARowWithoutItWithoutAQuestion) {
  const test::Folder folder("other_priors");
  const auto save = [&](const std::string& name) {
    windows.File(folder / (name + ".alg"));
    ASSERT_TRUE(desk.Press(menu.cmdSaveAlg));
    Covariances();
    ASSERT_TRUE(desk.Press(program.frmCovDisplay.cmdScreen));
    windows.File(folder / (name + ".cov"));
    ASSERT_TRUE(desk.Press(program.frmCovDisplay.cmdFile));
    ASSERT_TRUE(desk.Press(program.frmCovDisplay.cmdFinish));
  };
  Ready("juveniles_only");
  OneFunction();
  Simplex();
  // At its mean a prior leaves the objective as it is, so that nothing in the file tells of it.
  test::SetPrior(program.priors, 17, "N", state.algorithm.Value(17), 0.0005);
  state.flags.BayesOn = true;
  state.flags.ObjectiveConstant = 2;
  save("m1");
  state.flags.BayesOn = false;
  state.algorithm.Step(18) = 0;
  save("m2");

  FrmRank& rank = program.frmRank;
  ASSERT_TRUE(desk.Press(menu.cmdRank));
  for (const char* model : {"m1.alg", "m2.alg"}) {
    windows.File(folder / model);
    ASSERT_TRUE(desk.Press(rank.cmdLoadAlg));
    if (rank.Models().ModelCount() == 0) windows.Enter("0.5", "Enter constant");
    ASSERT_TRUE(desk.Press(rank.cmdAICc));
  }
  ASSERT_TRUE(desk.Press(rank.cmdRank));
  windows.No("Covariances of another model");
  desk.Press(rank.cmdAverage);
  EXPECT_EQ(windows.LastText(),
            "m1.cov is not of m1.alg as it is ranked: it was calculated with priors, the model is ranked without\r\n"
            "\r\nAverage with them nevertheless?");
  EXPECT_FALSE(rank.AveragedFlag);
}

TEST_F(OtherBasisTest, AFunctionCallElsewhereIsNoEndOfTheMinimisationBefore) {
  Ready("juveniles_only");
  OneFunction();
  Simplex();
  OneFunction();
  EXPECT_EQ(program.fit.minimisation->minimiser, "simplex") << "at its estimates";
  LoadAlg(Golden("juveniles_only.alg"));
  OneFunction();
  EXPECT_FALSE(program.fit.minimisation);
}

TEST_F(OtherBasisTest, AFunctionCallThatRepairsTheEstimatesOfAMinimisationIsNoEndOfIt) {
  Ready("juveniles_only");
  state.algorithm.Value(14) = 0.1;
  state.algorithm.Step(13) = state.algorithm.Step(14) = 0.01;
  Simplex();
  EXPECT_EQ(program.fit.minimisation->minimiser, "simplex");
  OneFunction();
  ASSERT_NE(state.algorithm.Step(21), 0) << "repaired";
  EXPECT_FALSE(program.fit.minimisation);
}

TEST_F(OtherBasisTest, FiguresOfAFitStayThoseOfItsMoment) {
  Ready("juveniles_only");
  OneFunction();
  Simplex();
  const Fit before = program.fit;
  EXPECT_EQ(before.freeParameters, 2);
  EXPECT_GT(before.juvenilesAtRisk, 0);
  state.algorithm.Step.Fill(0);
  state.free.NFREE = 0;
  program.model.Evaluated().JuvsAtRisk = 0;
  EXPECT_EQ(program.fit.freeParameters, 2);
  EXPECT_EQ(program.fit.juvenilesAtRisk, before.juvenilesAtRisk);
}

TEST_F(OtherBasisTest, PriorsAreReviewedAtWhatTheModelMakesOfAMirroredEstimate) {
  Ready("juveniles_only");
  test::SetPrior(program.priors, 17, "N", -0.04, 0.01);
  state.flags.BayesOn = true;
  state.flags.ObjectiveConstant = 0.5;
  OneFunction();
  const std::string atTheEstimate = program.frmReviewPriors.rtbReview.text;
  const double prior = program.priors.PriorTotal;
  state.algorithm.Value(17) = -state.algorithm.Value(17);  // as a vertex of the simplex may be
  program.frmSimplex.reviewPriors();
  EXPECT_EQ(program.frmReviewPriors.rtbReview.text, atTheEstimate);
  EXPECT_EQ(program.priors.PriorTotal, prior);
}

TEST_F(OtherBasisTest, PriorsOfAGroupAreReviewedAtTheValueOfItsFirst) {
  Ready("fuses");
  test::SetPrior(program.priors, 21, "N", 0.04, 0.01);
  state.flags.BayesOn = true;
  state.flags.ObjectiveConstant = 0.5;
  OneFunction();
  const std::string atTheEstimate = program.frmReviewPriors.rtbReview.text;
  ASSERT_NE(state.algorithm.Value(17), 0.02);
  state.algorithm.Value(21) = 0.02;  // as a file may have it, until the next call
  program.frmSimplex.reviewPriors();
  EXPECT_EQ(program.frmReviewPriors.rtbReview.text, atTheEstimate);
}

/// Windows of results that stay open say which fit they show, and what has changed since, whatever command changed it.
struct LeftOpen : OtherBasisTest {
  LeftOpen() {
    Ready("juveniles_only");
    test::SetPrior(program.priors, 17, "N", 0.05, 0.01);
    state.flags.BayesOn = true;
    state.flags.ObjectiveConstant = 0.5;
  }
  void EditValue(const std::string& value) {
    CallForTheMenu();
    ASSERT_TRUE(desk.Press(menu.cmdEditAlg));
    ASSERT_TRUE(desk.DoubleClick(program.frmAlgo.grdVS, 17, 1));
    ASSERT_TRUE(desk.Enter(program.frmAlgo.grdVS, 17, 1, value));
    ASSERT_TRUE(desk.Press(program.frmAlgo.cmdFinish));
  }
  void Evaluate(Button& which) {
    windows.AtWait([this] { desk.Press(program.frmAlgo.cmdFinish); });
    windows.AtWait([this] { desk.Press(program.frmDistPlot.cmdDone); });
    ASSERT_TRUE(desk.Press(menu.cmdParEstimate));
    ASSERT_TRUE(desk.Press(which));
  }
};

TEST_F(LeftOpen, TheReviewOfPriorsSaysOfWhichFitItIs) {
  OneFunction();
  const Label& fit = program.frmReviewPriors.lblFit;
  EXPECT_EQ(fit.text, "Priors at the estimates of juveniles_only.alg.");
  const double value = state.algorithm.Value(17);
  EditValue("0.06");
  EXPECT_EQ(fit.text,
            "Priors at the estimates of juveniles_only.alg. Since then parameter values have been changed, step sizes "
            "have been changed.");
  EditValue(std::to_string(value));
  EXPECT_EQ(fit.text, "Priors at the estimates of juveniles_only.alg.") << "these again";
  ASSERT_TRUE(desk.Press(menu.cmdBayesian));
  ASSERT_TRUE(desk.Press(program.frmLoadPriors.cmdUniform));
  EXPECT_EQ(fit.text, "Priors at the estimates of juveniles_only.alg. Since then the priors have been changed.");
}

TEST_F(LeftOpen, AFunctionCallSaysOfWhichFitItIs) {
  ASSERT_TRUE(desk.Press(menu.cmdOneFunction));
  const Label& fit = program.frmOneFunction.lblFit;
  EXPECT_EQ(fit.text, "Function call of juveniles_only.alg.");
  windows.No("Initialize");
  CallForTheMenu();
  Initialize({.path = Golden("attributes.dat"), .covariates = "3"});
  EXPECT_THAT(fit.text, HasSubstr("Function call of juveniles_only.alg. Since then other data have been read"));
}

TEST_F(LeftOpen, AFunctionCallOfEditedValuesIsNotThatOfTheFile) {
  state.algorithm.Value(17) *= 1.001;
  ASSERT_TRUE(desk.Press(menu.cmdOneFunction));
  EXPECT_EQ(program.frmOneFunction.lblFit.text, "Function call of juveniles_only.alg (changed since).");
}

TEST_F(LeftOpen, AMinimumSaysOfWhichFitItIs) {
  OneFunction();
  Simplex();
  const Label& fit = program.frmSimplex.lblFit;
  EXPECT_EQ(fit.text, "Simplex minimization of juveniles_only.alg.");
  EXPECT_EQ(program.frmReviewPriors.lblFit.text, "Priors at the estimates of juveniles_only.alg.");
  ASSERT_TRUE(desk.Press(menu.cmdRank));
  windows.File(Golden("juveniles_only.alg"), "Open algorithm data file");
  ASSERT_TRUE(desk.Press(program.frmRank.cmdLoadAlg));
  EXPECT_EQ(fit.text, "Simplex minimization of juveniles_only.alg. Since then parameter values have been changed.");
}

TEST_F(LeftOpen, ASummarySaysOfWhichFitItIs) {
  windows.Enter("1", "More simulations improve the goodness-of-fit (GOF) estimate");
  windows.Yes("Choose among output options");
  ASSERT_TRUE(desk.Press(menu.cmdUserSummary));
  const Label& fit = program.frmSummary.lblFit;
  EXPECT_EQ(fit.text, "Results summary of juveniles_only.alg.");
  EditValue("0.06");
  EXPECT_THAT(fit.text, HasSubstr("Results summary of juveniles_only.alg. Since then parameter values have been"));
}

TEST_F(LeftOpen, TheTableOfAProfileSaysOfWhichFitItIs) {
  windows.Yes("ML parameter estimate evaluation");
  windows.Enter("0.5", "Enter constant");
  windows.Enter("17", "ML parameter estimate evaluation");
  windows.Enter("3", "ML parameter estimate evaluation");
  windows.Yes("ML parameter estimate evaluation");
  Evaluate(program.frmParEvals.cmdML);
  const Label& fit = program.frmMaxLike.lblFit;
  EXPECT_EQ(fit.text,
            "Likelihood profile of parameter 17 of juveniles_only.alg. It has left parameter 18 at its last point, "
            "which is no fit.");
  EditValue("0.06");
  EXPECT_THAT(fit.text, HasSubstr("of juveniles_only.alg. Since then parameter values have been changed"));
}

TEST_F(LeftOpen, TheTableOfAPosteriorSaysOfWhichFitItIs) {
  windows.Yes("Bayesian parameter estimate evaluation");
  windows.Enter("0.5", "Enter constant");
  windows.Enter("17", "Bayesian parameter estimate evaluation");
  windows.Enter("3", "Bayesian parameter estimate evaluation");
  windows.Enter("3", "Bayesian parameter estimate evaluation");
  windows.No("Bivariate plot");
  Evaluate(program.frmParEvals.cmdBP);
  const Label& fit = program.frmBayesian.lblFit;
  EXPECT_EQ(fit.text, "Posterior distribution of parameter 17 of juveniles_only.alg.");
  EditValue("0.06");
  EXPECT_THAT(fit.text, HasSubstr("Since then parameter values have been changed"));
}

TEST_F(LeftOpen, CovariancesFromWhichStepsWereTakenSaySoAndAreThoseOfAFreshProgram) {
  Covariances();
  windows.Yes("Bayesian parameter estimate evaluation");
  windows.Enter("0.5", "Enter constant");
  for (const char* answer : {"18", "5", "3", "1"}) windows.Enter(answer, "Bayesian parameter estimate evaluation");
  windows.No("Bivariate plot");
  CallForTheMenu();
  Evaluate(program.frmParEvals.cmdBP);
  EXPECT_THAT(program.frmCovDisplay.lblFit.text, EndsWith(". Since then step sizes have been changed."));
  test::Tally tally;
  test::HeldAgainstFresh(program, true, tally).Behind({});
  EXPECT_EQ(tally.compared["covariances from which steps were taken"], 1);
}

TEST_F(LeftOpen, TheProfileOfAPriorSaysOfWhichPriorsItIs) {
  ASSERT_TRUE(desk.Press(menu.cmdBayesian));
  ASSERT_TRUE(desk.Press(program.frmLoadPriors.cmdSet));
  windows.Enter("17", "Evaluation of prior distributions");
  windows.Enter("11", "Evaluation of prior distributions");
  ASSERT_TRUE(desk.Press(program.frmSetPriors.mnuProfile));
  EXPECT_EQ(program.frmPriorDists.lblFit.text, "Prior of parameter 17.");
  ASSERT_TRUE(desk.SelectRow(program.frmSetPriors.grdPriors, 17));
  windows.Enter("0.06");
  windows.Enter("0.01");
  ASSERT_TRUE(desk.Press(program.frmSetPriors.mnuN));
  EXPECT_EQ(program.frmPriorDists.lblFit.text, "Prior of parameter 17. Since then the priors have been changed.");
  EXPECT_EQ(program.frmDistPlot.lblFit.text, program.frmPriorDists.lblFit.text);
}

TEST_F(LeftOpen, CovariancesSayAtEachMomentOfWhichFitTheyAre) {
  OneFunction();
  Covariances();
  EXPECT_THAT(program.frmCovDisplay.lblFit.text, Not(HasSubstr("Since then")));
  EditValue("0.06");
  EXPECT_THAT(program.frmCovDisplay.lblFit.text, HasSubstr("Since then parameter values have been changed"))
      << "without a press of its own";
}

TEST_F(OtherBasisTest, TablesAtTheFitAreThoseOfItsEstimatesWherePriorsCount) {
  Ready("juveniles_only");
  test::SetPrior(program.priors, 17, "N", 0.02, 0.002);
  state.flags.BayesOn = true;
  state.flags.ObjectiveConstant = 0.5;
  OneFunction();
  Simplex();
  const std::vector<double> lowestDeviance = program.model.Evaluated().best.survival.EVisit;
  const std::vector<double> atFit = program.TablesAtFit().survival.EVisit;
  EXPECT_EQ(program.model.Evaluated().best.survival.EVisit, lowestDeviance) << "whoever looks changes nothing";
  OneFunction();
  EXPECT_EQ(atFit, program.model.Evaluated().best.survival.EVisit);
  EXPECT_NE(atFit, lowestDeviance);
}

TEST_F(OtherBasisTest, TablesAtTheFitAreThoseOfItsEstimatesWhereTheSearchWentOnBeyondItsLimit) {
  Ready("juveniles_only");
  state.algorithm.MaxCalls = 40;
  OneFunction();
  windows.Yes("Just checking");
  windows.Yes("Simplex minimization");
  ASSERT_TRUE(desk.Press(menu.cmdSimplex));
  const std::vector<double> atFit = program.TablesAtFit().survival.EVisit;
  OneFunction();
  EXPECT_EQ(atFit, program.model.Evaluated().best.survival.EVisit);
}

TEST_F(OtherBasisTest, PriorOfAFitIsThatOfItsEstimatesAndNotOfTheLastTrial) {
  Ready("juveniles_only");
  test::SetPrior(program.priors, 17, "N", 0.08, 0.002);
  state.flags.BayesOn = true;
  state.flags.ObjectiveConstant = 2;
  state.algorithm.MaxCalls = 20;
  windows.Yes("Just checking");
  windows.No("Simplex minimization");
  ASSERT_TRUE(desk.Press(menu.cmdSimplex));
  EXPECT_EQ(program.fit.prior, program.objective.priorTerm(state.algorithm.Value));
}

TEST_F(OtherBasisTest, AlgorithmDataOfTheModelBeforeAreNamedNoLonger) {
  Ready("juveniles_only");
  EXPECT_EQ(program.frmMain.stbMain1.Get(1), "Algorithm file: juveniles_only");
  windows.No("Initialize");
  Initialize({.path = Golden("eggs_only.dat")});
  EXPECT_EQ(program.frmMain.stbMain1.Get(1), "Algorithm file: ");
}

TEST_F(OtherBasisTest, ASummaryLeftOpenIsProposedUnderItsOwnName) {
  Ready("juveniles_only");
  windows.Enter("1", "More simulations improve the goodness-of-fit (GOF) estimate");
  windows.Yes("Choose among output options");
  ASSERT_TRUE(desk.Press(menu.cmdUserSummary));
  CallForTheMenu();
  LoadAlg(Golden("eggs_only.alg"));
  windows.CancelFile("Save results summary in (*.tvo)...");
  ASSERT_TRUE(desk.Press(program.frmSummary.cmdSaveSummary));
  EXPECT_THAT(windows.files.back().startName, ::testing::EndsWith("juveniles_only.tvo"));
}

TEST_F(OtherBasisTest, ACallThatRepairsCountsTheParametersThatAreFreeNow) {
  Ready("juveniles_only");
  state.algorithm.Step(22) = 0.1;  // of a mortality that the hypothesis has switched off
  OneFunction();
  EXPECT_EQ(state.algorithm.Step(22), 0);
  EXPECT_EQ(program.fit.freeParameters, 2);
}

}  // namespace
}  // namespace merlane
