#pragma once

#include "priors/frm_set_priors.h"
#include "priors/priors_commands.h"

namespace merlane {

/// The choice between opening a priors file, setting priors, and unbounded uniform priors for all parameters.
class FrmLoadPriors : public Form {
 public:
  FrmLoadPriors(Desk& d, RunState& state, FrmMain& main, Priors& priors, PriorsCommands& commands,
                FrmSetPriors& editor);

  Button cmdOpen{*this, "cmdOpen", "&Open an existing Bayesian Priors file"};
  Button cmdSet{*this, "cmdSet", "&Set or reset prior distributions"};
  Button cmdUniform{*this, "cmdUniform", "Set &uniform-unbounded prior distributions"};
  Button cmdCancel{*this, "cmdCancel", "&Cancel"};

  /// Shows the chooser for the form of that name, which comes back when the priors are done. Showing it switches the
  /// priors on until it closes.
  void Open(const std::string& caller);

 protected:
  void OnUnload() override;

 private:
  void OpenFile();
  void SetPriors();
  void SetUniform();
  void BringCallerBack();

  RunState& state_;
  FrmMain& main_;
  Priors& priors_;
  PriorsCommands& commands_;
  FrmSetPriors& editor_;
  std::string caller_;
};

}  // namespace merlane
