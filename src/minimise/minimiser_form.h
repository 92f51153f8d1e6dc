#pragma once

#include <functional>
#include <optional>
#include <string>

#include "control/fit_label.h"
#include "control/frm_main.h"
#include "control/log_file.h"
#include "control/run_state.h"
#include "forms/form.h"
#include "minimise/parameter_rows.h"
#include "minimise/profile_run.h"

namespace merlane {

/// What the windows of both minimisers share: status panels, the texts that depend on who drives the run, and the
/// questions of an interrupted profile.
class MinimiserForm : public Form {
 public:
  MinimiserForm(Desk& d, std::string formName, std::string formTitle, FrmMain& main, RunState& state, LogFile& log,
                ProfileRun& profile)
      : Form(d, std::move(formName), std::move(formTitle)),
        state_(state),
        log_(log),
        profile_(profile),
        stbMain5_(main.stbMain5) {}

  /// Computes and shows the review of the priors: called behind a minimum that was found with priors on.
  std::function<void()> reviewPriors;
  /// What of the lowest objective of a run is a penalty, as the model knows; asked at a minimum.
  std::function<double()> bestPenalty = [] { return 0.0; };

  /// What one function call at these values (1..NPAR) gives, when the model has carried something over from call to
  /// call of the last run and it may be another objective; none otherwise.
  std::function<std::optional<CarriedOver>(const Array1<double>& values)> carriedOver = [](const Array1<double>&) {
    return std::nullopt;
  };

  FitLabel lblFit{*this};

 protected:
  /// Told where a relative tolerance would divide by an objective of 0.
  static constexpr const char* ZeroValueText =
      "A function value of zero has caused a division by zero error.\r\n"
      "Reset the tolerance to ABSolute or otherwise correct model";

  enum class ProfileAnswer { QuitProcedure, NextPoint, GoOn };

  void SetPanel(int panel, const std::string& text) { stbMain5_.Set(panel, text); }
  void ClearPanels(int first, int last);
  void ReviewPriors();
  /// A message with OK alone; nothing interrupts a bootstrap's replicates but what the user has to answer.
  void TellUnlessBootstrap(const std::string& boxTitle, const std::string& text, int boxStyle,
                           const std::string& details = "");
  /// What tells that this minimum is no fit but a penalty; empty for a fit, and in a bootstrap, which rejects such
  /// replicates itself.
  std::string PenaltyNote(double minimum) const;
  /// What tells that the objective that a run has reached is not that of one call at these values; likewise empty in a
  /// bootstrap.
  std::string CarriedOverNote(double reached, const Array1<double>& values) const;
  /// Names, in panel 1, the point that the profile has come to.
  void ShowProfilePoint();
  /// Asks what an interrupt during a profile shall end, and tells the profile to end if the answer is all of it.
  ProfileAnswer AskProfile(const std::string& boxTitle);
  /// Caption of the button that interrupts.
  std::string StopCaption() const;

  RunState& state_;
  LogFile& log_;
  ProfileRun& profile_;

 private:
  StatusBar& stbMain5_;
};

}  // namespace merlane
