#include "minimise/frm_marquardt.h"

#include <gmock/gmock.h>

#include "minimise/forms_fixture.h"

namespace merlane::test {
namespace {

using testing::Contains;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

class FrmMarquardtTest : public MinimiserForms {
 protected:
  /// Answers the choice of derivatives.
  void Choose(Answer kind, bool show) {
    windows().Reply(kind, "Marquardt minimization");
    windows().Reply(show ? Answer::Yes : Answer::No, "Marquardt minimization");
    frmMarquardt->ChooseDerivatives();
    windows().messages.clear();
    windows().statuses.clear();
  }
  void Minimise() {
    Command([this] { result = frmMarquardt->Minimise(); });
  }
  /// A function whose trials are all as bad as can be, once two steps were accepted: 25 are rejected. `axial` is what
  /// the verification finds.
  void OpenFrustrating(double axial = 50) {
    Open({1.0}, [this, axial](Array1<double>& x) {
      const std::int32_t code = run->calls.back().NF;
      if (code == 1) return run->calls.size() == 1 ? 10.0 : axial;
      const double base = run->state.algorithm.Value(1);
      if (x(1) == base + base * 0.001 || x(1) == base - base * 0.001) return best_ + (x(1) > base ? 0.5 : 0.4);
      return ++trials_ <= 2 ? best_ -= 1 : 50.0;
    });
    run->state.algorithm.Tolerance = 1e-3;
  }
  /// The turn at which the first iteration's Hessian calls are under way.
  static constexpr int DuringFirstDerivatives = 3;

  MarquardtResult result;

