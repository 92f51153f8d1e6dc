#include "control/basis.h"

#include <algorithm>

#include "control/fuses.h"

namespace merlane {
namespace {

bool SameFree(const Basis& a, const Basis& b) {
  return std::ranges::equal(a.Step, b.Step, [](double x, double y) { return (x == 0) == (y == 0); });
}

}  // namespace

bool Basis::SameEstimates(const Basis& other) const {
  return reading == other.reading && Value == other.Value && SameFree(*this, other) && SameGroups(Fuse, other.Fuse) &&
         priors == other.priors;
}

bool Basis::SameSearch(const Basis& other) const { return search == other.search && Step == other.Step; }

Basis BasisOf(const RunState& state, const std::string& priors) {
  const AlgorithmData& a = state.algorithm;
  Basis basis{.reading = state.reading,
              .search = state.search,
              .Value = a.Value,
              .Step = a.Step,
              .Fuse = a.Fuse,
              .priors = priors,
              .constant = state.flags.NOBS == 0 ? state.flags.ObjectiveConstant : 0,
              .AlgName = a.AlgName,
              .besideAlgName = ""};
  // A member follows the first of its group at the next evaluation, whatever stands in it until then.
  for (int i = 1; i <= a.Fuse.Size(); ++i) basis.Value(i) = a.Value(LeaderOf(a.Fuse, i));
  return basis;
}

std::string ChangesBetween(const Basis& then, const Basis& now) {
  std::string changes;
  const auto add = [&](bool changed, const char* words) {
    if (!changed) return;
    if (!changes.empty()) changes += ", ";
    changes += words;
  };
  add(then.reading != now.reading, "other data have been read");
  if (then.Value.Size() == now.Value.Size()) {
    add(!SameFree(then, now), "other parameters are free");
    add(!SameGroups(then.Fuse, now.Fuse), "fuses have been changed");
    add(then.Value != now.Value, "parameter values have been changed");
    add(SameFree(then, now) && then.Step != now.Step, "step sizes have been changed");
  }
  add(then.priors != now.priors, "the priors have been changed");
  add(then.constant != now.constant, "another constant has been entered");
  add(then.search != now.search, "another minimization has been run");
  return changes;
}

}  // namespace merlane
