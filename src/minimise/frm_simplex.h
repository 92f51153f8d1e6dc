#pragma once

#include "minimise/minimiser_form.h"
#include "minimise/simplex.h"

namespace merlane {

/// The window of the simplex minimiser: the starting state in one pane, the running state in the other, and a button
/// that interrupts.
class FrmSimplex : public MinimiserForm, private SimplexWatch {
 public:
  FrmSimplex(Desk& d, FrmMain& main, RunState& state, Objective& objective, SimplexState& simplex, LogFile& log,
             ProfileRun& profile);

  /// Shows the window and minimises. The caller has built the fuse groups and packed the free parameters (NFREE at
  /// least 1); whoever does not want the run to resume from the polytope that stands has it forgotten. It need not
  /// dimension anything. A profile sets ProfileOn and fills its ProfileRun; a bootstrap sets BootstrapMode.
  /// RuntimeFailure as MinimiseSimplex.
  SimplexResult Minimise();
  /// The next run does not resume from the polytope that stands.
  void BeginAfresh() { simplex_.Forget(); }

  Button cmdStop{*this, "cmdStop", "&Interrupt this minimization"};
  Pane rtbSimplexInitial{*this, "rtbSimplexInitial"};
  Pane rtbSimplex{*this, "rtbSimplex"};

 protected:
  void OnUnload() override;

 private:
  void OnBuilding() override;
  void OnStart(const SimplexState& simplex) override;
  void OnTerminalReport(const SimplexState& simplex, const SimplexProgress& progress) override;
  void OnFileReport(const SimplexState& simplex, const SimplexProgress& progress) override;
  bool ContinueBeyondCallLimit() override;
  void OnVerifying() override;
  void OnAxialCall(int call, int of) override;
  void OnVerified() override;
  void OnRestart(int Restarts, int parameter) override;
  void OnMinimum(const SimplexState& simplex, const SimplexProgress& progress) override;
  void OnZeroValue() override;
  SimplexInterrupt Turn() override;
  void OnEnd(SimplexEnding ending, const SimplexProgress& progress) override;

  SimplexInterrupt AskInterrupt();
  void AnnounceEnd();
  /// What tells of a run that ended without a minimum that its objective is not that of one call at its best vertex.
  std::string NoteOfNoMinimum(SimplexEnding ending) const;

  Objective& objective_;
  SimplexState& simplex_;
  bool InterruptFlag_ = false;
};

}  // namespace merlane
