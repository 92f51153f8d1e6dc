#pragma once

#include <string>
#include <vector>

#include "inference/provenance.h"
#include "uncertainty/covariance.h"
#include "uncertainty/covariance_report.h"

namespace merlane {

/// The covariances that have been calculated in a session, and with which data and priors. A covariance file does not
/// tell them; of one that was calculated here they are known.
class CovariancesMade {
 public:
  /// These have been calculated with these data and priors.
  void Keep(const Covariances& covariances, Provenance provenance);

  /// In words, how the data or the priors of the covariances in this file differ from those of a model, when they were
  /// calculated here and never with these; empty otherwise. Estimates and standard errors need not agree beyond the
  /// digits that files keep.
  std::string Difference(const CovarianceFile& file, const Provenance& model) const;

 private:
  struct Made {
    Array1<double> values;                  // 1..NPAR
    std::vector<CovarianceFile::Row> rows;  // with the standard errors
    Provenance provenance;

    bool Hold(const CovarianceFile& file) const;
  };
  std::vector<Made> made_;
};

}  // namespace merlane
