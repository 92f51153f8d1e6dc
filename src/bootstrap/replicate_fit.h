#pragma once

#include <atomic>
#include <cstdint>
#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "bootstrap/replicate_data_text.h"
#include "control/objective.h"
#include "control/run_state.h"
#include "data/brood_data.h"
#include "likelihood/likelihood.h"
#include "likelihood/likelihood_state.h"
#include "model/kept_predictions.h"
#include "model/merlane_model.h"
#include "platform/random_streams.h"
#include "platform/window_system.h"

namespace merlane {

/// What a replicate is made of and fitted from. The references must outlive who uses it.
struct FitOrigin {
  const BroodData& data;  // the real data, and the fit that is bootstrapped
  const LikelihoodState& fit;
  const ReplicateDataText& text;
  RandomStreams random;                                    // the next stream is that of the first replicate
  RunState run;                                            // with the algorithm data, as a replicate begins
  std::function<double(const Array1<double>&)> priorTerm;  // copied for each fit
  /// Moves the free parameters; called in several threads. False when a matrix could not be inverted.
  std::function<bool(RunState&, Objective&)> minimise;
};

/// A call of the objective: what it was given, and what came of it once it is `done`. Each call that is begun gets
/// done: room for the outcome is there from the start.
struct FitCall {
  std::int32_t NF;
  Array1<double> given, left;
  double F = 0;
  std::exception_ptr failure{};
  std::vector<Message> messages{};
  std::atomic<long> turns = 0;
  std::atomic<bool> done = false;

  FitCall(std::int32_t code, const Array1<double>& vector) : NF(code), given(vector), left(vector) {}
};

/// Follows a fit from the thread that makes it.
class FitWatch {
 public:
  virtual ~FitWatch() = default;
  /// The data, as they stand in a file.
  virtual void OnData(const std::string& /*text*/) {}
  /// They have been read and evaluated once; none where reading them tells something, which is the bootstrap's affair.
  virtual void OnRead(std::optional<MerlaneModel::ReadElsewhere> /*read*/) {}
  /// A call is about to be made. Returns where its outcome goes.
  virtual FitCall& OnCall(std::int32_t NF, const Array1<double>& vector) = 0;
  /// It is done. From here on it is somebody else's, who may have dropped it.
  virtual void OnDone() {}
  /// At each turn that the calculation gives; what is raised here ends the fit.
  virtual void OnTurn() {}
};

/// A replicate of a bootstrap, simulated and fitted apart from the bootstrap itself, over copies of everything and in
/// any thread: with the same data, calls and estimates. Whatever it meets on the way is raised.
class ReplicateFit {
 public:
  ReplicateFit(const FitOrigin& origin, FitWatch& watch);
  ReplicateFit(const ReplicateFit&) = delete;
  ReplicateFit& operator=(const ReplicateFit&) = delete;

  /// Simulates an attempt's data, counted from 1, and reads them. `predictions` are those of all replicates.
  void Simulate(int attempt, KeptPredictions& predictions);
  /// Fits the model to them; false when a matrix could not be inverted. The call that the bootstrap makes before it
  /// minimises is not told.
  bool Minimise();
  /// The penalty at the minimum, for which the bootstrap would reject the attempt.
  double Penalty();

 private:
  void Evaluate(ModelCall& call);

  const FitOrigin& origin_;
  FitWatch& watch_;
  const std::shared_ptr<BroodData> data_;
  bool toldReading_ = false;  // something
  LikelihoodState likelihood_;
  RunState run_;
  EvaluationSetting setting_;
  std::optional<Likelihood> evaluator_;
  FitCall untold_;  // what the calls that are not told come to
  FitCall* now_ = &untold_;
};

}  // namespace merlane
