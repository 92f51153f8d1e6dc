#include "inference/fits_made.h"

#include <algorithm>
#include <utility>

#include "inference/covariance_match.h"

namespace merlane {

void FitsMade::Keep(const AlgorithmData& estimates, Data data) {
  made_.push_back({estimates.Value, estimates.Step, estimates.Fuse, std::move(data)});
}

bool FitsMade::Made::IsOf(const AlgorithmData& estimates) const {
  const auto bothFree = [](double a, double b) { return (a != 0) == (b != 0); };
  return std::ranges::equal(Value, estimates.Value, SameInFiles) &&
         std::ranges::equal(Step, estimates.Step, bothFree) && Fuse == estimates.Fuse;
}

std::string FitsMade::OtherData(const AlgorithmData& estimates, const Data& data) const {
  std::string file;
  for (const Made& fit : made_) {
    if (!fit.IsOf(estimates)) continue;
    if (fit.data.digest == data.digest) return "";
    file = fit.data.file;
  }
  return file;
}

}  // namespace merlane
