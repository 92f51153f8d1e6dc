#include "control/frm_wisdom.h"

namespace merlane {

FrmWisdom::FrmWisdom(Desk& d, FrmMain& main)
    : FrmInformation(d, main, "frmWisdom", "Patience and wisdom lead to satisfying results") {
  txtWisdom.fixedPitch = false;
  txtWisdom.wraps = true;
  txtWisdom.text =
      "By far the single most common cause of a frustrating program crash is an unwise choice of initial model "
      "parameters to begin a minimization."
      "\r\n\r\n"
      "For example, poor parameter estimates can lead to untrapped overflows, logarithms or square roots of zero or "
      "negative numbers, or divisions by zero."
      "\r\n\r\n"
      "When possible (often it's not), use a spreadsheet and its graphics to judge how well particular parameter "
      "values suit a data set to be analyzed."
      "\r\n\r\n"
      "When the objective function of a particular model seems sensitive to parameter values, choose small initial "
      "step sizes when beginning a minimization."
      "\r\n\r\n"
      "Poor or unsatisfactory model performance can be due to incompatibility between the model and the data.  Be sure "
      "you've chosen the appropriate model."
      "\r\n\r\n"
      "Extremely large values for the objective function are likely due to a penalty value that keeps parameter values "
      "within acceptable limits, e.g., 0<=p<=1."
      "\r\n\r\n"
      "When model-building, try to use parameterizations that are biologically meaningful, rather than, say, "
      "polynomial coefficients which are difficult to guess."
      "\r\n\r\n"
      "Of course, the appropriate use of link functions can be helpful, but you'll then need to back-transform the SEs "
      "of the transformed parameters."
      "\r\n\r\n"
      "YOU ARE THUS WELL ADVISED TO GIVE CONSIDERABLE THOUGHT TO YOUR CHOICE OF INITIAL PARAMETER VALUES AND STEP "
      "SIZES!"
      "\r\n\r\n"
      "On simplex estimation: Nelder, J. A. and Mead, R. (1965). A simplex method for function minimization. The "
      "Computer Journal 7: 308-313."
      "\r\n\r\n"
      "On model selection: Burnham, K. P. and Anderson, D. R. (2002). Model Selection and Multimodel Inference: A "
      "Practical Information-Theoretic Approach, 2nd edition. Springer, New York.";
}

}  // namespace merlane
