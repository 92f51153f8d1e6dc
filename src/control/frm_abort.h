#pragma once

#include <string>

#include "control/frm_main.h"
#include "control/run_state.h"
#include "forms/form.h"

namespace merlane {

/// Stands in front of a long calculation that can be given up; the calculation polls AbortRun.
class FrmAbort : public Form {
 public:
  FrmAbort(Desk& d, RunState& state, FrmMain& main);

  /// Shows the form under this title, which says what would be aborted.
  void Open(const std::string& question);

  Button cmdAbort{*this, "cmdAbort", "&Abort"};
};

}  // namespace merlane
