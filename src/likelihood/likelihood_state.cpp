#include "likelihood/likelihood_state.h"

#include <algorithm>

#include "base/elementary.h"

namespace merlane {
namespace {

/// Limits over all visits of the deviance and of the Pearson deviate (1 - P) / P, which belongs to the lower limit
/// alone.
void UpdateLimits(const std::vector<double>& VisitDeviance, double& MinDeviance, double& MaxDeviance) {
  for (const double deviance : VisitDeviance) {
    if (deviance < MinDeviance) MinDeviance = deviance;
    if (deviance > MaxDeviance) MaxDeviance = deviance;
    // A positive deviance has P below 1 and so a positive deviate, which cannot lower a limit that is not above 0.
    if (deviance > 0 && MinDeviance <= 0) continue;
    const double P = Exp(-0.5 * deviance);
    if (P > 0 && (1 - P) / P < MinDeviance) MinDeviance = (1 - P) / P;
  }
}

}  // namespace

void LikelihoodState::Dimension(const BroodData& data) {
  const auto visits = static_cast<std::size_t>(data.Visits());
  survival.Dimension(data);
  best.survival.Dimension(data);
  for (auto* column : {&VisitDeviance, &VarR, &VarC, &best.VisitDeviance, &best.VarR, &best.VarC, &best.VarAll})
    column->assign(visits, 0.0);
  owed = {};
  filledBetween.reset();
}

void LikelihoodState::Preset() {
  survival.Preset();
  best.survival.Preset();
  for (auto* column : {&best.VarR, &best.VarC, &best.VarAll})
    std::fill(column->begin(), column->end(), static_cast<double>(Missing));
}

void LikelihoodState::KeepBestVector(const Array1<double>& Value) {
  best.Value = Value;
  best.parameters = parameters;
}

void LikelihoodState::KeepBestTables() {
  best.survival = survival;
  best.VisitDeviance = VisitDeviance;
  best.VarR = VarR;
  best.VarC = VarC;
  MinDeviance = 1e100;
  MaxDeviance = -1e100;
  UpdateLimits(VisitDeviance, MinDeviance, MaxDeviance);
}

}  // namespace merlane
