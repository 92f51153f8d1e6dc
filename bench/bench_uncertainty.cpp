// The evaluation of one parameter on the example data: posteriors with one and two other free parameters, and profiles
// by both minimisers. Prints nodes per second, points per minute, and how much time was spent outside the objective,
// which shall stay below 5 %.

#include <fmt/format.h>

#include <algorithm>
#include <functional>

#include "measured_run.h"
#include "minimise/marquardt.h"
#include "minimise/simplex.h"
#include "uncertainty/posterior.h"
#include "uncertainty/profile.h"

namespace {

using namespace merlane;

constexpr std::int16_t Points = 25;

/// The number of the first free parameter.
std::int16_t FirstFree(const RunState& state) {
  return static_cast<std::int16_t>(std::ranges::find_if(state.algorithm.Step, [](double step) { return step != 0; }) -
                                   state.algorithm.Step.begin() + 1);
}

/// Freezes all free parameters but the first `count`, whose steps become a hundredth of their values.
void KeepFree(RunState& state, int count) {
  AlgorithmData& a = state.algorithm;
  for (int i = 1; i <= a.NPAR; ++i)
    if (a.Step(i) != 0) a.Step(i) = count-- > 0 ? 0.01 * a.Value(i) : 0;
}

void Integrate(MeasuredRun& run, int others) {
  const AlgorithmData kept = run.state.algorithm;
  KeepFree(run.state, others + 1);
  double nodes = 0;
  const MeasuredRun::Cost cost = run.Measure([&] {
    const PinnedParameter pinned(run.state, FirstFree(run.state));
    double ReferenceF = run.objective(run.state.algorithm.Value, 1) / run.state.flags.ObjectiveConstant;
    PosteriorWatch watch;
    run.state.profile.IntegrationOn = true;
    nodes = EvaluatePosterior(pinned, {Points, Points}, run.state, run.objective, ReferenceF, watch).NodeCounter;
    run.state.profile.IntegrationOn = false;
  });
  fmt::print("posterior, {} other free: {:.0f} nodes, {:.0f} nodes per second, outside the objective {:.2f} %\n",
             others, nodes, nodes / cost.all.count(), cost.PercentOutside());
  run.state.algorithm = kept;
}

void Profile(MeasuredRun& run, const char* method, const std::function<void()>& minimise) {
  const AlgorithmData kept = run.state.algorithm;
  const MeasuredRun::Cost cost = run.Measure([&] {
    const PinnedParameter pinned(run.state, FirstFree(run.state));
    ProfileWatch watch;
    run.state.profile.ProfileOn = true;
    const auto minimised = [&] {
      minimise();
      return true;
    };
    EvaluateProfile(pinned, Points, run.state, run.objective, minimised, watch);
    run.state.profile.ProfileOn = false;
  });
  fmt::print("profile by {}, {} other free: {} calls, {:.0f} points per minute, outside the objective {:.2f} %\n",
             method, run.state.free.NFREE - 1, cost.calls, 60 * Points / cost.all.count(), cost.PercentOutside());
  run.state.algorithm = kept;
}

}  // namespace

int main() {
  MeasuredRun run = ExampleData();
  RunState& state = run.state;
  SimplexState simplex;
  run.Measure([&] {
    SimplexWatch watch;
    MinimiseSimplex(state, run.objective, simplex, watch);
  });
  fmt::print("{}, at the minimum of a simplex, {} points on each axis\n", run.name, Points);
  Integrate(run, 1);
  Integrate(run, 2);
  Profile(run, "simplex", [&] {
    simplex.Forget();
    SimplexWatch watch;
    MinimiseSimplex(state, run.objective, simplex, watch);
  });
  Profile(run, "Marquardt", [&] {
    MarquardtWatch watch;
    MinimiseMarquardt(state, run.objective, DerivativeMode::Numerical, watch);
  });
}
