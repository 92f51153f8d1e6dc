#pragma once

#include "control/run_state.h"

namespace merlane {

/// The fuse of a parameter that moves alone.
inline constexpr const char* Unfused = "~~";

/// The parameter that moves parameter i: the first that carries its fuse, or itself when it is unfused.
int LeaderOf(const Array1<std::string>& fuses, int i);

/// Whether the same parameters move together, whatever their groups are called.
bool SameGroups(const Array1<std::string>& fuses, const Array1<std::string>& others);

/// Finds the fused groups. All members take the value of their first; steps of the members behind it become 0; a fuse
/// that only one parameter carries is removed. Changes Value, Step and Fuse for good.
void BuildFuseGroups(RunState& state);

/// Gives each fused parameter of `vector` (1..NPAR) the value of its group's leader, and a step of 0. While a profile
/// or integration runs, a pinned follower (step 0, number ProfileParameter) passes its own value to the members behind
/// it.
void ApplyFuses(Array1<double>& vector, RunState& state);

/// Packs the parameters whose step is not 0. Clears ProfileState.
void PackFree(RunState& state);

}  // namespace merlane
