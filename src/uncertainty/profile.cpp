#include "uncertainty/profile.h"

#include <algorithm>
#include <optional>

#include "base/arithmetic_failure.h"

namespace merlane {

EvaluatedPoints EvaluateProfile(const PinnedParameter& pinned, std::int16_t ProfilePoints, RunState& state,
                                Objective& objective, const ProfileMinimiser& minimise, ProfileWatch& watch) {
  EvaluatedPoints points(ProfilePoints, pinned.H);
  Array1<double>& Value = state.algorithm.Value;
  int unevaluated = 0;
  std::optional<ArithmeticFailure> first;
  for (int point = 1; point <= ProfilePoints; ++point) {
    const double x = pinned.ValueAt(point, ProfilePoints);
    Value(pinned.ProfileParameter) = x;
    watch.OnPoint(point);
    bool quit = false;
    double f = UnevaluatedNegLnL;
    try {
      quit = state.free.NFREE > 0 && !minimise();
      if (!quit) f = NegLnL(Value, state, objective, watch);
    } catch (const ArithmeticFailure& failure) {
      ++unevaluated;
      if (!first) first = failure;
    }
    if (!quit) {
      quit = watch.Quits();
      if (!quit) points.Add(point, x, f);
      points.NoteLeft(x, Value(pinned.ProfileParameter));
    }
    if (quit) {
      points.Keep(std::max(0, point - 2));
      break;
    }
    watch.OnPointDone(point);
  }
  if (unevaluated == ProfilePoints) throw *first;
  if (first) watch.OnUnevaluated(unevaluated, first->what());
  points.Ascend();
  return points;
}

}  // namespace merlane
