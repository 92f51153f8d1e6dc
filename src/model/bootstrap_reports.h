#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "model/bootstrap.h"
#include "model/brood_data.h"

namespace merlane {

/// The lines about a bootstrap at the end of a results summary. The lines of all these texts end with CR LF.
std::string BootstrapSummary(const BootstrapResults& results);

/// The text of a .bpv file: deviance and parameters of each replicate.
std::string BootstrapParameterText(const BootstrapResults& results);

/// The text of a .bse file: each record of the real data, with mean, standard error, minimum and maximum of the
/// survival from there.
std::string BootstrapSurvivalText(const BootstrapResults& results, const BroodData& data);

/// The texts of replicates' data files: the records of the real data with simulated counts. All but the counts is the
/// same in every replicate and put into words once.
class ReplicateDataText {
 public:
  explicit ReplicateDataText(const BroodData& data);

  /// The text with these counts (of the shape of the data's visits): 0 behind a brood's death.
  std::string Of(const std::vector<std::int16_t>& SimCount) const;

 private:
  std::vector<std::size_t> visits_;  // in the order of the records
  std::vector<std::string> before_;  // what stands before the count of each
  std::string end_;
};

}  // namespace merlane
