#include "uncertainty/profile.h"

#include <algorithm>

namespace merlane {

EvaluatedPoints EvaluateProfile(const PinnedParameter& pinned, std::int16_t ProfilePoints, RunState& state,
                                Objective& objective, const ProfileMinimiser& minimise, ProfileWatch& watch) {
  EvaluatedPoints points(ProfilePoints, pinned.H);
  Array1<double>& Value = state.algorithm.Value;
  for (int point = 1; point <= ProfilePoints; ++point) {
    const double x = pinned.ValueAt(point, ProfilePoints);
    Value(pinned.ProfileParameter) = x;
    watch.OnPoint(point);
    bool quit = state.free.NFREE > 0 && !minimise();
    if (!quit) {
      const double f = NegLnL(Value, state, objective, watch);
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
  points.Ascend();
  return points;
}

}  // namespace merlane
