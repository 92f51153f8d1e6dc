#include "minimise/frm_marquardt.h"

#include <fmt/format.h>

#include <utility>

#include "base/at_end.h"
#include "base/number_text.h"
#include "forms/desk.h"
#include "minimise/marquardt_report.h"
#include "minimise/parameter_rows.h"

namespace merlane {
namespace {

constexpr const char* ChoiceTitle = "Marquardt minimization";

constexpr const char* ChoiceText =
    "Note: You must provide derivatives for calculating gradients and building the Hessian matrix.\r\n"
    "Numerical derivatives are provided automatically, whereas you must have provided analytical\r\n"
    "derivatives in your model code (i.e., in that section of Sub MODEL() accessed when NF=-2).\r\n\r\n"
    "WARNING: Analytical derivatives will fail if Bayesian prior probabilities contribute to the likelihood "
    "function.\r\n\r\n"
    "DO NOT USE ANALYTICAL DERIVATIVES IN CONJUNCTION WITH BAYESIAN PRIOR DISTRIBUTIONS!\r\n"
    "            THE PRIOR DISTRIBUTION FOR ALL PARAMETERS MUST BE UNIFORM-UNBOUNDED!\r\n\r\n"
    "Choose 'Yes' if you have provided ANALYTICAL derivatives; else 'No' to calculate NUMERICAL derivatives";

constexpr const char* ShowText =
    "Do you want to see the partial derivatives of the likelihood function wrt the parameters at each iteration?\r\n"
    "If 'Yes', they will be displayed; then later choose 'Next iteration' to see the derivatives after the next "
    "iteration,\r\n"
    "           or 'Continue' to skip over the derivatives output.\r\n"
    "If 'No', then partial derivatives will not be displayed.\r\n\r\n"
    "Note: This is recommended and practical only for models with fewer than about a dozen parameters!\r\n"
    "           It is intended for use mainly during model building to verify the analytical derivative formulations.";

constexpr const char* FrustrationText =
    "Consider that:\r\n"
    "      (1) you're already at an acceptable minimum,\r\n"
    "      (2) at least one parameter is too near a boundary,\r\n"
    "      (3) at least one parameter is dead wrt the likelihood function,\r\n"
    "      (4) a penalty function is affecting performance of the derivatives or parameter improvements,\r\n"
    "      (5) there are numerical inaccuracies near the current minimum, or\r\n"
    "      (6) the model, or its implementation, is flawed";

}  // namespace

FrmMarquardt::FrmMarquardt(Desk& d, FrmMain& main, RunState& state, Objective& objective, LogFile& log,
                           ProfileRun& profile)
    : MinimiserForm(d, "frmMarquardt",
                    "Marquardt minimization (uses derivatives; works best when model behaviour is close-to-linear; "
                    "progress is insensitive to (non-zero) step sizes)",
                    main, state, log, profile),
      objective_(objective) {
  cmdIteration.toolTip = "Click to pause minimization after each iteration";
  cmdContinue.toolTip = "Click to continue minimizing without pausing after each iteration";
  cmdStop.toolTip = "Click here to interrupt the current minimization";
  cmdIteration.visible = cmdContinue.visible = false;
  cmdStop.offeredWhileBusy = true;
  cmdIteration.onClick = [this] { DerivativeRelease_ = true; };
  cmdContinue.onClick = [this] { EndPause(); };
  cmdStop.onClick = [this] {
    MarquardtInterrupt_ = true;
    cmdStop.enabled = false;
    SetPanel(1, "Interrupt pending...");
    EndPause();
  };
}

DerivativeMode FrmMarquardt::ChooseDerivatives() {
  const Answer answer = desk.Ask(ChoiceTitle, ChoiceText, style::YesNoCancelQuestion);
  if (answer == Answer::Cancel) return DerivativeMode_ = DerivativeMode::Cancelled;
  const bool analytical = answer == Answer::Yes;
  desk.Tell(ChoiceTitle,
            analytical ? "You have chosen ANALYTICAL derivatives - it's like choosing Coke"
                       : "You have chosen NUMERICAL derivatives - it's like choosing Pepsi",
            style::Ok);
  ShowDerivatives_ = desk.Ask(ChoiceTitle, ShowText, style::YesNoQuestion) == Answer::Yes;
  return DerivativeMode_ = analytical ? DerivativeMode::Analytical : DerivativeMode::Numerical;
}

void FrmMarquardt::TakeNumericalDerivatives() {
  DerivativeMode_ = DerivativeMode::Numerical;
  ShowDerivatives_ = false;
}

MarquardtResult FrmMarquardt::Minimise() {
  desk.Show(*this);
  cmdStop.enabled = false;
  rtbMarquardt.text.clear();
  bool ended = false;
  const AtEnd failed([&] {
    if (!ended) cmdStop.enabled = false;
  });
  const MarquardtResult result = MinimiseMarquardt(state_, objective_, DerivativeMode_, *this);
  ended = true;
  return result;
}

void FrmMarquardt::OnStart() {
  SetPanel(1, "Initial function call, one moment please...");
  desk.Turn();
}

void FrmMarquardt::OnStarted() {
  MarquardtInterrupt_ = false;
  cmdStop.enabled = true;
  cmdStop.text = StopCaption();
  ClearPanels(1, 2);
}

void FrmMarquardt::OnPass(const MarquardtProgress& progress) {
  SetPanel(3, fmt::format("Working to improve estimates. Objective function for trial # {}, is : {}",
                          progress.TrialCount, Format(progress.FTrial, " 0.00000E+00")));
}

MarquardtInterrupt FrmMarquardt::Interrupt() {
  if (!std::exchange(MarquardtInterrupt_, false)) return MarquardtInterrupt::None;
  cmdStop.enabled = true;
  SetPanel(2, "");
  return AskInterrupt();
}

MarquardtInterrupt FrmMarquardt::AskInterrupt() {
  const char* const boxTitle = "Marquardt interrupt";
  if (state_.profile.ProfileOn)
    return AskProfile(boxTitle) == ProfileAnswer::GoOn ? MarquardtInterrupt::None : MarquardtInterrupt::LeaveRun;
  if (desk.Ask(boxTitle, "Interrupt received. Do you want to quit minimizing?", style::YesNoQuestion) != Answer::Yes)
    return MarquardtInterrupt::None;
  SetPanel(1, "Interrupt will occur once this iteration is complete");
  return MarquardtInterrupt::QuitAfterStep;
}

void FrmMarquardt::OnDerivatives() { SetPanel(3, "Calculating derivatives, one moment please..."); }

void FrmMarquardt::OnHessianCall(int call, int of) {
  if (state_.profile.ProfileOn) return;
  SetPanel(1, "Hessian function call " + Format(call, "###0") + " of " + Format(of, "###0"));
  desk.Turn();
}

void FrmMarquardt::OnAccepted(const MarquardtProgress& progress) {
  TerminalReport(progress);
  desk.Turn();
  if (state_.algorithm.FileFreq > 0) log_.Write(MarquardtFileLog(state_, progress));
}

void FrmMarquardt::TerminalReport(const MarquardtProgress& progress) {
  SetPanel(1, "");
  SetPanel(3, "");
  const bool pause = DerivativesWanted();
  rtbMarquardt.text = WithDerivatives(MarquardtTerminalPane(state_, progress), progress);
  ShowProfilePoint();
  if (pause) PauseForDerivatives();
}

bool FrmMarquardt::DerivativesWanted() const {
  return ShowDerivatives_ && !state_.profile.ProfileOn && !MarquardtInterrupt_;
}

std::string FrmMarquardt::WithDerivatives(const std::string& text, const MarquardtProgress& progress) {
  if (!DerivativesWanted()) return text;
  SetPanel(1, "Please be patient while derivative output is collated");
  return text + DerivativeList(state_, progress, DerivativeMode_);
}

void FrmMarquardt::PauseForDerivatives() {
  DerivativeRelease_ = false;
  cmdIteration.visible = cmdContinue.visible = true;
  cmdIteration.enabled = cmdContinue.enabled = true;
  const AtEnd released([this] { cmdIteration.enabled = cmdContinue.enabled = false; });
  desk.WaitUntil([this] { return DerivativeRelease_; });
}

void FrmMarquardt::EndPause() {
  DerivativeRelease_ = true;
  ShowDerivatives_ = false;
}

void FrmMarquardt::OnVerifying() {
  SetPanel(1, "Verifying convergence by performing an axial search");
  SetPanel(4, "");
}

void FrmMarquardt::OnAxialCall(int call, int of) {
  SetPanel(3, "Axial function call " + Format(call, "###0") + " of " + Format(of, "###0"));
}

void FrmMarquardt::OnAxialImprovement(int parameter) {
  SetPanel(4, fmt::format("Last failure of convergence verification caused by parameter # {}", parameter));
}

void FrmMarquardt::OnVerified() { SetPanel(3, ""); }

void FrmMarquardt::OnRejectedConvergence() { SetPanel(1, "Convergence rejected"); }

void FrmMarquardt::Turn() { desk.Turn(); }

void FrmMarquardt::OnEnd(MarquardtEnding ending, const MarquardtProgress& progress) {
  cmdStop.enabled = ending == MarquardtEnding::Stopped;  // where it is offered again
  lblFit.Show(WordsOfPresent("Marquardt minimization", objective_));
  const std::string note = NoteOfNoMinimum(ending, progress);
  if (ending != MarquardtEnding::Minimum) rtbMarquardt.text += UnevaluatedLine(progress.unevaluated) + note;
  switch (ending) {
    case MarquardtEnding::Minimum:
      if (!state_.profile.ProfileOn) FinalReport(progress);
      break;
    case MarquardtEnding::ZeroValue:
      TellUnlessBootstrap("Marquardt error", ZeroValueText, style::InformationCritical);
      break;
    case MarquardtEnding::Stopped:
      ClearPanels(2, 3);
      TellUnlessBootstrap("Marquart minimization stopped",
                          "Maximum number of iterations reached or an interrupt was received", style::Information,
                          note);
      break;
    case MarquardtEnding::FrustratedByTrials:
    case MarquardtEnding::FrustratedByLambda:
    case MarquardtEnding::FrustratedByVerifications:
      SetPanel(1, "");
      SetPanel(3, "");
      TellUnlessBootstrap("Marquardt quits in frustration", FrustrationText, style::Information, note);
      desk.Unload(*this);
      break;
    case MarquardtEnding::MatrixFailed:
      TellMatrixFailure(progress.failedRow, note);
      desk.Unload(*this);
      break;
    case MarquardtEnding::InterruptedInTrials:
      desk.Unload(*this);
      break;
    case MarquardtEnding::DerivativesMissing:
      TellUnlessBootstrap("Analytical derivatives missing",
                          "Sorry, analytical derivatives seem not to have been provided", style::Information);
      break;
    case MarquardtEnding::Interrupted:
      break;
  }
  ClearPanels(1, 4);
  desk.Turn();
}

std::string FrmMarquardt::NoteOfNoMinimum(MarquardtEnding ending, const MarquardtProgress& progress) const {
  if (ending == MarquardtEnding::Minimum || state_.profile.ProfileOn) return "";
  return CarriedOverNote(ReachedObjective(ending, progress), state_.algorithm.Value);
}

void FrmMarquardt::FinalReport(const MarquardtProgress& progress) {
  SetPanel(1, "");
  SetPanel(3, "");
  const std::string note = PenaltyNote(progress.FBest);  // which is the objective of one call
  rtbMarquardt.text = WithDerivatives(MarquardtFinalPane(state_, progress) + note, progress);
  ShowDerivatives_ = false;
  if (state_.algorithm.FileFreq > 0) log_.Write(MarquardtFinalLog(state_, progress) + note);
  TellUnlessBootstrap("Marquardt minimum", "Minimum found using Marquardt!", style::Information, note);
  MarquardtInterrupt_ = false;
  ReviewPriors();
}

void FrmMarquardt::TellMatrixFailure(int row, const std::string& note) {
  TellUnlessBootstrap(fmt::format("Matrix decompositon failure at parameter #{}!", state_.free.FreeIndex(row)),
                      DerivativeMode_ == DerivativeMode::Analytical
                          ? "Look for statistically dead parameters and/or suspect your analytical derivatives"
                          : "Look for statistically dead model parameters",
                      style::Exclamation, note);
}

bool FrmMarquardt::OnCloseRequest() {
  if (!cmdContinue.visible || !cmdContinue.enabled) return true;
  EndPause();
  return false;
}

void FrmMarquardt::OnUnload() {
  rtbMarquardt.text.clear();
  ClearPanels(1, 3);
  desk.BringBack();
}

}  // namespace merlane
