#pragma once

#include <algorithm>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "control/fuses.h"
#include "control/objective.h"
#include "control/run_state.h"

namespace merlane::test {

inline std::vector<double> Vector(const Array1<double>& a) { return {a.begin(), a.end()}; }

/// A function of a vector, brought to the framework as a model: it knows nothing of the data behind it.
using Function = std::function<double(Array1<double>&)>;

/// A run whose model is a function in place of the survival model. Every call is recorded.
struct FunctionRun {
  FunctionRun(const std::vector<double>& start, const std::vector<double>& steps, Function f) : function(std::move(f)) {
    AlgorithmData& a = state.algorithm;
    a.NPAR = static_cast<std::int16_t>(start.size());
    a.Value.Dimension(a.NPAR);
    std::copy(start.begin(), start.end(), a.Value.begin());
    a.Step.Dimension(a.NPAR);
    std::copy(steps.begin(), steps.end(), a.Step.begin());
    a.Fuse.Dimension(a.NPAR, Unfused);
    a.ParName.Dimension(a.NPAR);
    for (int i = 1; i <= a.NPAR; ++i) a.ParName(i) = "Parameter " + std::to_string(i);
    a.Tolerance = 1e-4;
    a.AlgName = "folder/function.alg";
    a.AlgShortName = "function";
    state.flags.ObjectiveConstant = 1;
    state.flags.ModelInitialised = true;
  }
  /// With the same step for all parameters.
  FunctionRun(const std::vector<double>& start, Function f, double step = 0.1)
      : FunctionRun(start, std::vector<double>(start.size(), step), std::move(f)) {}
  FunctionRun(const FunctionRun&) = delete;
  FunctionRun& operator=(const FunctionRun&) = delete;

  /// What every command does before it minimises.
  void Pack() {
    BuildFuseGroups(state);
    PackFree(state);
  }

  struct Call {
    Array1<double> X;  // as the model gets it
    std::int32_t NF;
  };
  std::vector<Call> calls;
  std::vector<std::int32_t> Codes() const {
    std::vector<std::int32_t> codes;
    for (const Call& call : calls) codes.push_back(call.NF);
    return codes;
  }

  Function function;
  /// What the model does with NF = -2.
  std::function<void(ModelCall&)> derivatives;

  RunState state;
  Objective objective{state, [this](ModelCall& call) {
                        calls.push_back({call.X, call.NF});
                        if (call.NF > 0)
                          call.F = function(call.X);
                        else if (derivatives)
                          derivatives(call);
                      }};
};

}  // namespace merlane::test
