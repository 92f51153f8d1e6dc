#pragma once

#include <optional>

#include "control/frm_algo.h"
#include "control/frm_main.h"
#include "control/objective.h"
#include "control/run_state.h"
#include "forms/desk.h"
#include "uncertainty/covariance.h"
#include "uncertainty/frm_cov_data.h"
#include "uncertainty/frm_cov_display.h"

namespace merlane {

/// The covariance command: what it asks, in which order, and what it shows while it calculates.
class CovarianceDialogue {
 public:
  CovarianceDialogue(Desk& desk, RunState& state, Objective& objective, Covariances& covariances, FrmMain& main,
                     FrmAlgo& algo, FrmCovData& data, FrmCovDisplay& display)
      : desk_(desk),
        state_(state),
        objective_(objective),
        covariances_(covariances),
        main_(main),
        algo_(algo),
        data_(data),
        display_(display) {}

  /// True when covariances were calculated; `frmCovDisplay` is then open. False when the user cancelled or no parameter
  /// is free: the main menu is back, and nothing has changed but what was edited.
  bool CalculateCovariances();

 private:
  std::optional<CovarianceOptions> AskOptions();
  /// Brings the menu back, and tells that no parameter is free; false.
  bool RefuseNothing();
  /// Lets the user edit values and steps; false when cancelled.
  bool EditSteps();
  /// Asks for the three factors until they please; false when cancelled.
  bool AskGridFactors(CovarianceOptions& options);
  bool AskOptimistic();

  Desk& desk_;
  RunState& state_;
  Objective& objective_;
  Covariances& covariances_;
  FrmMain& main_;
  FrmAlgo& algo_;
  FrmCovData& data_;
  FrmCovDisplay& display_;
};

}  // namespace merlane
