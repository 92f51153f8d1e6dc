#pragma once

#include "control/algorithm_file.h"
#include "control/fuses.h"
#include "control/objective.h"
#include "data/golden_case.h"
#include "data/reading_dialogue.h"
#include "forms/desk.h"
#include "minimise/simplex.h"
#include "model/merlane_model.h"
#include "platform/files.h"
#include "support/scripted_host.h"

namespace merlane::test {

/// The survival model over the data and algorithm data of a golden case, without windows.
class SurvivalRun {
 public:
  explicit SurvivalRun(const GoldenCase& c) : choices_(c.choices) {
    AlgorithmData& a = state.algorithm;
    model.readData = [this](BroodData& data) { return reading.Read(data); };
    objective.Call(a.Value, 0);
    EXPECT_EQ(ReadAlgorithm(ReadWholeFile(c.algFile), a).failure, AlgorithmReading::Failure::None);
    RaiseTolerance(a);
    state.flags.ObjectiveConstant = 2;
  }

  /// "1 Function call", which may repair the hypothesis.
  void OneFunctionCall() {
    Pack();
    state.flags.OneCallRun = true;
    objective(state.algorithm.Value, 1);
    state.flags.OneCallRun = false;
  }

  SimplexResult Minimise() {
    Pack();
    SimplexState simplex;
    SimplexWatch watch;
    return MinimiseSimplex(state, objective, simplex, watch);
  }

  void Pack() {
    BuildFuseGroups(state);
    PackFree(state);
  }

 private:
  const Initialisation choices_;

 public:
  ScriptedHost host;
  Desk desk{host.Get()};
  RunState state;
  ReadingDialogue reading{desk, state.flags};
  MerlaneModel model{desk, state, [this] { return choices_; }};
  Objective objective{state, [this](ModelCall& call) { model(call); }};
};

}  // namespace merlane::test
