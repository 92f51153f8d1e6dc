// Whole fits: a simplex, Marquardt's method and the three covariance grids, on the example data and on 2000 broods of
// 10 visits. Prints for each the function calls, the wall time and how much of it was spent outside the objective.

#include <fmt/format.h>

#include "measured_run.h"
#include "minimise/marquardt.h"
#include "minimise/simplex.h"
#include "uncertainty/covariance.h"

namespace {

using namespace merlane;

void Print(const MeasuredRun& run, const char* command, const MeasuredRun::Cost& cost) {
  fmt::print("{:<34}{:<14}{:>6}{:>8}{:>12.4f}{:>14.6f}{:>10.3f} %\n", run.name, command, run.state.free.NFREE,
             cost.calls, cost.all.count(), cost.all.count() / cost.calls, cost.PercentOutside());
}

void Fit(MeasuredRun& run) {
  RunState& state = run.state;
  const AlgorithmData start = state.algorithm;
  Print(run, "simplex", run.Measure([&] {
    SimplexState simplex;
    SimplexWatch watch;
    MinimiseSimplex(state, run.objective, simplex, watch);
  }));
  const AlgorithmData minimum = state.algorithm;
  state.algorithm = start;
  Print(run, "Marquardt", run.Measure([&] {
    MarquardtWatch watch;
    MinimiseMarquardt(state, run.objective, DerivativeMode::Numerical, watch);
  }));
  state.algorithm = minimum;
  Print(run, "covariances", run.Measure([&] {
    CovarianceWatch watch;
    Covariances c = PrepareCovariances({}, state, run.objective);
    CalculateCovariances(c, false, state, run.objective, watch);
  }));
}

}  // namespace

int main() {
  fmt::print("{:<34}{:<14}{:>6}{:>8}{:>12}{:>14}{:>12}\n", "data", "command", "free", "calls", "seconds", "s per call",
             "outside");
  MeasuredRun example = ExampleData();
  Fit(example);
  MeasuredRun many = ManyBroods();
  Fit(many);
}
