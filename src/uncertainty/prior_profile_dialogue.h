#pragma once

#include <cstdint>

#include "control/frm_main.h"
#include "control/run_state.h"
#include "forms/desk.h"
#include "plots/frm_dist_plot.h"
#include "priors/distributions.h"
#include "uncertainty/frm_distribution_table.h"
#include "uncertainty/prior_profile.h"

namespace merlane {

/// The profile of a prior, a command of the editor of the priors: what it asks, and the plots and the table it shows.
class PriorProfileDialogue : private PriorProfileWatch {
 public:
  PriorProfileDialogue(Desk& desk, const RunState& state, const Priors& priors, FrmMain& main, FrmDistPlot& distPlot,
                       FrmDistributionTable& frmPriorDists)
      : desk_(desk), state_(state), priors_(priors), main_(main), distPlot_(distPlot), table_(frmPriorDists) {}

  /// The command; `selected` is the parameter that is proposed.
  void ProfilePrior(std::int16_t selected);

 private:
  EvaluatedPoints Evaluate();
  /// What a profile is computed from: the priors, whether they are in force or not.
  Basis Present() const;
  void OnPoint(int point, double value) override;

  Desk& desk_;
  const RunState& state_;
  const Priors& priors_;
  FrmMain& main_;
  FrmDistPlot& distPlot_;
  FrmDistributionTable& table_;
  std::int16_t parameter_ = 0;
  std::int16_t points_ = 0;
};

}  // namespace merlane
