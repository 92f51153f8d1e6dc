#include <functional>
#include <utility>

#include "base/at_end.h"
#include "control/fuses.h"
#include "control/nothing_to_do.h"
#include "program/program.h"
#include "survival/catalogue.h"

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
  const Basis before = objective.Present();
  const double F = frmOneFunction.Run();
  Basis after = objective.Present();
  after.Value = before.Value;  // the call may have brought them into their range
  // A call at the estimates of a minimisation confirms them; elsewhere, or where it repairs the hypothesis, it is a fit
  // of its own.
  const bool atFit = fit.basis && fit.basis->SameEstimates(before) && before.SameEstimates(after);
  KeepFit(F, atFit ? fit.minimisation : std::nullopt);
  const std::optional<double> inASearch = frmOneFunction.inASearch();
  if (inASearch != F) fit.ofOneCall = inASearch;
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
  const SimplexResult result = frmSimplex.Minimise();
  KeepSearch(result.F,
             Minimisation{"simplex", EndingText(result.ending), result.calls, result.Iterations, result.Restarts});
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
  const auto ownFrequency =
      Meanwhile(state.algorithm.TerminalFreq, state.algorithm.TerminalFreq);  // the run may change it
  const MarquardtResult result = frmMarquardt.Minimise();
  KeepSearch(result.F, Minimisation{"marquardt", EndingText(result.ending), result.calls, result.Iterations, 0});
  desk.Show(frmMenu);
}

void Program::Covariance() {
  CloseTheThree();
  const auto command = LongCommand();
  if (covariances.AreOf(objective.Present()) &&
      desk.Ask("Covariance", "View the last set of calculated covariance results?", style::YesNoQuestion) ==
          Answer::Yes) {
    frmCovDisplay.OpenAgain();
    return;
  }
  if (covarianceDialogue.CalculateCovariances())
    covariancesMade.Keep(covariances, PresentProvenance());
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
  CloseTheThree();
  const auto command = LongCommand();
  BuildFuseGroups(state);  // algorithm data may have been loaded since the last command
  if (!AllZero(Value)) {
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

}  // namespace merlane
