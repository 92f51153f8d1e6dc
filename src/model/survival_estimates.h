#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "data/brood_data.h"
#include "likelihood/calculation_watch.h"
#include "likelihood/likelihood_state.h"
#include "platform/workers.h"

namespace merlane {

/// Probabilities of survival of one juvenile from a visit on, under random (R) and correlated (C) mortality and over
/// both. Columns have the shape of the data's visits; Missing for visits before hatch, at or past the age that limits
/// the estimate, and of broods without known age.
struct SurvivalEstimates {
  std::vector<double> LiveDayR, LiveDayC, LiveDay;           // one day
  std::vector<double> LiveNextR, LiveNextC, LiveNext;        // to the next visit
  std::vector<double> FledgeFromR, FledgeFromC, FledgeFrom;  // from the visit's age to the target age
  std::vector<double> FledgeZeroR, FledgeZeroC, FledgeZero;  // from hatch to it: one value per brood at all its visits
  bool estimated = false;                                    // since the columns were preset

  /// Gives the columns the shape of the data; every entry becomes Missing.
  void Preset(const BroodData& data);
  bool HasShapeOf(const BroodData& data) const { return LiveDay.size() == static_cast<std::size_t>(data.Visits()); }
};

/// Fills LiveDay and LiveNext from the last evaluation's parameters, for ages below the age at fledging. Numbers too
/// small are floored as in the objective, other than in a bootstrap. Where a brood's attributes drive a rate or shape
/// to an overflow, that is impossible at the brood or visit, whose entries stay Missing. Broods are
/// shared among the workers; numbers, and what is told, are the same for any number of them.
void EstimateOneDaySurvival(const BroodData& data, const LikelihoodState& fitted, bool BootstrapMode,
                            const CalculationWatch& watch, SurvivalEstimates& estimates, Workers* workers = nullptr);

/// Fills FledgeFrom and FledgeZero likewise, for a target age in days.
void EstimateFledgingSurvival(const BroodData& data, const LikelihoodState& fitted, bool BootstrapMode,
                              std::int16_t TargetAge, const CalculationWatch& watch, SurvivalEstimates& estimates,
                              Workers* workers = nullptr);

}  // namespace merlane
