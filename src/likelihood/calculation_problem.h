#pragma once

#include <string>

#include "platform/window_system.h"

namespace merlane {

// The warnings about probabilities that do not sum to 1. The calculation goes on behind each.

/// Of a distribution formed in the procedure of that name.
Message InaccurateProbabilities(const std::string& title, const std::string& procedure);

/// Of one fate over hatch.
Message InaccurateSpanningDistribution();

/// Of a prediction over hatch, mixed over the four fates, whose probabilities add up to `sum`.
Message SumOfProbabilitiesNotOne(double sum);

}  // namespace merlane
