#include "minimise/frm_simplex.h"

#include <fmt/format.h>

#include <utility>

#include "base/at_end.h"
#include "base/number_text.h"
#include "forms/desk.h"
#include "minimise/evaluate_trial.h"
#include "minimise/parameter_rows.h"
#include "minimise/simplex_report.h"

namespace merlane {

FrmSimplex::FrmSimplex(Desk& d, FrmMain& main, RunState& state, Objective& objective, SimplexState& simplex,
                       LogFile& log, ProfileRun& profile)
    : MinimiserForm(d, "frmSimplex",
                    "Simplex minimization (uses geometry; works best for models whose behaviour is markedly "
                    "non-linear; initial progress is sensitive to step sizes)",
                    main, state, log, profile),
      objective_(objective),
      simplex_(simplex) {
  cmdStop.toolTip = "Click here to interrupt the current minimization";
  cmdStop.offeredWhileBusy = true;
  cmdStop.onClick = [this] {
    InterruptFlag_ = true;
    cmdStop.enabled = false;
    SetPanel(1, "Interrupt pending...");
  };
}

SimplexResult FrmSimplex::Minimise() {
  desk.Show(*this);
  InterruptFlag_ = false;  // whoever pressed before meant another run
  cmdStop.enabled = true;
  const AtEnd over([this] { cmdStop.enabled = false; });
  rtbSimplexInitial.text.clear();
  rtbSimplex.text.clear();
  return MinimiseSimplex(state_, objective_, simplex_, *this);
}

void FrmSimplex::OnBuilding() {
  cmdStop.text = StopCaption();
  SetPanel(1, "Building initial simplex...");
  SetPanel(2, "");
  desk.Turn();
}

void FrmSimplex::OnStart(const SimplexState& simplex) {
  SetPanel(1, "");
  desk.Turn();
  if (state_.algorithm.FileFreq != 0) log_.Write(SimplexInitialLog(state_, simplex));
  if (state_.algorithm.TerminalFreq != 0) rtbSimplexInitial.text = SimplexInitialPane(state_, simplex);
}

void FrmSimplex::OnTerminalReport(const SimplexState& simplex, const SimplexProgress& progress) {
  rtbSimplex.text = SimplexTerminalPane(state_, simplex, progress);
  ShowProfilePoint();
}

void FrmSimplex::OnFileReport(const SimplexState& simplex, const SimplexProgress& progress) {
  log_.Write(SimplexFileLog(state_, simplex, progress));
}

bool FrmSimplex::ContinueBeyondCallLimit() {
  if (desk.Ask("Simplex minimization", "Maximum number of function calls reached, do you want to continue?",
               style::YesNoQuestion) == Answer::Yes)
    return true;
  AnnounceEnd();
  return false;
}

void FrmSimplex::OnVerifying() { SetPanel(1, "Verifying convergence by performing an axial search"); }

void FrmSimplex::OnAxialCall(int call, int of) {
  SetPanel(2, "Axial function call " + Format(call, "###0") + " of " + Format(of, "###0"));
}

void FrmSimplex::OnVerified() {
  SetPanel(2, " ");
  SetPanel(1, "");
}

void FrmSimplex::OnRestart(int Restarts, int parameter) {
  if (Restarts > 1) SetPanel(4, "Multiple restarts indicate a tuning problem!");
  SetPanel(3, fmt::format("Last failure of convergence verification caused by parameter # {}", parameter));
}

void FrmSimplex::OnMinimum(const SimplexState& simplex, const SimplexProgress& progress) {
  // A point of a profile is taken over by the profile, which goes on without a word.
  if (state_.profile.ProfileOn) return;
  const double minimum = simplex.SimplexF(simplex.ILow);
  Array1<double> estimates = state_.algorithm.Value;
  SetFree(estimates, simplex.Simplex(simplex.ILow), state_.free);
  const std::string note = PenaltyNote(minimum) + CarriedOverNote(minimum, estimates);
  rtbSimplex.text = SimplexFinalPane(state_, simplex, progress) + note;
  if (state_.algorithm.FileFreq != 0) log_.Write(SimplexFinalLog(state_, simplex, progress) + note);
  TellUnlessBootstrap("Simplex minimum", "Minimum found using Simplex!", style::InformationCritical, note);
  InterruptFlag_ = false;
  ClearPanels(1, 4);
}

void FrmSimplex::OnZeroValue() { desk.Tell("Simplex error", ZeroValueText, style::InformationCritical); }

SimplexInterrupt FrmSimplex::Turn() {
  desk.Turn();
  if (!std::exchange(InterruptFlag_, false)) return {};
  cmdStop.enabled = true;
  SetPanel(1, "");
  return AskInterrupt();
}

SimplexInterrupt FrmSimplex::AskInterrupt() {
  const char* const boxTitle = "Simplex interrupt";
  if (state_.profile.ProfileOn) switch (AskProfile(boxTitle)) {
      case ProfileAnswer::QuitProcedure:
        return {true, true};
      case ProfileAnswer::NextPoint:
        return {true, false};
      case ProfileAnswer::GoOn:
        return {false, true};
    }
  if (desk.Ask(boxTitle, "Interrupt received. Do you want to quit minimizing?", style::YesNoQuestion) != Answer::Yes)
    return {false, false};
  AnnounceEnd();
  return {true, true};
}

void FrmSimplex::AnnounceEnd() {
  SetPanel(1, "One moment please...");
  ClearPanels(2, 4);
}

void FrmSimplex::OnEnd(SimplexEnding ending, const SimplexProgress& progress) {
  ClearPanels(1, 4);
  lblFit.Show(WordsOfPresent("Simplex minimization", objective_));
  if (ending != SimplexEnding::Minimum)
    rtbSimplex.text += UnevaluatedLine(progress.unevaluated) + NoteOfNoMinimum(ending);
  // Not before the estimates stand in Value, which are what is reviewed.
  if (ending == SimplexEnding::Minimum && !state_.profile.ProfileOn) ReviewPriors();
}

std::string FrmSimplex::NoteOfNoMinimum(SimplexEnding ending) const {
  if (ending == SimplexEnding::ZeroValue || state_.profile.ProfileOn) return "";
  return CarriedOverNote(simplex_.SimplexF(simplex_.ILow), state_.algorithm.Value);
}

void FrmSimplex::OnUnload() {
  rtbSimplexInitial.text.clear();
  rtbSimplex.text.clear();
  ClearPanels(1, 3);
  desk.BringBack();
}

}  // namespace merlane
