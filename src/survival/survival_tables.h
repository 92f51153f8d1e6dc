#pragma once

#include <cstdint>
#include <vector>

#include "data/brood_data.h"

namespace merlane {

/// Expected numbers of individuals, and probabilities of the correlated state, for one vector of parameters. The
/// columns have the shape of the data's broods and visits; Missing where there is no value. An entry that a later
/// vector does not fill keeps what an earlier one left there.
struct SurvivalTables {
  // Per brood.
  std::vector<double> EHatchR;     // expected number at hatch had random mortality acted on the eggs
  std::vector<double> EHatchC;     // the same for correlated mortality
  std::vector<double> EHatch;      // E[brood size@hatch], over both
  std::vector<double> PCorrHatch;  // probability of the correlated state at the start of the last clutch interval
  // Expected juveniles over the interval that spans hatch: fate of the eggs, then fate of the juveniles.
  std::vector<double> JuvRR, JuvCR, JuvRC, JuvCC;

  // Per visit, about the interval from the visit before.
  std::vector<double> EVisitR;   // expected count under random mortality
  std::vector<double> EVisitC;   // under correlated mortality
  std::vector<double> EVisit;    // over both
  std::vector<double> PCorrEgg;  // probability of the correlated state at the start of a clutch interval
  std::vector<double> PCorrJuv;  // of a brood interval

  std::int32_t ClutchIntervals = 0;  // intervals filled; one that spans hatch counts here
  std::int32_t BroodIntervals = 0;
  bool BroodSizeDeficient = false;  // a brood needed its E[brood size@hatch] and had none
  bool HatchDateDeficient = false;  // a brood needed its hatch date and had none

  /// Gives the tables the shape of the data; every entry becomes 0.
  void Dimension(const BroodData& data);
  /// Every entry becomes Missing.
  void Preset();
};

}  // namespace merlane
