#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "control/objective.h"
#include "control/run_state.h"
#include "uncertainty/confidence_series.h"
#include "uncertainty/neg_ln_l.h"
#include "uncertainty/pinned_parameter.h"

namespace merlane {

/// Follows a likelihood profile.
class ProfileWatch : public ConstantWatch {
 public:
  /// A point is about to be evaluated; Value has the parameter's value.
  virtual void OnPoint(int /*point*/) {}
  /// Asked behind each point's evaluation: does the user quit?
  virtual bool Quits() { return false; }
  /// A point is done.
  virtual void OnPointDone(int /*point*/) {}
  /// How many points could not be evaluated, if there are any, and why the first of them could not.
  virtual void OnUnevaluated(int /*points*/, const std::string& /*why*/) {}
};

/// -ln[L] of a point that cannot be evaluated: it has no likelihood.
inline constexpr double UnevaluatedNegLnL = 1E+20;

/// Brings the free parameters in Value to the minimum of the objective. False when the user quits the profile.
using ProfileMinimiser = std::function<bool()>;

/// The profile of a pinned parameter: at `ProfilePoints` values (odd, 3 at least) around its own, a step apart, all
/// others are minimised over, and -ln[L] is the objective at the minimum that is left in Value, called once more. With
/// no other parameter free a point is that one call alone. A simplex starts each point from the packed values,
/// Marquardt's method goes on from the last point.
///
/// A point at which the arithmetic fails is UnevaluatedNegLnL, and the profile goes on; ArithmeticFailure when it fails
/// at every point.
///
/// Quitting at a point keeps the points up to the one before the last that was done. The points come ascending. Leaves
/// Value at the last point's minimum.
EvaluatedPoints EvaluateProfile(const PinnedParameter& pinned, std::int16_t ProfilePoints, RunState& state,
                                Objective& objective, const ProfileMinimiser& minimise, ProfileWatch& watch);

}  // namespace merlane
