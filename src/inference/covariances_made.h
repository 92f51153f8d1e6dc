#pragma once

#include <string>
#include <vector>

#include "uncertainty/covariance.h"
#include "uncertainty/covariance_report.h"

namespace merlane {

/// The covariances that have been calculated in a session, and under which priors. A covariance file does not tell its
/// priors; of one that was calculated here they are known.
class CovariancesMade {
 public:
  /// These have been calculated under priors made of `priors`; empty when there were none.
  void Keep(const Covariances& covariances, std::string priors);

  /// In words, how the priors of the covariances in this file differ from `priors`, when they were calculated here and
  /// never under these; empty otherwise. Estimates and standard errors need not agree beyond the digits that files
  /// keep.
  std::string OtherPriors(const CovarianceFile& file, const std::string& priors) const;

 private:
  struct Made {
    Array1<double> values;                  // 1..NPAR
    std::vector<CovarianceFile::Row> rows;  // with the standard errors
    std::string priors;

    bool Hold(const CovarianceFile& file) const;
  };
  std::vector<Made> made_;
};

}  // namespace merlane
