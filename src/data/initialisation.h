#pragma once

#include <cstdint>
#include <string>

namespace merlane {

/// The settings of a simulated data set: how large the clutches or broods are when first seen (a count), between which
/// ages they are followed (days relative to hatch), when they hatch (day of the year) and after how many days they are
/// visited again.
struct SimulatorSettings {
  std::int16_t MinInitSize = 0, MaxInitSize = 0;
  std::int16_t InitAge = 0, FinalAge = 0;
  std::int16_t MinHatchDay = 0, MaxHatchDay = 0;
  std::int16_t SampFreq1 = 0, SampFreq2 = 0;
};

/// What a user has chosen when an analysis begins; taken into the run by a read of data outside a bootstrap.
struct Initialisation {
  bool Simulate = false;
  std::string DataFileName;
  std::int16_t NCov = 0;              // number of brood covariates, 0 to 50
  std::string CovariateFormat = "O";  // "O" as they stand, "A" standard anomalies
  std::int16_t FirstYear = 1995, LastYear = 1995;
  bool CensorEggs = false, CensorJuvs = false;
  SimulatorSettings simulator;
  std::int16_t SimulatedBroods = 0;  // broods per year of a simulation
};

}  // namespace merlane
