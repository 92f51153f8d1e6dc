#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "base/array1.h"
#include "control/run_state.h"
#include "model/survival_estimates.h"

namespace merlane {

/// After so many rejected attempts one after the other a bootstrap asks whether to go on.
inline constexpr int MostRejectedInARow = 100;

/// Mean, standard deviation (of the population form) and limits of a number over the replicates that have it.
class Spread {
 public:
  void Add(double x);
  int Count() const { return count_; }
  double Mean() const { return count_ > 0 ? sum_ / count_ : 0; }
  double SD() const;
  double Minimum() const { return minimum_; }  // 1E100 without a replicate
  double Maximum() const { return maximum_; }  // -1E100 without a replicate

 private:
  int count_ = 0;
  double sum_ = 0, sumOfSquares_ = 0;
  double minimum_ = 1e100, maximum_ = -1e100;
};

/// What the replicates of a parametric bootstrap have come to.
struct BootstrapResults {
  enum class Minimiser { Simplex, Marquardt };
  Minimiser minimiser = Minimiser::Simplex;
  double Tolerance = 0;        // of the minimisations; negative: relative
  std::int16_t TargetAge = 0;  // D, days, to which the survival of juveniles is estimated

  double originalDeviance = 0;       // -2 ln[L] of the real data
  Array1<std::int16_t> parameters;   // numbers of the free parameters
  Array1<double> originalEstimates;  // their values in the fit that was bootstrapped
  std::vector<double> BootDeviance;  // -2 ln[L] of each replicate kept
  std::vector<Array1<double>> BootEstimates;
  Spread deviance;
  Array1<Spread> estimates;
  /// Columns with the shape of the data's visits: survival of one day, from the visit's age to D, and from hatch to D,
  /// each over both kinds of mortality, under random and under correlated mortality.
  std::array<std::vector<Spread>, 9> survival;

  std::int32_t wanted = 0;  // replicates
  std::string endedEarly;   // why there are fewer than that; empty when there are all, or as many as the user let come

  std::int32_t BootAboveObserved = 0;   // replicates whose deviance is not below that of the real data
  std::int32_t BootPenaltyRejects = 0;  // attempts rejected for a penalty, ...
  std::int32_t BootMatrixRejects = 0;   // ... for a matrix that could not be inverted ...
  std::int32_t BootFailureRejects = 0;  // ... and for a calculation that failed
  double BootPenaltySum = 0;

  int BootCount() const { return static_cast<int>(BootDeviance.size()); }
  int Rejects() const { return BootPenaltyRejects + BootMatrixRejects + BootFailureRejects; }

  /// Begins with the fit of the real data, whose visits number `visits`.
  void Begin(double deviance0, const Array1<double>& Value, const FreeParameters& free, int visits);
  /// Keeps a replicate.
  void Keep(double F, const Array1<double>& Value, const SurvivalEstimates& survivalOfReplicate);
};

}  // namespace merlane
