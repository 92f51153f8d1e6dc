#include "priors/prior_review.h"

#include <fmt/format.h>

#include "base/arithmetic.h"
#include "base/elementary.h"
#include "base/number_text.h"

namespace merlane {
namespace {

constexpr const char* Explanation =
    "Note: Here is a chance to review the likelihood of your current parameter estimates relative to your Bayesian "
    "prior distributions.\n\n"
    "A -ln[likelihood] value of zero applies when your maximum-likelihood estimate for a parameter occurs at the most "
    "likely value of your chosen prior distribution for that parameter.  If the values shown here are quite large "
    "(i.e., parameter estimates are much less likely than the most likely prior value), then you might wish to "
    "reconsider your prior assumptions.  You should also check, and be suspicious of, estimates lying against a left "
    "or right boundary of a steep cliff distribution or the uniform-bounded distribution.\n\n"
    "You should also formally evaluate the overlap of the prior probability distribution of each parameter with the "
    "posterior distribution for that parameter, e.g., the (perhaps) Gaussian confidence region from a covariance "
    "analysis.  This overlap is a measure of the probability that the parameter estimate can reasonably be associated "
    "with both distributions. Depending on sample size, and if the distributions are nearly Gaussian, then you can try "
    "a t-test or a z-test using the moments of the distributions.  If the distributions do not significantly overlap, "
    "then you might want to reconsider your prior distribution.  Cumulative and attenuated probability plots for prior "
    "distributions can be saved in *.pdp files.\n\n";

}  // namespace

std::string PriorReview(const Array1<double>& values, double ObjectiveConstant, Priors& priors) {
  EvaluatePrior(values, ObjectiveConstant, priors);
  std::string text = Explanation;
  double sum = 0;
  for (int i = 1; i <= priors.PriorCode.Size(); ++i) {
    if (priors.PriorCode(i) == "U") continue;
    const double scaled = Checked(ObjectiveConstant * priors.PriorNegLnL(i));
    sum = Checked(sum + scaled);
    text += fmt::format("Parameter {} at {} has a prior -ln[L] of {} and a prior likelihood of {}\n", Format(i, "##0"),
                        Format(values(i), "0.000E+00"), Format(scaled, "##0.00"),
                        Format(Checked(Exp(-priors.PriorNegLnL(i) * ObjectiveConstant)), "0.000000"));
  }
  return text + "           The entire model has a prior -ln[L] of " + Format(sum, "##0.00");
}

}  // namespace merlane
