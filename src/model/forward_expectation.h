#pragma once

#include <optional>

#include "data/brood_data.h"
#include "model/count_prediction.h"
#include "model/simulator.h"
#include "survival/shares_by_time.h"

namespace merlane {

/// Whether the count at a visit behind the first of its brood is predicted from a simulated count before it, as far as
/// ages tell: where the fit forms a prediction, and by its rule there, each stage by itself (the clutch by age where
/// its ages are known and by date where they are not, the brood likewise). There is none where an age is unknown
/// between known ones, before laying, at or past fledging, nor over hatch unless the ages of both stages are known.
bool HasForwardExpectation(const BroodData& data, const Parameters& best, int brood, int visit);

/// The shares alive of clutches and of broods, kept from one expectation to the next.
struct ForwardShares {
  SharesByTime clutches, broods;
};

/// What is expected at a visit from the simulated count before it, which is above 0. Keeps the size at hatch of the
/// simulated clutch and what is found deficient in `simulation`. None where there is no rule for it, or where an
/// arithmetic error leaves no number; RuntimeFailure when a brood's attributes drive a rate or shape to an overflow.
std::optional<CountExpectation> ForwardExpectation(const BroodData& data, const Parameters& best, bool BootstrapMode,
                                                   int brood, int visit, ForwardShares& shares, Simulation& simulation);

}  // namespace merlane
