#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "data/brood_data.h"

namespace merlane {

/// The texts of the data files of a bootstrap's replicates: the records of the real data with simulated counts. All but
/// the counts is the same in every replicate and put into words once.
class ReplicateDataText {
 public:
  explicit ReplicateDataText(const BroodData& data);

  /// The text with these counts (of the shape of the data's visits): 0 behind a brood's death. Lines end with CR LF.
  std::string Of(const std::vector<std::int16_t>& SimCount) const;

 private:
  std::vector<std::size_t> visits_;  // in the order of the records
  std::vector<std::string> before_;  // what stands before the count of each
  std::string end_;
};

}  // namespace merlane
