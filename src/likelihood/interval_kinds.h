#pragma once

#include <cstdint>
#include <optional>

#include "data/brood_data.h"

namespace merlane {

// What the ages, dates and stages of two visits that follow each other make of the interval between them. Fit and
// simulation ask here, so that a count is simulated from what a prediction would be made of.

enum class ClutchInterval : std::uint8_t {
  FirstOnHatchDay,  // no interval: the first visit is on the hatch day
  ByAge,            // both visits before hatch
  ToHatch,          // the later visit is behind hatch; the interval ends at hatch
  ToHatchDay,       // the later visit is on the hatch day itself
  ByDate,           // of a clutch without an age
};

enum class BroodInterval : std::uint8_t {
  FirstOnHatchDay,
  ByAge,
  AgeBeforeUnknown,  // no interval, though the mortality is formed
  FromClutch,        // the earlier visit is before hatch; the interval begins at hatch
  ByDate,            // of a brood without an age
};

/// The interval that ends at a visit, as far as it concerns the eggs, and the juveniles; none where it does not. Ages
/// before laying or past fledging are for the caller to leave out, since they depend on parameters.
std::optional<ClutchInterval> ClutchIntervalTo(const BroodData& data, int brood, int visit);
std::optional<BroodInterval> BroodIntervalTo(const BroodData& data, int brood, int visit);

enum class Prediction : std::uint8_t { None, Clutch, Brood, Spanning };

/// How the count of a visit behind the first of its brood is predicted from the visit before. A count on the hatch day
/// is one of eggs when a clutch visit comes before.
Prediction PredictionOf(const BroodData& data, int visit);

}  // namespace merlane
