#include "inference/averaging.h"

#include <fmt/format.h>

#include <algorithm>

#include "base/arithmetic.h"
#include "base/number_text.h"
#include "base/text.h"
#include "control/fuses.h"

namespace merlane {
namespace {

constexpr std::size_t Grids = 3;

constexpr const char* SEsOfFollowers =
    "A fused parameter has the SEs of the first of its group: its own row leaves them out.";

/// Standard errors of one model on one grid for all parameters; 0 where its file has no row.
Array1<double> ErrorsByParameter(const CovarianceFile& model, std::size_t grid) {
  Array1<double> errors(model.values.Size());
  for (const CovarianceFile::Row& row : model.rows) errors(row.parameter) = row.standardErrors[grid];
  return errors;
}

bool IsMissing(const std::vector<CovarianceFile>& models, std::size_t grid) {
  for (const CovarianceFile& model : models)
    for (const CovarianceFile::Row& row : model.rows)
      if (row.standardErrors[grid] == -1) return true;
  return false;
}

bool AnyFollows(const CovarianceFile& model) {
  for (int j = 1; j <= model.fuses.Size(); ++j)
    if (LeaderOf(model.fuses, j) != j) return true;
  return false;
}

}  // namespace

AveragedEstimates AverageModels(const std::vector<CovarianceFile>& models, const std::vector<double>& weights,
                                double CHat) {
  const int NPAR = models.front().values.Size();
  AveragedEstimates result;
  result.AveragedValue.Dimension(NPAR);
  result.fused = std::ranges::any_of(models, AnyFollows);
  for (std::size_t i = 0; i < models.size(); ++i)
    for (int j = 1; j <= NPAR; ++j) result.AveragedValue(j) += weights[i] * models[i].values(j);
  for (std::size_t grid = 0; grid < Grids; ++grid) {
    Array1<double>& averaged = result.AveragedSE[grid];
    if (IsMissing(models, grid)) {
      averaged.Dimension(NPAR, -1);
      continue;
    }
    averaged.Dimension(NPAR);
    for (std::size_t i = 0; i < models.size(); ++i) {
      const Array1<double> errors = ErrorsByParameter(models[i], grid);
      for (int j = 1; j <= NPAR; ++j) {
        const double distance = models[i].values(j) - result.AveragedValue(j);
        averaged(j) += weights[i] * CheckedSqrt(errors(j) * errors(j) * CHat + distance * distance);
      }
    }
  }
  return result;
}

std::string AveragingReport(const AveragedEstimates& estimates) {
  std::string text =
      "Parameter estimates and their SEs resulting from averaging across all ranked models.\r\n"
      "Each model contributes to the reported averages according to its AIC Weight.\r\n"
      "SEs will report a value of -1 if any model is missing an estimate for SE.\r\n"
      "\r\n"
      "Parameter_#  Parameter_Value     SEs_Grid_#1     SEs_Grid_#2     SEs_Grid_#3";
  const auto field = [](double x) { return RightSet(Format(x, "0.0000E+00"), 16); };
  for (int j = 1; j <= estimates.AveragedValue.Size(); ++j) {
    text += "\r\n" + RightSet(Format(j, "##0"), 11) + " " + field(estimates.AveragedValue(j));
    for (const Array1<double>& grid : estimates.AveragedSE) text += field(grid(j));
  }
  if (estimates.fused) text += fmt::format("\r\n\r\n{}", SEsOfFollowers);
  return text;
}

}  // namespace merlane
