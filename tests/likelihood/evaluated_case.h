#pragma once

#include <optional>
#include <vector>

#include "control/algorithm_file.h"
#include "control/fuses.h"
#include "data/data_text.h"
#include "data/golden_case.h"
#include "data/standard_anomalies.h"
#include "likelihood/likelihood.h"
#include "platform/files.h"

namespace merlane::test {

/// A case after one function call from the menu.
struct Evaluated {
  explicit Evaluated(const GoldenCase& c) : reading(c.choices.FirstYear, c.choices.LastYear, c.choices.NCov) {
    reading.data.CensorEggs = c.choices.CensorEggs;
    reading.data.CensorJuvs = c.choices.CensorJuvs;
    reading.Of(ReadWholeFile(c.dataFile));
    if (c.choices.CovariateFormat == "A") StandardiseCovariates(reading.data);
    AlgorithmData& a = run.algorithm;
    a.NPAR = static_cast<std::int16_t>(12 * c.choices.NCov + 34);
    SetDefaultAlgorithm(a);
    a.ParName.Dimension(a.NPAR);
    EXPECT_EQ(ReadAlgorithm(ReadWholeFile(c.algFile), a).failure, AlgorithmReading::Failure::None);
    BuildFuseGroups(run);

    setting.OneCallRun = true;
    setting.tell = [this](const Message& message) { messages.push_back(message); };
    state.Dimension(reading.data);
    likelihood.emplace(reading.data);
    Call(1);
  }
  /// The evaluation at the present values with which a results summary begins.
  void CallAgain() {
    setting.OneCallRun = false;
    ApplyFuses(run.algorithm.Value, run);
    Call(1);
  }
  void Call(std::int32_t NF) {
    AlgorithmData& a = run.algorithm;
    likelihood->EvaluateObjective(setting, state, F, a.Value, a.Step, a.ParName, a.Fuse, a.NPAR, NF, SampleSize);
    likelihood->FillTables(state);
  }

  Reading reading;
  RunState run;
  EvaluationSetting setting;
  LikelihoodState state;
  std::optional<Likelihood> likelihood;
  std::vector<Message> messages;
  double F = 0;
  std::int32_t SampleSize = 0;
};

}  // namespace merlane::test
