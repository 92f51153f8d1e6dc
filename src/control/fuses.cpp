#include "control/fuses.h"

#include <algorithm>

namespace merlane {
namespace {

/// Number of the group of that name, 0 when there is none.
int GroupOf(const FuseGroups& groups, const std::string& fuse) {
  for (int k = 1; k <= groups.FuseCount; ++k)
    if (groups.FuseName(k) == fuse) return k;
  return 0;
}

}  // namespace

int LeaderOf(const Array1<std::string>& fuses, int i) {
  if (fuses(i) == Unfused) return i;
  return static_cast<int>(std::ranges::find(fuses, fuses(i)) - fuses.begin()) + 1;
}

bool SameGroups(const Array1<std::string>& fuses, const Array1<std::string>& others) {
  if (fuses.Size() != others.Size()) return false;
  for (int i = 1; i <= fuses.Size(); ++i)
    if (LeaderOf(fuses, i) != LeaderOf(others, i)) return false;
  return true;
}

void BuildFuseGroups(RunState& state) {
  AlgorithmData& a = state.algorithm;
  FuseGroups& groups = state.fuses;
  groups.FuseCount = 0;
  groups.FuseName.Dimension(a.NPAR);
  groups.FuseMembers.Dimension(a.NPAR);
  groups.FuseValue.Dimension(a.NPAR);
  for (int i = 1; i <= a.NPAR; ++i) {
    if (a.Fuse(i) == Unfused) continue;
    if (const int k = GroupOf(groups, a.Fuse(i)); k > 0) {
      ++groups.FuseMembers(k);
      a.Step(i) = 0;
      a.Value(i) = groups.FuseValue(k);
    } else {
      const int added = ++groups.FuseCount;
      groups.FuseName(added) = a.Fuse(i);
      groups.FuseMembers(added) = 1;
      groups.FuseValue(added) = a.Value(i);
    }
  }
  groups.Leader.Dimension(groups.FuseCount);
  for (int k = 1; k <= groups.FuseCount; ++k)
    if (groups.FuseMembers(k) == 1) *std::ranges::find(a.Fuse, groups.FuseName(k)) = Unfused;
}

void ApplyFuses(Array1<double>& vector, RunState& state) {
  AlgorithmData& a = state.algorithm;
  FuseGroups& groups = state.fuses;
  if (groups.FuseCount == 0) return;
  const bool pinning = state.profile.ProfileOn || state.profile.IntegrationOn;
  // The first member met of each group leads; its place in the vector stands for "seen" and for the group's value.
  Array1<int>& leader = groups.Leader;
  leader.Fill(0);
  for (int i = 1; i <= a.NPAR; ++i) {
    if (a.Fuse(i) == Unfused) continue;
    const int k = GroupOf(groups, a.Fuse(i));
    if (k == 0) continue;
    const bool pinned = pinning && a.Step(i) == 0 && i == state.profile.ProfileParameter;
    if (leader(k) == 0 || pinned) {
      leader(k) = i;
    } else {
      vector(i) = vector(leader(k));
      a.Step(i) = 0;
    }
  }
}

void PackFree(RunState& state) {
  const AlgorithmData& a = state.algorithm;
  FreeParameters& free = state.free;
  free.FreeValue.Dimension(a.NPAR);
  free.FreeStep.Dimension(a.NPAR);
  free.FreeIndex.Dimension(a.NPAR);
  free.NFREE = 0;
  for (std::int16_t i = 1; i <= a.NPAR; ++i) {
    if (a.Step(i) == 0) continue;
    const int n = ++free.NFREE;
    free.FreeValue(n) = a.Value(i);
    free.FreeStep(n) = a.Step(i);
    free.FreeIndex(n) = i;
  }
  state.profile.ProfileState = 0;
}

}  // namespace merlane
