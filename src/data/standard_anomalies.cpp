#include "data/standard_anomalies.h"

#include <fmt/format.h>

#include "base/arithmetic.h"
#include "base/runtime_failure.h"

namespace merlane {
namespace {

void StandardiseCovariate(BroodData& data, int m) {
  const int broods = data.Broods();
  double n = 0, sum = 0, squares = 0;
  for (int b = 0; b < broods; ++b) {
    const double x = data.CovariatesOf(b)[m - 1];
    if (x == Missing) continue;
    n += 1;
    sum += x;
    squares += x * x;
  }
  const double mean = Divide(sum, n);
  const double SD = CheckedSqrt(Divide(Checked(squares), n) - mean * mean);
  for (int b = 0; b < broods; ++b) {
    double& x = data.CovariatesOf(b)[m - 1];
    if (x != Missing) x = Divide(x - mean, SD);
  }
}

}  // namespace

void StandardiseCovariates(BroodData& data) {
  for (int m = 1; m <= data.NCov; ++m) {
    try {
      StandardiseCovariate(data, m);
    } catch (const RuntimeFailure& failure) {
      throw RuntimeFailure(fmt::format("{} in the standard anomalies of brood covariate {} ({})", failure.what(), m,
                                       data.CovariateName(m)));
    }
  }
}

}  // namespace merlane
