#include "model/likelihood.h"

#include "base/arithmetic.h"
#include "model/catalogue.h"
#include "model/first_evaluation.h"

namespace merlane {

void Likelihood::EvaluateObjective(const EvaluationSetting& setting, LikelihoodState& state, double& F,
                                   Array1<double>& Value, Array1<double>& Step, Array1<std::string>& Names,
                                   Array1<std::string>& Fuse, std::int16_t NPAR, std::int32_t NF,
                                   std::int32_t& SampleSize) {
  F = 0;
  state.Penalty = 0;
  if (AllZero(Value)) return;

  DecodeParameters(Value, Step, ParameterLayout(data_), state.parameters, state.Penalty);
  const auto fillSurvivalTables = [&] {
    survivalPass_.FillSurvivalTables(state.parameters, setting.BootstrapMode, setting.turn, state.survival,
                                     state.Penalty);
  };
  if (NF == 1) BeginEvaluations(data_, state, setting, fillSurvivalTables, Value, Step, Names, Fuse, NPAR);
  fillSurvivalTables();
  state.EggsAtRisk = state.JuvsAtRisk = 0;
  if (!setting.SimulationMode) {
    likelihoodPass_.Do_Likelihoods(setting, NF, state, F);
    F = Checked(F + state.Penalty);
  }

  if (NF != 1 && F >= state.BestObjective) return;
  state.BestObjective = F;
  SampleSize = ToInt32(static_cast<double>(state.EggsAtRisk) + state.JuvsAtRisk);
  state.KeepBest(Value);
}

}  // namespace merlane
