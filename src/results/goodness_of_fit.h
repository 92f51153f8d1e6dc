#pragma once

#include <optional>
#include <string>
#include <vector>

#include "data/brood_data.h"
#include "likelihood/calculation_watch.h"
#include "platform/random_streams.h"
#include "platform/shared_work.h"
#include "platform/workers.h"
#include "survival/best_tables.h"

namespace merlane {

/// A sum over all predictions, of the real data and of each randomisation, and what the randomisations tell of it. A
/// number that is not defined is none.
struct FitStatistic {
  double observed = 0;
  bool defined = true;  // false when a visit's part of the observed sum cannot be formed
  std::vector<double> simulated;

  std::optional<double> Mean, SD, Minimum, Maximum;
  std::optional<double> CumulativeP, CumulativePSE;  // share of the simulated sums at or above the observed one
  std::optional<double> CHat, CHatSE;                // observed / mean, to two digits; 1 for a model that fits
};

/// (1 - P) / P of a count whose deviance is -2 ln P. RuntimeFailure where P is 0, beyond a deviance of 1490.
double PearsonDeviate(double deviance);

struct GoodnessOfFit {
  FitStatistic pearson;   // (1 - P) / P, where P is the probability of the count that occurred
  FitStatistic deviance;  // -2 ln P
};

/// Judges the fit of the best state as Roff and Bentzen (1989) do: the sums of the real data against those of
/// `RandomisationCount` data sets simulated one visit ahead, each count from the real count before it. Draws from the
/// next random stream and refreshes the variances of the best tables. None when it was aborted, and when a count cannot
/// be randomised; that, and an observed count whose probability is 0, is impossible at its visit. `workers` build the
/// distributions from which counts are drawn.
///
/// A run that does a share of the randomisations (`shared`) forms the sums of a stretch of them and keeps these; one
/// that is given them does not form them again.
std::optional<GoodnessOfFit> RandomisedGoodnessOfFit(const BroodData& data, BestTables& best, int RandomisationCount,
                                                     RandomStreams& random, const CalculationWatch& watch,
                                                     Workers* workers = nullptr, SharedWork* shared = nullptr);

/// Forms the numbers of a statistic from its sums.
void Summarise(FitStatistic& statistic);

/// The lines about both statistics in a results summary, of those that are defined; they end with CR LF.
std::string GoodnessOfFitText(const GoodnessOfFit& fit);

}  // namespace merlane
