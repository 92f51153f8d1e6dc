#include <algorithm>
#include <functional>
#include <utility>

#include "base/runtime_failure.h"
#include "control/fuses.h"
#include "program/program.h"

namespace merlane {

void Program::EditAlg() {
  frmMenu.CloseTheThree();
  frmAlgo.OpenFromMenu();
  frmMenu.ApplyPattern(frmMenu.cmdOneFunction);
  frmMenu.enabled = false;  // until the editor closes
}

void Program::SaveAlg() {
  algorithmCommands.Save_Alg();
  frmMenu.CloseTheThree();
  frmMenu.ApplyPattern(frmMenu.cmdOneFunction);
}

void Program::OneFunction() {
  frmMenu.CloseTheThree();
  BeginLongCommand();
  BuildFuseGroups(state);
  PackFree(state);
  state.flags.OneCallRun = true;
  // A call at the estimates of a minimisation confirms them; elsewhere it is a fit of its own.
  const bool atFit = fit.basis && fit.basis->SameEstimates(objective.Present());
  KeepFit(frmOneFunction.Run(), atFit ? fit.minimisation : std::nullopt);
  state.flags.OneCallRun = false;
  EndLongCommand();
}

void Program::Simplex() {
  if (!BeginMinimiser(state.flags.SimplexRunning)) return;
  BuildFuseGroups(state);
  PackFree(state);
  if (state.free.NFREE == 0) {
    TellNothingToDo();
    return;
  }
  const SimplexResult result = frmSimplex.Minimise();
  KeepFit(result.F,
          Minimisation{"simplex", EndingText(result.ending), result.calls, result.Iterations, result.Restarts});
  desk.Show(frmMenu);
  EndLongCommand();
  state.flags.SimplexRunning = false;
}

void Program::Marquardt() {
  if (!BeginMinimiser(state.flags.MarquardtRunning)) return;
  if (frmMarquardt.ChooseDerivatives() == DerivativeMode::Cancelled) {
    desk.Unload(frmMarquardt);
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
  const std::int16_t terminalFreq = state.algorithm.TerminalFreq;
  const MarquardtResult result = frmMarquardt.Minimise();
  KeepFit(result.F, Minimisation{"marquardt", EndingText(result.ending), result.calls, result.Iterations, 0});
  state.algorithm.TerminalFreq = terminalFreq;  // the run may change it
  desk.Show(frmMenu);
  EndLongCommand();
  state.flags.MarquardtRunning = false;
}

void Program::Covariance() {
  frmMenu.CloseTheThree();
  desk.Unload(frmMenu);
  frmMain.mnuApplication.enabled = false;
  if (covariances.AreOf(objective.Present()) &&
      desk.Ask("Covariance", "View the last set of calculated covariance results?", style::YesNoQuestion) ==
          Answer::Yes) {
    frmCovDisplay.OpenAgain();
    return;
  }
  covarianceDialogue.CalculateCovariances();
  EndLongCommand();
}

void Program::Bayesian() {
  frmMenu.CloseTheThree();
  frmLoadPriors.Open(frmMenu.name);
}

void Program::ParEstimate() {
  frmMenu.CloseTheThree();
  desk.Unload(frmMenu);
  frmMain.mnuApplication.enabled = false;
  desk.Show(frmParEvals);
}

void Program::UserSummary() {
  Array1<double>& Value = state.algorithm.Value;
  const bool allZero = std::ranges::all_of(Value, [](double value) { return value == 0; });
  frmMenu.CloseTheThree();
  desk.Unload(frmMenu);
  frmMain.mnuApplication.enabled = false;
  if (!allZero) {
    frmMain.ShowProgress("One moment please while one function call is executed...");
    ApplyFuses(Value, state);
    SummaryValue_ = objective.Call(Value, 1);
    frmMain.ShowProgress("");
  }
  ApplyFuses(Value, state);
  SummaryValue_ = objective.Call(Value, -1, SummaryValue_);
  EndLongCommand();
}

void Program::Rank() {
  desk.Unload(frmMenu);
  frmMain.mnuApplication.enabled = false;
  desk.Show(frmRank);
  frmRank.enabled = true;  // also when the editor that it waited for was taken over by another command
}

void Program::FollowSummary(const std::function<void()>& command) {
  desk.Unload(frmMenu);
  frmMain.mnuApplication.enabled = false;
  try {
    command();
  } catch (const RuntimeFailure&) {
    EndLongCommand();
    throw;
  }
  EndLongCommand();
}

void Program::BeginLongCommand() {
  frmMenu.DisableAllButQuit();
  desk.Unload(frmMenu);
  frmMain.mnuApplication.enabled = false;
}

void Program::EndLongCommand() { frmMain.mnuApplication.enabled = true; }

bool Program::BeginMinimiser(bool& running) {
  if (desk.Ask("Just checking", "Have you run '1 Function Call' as required?", style::YesNoQuestion) != Answer::Yes)
    return false;
  running = true;
  frmMenu.CloseTheThree();
  BeginLongCommand();
  return true;
}

void Program::KeepFit(double reached, std::optional<Minimisation> minimisation) {
  const LikelihoodState& likelihood = model.likelihood;
  const auto free = std::ranges::count_if(state.algorithm.Step, [](double step) { return step != 0; });
  fit = {.basis = objective.Present(),
         .minimisation = std::move(minimisation),
         .objective = reached,
         .penalty = likelihood.Penalty,
         .prior = state.flags.BayesOn ? priors.PriorTotal : 0,
         .sampleSize = state.flags.SampleSize,
         .eggsAtRisk = likelihood.EggsAtRisk,
         .juvenilesAtRisk = likelihood.JuvsAtRisk,
         .clutchIntervals = likelihood.survival.ClutchIntervals,
         .broodIntervals = likelihood.survival.BroodIntervals,
         .freeParameters = static_cast<std::int32_t>(free)};
}

void Program::TellNothingToDo() {
  // The running flag stays set and the application menu disabled: the next command that ends enables it again.
  desk.Show(frmMenu);
  desk.Tell("There is nothing to do", "All step sizes are zero", style::Exclamation);
}

}  // namespace merlane