 private:
  double best_ = 10;
  int trials_ = 0;
};

TEST_F(FrmMarquardtTest, LooksAsItIsDescribed) {
  Open({0, 0}, Quadratic);
  EXPECT_EQ(frmMarquardt->name, "frmMarquardt");
  EXPECT_EQ(frmMarquardt->title,
            "Marquardt minimization (uses derivatives; works best when model behaviour is close-to-linear; progress is "
            "insensitive to (non-zero) step sizes)");
  EXPECT_EQ(frmMarquardt->cmdIteration.text, "&Next iteration");
  EXPECT_EQ(frmMarquardt->cmdContinue.text, "&Continue");
  EXPECT_EQ(frmMarquardt->cmdStop.text, "&Interrupt");
  EXPECT_EQ(frmMarquardt->cmdIteration.toolTip, "Click to pause minimization after each iteration");
  EXPECT_EQ(frmMarquardt->cmdContinue.toolTip, "Click to continue minimizing without pausing after each iteration");
  EXPECT_EQ(frmMarquardt->cmdStop.toolTip, "Click here to interrupt the current minimization");
  EXPECT_FALSE(frmMarquardt->cmdIteration.visible);
  EXPECT_FALSE(frmMarquardt->cmdContinue.visible);
  EXPECT_TRUE(frmMarquardt->rtbMarquardt.fixedPitch);
}

TEST_F(FrmMarquardtTest, TheChoiceOfDerivativesAsksThreeTimes) {
  Open({0, 0}, Quadratic);
  windows().No("Marquardt minimization");
  windows().Yes("Marquardt minimization");
  EXPECT_EQ(frmMarquardt->ChooseDerivatives(), DerivativeMode::Numerical);
  const std::vector<Message>& boxes = windows().messages;
  ASSERT_EQ(boxes.size(), 3u);
  EXPECT_EQ(boxes[0].style, 35);
  EXPECT_EQ(boxes[0].text,
            "Note: You must provide derivatives for calculating gradients and building the Hessian matrix.\r\n"
            "Numerical derivatives are provided automatically, whereas you must have provided analytical\r\n"
            "derivatives in your model code (i.e., in that section of Sub MODEL() accessed when NF=-2).\r\n"
            "\r\n"
            "WARNING: Analytical derivatives will fail if Bayesian prior probabilities contribute to the likelihood "
            "function.\r\n"
            "\r\n"
            "DO NOT USE ANALYTICAL DERIVATIVES IN CONJUNCTION WITH BAYESIAN PRIOR DISTRIBUTIONS!\r\n"
            "            THE PRIOR DISTRIBUTION FOR ALL PARAMETERS MUST BE UNIFORM-UNBOUNDED!\r\n"
            "\r\n"
            "Choose 'Yes' if you have provided ANALYTICAL derivatives; else 'No' to calculate NUMERICAL derivatives");
  EXPECT_EQ(boxes[1].style, 0);
  EXPECT_EQ(boxes[1].text, "You have chosen NUMERICAL derivatives - it's like choosing Pepsi");
  EXPECT_EQ(boxes[2].style, 36);
  EXPECT_EQ(
      boxes[2].text,
      "Do you want to see the partial derivatives of the likelihood function wrt the parameters at each "
      "iteration?\r\n"
      "If 'Yes', they will be displayed; then later choose 'Next iteration' to see the derivatives after the next "
      "iteration,\r\n"
      "           or 'Continue' to skip over the derivatives output.\r\n"
      "If 'No', then partial derivatives will not be displayed.\r\n"
      "\r\n"
      "Note: This is recommended and practical only for models with fewer than about a dozen parameters!\r\n"
      "           It is intended for use mainly during model building to verify the analytical derivative "
      "formulations.");
}

TEST_F(FrmMarquardtTest, AnalyticalDerivativesAreLikeCoke) {
  Open({0, 0}, Quadratic);
  windows().Yes("Marquardt minimization");
  windows().No("Marquardt minimization");
  EXPECT_EQ(frmMarquardt->ChooseDerivatives(), DerivativeMode::Analytical);
  EXPECT_EQ(windows().messages[1].text, "You have chosen ANALYTICAL derivatives - it's like choosing Coke");
}

TEST_F(FrmMarquardtTest, ACancelledChoiceAsksNothingMore) {
  Open({0, 0}, Quadratic);
  windows().Reply(Answer::Cancel, "Marquardt minimization");
  EXPECT_EQ(frmMarquardt->ChooseDerivatives(), DerivativeMode::Cancelled);
  EXPECT_EQ(windows().messages.size(), 1u);
}

TEST_F(FrmMarquardtTest, AMinimumIsToldAndReported) {
  Open({0, 0}, Quadratic);
  OpenLog();
  Choose(Answer::No, false);
  Minimise();
  EXPECT_EQ(result.ending, MarquardtEnding::Minimum);
  ASSERT_EQ(windows().messages.size(), 1u);
  EXPECT_EQ(windows().messages[0].title, "Marquardt minimum");
  EXPECT_EQ(windows().messages[0].text, "Minimum found using Marquardt!");
  EXPECT_EQ(windows().messages[0].style, 64);
  EXPECT_EQ(frmMarquardt->rtbMarquardt.text,
            "Minimum of 5.000000 found at these 2 adjusted parameter values:\n"
            "\n"
            "    001)  2.9999997E+00  ~~  \n"
            "    002) -9.9999990E-01  ~~  \n"
            "\n"
            "This result required 2 iterations and 15 function calls\n");
  EXPECT_EQ(frmMarquardt->cmdStop.text, "&Interrupt this minimization");
  EXPECT_FALSE(frmMarquardt->cmdStop.enabled);
  ExpectPanelsEmpty();
  const std::string text = LogText();
  EXPECT_THAT(text,
              StartsWith("Note: 1 iterations and 8 function calls\r\n\r\nCurrent minimum found at these 2 adjusted "
                         "parameter values: \r\n\r\n    001) "));
  EXPECT_THAT(text, testing::EndsWith("\r\n\r\n\r\nafter 2 iterations and 15 function calls\r\n\r\n"));
}

TEST_F(FrmMarquardtTest, AnObjectiveThatIsNotThatOfOneCallIsToldWhereARunIsStopped) {
  Open({-1.2, 1}, Rosenbrock);
  run->state.algorithm.Tolerance = 1e-10;
  run->state.algorithm.MaxCalls = 1;
  frmMarquardt->carriedOver = [](const Array1<double>&) { return CarriedOver{7.5, "      in the model's words\n"}; };
  Choose(Answer::No, false);
  Minimise();
  ASSERT_EQ(result.ending, MarquardtEnding::Stopped);
  const std::string note = "one function call at these values gives 7.500000\n      in the model's words\n";
  EXPECT_THAT(frmMarquardt->rtbMarquardt.text, HasSubstr(note));
  EXPECT_THAT(windows().messages.back().details, HasSubstr(note));
}

TEST_F(FrmMarquardtTest, AMinimumThatIsAPenaltyIsToldAsOne) {
  const std::string note =
      "Note: 4.0000000E+00 of this minimum is a penalty: these values lie outside what the model can do\n";
  Open({0, 0}, Quadratic);
  OpenLog();
  frmMarquardt->bestPenalty = [] { return 4.0; };  // of 5
  Choose(Answer::No, false);
  Minimise();
  EXPECT_EQ(windows().messages[0].text, "Minimum found using Marquardt!");
  EXPECT_EQ(windows().messages[0].details, note);
  EXPECT_THAT(frmMarquardt->rtbMarquardt.text, testing::EndsWith(note));
  EXPECT_THAT(LogText(), testing::EndsWith("outside what the model can do\r\n"));
}

TEST_F(FrmMarquardtTest, AFileFrequencyOfZeroGivesNoLog) {
  Open({0, 0}, Quadratic);
  OpenLog();
  run->state.algorithm.FileFreq = 0;
  Choose(Answer::No, false);
  Minimise();
  EXPECT_EQ(LogText(), "");
}

TEST_F(FrmMarquardtTest, EachRunBeginsWithAnEmptyPaneAndItsButtonDisabled) {
  Open({0, 0}, Quadratic);
  Choose(Answer::No, false);
  run->state.algorithm.MaxCalls = 1;
  Minimise();
  EXPECT_TRUE(frmMarquardt->cmdStop.enabled);
  windows().AtTurn(1, [&] {
    EXPECT_EQ(frmMarquardt->rtbMarquardt.text, "");
    EXPECT_FALSE(frmMarquardt->cmdStop.enabled);
    EXPECT_EQ(frmMain.stbMain5.Get(1), "Initial function call, one moment please...");
    frmMain.stbMain5.Set(2, "something");
  });
  windows().AtTurn(2, [&] { EXPECT_EQ(frmMain.stbMain5.Get(2), ""); });
  Minimise();
}

TEST_F(FrmMarquardtTest, AnInterruptLeftOverFromARunBeforeIsForgotten) {
  Open({0, 0}, Quadratic);
  Choose(Answer::No, false);
  run->state.algorithm.MaxCalls = 1;
  Minimise();
  EXPECT_TRUE(desk.Press(frmMarquardt->cmdStop)) << "the run was stopped, which offers its button again";
  run->state.algorithm.MaxCalls = 9999;
  windows().messages.clear();
  Minimise();
  EXPECT_EQ(windows().Titles(), std::vector<std::string>{"Marquardt minimum"});
}

TEST_F(FrmMarquardtTest, StatusPanelsFollowTheRun) {
  Open({0, 0}, Quadratic);
  Choose(Answer::No, false);
  std::size_t statusesAtLastTurn = 0;
  for (int turn = 1; turn <= 1000; ++turn)
    windows().AtTurn(turn, [&] { statusesAtLastTurn = windows().statuses.size(); });
  Minimise();
  EXPECT_EQ(statusesAtLastTurn, windows().statuses.size()) << "a turn ends the run, so that the empty panels are seen";
  const std::vector<std::string> first = Panel(1);
  ASSERT_GE(first.size(), 9u);
  EXPECT_EQ(first[0], "Initial function call, one moment please...");
  EXPECT_EQ(first[1], "");
  EXPECT_EQ(first[2], "Hessian function call 1 of 6");
  EXPECT_EQ(first[7], "Hessian function call 6 of 6");
  EXPECT_THAT(first, Contains("Verifying convergence by performing an axial search"));
  const std::vector<std::string> third = Panel(3);
  EXPECT_EQ(third[0], "Working to improve estimates. Objective function for trial # 0, is :  1.80000E+01");
  EXPECT_EQ(third[1], "Calculating derivatives, one moment please...");
  EXPECT_THAT(third, Contains("Axial function call 4 of 4"));
}

TEST_F(FrmMarquardtTest, TheReportComesAtEachAcceptedStepWhateverTheFrequency) {
  Open({0, 0}, Quadratic);
  run->state.algorithm.TerminalFreq = 0;
  Choose(Answer::No, false);
  std::vector<std::string> seen;
  for (int turn = 1; turn <= 40; ++turn)
    windows().AtTurn(turn, [&] { seen.push_back(frmMarquardt->rtbMarquardt.text); });
  Minimise();
  EXPECT_THAT(seen, Contains(StartsWith("\nNote: 1 iterations and 8 function calls\n")));
  EXPECT_THAT(seen, Contains(StartsWith("\nNote: 2 iterations and 15 function calls\n")));
}

TEST_F(FrmMarquardtTest, DerivativesAreShownAndThePauseLastsUntilAButtonIsPressed) {
  Open({0, 0}, Quadratic);
  Choose(Answer::No, true);
  windows().AtWait([&] {
    EXPECT_THAT(frmMarquardt->rtbMarquardt.text, StartsWith("\nNote: 1 iterations and 8 function calls\n"));
    EXPECT_THAT(frmMarquardt->rtbMarquardt.text,
                HasSubstr("\n\n1st & 2nd partial derivatives of the objective function wrt to the previous parameter "
                          "estimates:\n\nNumerical 1st derivative wrt Parameter      001) -6.00000E+00\n"
                          "Numerical 2nd derivative wrt Parameters 001,001)  2.00000E+00\n"));
    EXPECT_TRUE(frmMarquardt->cmdIteration.visible);
    EXPECT_TRUE(frmMarquardt->cmdContinue.enabled);
    EXPECT_TRUE(desk.Press(frmMarquardt->cmdIteration));
  });
  windows().AtWait([&] {
    EXPECT_THAT(frmMarquardt->rtbMarquardt.text, StartsWith("\nNote: 2 iterations and 15 function calls\n"));
    EXPECT_TRUE(desk.Press(frmMarquardt->cmdIteration));
  });
  Minimise();
  EXPECT_EQ(result.ending, MarquardtEnding::Minimum);
  EXPECT_EQ(windows().waits, 2) << "the final report does not wait";
  EXPECT_THAT(frmMarquardt->rtbMarquardt.text, HasSubstr("1st & 2nd partial derivatives"));
  EXPECT_THAT(Panel(1), Contains("Please be patient while derivative output is collated"));

  // Shown once, not again.
  run->Pack();
  Minimise();
  EXPECT_EQ(windows().waits, 2);
  EXPECT_THAT(frmMarquardt->rtbMarquardt.text, Not(HasSubstr("partial derivatives")));
}

TEST_F(FrmMarquardtTest, ContinueSkipsOverTheDerivativesToCome) {
  Open({0, 0}, Quadratic);
  Choose(Answer::No, true);
  windows().AtWait([&] { desk.Press(frmMarquardt->cmdContinue); });
  Minimise();
  EXPECT_EQ(windows().waits, 1);
  EXPECT_THAT(frmMarquardt->rtbMarquardt.text, Not(HasSubstr("partial derivatives")));
}

TEST_F(FrmMarquardtTest, AnInterruptEndsAPauseToo) {
  Open({0, 0}, Quadratic);
  Choose(Answer::No, true);
  windows().AtWait([&] { desk.Press(frmMarquardt->cmdStop); });
  windows().No("Marquardt interrupt");
  Minimise();
  EXPECT_EQ(windows().waits, 1);
  EXPECT_EQ(result.ending, MarquardtEnding::Minimum);
}

TEST_F(FrmMarquardtTest, ClosingTheWindowEndsAPauseAndTheRunGoesOnInItsWindow) {
  Open({0, 0}, Quadratic);
  Choose(Answer::No, true);
  windows().AtWait([&] { EXPECT_TRUE(desk.Close(*frmMarquardt)); });
  Minimise();
  EXPECT_EQ(result.ending, MarquardtEnding::Minimum);
  EXPECT_EQ(windows().waits, 1);
  EXPECT_TRUE(frmMarquardt->Visible());
  EXPECT_TRUE(desk.Close(*frmMarquardt)) << "behind the run";
  EXPECT_FALSE(frmMarquardt->Loaded());
}

TEST_F(FrmMarquardtTest, ThePauseAloneOffersToEndIt) {
  Open({-1.2, 1}, Rosenbrock);
  Choose(Answer::No, true);
  const auto offered = [this] { return frmMarquardt->cmdIteration.enabled || frmMarquardt->cmdContinue.enabled; };
  windows().AtWait([&] {
    EXPECT_TRUE(offered());
    windows().AtTurn(1, [&] { EXPECT_FALSE(offered()) << "derivatives are computed"; });
    EXPECT_TRUE(desk.Press(frmMarquardt->cmdContinue));
  });
  Minimise();
  EXPECT_EQ(windows().waits, 1);
  EXPECT_FALSE(offered());
}

TEST_F(FrmMarquardtTest, AnInterruptAnsweredYesStopsAtTheNextAcceptedStep) {
  Open({-1.2, 1}, Rosenbrock);
  run->state.algorithm.Tolerance = 1e-10;
  Choose(Answer::No, false);
  windows().AtTurn(DuringFirstDerivatives, [&] {
    EXPECT_TRUE(desk.Press(frmMarquardt->cmdStop));
    EXPECT_FALSE(frmMarquardt->cmdStop.enabled);
    EXPECT_EQ(frmMain.stbMain5.Get(1), "Interrupt pending...");
  });
  windows().Yes("Marquardt interrupt");
  Minimise();
  EXPECT_EQ(result.ending, MarquardtEnding::Stopped);
  EXPECT_EQ(result.Iterations, 1);
  EXPECT_THAT(Panel(1), Contains("Interrupt will occur once this iteration is complete"));
  ASSERT_EQ(windows().messages.size(), 2u);
  EXPECT_EQ(windows().messages[0].text, "Interrupt received. Do you want to quit minimizing?");
  EXPECT_EQ(windows().messages[0].style, 36);
  EXPECT_EQ(windows().messages[1].title, "Marquart minimization stopped");
  EXPECT_EQ(windows().messages[1].text, "Maximum number of iterations reached or an interrupt was received");
  EXPECT_EQ(windows().messages[1].style, 64);
  EXPECT_TRUE(frmMarquardt->cmdStop.enabled);
  EXPECT_TRUE(frmMarquardt->Visible());
  ExpectPanelsEmpty();
}

TEST_F(FrmMarquardtTest, AnInterruptAnsweredNoLetsTheRunGoOn) {
  Open({-1.2, 1}, Rosenbrock);
  run->state.algorithm.Tolerance = 1e-6;
  Choose(Answer::No, false);
  windows().AtTurn(DuringFirstDerivatives, [&] {
    desk.Press(frmMarquardt->cmdStop);
    frmMain.stbMain5.Set(2, "something");
  });
  bool offeredAgain = false;
  for (int turn = DuringFirstDerivatives + 1; turn <= 1000; ++turn)
    windows().AtTurn(turn, [&] {
      if (windows().messages.empty()) return;
      offeredAgain = offeredAgain || frmMarquardt->cmdStop.enabled;
      EXPECT_EQ(frmMain.stbMain5.Get(2), "");
    });
  windows().No("Marquardt interrupt");
  Minimise();
  EXPECT_TRUE(offeredAgain);
  EXPECT_EQ(result.ending, MarquardtEnding::Minimum);
  EXPECT_EQ(result.Iterations, 27);
}

TEST_F(FrmMarquardtTest, TheLimitOfIterationsIsToldLikeAnInterrupt) {
  // The first trial comes behind the start and six calls for derivatives; an interrupt while it is evaluated is too
  // late.
  Open({-1.2, 1}, [this](Array1<double>& x) {
    if (run->calls.back().NF == 8) {
      EXPECT_TRUE(desk.Press(frmMarquardt->cmdStop));
      frmMain.stbMain5.Set(2, "something");
    }
    return Rosenbrock(x);
  });
  run->state.algorithm.MaxCalls = 1;
  Choose(Answer::No, false);
  Minimise();
  EXPECT_EQ(result.NF, 8);
  EXPECT_EQ(windows().Titles(), std::vector<std::string>{"Marquart minimization stopped"});
  EXPECT_TRUE(frmMarquardt->cmdStop.enabled);
  const std::vector<std::string>& events = windows().events;
  EXPECT_LT(std::ranges::find(events, "status stbMain5 2 "),
            std::ranges::find(events, "message " + windows().Titles()[0]))
      << "emptied before the box";
}

TEST_F(FrmMarquardtTest, InABootstrapNoBoxInterruptsTheReplicate) {
  Open({-1.2, 1}, Rosenbrock);
  run->state.flags.BootstrapMode = true;
  run->state.algorithm.MaxCalls = 1;
  Choose(Answer::No, false);
  Minimise();
  EXPECT_EQ(result.ending, MarquardtEnding::Stopped);
  Choose(Answer::Yes, false);
  Minimise();
  EXPECT_EQ(result.ending, MarquardtEnding::DerivativesMissing);
  run->state.algorithm.MaxCalls = 9999;
  Choose(Answer::No, false);
  Minimise();
  EXPECT_EQ(result.ending, MarquardtEnding::Minimum);
  EXPECT_TRUE(windows().messages.empty());
}

TEST_F(FrmMarquardtTest, TwentyFiveRejectionsWithTheAxialSearchFindingNothingEndInTheFrustrationBox) {
  OpenFrustrating();
  Choose(Answer::No, false);
  Minimise();
  EXPECT_EQ(result.ending, MarquardtEnding::FrustratedByTrials);
  ASSERT_EQ(windows().messages.size(), 1u);
  EXPECT_EQ(windows().messages[0].title, "Marquardt quits in frustration");
  EXPECT_EQ(windows().messages[0].style, 64);
  EXPECT_EQ(windows().messages[0].text,
            "Consider that:\r\n"
            "      (1) you're already at an acceptable minimum,\r\n"
            "      (2) at least one parameter is too near a boundary,\r\n"
            "      (3) at least one parameter is dead wrt the likelihood function,\r\n"
            "      (4) a penalty function is affecting performance of the derivatives or parameter improvements,\r\n"
            "      (5) there are numerical inaccuracies near the current minimum, or\r\n"
            "      (6) the model, or its implementation, is flawed");
  EXPECT_FALSE(frmMarquardt->Loaded());
  EXPECT_FALSE(frmMenu->Visible());
  ExpectPanelsEmpty();
}

TEST_F(FrmMarquardtTest, AnInterruptAmongRejectionsClosesTheWindowBehindTheirVerification) {
  OpenFrustrating(5);
  Choose(Answer::No, false);
  windows().AtTurn(DuringFirstDerivatives + 15, [&] { EXPECT_TRUE(desk.Press(frmMarquardt->cmdStop)); });
  windows().Yes("Marquardt interrupt");
  Minimise();
  EXPECT_EQ(result.ending, MarquardtEnding::InterruptedInTrials);
  EXPECT_EQ(windows().Titles(), std::vector<std::string>{"Marquardt interrupt"});
  EXPECT_FALSE(frmMarquardt->Loaded());
  ExpectPanelsEmpty();
}

TEST_F(FrmMarquardtTest, InABootstrapFrustrationClosesTheWindowWithoutABox) {
  OpenFrustrating();
  Choose(Answer::No, false);
  run->state.flags.BootstrapMode = true;
  Minimise();
  EXPECT_EQ(result.ending, MarquardtEnding::FrustratedByTrials);
  EXPECT_TRUE(windows().messages.empty());
  EXPECT_FALSE(frmMarquardt->Loaded());
  EXPECT_FALSE(frmMenu->Visible());
}

TEST_F(FrmMarquardtTest, ADeadParameterIsNamedAndTheWindowCloses) {
  Open({1, 5, 2}, [](Array1<double>& x) { return Square(x(1) - 3) + x(2); });
  run->state.algorithm.Step(2) = 0;
  run->Pack();
  Choose(Answer::No, false);
  Minimise();
  EXPECT_EQ(result.ending, MarquardtEnding::MatrixFailed);
  ASSERT_EQ(windows().messages.size(), 1u);
  EXPECT_EQ(windows().messages[0].title, "Matrix decompositon failure at parameter #3!");
  EXPECT_EQ(windows().messages[0].text, "Look for statistically dead model parameters");
  EXPECT_EQ(windows().messages[0].style, 48);
  EXPECT_FALSE(frmMarquardt->Loaded());
  ExpectPanelsEmpty();
}

TEST_F(FrmMarquardtTest, AZeroUnderARelativeToleranceIsToldInTheFixedBox) {
  Open({1}, [](Array1<double>& x) { return x(1) > 0.995 ? Square(x(1)) - 1 : -5.0; });
  run->state.algorithm.Tolerance = -1e-4;
  Choose(Answer::No, false);
  Minimise();
  EXPECT_EQ(result.ending, MarquardtEnding::ZeroValue);
  ASSERT_EQ(windows().messages.size(), 1u);
  EXPECT_EQ(windows().messages[0].title, "Marquardt error");
  EXPECT_EQ(windows().messages[0].text,
            "A function value of zero has caused a division by zero error.\r\nReset the tolerance to ABSolute or "
            "otherwise correct model");
  EXPECT_EQ(windows().messages[0].style, 80);
  EXPECT_TRUE(frmMarquardt->Loaded());
  ExpectPanelsEmpty();
}

TEST_F(FrmMarquardtTest, InABootstrapAMatrixThatFailsIsNotTold) {
  Open({1, 2}, [](Array1<double>& x) { return Square(x(1) - 3) + 1; });
  Choose(Answer::No, false);
  run->state.flags.BootstrapMode = true;
  Minimise();
  EXPECT_EQ(result.ending, MarquardtEnding::MatrixFailed);
  EXPECT_TRUE(windows().messages.empty());
}

TEST_F(FrmMarquardtTest, AnalyticalDerivativesThatFailAreSuspected) {
  Open({1, 2}, Quadratic);
  run->derivatives = [](ModelCall& call) { call.H(1, 1) = 2; };
  Choose(Answer::Yes, false);
  Minimise();
  EXPECT_EQ(result.ending, MarquardtEnding::MatrixFailed);
  EXPECT_EQ(windows().messages[0].title, "Matrix decompositon failure at parameter #2!");
  EXPECT_EQ(windows().messages[0].text,
            "Look for statistically dead parameters and/or suspect your analytical derivatives");
}

TEST_F(FrmMarquardtTest, MissingAnalyticalDerivativesAreToldAndEndTheRun) {
  Open({1, 2}, Quadratic);
  Choose(Answer::Yes, false);
  Minimise();
  EXPECT_EQ(result.ending, MarquardtEnding::DerivativesMissing);
  ASSERT_EQ(windows().messages.size(), 1u);
  EXPECT_EQ(windows().messages[0].title, "Analytical derivatives missing");
  EXPECT_EQ(windows().messages[0].text, "Sorry, analytical derivatives seem not to have been provided");
  EXPECT_EQ(windows().messages[0].style, 64);
  ExpectPanelsEmpty();
  EXPECT_FALSE(desk.Press(frmMarquardt->cmdStop)) << "there is nothing to be interrupted";
}

TEST_F(FrmMarquardtTest, AFailedVerificationNamesItsParameter) {
  // The first trial equals the start; its verification finds the plus side of the parameter better, the second nothing.
  int firstCalls = 0;
  double best = 10;
  Open({1.0}, [&](Array1<double>& x) {
    const double base = run->state.algorithm.Value(1);
    if (run->calls.back().NF == 1) return ++firstCalls == 2 ? best = 9.0 : firstCalls == 1 ? best : best + 5;
    return x(1) == base + base * 0.001 || x(1) == base - base * 0.001 ? best + 1 : best;
  });
  Choose(Answer::No, false);
  Minimise();
  EXPECT_EQ(result.verifications, 2);
  EXPECT_THAT(Panel(1), Contains("Convergence rejected"));
  EXPECT_THAT(Panel(4), Contains("Last failure of convergence verification caused by parameter # 1"));
  const std::vector<std::string> second = {"status stbMain5 1 Verifying convergence by performing an axial search",
                                           "status stbMain5 4 "};
  EXPECT_FALSE(std::ranges::search(windows().events, second).empty()) << "forgotten at the next verification";
}

TEST_F(FrmMarquardtTest, WithPriorsOnTheReviewFollowsTheMinimum) {
  Open({0, 0}, Quadratic);
  Choose(Answer::No, false);
  run->state.flags.BayesOn = true;
  run->objective.priorTerm = [](const Array1<double>&) { return 0.0; };
  int reviews = 0;
  frmMarquardt->reviewPriors = [&] {
    ++reviews;
    EXPECT_EQ(windows().messages.size(), 1u) << "behind the box";
    EXPECT_NEAR(run->state.algorithm.Value(1), 3, 1e-3) << "of the estimates, not of the start";
  };
  Minimise();
  EXPECT_EQ(reviews, 1);
}

TEST_F(FrmMarquardtTest, ClosingEmptiesThePaneAndBringsTheMenuBack) {
  Open({0, 0}, Quadratic);
  Choose(Answer::No, false);
  Minimise();
  frmMain.stbMain5.Set(3, "something");
  EXPECT_TRUE(desk.Close(*frmMarquardt));
  EXPECT_EQ(frmMarquardt->rtbMarquardt.text, "");
  ExpectPanelsEmpty();
  EXPECT_TRUE(frmMenu->Visible());
}

class FrmMarquardtInProfile : public FrmMarquardtTest {
 protected:
  void OpenPoint() {
    Open({-1.2, 1, 7}, [](Array1<double>& x) { return Rosenbrock(x); });
    run->state.algorithm.Step(3) = 0;
    run->state.algorithm.Tolerance = 1e-6;
    run->Pack();
    run->state.profile.ProfileOn = true;
    run->state.profile.ProfileParameter = 3;
    profile.ProfilePoint = 24;
    profile.ProfilePoints = 25;
  }
};

TEST_F(FrmMarquardtInProfile, NamesThePointAndShowsNeitherDerivativesNorHessianCallsNorAMinimum) {
  OpenPoint();
  Choose(Answer::No, true);
  Minimise();
  EXPECT_EQ(result.ending, MarquardtEnding::Minimum);
  EXPECT_TRUE(windows().messages.empty());
  EXPECT_EQ(windows().waits, 0);
  EXPECT_THAT(Panel(1), Contains("Calculating profile point 24 of 25, Value of parameter # 3 which is being profiled "
                                 "is: 7.00000E+00"));
  EXPECT_THAT(Panel(1), Not(Contains(StartsWith("Hessian"))));
  EXPECT_THAT(frmMarquardt->rtbMarquardt.text, StartsWith("\nNote: 27 iterations")) << "no final report";
}

TEST_F(FrmMarquardtInProfile, AnInterruptCanEndTheWholeProcedureOrThisPointOrNothing) {
  OpenPoint();
  Choose(Answer::No, false);
  const auto interrupt = [this] {
    run->state.algorithm.Value(1) = -1.2;
    run->state.algorithm.Value(2) = 1;
    run->Pack();
    windows().AtTurn(2, [this] { desk.Press(frmMarquardt->cmdStop); });
    Minimise();
    return result.ending;
  };
  windows().Yes("Marquardt interrupt");
  EXPECT_EQ(interrupt(), MarquardtEnding::Interrupted);
  EXPECT_TRUE(profile.QuitAsked);
  EXPECT_EQ(result.Iterations, 0) << "left before its first trial";

  profile.QuitAsked = false;
  windows().No("Marquardt interrupt");
  windows().Yes("Marquardt interrupt");
  EXPECT_EQ(interrupt(), MarquardtEnding::Interrupted);
  EXPECT_FALSE(profile.QuitAsked);

  windows().No("Marquardt interrupt");
  windows().No("Marquardt interrupt");
  EXPECT_EQ(interrupt(), MarquardtEnding::Minimum);
}

}  // namespace
}  // namespace merlane::test
