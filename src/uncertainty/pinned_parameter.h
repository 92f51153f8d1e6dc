#pragma once

#include <cmath>
#include <cstdint>
#include <functional>

#include "base/at_end.h"
#include "control/fuses.h"
#include "control/run_state.h"

namespace merlane {

/// Takes a parameter out of the free ones, which are packed without it, so that an evaluation can set its value. When
/// this goes the parameter has its value and step again, those that are fused with it have their values, whatever has
/// happened in between, and NFREE counts it.
class PinnedParameter {
 public:
  PinnedParameter(RunState& state, std::int16_t parameter)
      : ProfileParameter(parameter),
        X0(state.algorithm.Value(parameter)),
        H(state.algorithm.Step(parameter)),
        state_(state),
        reading_(state.reading),
        own_(state.algorithm.Value),
        restoredStep_(H) {
    state_.profile.ProfileParameter = parameter;
    state_.profile.pinned = {parameter, X0, H, state.algorithm.Value, state.algorithm.Step};
    state_.algorithm.Step(parameter) = 0;
    PackFree(state_);
  }

  /// Gives value and step back already, though NFREE does not yet count the parameter. False when other data have been
  /// read meanwhile: they are another model's then.
  bool Restore() {
    state_.profile.pinned.reset();
    if (state_.reading != reading_) return false;
    AlgorithmData& a = state_.algorithm;
    for (int i = 1; i <= a.NPAR; ++i)
      if (LeaderOf(a.Fuse, i) == LeaderOf(a.Fuse, ProfileParameter)) a.Value(i) = own_(i);
    a.Step(ProfileParameter) = restoredStep_;
    return true;
  }

  /// A negative step will come back positive.
  void DropSign() {
    restoredStep_ = std::fabs(H);
    if (state_.profile.pinned) state_.profile.pinned->step = restoredStep_;
  }

  /// The value it is given at a point of `points`, the middle one of which is its own.
  double ValueAt(int point, int points) const { return X0 - (MiddleOf(points) - point) * H; }
  /// A step with which all points would lie on the side of 0 on which its value lies.
  double StepOnOneSide(int points) const { return std::fabs(X0) / MiddleOf(points); }

  const std::int16_t ProfileParameter;
  const double X0;  // its value
  const double H;   // its step

 private:
  static int MiddleOf(int points) { return (points - 1) / 2 + 1; }

  RunState& state_;
  const std::int64_t reading_;
  const Array1<double> own_;  // values of all parameters
  double restoredStep_;
  const AtEnd<std::function<void()>> unpinned_{[this] {
    if (Restore()) ++state_.free.NFREE;
  }};
};

}  // namespace merlane
