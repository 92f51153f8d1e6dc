#include "measured_run.h"

#include <utility>

#include "control/algorithm_file.h"
#include "control/fuses.h"
#include "example_data.h"
#include "field_data.h"
#include "survival/catalogue.h"

namespace merlane {

MeasuredRun::MeasuredRun(std::string runName, BroodData data, const AlgorithmData& algorithm)
    : name(std::move(runName)), data_(std::move(data)) {
  likelihood_.Dimension(data_);
  setting_.tell = [](const Message&) {};
  setting_.turn = [](long) {};
  state.algorithm = algorithm;
  objective.ahead = [this](std::span<const Array1<double>> vectors, std::int32_t NF) { EvaluateAhead(vectors, NF); };
  state.flags.ObjectiveConstant = 2;
  setting_.OneCallRun = true;
  Pack();
  objective(state.algorithm.Value, 1);
  setting_.OneCallRun = false;
}

void MeasuredRun::Pack() {
  BuildFuseGroups(state);
  PackFree(state);
}

void MeasuredRun::Evaluate(ModelCall& call) {
  const Seconds begin = Now();
  evaluator_.EvaluateObjective(setting_, likelihood_, call.F, call.X, call.StepSize, call.Names, call.Fuses, call.N,
                               call.NF, call.K);
  cost_.inObjective += Now() - begin;
  ++cost_.calls;
}

void MeasuredRun::EvaluateAhead(std::span<const Array1<double>> vectors, std::int32_t NF) {
  const Seconds begin = Now();
  evaluator_.EvaluateAhead(setting_, vectors, state.algorithm.Step, NF);
  cost_.inObjective += Now() - begin;
}

MeasuredRun ExampleData() {
  Example example = ReadExample();
  return {"example data, three covariates", std::move(example.data), example.algorithm};
}

MeasuredRun ManyBroods() {
  BroodData data = ReadFieldData({});
  AlgorithmData algorithm;
  algorithm.NPAR = static_cast<std::int16_t>(ParameterCount(0));
  algorithm.ParName.Dimension(algorithm.NPAR);
  SetDefaultAlgorithm(algorithm);
  algorithm.Value = FieldVector(data, false);
  // Random mortality alone, which is what the data have.
  for (const int i : {11, 12, 13, 14, 19, 21}) algorithm.Value(i) = 0;
  for (const int i : {20, 22}) algorithm.Value(i) = 1;
  for (int i = 15; i <= 18; ++i) algorithm.Step(i) = 0.1 * algorithm.Value(i);
  algorithm.Tolerance = 1e-4;
  return {"2000 broods, 10 visits each", std::move(data), algorithm};
}

}  // namespace merlane
