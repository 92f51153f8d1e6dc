#include "uncertainty/prior_profile.h"

#include <algorithm>

#include "base/arithmetic.h"

namespace merlane {
namespace {

double StepOf(const std::string& code, double m, double s, int n) {
  if (code == "E") return 100 * Divide(1, m) / (5 * (n - 1));
  if (code == "B") return 1.0 / (n - 1);
  if (code == "S" || code == "D") {
    const int half = (n - 1) / 2;
    if (s > 0) return 3 * s / half;
    if (m != 0) return m / half;
  }
  return 100 * s / (10 * (n - 1));
}

/// Moves the points so that the first lies at `first`.
void BeginAt(double first, PriorDomain& domain) {
  const int n = domain.X.Size();
  const double low = domain.X(1), high = domain.X(n), step = domain.step;
  for (int i = 1; i <= n; ++i) domain.X(i) = Divide((i - 1) * step * high, high - low) + first;
  domain.step = Divide(step * high, high - low);
}

PriorDomain BoundedDomain(const Priors& priors, int p, int n) {
  const double low = priors.PriorFirstMean(p) - 3 * priors.PriorFirstSD(p);
  const double high = NumberOf(priors.PriorSecondMean(p)) + 3 * NumberOf(priors.PriorSecondSD(p));
  PriorDomain domain{Array1<double>(n), (high - low) / (n - 1)};
  for (int i = 1; i <= n; ++i) domain.X(i) = low + (i - 1) * domain.step;
  return domain;
}

}  // namespace

PriorDomain DomainOfPrior(const Priors& priors, int p, int n) {
  const std::string& code = priors.PriorCode(p);
  if (code == "T") return BoundedDomain(priors, p, n);
  const double m = priors.PriorFirstMean(p);
  const int mid = (n - 1) / 2 + 1;
  PriorDomain domain{Array1<double>(n), StepOf(code, m, priors.PriorFirstSD(p), n)};
  for (int i = 1; i <= n; ++i) domain.X(i) = (i - mid) * domain.step + m;
  if (code == "G" || code == "L") BeginAt(PriorLowerEnd, domain);
  if (code == "E") BeginAt(0, domain);
  if (code == "B")
    for (double& x : domain.X) x = std::clamp(x, PriorLowerEnd, PriorUpperEnd);
  return domain;
}

EvaluatedPoints ProfilePrior(Array1<double> values, int p, int n, double ObjectiveConstant, Priors priors,
                             PriorProfileWatch& watch) {
  const PriorDomain domain = DomainOfPrior(priors, p, n);
  EvaluatedPoints points(n, domain.step);
  for (int i = 1; i <= n; ++i) {
    values(p) = domain.X(i);
    watch.OnPoint(i, values(p));
    EvaluatePrior(values, ObjectiveConstant, priors);
    points.Add(i, values(p), priors.PriorNegLnL(p));
  }
  points.Ascend();
  return points;
}

}  // namespace merlane
