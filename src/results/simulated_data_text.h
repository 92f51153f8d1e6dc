#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "data/brood_data.h"
#include "likelihood/calculation_watch.h"
#include "platform/random_streams.h"

namespace merlane {

/// The text of a data file with the visits that are made to a simulated data set of daily counts: the first of each
/// brood, then one after SampFreq1 to SampFreq2 days, drawn evenly from the stream of the simulation. A brood ends with
/// its first visit of count 0. Where an abort stops the writing the text ends. RuntimeFailure when visits would not
/// lie at least a day apart.
std::string SimulatedDataText(const BroodData& data, const std::vector<std::int16_t>& SimCount, RandomStreams& random,
                              const CalculationWatch& watch);

}  // namespace merlane
