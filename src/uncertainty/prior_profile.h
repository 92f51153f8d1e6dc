#pragma once

#include "priors/distributions.h"
#include "uncertainty/confidence_series.h"

namespace merlane {

/// Where the points of a prior's profile lie.
struct PriorDomain {
  Array1<double> X;
  double step = 0;  // distance of the points; of a beta distribution, before they are held within 0 to 1
};

/// `points` values (odd, 3 at least) over the domain that the terms of parameter `p`'s prior suggest: ten standard
/// deviations around a mean, three on the rising or falling side of a foot, three beyond both feet of a bounded one.
/// The domains of gamma, ln-normal and exponential distributions are moved to begin at 0 or just above, that of a beta
/// distribution is held between 1e-06 and 0.999999. RuntimeFailure when a mean or deviation of 0 leaves no domain.
PriorDomain DomainOfPrior(const Priors& priors, int p, int points);

/// Follows the profile of a prior.
class PriorProfileWatch {
 public:
  virtual ~PriorProfileWatch() = default;
  virtual void OnPoint(int /*point*/, double /*value*/) {}
};

/// -ln[L] of parameter `p`'s prior over its domain, all other parameters as in `values`: all priors are evaluated at
/// each point, so that one that fails ends the profile. The points come ascending. RuntimeFailure where a prior cannot
/// be computed.
EvaluatedPoints ProfilePrior(Array1<double> values, int p, int points, double ObjectiveConstant, Priors priors,
                             PriorProfileWatch& watch);

}  // namespace merlane
