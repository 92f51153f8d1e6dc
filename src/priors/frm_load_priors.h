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

  /// Shows the chooser instead of the form that is in charge, which comes back when the priors are done. Showing it
  /// switches the priors on until it closes.
  void Open();

 protected:
  void OnLoad() override;
  bool OnCloseRequest() override;

 private:
  void OpenFile();
  void SetPriors();
  void SetUniform();
  /// Whether priors count, now that the chooser closes.
  void SettleBayes();
  void Close();

  RunState& state_;
  FrmMain& main_;
  Priors& priors_;
  PriorsCommands& commands_;
  FrmSetPriors& editor_;
};

}  // namespace merlane
