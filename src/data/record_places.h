#pragma once

#include <vector>

#include "data/brood_data.h"

namespace merlane {

/// Where the records of a data set stand among its visits. Data files have a line for each record and none for a gap;
/// what was written from a data set with gaps and is read again gets its visits back to where they were written from,
/// so that the same intervals are predicted and figures by visit belong together.
class RecordPlaces {
 public:
  explicit RecordPlaces(const BroodData& data);

  /// Moves the visits of data with the same records. RuntimeFailure when they have others.
  void GiveTo(BroodData& data) const;

 private:
  std::vector<std::vector<int>> visitsOf_;  // by year and brood, gaps included
  std::vector<int> recordsOf_;              // by brood
  std::vector<std::size_t> visits_;         // of the records
  bool gaps_ = false;
};

}  // namespace merlane
