#pragma once

#include <functional>
#include <string>
#include <vector>

#include "control/fuses.h"
#include "control/objective.h"
#include "control/run_state.h"

namespace merlane::test {

/// The elements of an array, for comparing.
template <class T>
std::vector<T> Elements(const Array1<T>& array) {
  return {array.begin(), array.end()};
}

/// A run over a textbook function in place of the survival model. Every call is recorded.
struct Textbook {
  using Function = std::function<double(Array1<double>& x)>;

  Textbook(Array1<double> value, Array1<double> step, Function f) : function(std::move(f)) {
    AlgorithmData& a = state.algorithm;
    a.NPAR = static_cast<std::int16_t>(value.Size());
    a.Value = std::move(value);
    a.Step = std::move(step);
    a.Fuse.Dimension(a.NPAR, Unfused);
    a.ParName.Dimension(a.NPAR);
    for (int i = 1; i <= a.NPAR; ++i) a.ParName(i) = "Parameter " + std::to_string(i);
    a.AlgName = "folder/textbook.alg";
    a.AlgShortName = "textbook";
    state.flags.ObjectiveConstant = 1;
    state.flags.ModelInitialised = true;
  }
  Textbook(const Textbook&) = delete;
  Textbook& operator=(const Textbook&) = delete;

  struct Call {
    Array1<double> X;
    std::int32_t NF;
  };
  std::vector<Call> calls;
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
