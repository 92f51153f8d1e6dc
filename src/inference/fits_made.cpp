#include "inference/fits_made.h"

#include <algorithm>
#include <utility>

#include "control/fuses.h"
#include "inference/covariance_match.h"

namespace merlane {

void FitsMade::Keep(const AlgorithmData& estimates, Provenance provenance) {
  made_.push_back({estimates.Value, estimates.Step, estimates.Fuse, std::move(provenance)});
}

bool FitsMade::Made::IsOf(const AlgorithmData& estimates) const {
  const auto bothFree = [](double a, double b) { return (a != 0) == (b != 0); };
  return std::ranges::equal(Value, estimates.Value, SameInFiles) &&
         std::ranges::equal(Step, estimates.Step, bothFree) && SameGroups(Fuse, estimates.Fuse);
}

std::string FitsMade::OtherData(const AlgorithmData& estimates, const Provenance& present) const {
  std::string file;
  for (const Made& fit : made_) {
    if (!fit.IsOf(estimates)) continue;
    if (fit.provenance.data == present.data) return "";
    file = fit.provenance.file;
  }
  return file;
}

std::string FitsMade::OtherPriors(const AlgorithmData& estimates, const Provenance& present,
                                  const std::string& made) const {
  std::string difference;
  for (const Made& fit : made_) {
    if (!fit.IsOf(estimates) || fit.provenance.data != present.data) continue;
    difference = DifferenceOfPriors(fit.provenance.priors, present.priors, made);
    if (difference.empty()) break;
  }
  return difference;
}

}  // namespace merlane
