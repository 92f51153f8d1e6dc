#pragma once

#include <array>
#include <string>
#include <vector>

#include "base/array1.h"
#include "uncertainty/covariance_report.h"

namespace merlane {

/// Estimates averaged across models, and their unconditional standard errors on the three covariance grids; -1 on a
/// grid where a model has no standard error.
struct AveragedEstimates {
  Array1<double> AveragedValue;              // 1..NPAR
  std::array<Array1<double>, 3> AveragedSE;  // by grid, 1..NPAR
  bool fused = false;                        // a parameter follows another in one of the models
};

/// Averages at least one model by the models' weights; all have the same number of parameters. The error of a parameter
/// is the weighted sum over the models of the root of SE² x CHat plus the squared distance of the model's estimate from
/// the average (Buckland, Burnham and Augustin 1997, Biometrics 53:603-618, equation 9). A parameter for which a model
/// has no row, as one that follows another has none, contributes its distance alone.
AveragedEstimates AverageModels(const std::vector<CovarianceFile>& models, const std::vector<double>& weights,
                                double CHat);

/// The report of an averaging, lines ended by CR LF but for the last.
std::string AveragingReport(const AveragedEstimates& estimates);

}  // namespace merlane
