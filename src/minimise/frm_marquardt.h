#pragma once

#include "minimise/marquardt.h"
#include "minimise/minimiser_form.h"

namespace merlane {

/// The window of the Marquardt minimiser: the running state in a pane, a button that interrupts, and two that end the
/// pause in which derivatives are looked at.
class FrmMarquardt : public MinimiserForm, private MarquardtWatch {
 public:
  FrmMarquardt(Desk& d, FrmMain& main, RunState& state, Objective& objective, LogFile& log, ProfileRun& profile);

  /// Asks which derivatives to use and whether to show them; they stay until asked again. Returns what was chosen;
  /// Cancelled makes the caller give up.
  DerivativeMode ChooseDerivatives();
  /// The same without a question: numerical ones, not shown. For a bootstrap.
  void TakeNumericalDerivatives();

  /// Shows the window and minimises with the derivatives chosen. The caller has asked for them, has built the fuse
  /// groups and packed the free parameters (NFREE at least 1); it need not dimension anything. A profile sets ProfileOn
  /// and fills its ProfileRun; a bootstrap sets BootstrapMode and reads the ending MatrixFailed as a rejected
  /// replicate. RuntimeFailure as MinimiseMarquardt.
  MarquardtResult Minimise();

  Button cmdIteration{*this, "cmdIteration", "&Next iteration"};
  Button cmdContinue{*this, "cmdContinue", "&Continue"};
  Button cmdStop{*this, "cmdStop", "&Interrupt"};
  Pane rtbMarquardt{*this, "rtbMarquardt"};

 protected:
  /// Closing the window while it pauses ends the pause: the run goes on and needs its window.
  bool OnCloseRequest() override;
  void OnUnload() override;

 private:
  void OnStart() override;
  void OnStarted() override;
  void OnPass(const MarquardtProgress& progress) override;
  MarquardtInterrupt Interrupt() override;
  void OnDerivatives() override;
  void OnHessianCall(int call, int of) override;
  void OnAccepted(const MarquardtProgress& progress) override;
  void OnVerifying() override;
  void OnAxialImprovement(int parameter) override;
  void OnAxialCall(int call, int of) override;
  void OnVerified() override;
  void OnRejectedConvergence() override;
  void OnEnd(MarquardtEnding ending, const MarquardtProgress& progress) override;
  void Turn() override;

  MarquardtInterrupt AskInterrupt();
  void TerminalReport(const MarquardtProgress& progress);
  void FinalReport(const MarquardtProgress& progress);
  /// What tells of a run that ended without a minimum that its objective is not that of one call at its values.
  std::string NoteOfNoMinimum(MarquardtEnding ending, const MarquardtProgress& progress) const;
  /// Tells that row `row` of the matrix, of the free parameters, holds nothing but zeros; `note` stands beside it.
  void TellMatrixFailure(int row, const std::string& note);
  bool DerivativesWanted() const;
  /// The text with the derivatives appended, when they are wanted.
  std::string WithDerivatives(const std::string& text, const MarquardtProgress& progress);
  void PauseForDerivatives();
  void EndPause();

  Objective& objective_;
  DerivativeMode DerivativeMode_ = DerivativeMode::Cancelled;
  bool ShowDerivatives_ = false;
  bool DerivativeRelease_ = false;
  bool MarquardtInterrupt_ = false;
};

}  // namespace merlane
