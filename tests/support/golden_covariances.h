#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "uncertainty/covariance.h"

namespace merlane::test {

/// Kept figures of one covariance calculation that followed a simplex run.
struct GoldenCovariances {
  std::string name;         // of the case
  Covariances covariances;  // fuses and names are there where a report is kept
  std::string pane;         // what the pane showed during the calculation
  std::string report;       // the .cov file; empty when none is kept
};

inline void PrintTo(const GoldenCovariances& kept, std::ostream* out) { *out << kept.name; }

/// All that are kept, and those with a report.
std::vector<GoldenCovariances> KeptCovariances();
std::vector<GoldenCovariances> KeptReports();

}  // namespace merlane::test
