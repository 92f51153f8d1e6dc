#pragma once

#include "bootstrap/bootstrap.h"
#include "control/objective.h"
#include "control/run_state.h"
#include "forms/desk.h"
#include "minimise/frm_marquardt.h"
#include "minimise/frm_simplex.h"

namespace merlane {

/// The minimisers as a bootstrap uses them: in their own windows, over the free parameters, from the present values.
class BootstrapMinimisers {
 public:
  BootstrapMinimisers(Desk& desk, RunState& state, FrmSimplex& simplex, FrmMarquardt& marquardt)
      : desk_(desk), state_(state), simplex_(simplex), marquardt_(marquardt) {}

  /// Makes both ready for a replicate: none goes on from another fit, and no later fit from a replicate.
  void BeginAfresh(BootstrapResults::Minimiser minimiser);
  /// Leaves the result in the present values; false when a matrix could not be inverted.
  bool Minimise(BootstrapResults::Minimiser minimiser);
  /// Closes the windows of both.
  void Close();

 private:
  Desk& desk_;
  RunState& state_;
  FrmSimplex& simplex_;
  FrmMarquardt& marquardt_;
};

/// The same minimisation without a window, on a run of its own and in any thread.
bool MinimiseAhead(BootstrapResults::Minimiser minimiser, RunState& run, Objective& objective);

}  // namespace merlane
