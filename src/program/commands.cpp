#include <algorithm>
#include <functional>

#include "base/at_end.h"
#include "control/fuses.h"
#include "control/nothing_to_do.h"
#include "program/program.h"

namespace merlane {

void Program::LoadAlg() {
  CloseTheThree();
  algorithmCommands.LoadAlg();
}

void Program::EditAlg() {
  CloseTheThree();
  frmAlgo.OpenFromMenu();
  frmMenu.ApplyPattern(frmMenu.cmdOneFunction);
}

bool Program::SaveAlg() {
  const bool saved = algorithmCommands.Save_Alg();
  CloseTheThree();
  frmMenu.ApplyPattern(frmMenu.cmdOneFunction);
  return saved;
}

void Program::OneFunction() {
  CloseTheThree();
  const auto command = LongCommand();
  BuildFuseGroups(state);
  PackFree(state);
  const auto oneCall = Meanwhile(state.flags.OneCallRun, true);
  fit.objective = frmOneFunction.Run();
}

void Program::Simplex() {
  if (!OneFunctionWasCalled()) return;
  CloseTheThree();
  const auto command = LongCommand();
  BuildFuseGroups(state);
  PackFree(state);
  if (state.free.NFREE == 0) {
    TellNothingToDo();
    return;
  }
  ForgetCovariances();
  const SimplexResult result = frmSimplex.Minimise();
  fit = {"simplex", EndingText(result.ending), result.F, result.calls, result.Iterations, result.Restarts};
  desk.Show(frmMenu);
}

void Program::Marquardt() {
  if (!OneFunctionWasCalled()) return;
  CloseTheThree();
  const auto command = LongCommand();
  if (frmMarquardt.ChooseDerivatives() == DerivativeMode::Cancelled) {
    desk.Unload(frmMarquardt);
    desk.charge.KeepApplicationMenuShut();
    desk.Show(frmMenu);
    return;
  }
  BuildFuseGroups(state);
  PackFree(state);
  if (state.free.NFREE == 0) {
    desk.Unload(frmMarquardt);
    TellNothingToDo();
    return;
  }
  ForgetCovariances();
  const auto ownFrequency =
      Meanwhile(state.algorithm.TerminalFreq, state.algorithm.TerminalFreq);  // the run may change it
  const MarquardtResult result = frmMarquardt.Minimise();
  fit = {"marquardt", EndingText(result.ending), result.F, result.calls, result.Iterations, 0};
  state.flags.SimplexBuilt = false;
  desk.Show(frmMenu);
}

void Program::Covariance() {
  CloseTheThree();
  const auto command = LongCommand();
  if (state.flags.CovarianceDone && desk.Ask("Covariance", "View the last set of calculated covariance results?",
                                             style::YesNoQuestion) == Answer::Yes) {
    frmCovDisplay.OpenAgain();
    return;
  }
  if (covarianceDialogue.CalculateCovariances())
    state.flags.CovarianceDone = true;
  else
    desk.Show(frmMenu);
}

void Program::Bayesian() {
  CloseTheThree();
  frmLoadPriors.Open();
}

void Program::ParEstimate() {
  CloseTheThree();
  desk.Unload(frmMenu);
  desk.Show(frmParEvals);
}

void Program::UserSummary() {
  Array1<double>& Value = state.algorithm.Value;
  const bool allZero = std::ranges::all_of(Value, [](double value) { return value == 0; });
  CloseTheThree();
  const auto command = LongCommand();
  if (!allZero) {
    frmMain.ShowProgress("One moment please while one function call is executed...");
    ApplyFuses(Value, state);
    SummaryValue_ = objective.Call(Value, 1);
    frmMain.ShowProgress("");
  }
  ApplyFuses(Value, state);
  SummaryValue_ = objective.Call(Value, -1, SummaryValue_);
}

void Program::Rank() {
  desk.Unload(frmMenu);
  desk.Show(frmRank);
}

void Program::FollowSummary(const std::function<void()>& command) {
  if (!reportedFit.Holds()) return;
  const auto following = LongCommand();
  command();
}

void Program::CloseTheThree() {
  desk.Unload(frmOneFunction);
  desk.Unload(frmSimplex);
  desk.Unload(frmMarquardt);
}

bool Program::OneFunctionWasCalled() {
  return desk.Ask("Just checking", "Have you run '1 Function Call' as required?", style::YesNoQuestion) == Answer::Yes;
}

void Program::TellNothingToDo() {
  desk.charge.KeepApplicationMenuShut();  // the next command that ends opens it again
  desk.Show(frmMenu);
  merlane::TellNothingToDo(desk);
}

void Program::ForgetCovariances() {
  state.flags.CovarianceDone = false;
  state.flags.CovarianceGrid = 0;
}

}  // namespace merlane
