#pragma once

#include <functional>
#include <span>
#include <vector>

#include "control/basis.h"
#include "control/run_state.h"
#include "platform/shared_work.h"

namespace merlane {

/// The arguments of MODEL, the framework's only way into a model, all by reference.
struct ModelCall {
  double& F;                   // out: the objective
  Array1<double>& X;           // the parameter vector of this call; the model may rewrite it
  Array1<double>& StepSize;    // the model's validation may set elements to 0
  Array1<std::string>& Names;  // out
  Array1<std::string>& Fuses;  // the validation may unfuse
  std::int16_t& N;             // number of parameters; set with NF = 0
  /// 0 read data; above 0 evaluate, the running count of calls; -1 results, or a simulation; -2 analytical derivatives.
  std::int32_t NF;
  std::int32_t& NObs;
  Array1<double>& G;
  Matrix1<double>& H;
  std::int32_t& K;  // out: sample size
};

using Model = std::function<void(ModelCall&)>;

/// The objective as every command evaluates it: the fuses are applied to the vector, MODEL is called, and when priors
/// are on their term is added.
class Objective {
 public:
  Objective(RunState& state, Model model) : state_(state), model_(std::move(model)) {}

  /// Evaluates at `vector` (1..NPAR), which the fuses and the model may rewrite in place. `NF` is the function-call
  /// code, at least 1.
  /// RuntimeFailure in a simulation.
  double operator()(Array1<double>& vector, std::int32_t NF);
  /// RuntimeFailure, in words, where data are simulated: there are none that anything could be fitted to, and what the
  /// model leaves as the objective is no result.
  void RequireData() const;
  /// Calls MODEL with any code: 0, -1, -2, or an evaluation without fuses and priors. Returns what it left in F, `F` on
  /// entry. Code 0 begins another reading of data, also when it fails.
  double Call(Array1<double>& vector, std::int32_t NF, double F = 0);

  /// What is computed from the run as it stands. Kept beside a result, it tells later whether the result still holds.
  Basis Present() const;
  /// The same for a result that is shown by the name of its algorithm file, with what has to be said beside the name.
  Basis PresentToShow() const;
  /// The same of the run as it is the user's own: a parameter that a profile holds has its value and step.
  Basis UsersPresent() const;
  /// A minimisation begins: what was computed before belongs to an earlier fit.
  void BeginSearch() { state_.search = ++taken_; }

  /// The prior term of a vector, already multiplied by the run's constant; asked only while BayesOn.
  std::function<double(const Array1<double>&)> priorTerm;
  /// All that the prior term is made of but the constant, each number in full; empty when no prior is set. Asked only
  /// while BayesOn.
  std::function<std::string()> priorsInForce = [] { return std::string(); };
  /// What the name of the algorithm file does not tell of the run's estimates, in words to be set behind it: that they
  /// are not those in the file, or that they were fitted to something else. Empty when there is nothing.
  std::function<std::string()> besideAlgName = [] { return std::string(); };
  /// The vectors that will be evaluated next, from the function call `NF` on, if nothing comes between: who can
  /// computes them at once. Nothing depends on it but the time that it takes.
  void Announce(std::vector<Array1<double>> vectors, std::int32_t NF) const;
  /// Takes what is announced, with the fuses applied; nobody does by default.
  std::function<void(std::span<const Array1<double>>, std::int32_t NF)> ahead;
  /// From here on the model writes down what it computes at each call, for another run to look it up; null: no more.
  std::function<void(Words*)> note = [](Words*) {};
  /// From here on it looks there before it computes; null: no more. Nothing depends on it but the time that it takes.
  /// Says whether it has found all that it computes where it looked until then.
  std::function<bool(const Words*)> lookUp = [](const Words*) { return false; };
  /// A digest of all that the model computes from besides the vector.
  std::function<std::uint64_t()> dataDigest = [] { return std::uint64_t{0}; };
  /// Answers a call whose outcome is known without the model, and says whether it did; nobody knows one by default.
  std::function<bool(ModelCall&)> known;

 private:
  RunState& state_;
  Model model_;
  std::int64_t taken_ = 0;  // the last number of a reading or a minimisation
};

}  // namespace merlane
