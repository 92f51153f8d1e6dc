#include "control/frm_defaults.h"

namespace merlane {

FrmDefaults::FrmDefaults(Desk& d, FrmMain& main)
    : FrmInformation(d, main, "frmDefaults", "Default names and values etc.") {
  txtDefaultNames.fixedPitch = false;
  txtDefaultNames.wraps = true;
  txtDefaultNames.text =
      "Tolvane is most user-friendly when used at a resolution of 1280 X 1024 pixels (small or large fonts).  "
      "It's not too bad at 1152 X 864 pixels (small fonts) or 1024 X 768 pixels (small fonts).  Lower resolutions or "
      "large fonts tend to be less satisfactory."
      "\r\n\r\n"
      "An unnamed file to which data are to be saved will be given a default, but changable, 8-digit time-date based "
      "name.  For example: 'mmddhhmm.alg' for an algorithm file."
      "\r\n\r\n"
      "A value of -1 for standard errors and associated outputs in the covariance routine indicates that no reliable "
      "values for those outputs could be generated, i.e., the Hessian matrix was not positive-definite.  You might try "
      "the Bayesian or maximum-likelihood routines."
      "\r\n\r\n"
      "Occasionally, and depending on the particular model, a value that you know should be positive (or negative) "
      "will appear as negative (or positive) during minimization. Don't worry, Tolvane knows what's going on and "
      "retains and reports the proper sign for that value."
      "\r\n\r\n"
      "Occasionally, a value you fixed at zero (0) might appear as a very small number (e.g., 0.00001) in the output "
      "summary. This means that Tolvane avoided 'divide by zero' or 'Log[0]' errors by safely choosing that small "
      "number inconsequentially different from zero.";
}

}  // namespace merlane
