#pragma once

#include "data/brood_data.h"
#include "platform/random_streams.h"

namespace merlane {

/// Plans the visits of a simulated data set: in each year `broods` broods with one visit per day of age, hatch days and
/// initial sizes drawn from the next random stream. Counts behind the first are left to the simulator. RuntimeFailure
/// when a day is beyond the range of its field, the ages leave no visit, or broods would begin with less than nothing.
void PlanSimulation(BroodData& data, int broods, RandomStreams& random);

}  // namespace merlane
