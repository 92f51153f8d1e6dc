#pragma once

#include <string>

#include "platform/window_system.h"

namespace merlane {

/// The warnings about probabilities that do not sum to 1. The calculation goes on behind each.
inline Message InaccurateProbabilities(const std::string& title, const std::string& procedure) {
  return {title, "Unacceptably poor numerical accuracy in probability calculation in procedure '" + procedure + "'",
          style::Critical};
}

inline Message InaccurateSpanningDistribution() {
  return InaccurateProbabilities("Calculation problem", "Calc_Probs_and_Theta");
}

/// `sum` is that of a prediction over hatch, mixed over the four fates.
Message SumOfProbabilitiesNotOne(double sum);

}  // namespace merlane
