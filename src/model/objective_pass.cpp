#include "model/objective_pass.h"

#include <limits>

#include "base/elementary.h"
#include "base/runtime_failure.h"
#include "model/arithmetic_watch.h"

namespace merlane {

ObjectivePass::ObjectivePass(const BroodData& data, const PreparedVisits& prepared,
                             const CountDistributions& distributions, const ObjectivePlan::Subject& subject)
    : plan_(data, prepared, distributions, subject),
      survival_(data, plan_),
      judge_(plan_, distributions, prepared.MaxCount),
      deviance_(plan_.k.size()) {
  for (auto* column : {&thetas_.eggs, &thetas_.juveniles}) column->resize(plan_.Ages.size());
}

std::optional<double> ObjectivePass::Sum(const Parameters& p, bool BootstrapMode, bool testSums) {
  if (!plan_.regular) return std::nullopt;
  try {
    if (!FillSurvival(p, BootstrapMode)) return std::nullopt;
    FillThetas(p);
    if (!FillDeviances(CountErrors(p), testSums)) return std::nullopt;
  } catch (const RuntimeFailure&) {
    return std::nullopt;  // the tables' passes meet it in their order
  }
  double F = 0;
  for (const int prediction : plan_.counted) F = F + deviance_[static_cast<std::size_t>(prediction)];
  return F;
}

bool ObjectivePass::FillSurvival(const Parameters& p, bool BootstrapMode) {
  if (!survival_.FillClutches(p, BootstrapMode, rows_)) return false;
  survival_.BeginAtHatch();
  for (const ObjectivePlan::Piece& piece : plan_.broodPieces)
    if (!survival_.FillBroods(piece, p, BootstrapMode, rows_)) return false;
  return true;
}

void ObjectivePass::FillThetas(const Parameters& p) {
  const auto theta = [](double Theta, double v, double days) {
    ArithmeticWatch watch;
    const double value = watch(Theta * watch(Exp(watch(-v * days))));
    return watch.Failed() ? std::numeric_limits<double>::quiet_NaN() : value;
  };
  for (std::size_t i = 0; i < plan_.Ages.size(); ++i) {
    thetas_.eggs[i] = theta(p.ThetaEggC, p.v_N, plan_.Ages[i] - p.LayAge);
    thetas_.juveniles[i] = theta(p.ThetaJuvC, p.v_B, plan_.Ages[i]);
  }
}

bool ObjectivePass::FillDeviances(const CountErrors& errors, bool testSums) {
  return judge_.JudgeStage(plan_.clutchDistributions, survival_, errors.eggs, thetas_.eggs, deviance_) &&
         judge_.JudgeStage(plan_.broodDistributions, survival_, errors.juveniles, thetas_.juveniles, deviance_) &&
         judge_.JudgeOverHatch(plan_.spanningDistributions, survival_, errors, thetas_, testSums, deviance_);
}

}  // namespace merlane
