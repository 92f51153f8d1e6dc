#include "inference/covariances_made.h"

#include <algorithm>
#include <utility>

#include "inference/covariance_match.h"

namespace merlane {
namespace {

bool SameRow(const CovarianceFile::Row& a, const CovarianceFile::Row& b) {
  return a.parameter == b.parameter && std::ranges::equal(a.standardErrors, b.standardErrors, SameInFiles);
}

}  // namespace

void CovariancesMade::Keep(const Covariances& covariances, Provenance provenance) {
  Made& made = made_.emplace_back(Made{covariances.CovBaseValue, {}, std::move(provenance)});
  for (int a = 1; a <= covariances.CovCount; ++a) {
    CovarianceFile::Row& row = made.rows.emplace_back();
    row.parameter = covariances.CovIndex(a);
    for (int g = 1; g <= covariances.grid.Size(); ++g)
      row.standardErrors[static_cast<std::size_t>(g) - 1] = covariances.grid(g).standardErrors(a);
  }
}

bool CovariancesMade::Made::Hold(const CovarianceFile& file) const {
  return std::ranges::equal(values, file.values, SameInFiles) && std::ranges::equal(rows, file.rows, SameRow);
}

std::string CovariancesMade::Difference(const CovarianceFile& file, const Provenance& model) const {
  std::string difference;
  for (const Made& made : made_) {
    if (!made.Hold(file)) continue;
    const Provenance& own = made.provenance;
    difference = own.data != model.data ? "with other data, those of " + own.file
                                        : DifferenceOfPriors(own.priors, model.priors, "the model is ranked");
    if (difference.empty()) return "";
    difference = "it was calculated " + difference;
  }
  return difference;
}

}  // namespace merlane
