#pragma once

#include <string>

#include "base/at_end.h"
#include "control/frm_main.h"
#include "control/run_state.h"
#include "forms/desk.h"
#include "forms/form.h"

namespace merlane {

/// Stands in front of a long calculation that can be given up; the calculation polls AbortRun.
class FrmAbort : public Form {
 public:
  FrmAbort(Desk& d, RunState& state, FrmMain& main);

  /// Shows the form until the scope ends, under this title, which says what would be aborted.
  auto Offer(const std::string& question) {
    Open(question);
    return AtEnd([this] { desk.Unload(*this); });
  }

  Button cmdAbort{*this, "cmdAbort", "&Abort"};

 private:
  void Open(const std::string& question);
};

}  // namespace merlane
