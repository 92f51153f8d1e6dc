#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>

#include "base/at_end.h"
#include "control/objective.h"
#include "control/run_state.h"
#include "data/brood_data.h"
#include "data/initialisation.h"
#include "forms/desk.h"
#include "likelihood/evaluation_setting.h"
#include "likelihood/likelihood.h"
#include "likelihood/likelihood_state.h"
#include "model/simulator.h"
#include "model/survival_estimates.h"
#include "platform/workers.h"

namespace merlane {

/// The survival model as the framework reaches it: reads the data, evaluates the objective -2 ln[L] plus penalties,
/// writes results or simulates. Holds the field data and all that the evaluations leave behind.
class MerlaneModel {
 public:
  /// `choices` gives what the user has chosen to analyse, asked at each read of data outside a bootstrap.
  MerlaneModel(Desk& desk, RunState& state, std::function<Initialisation()> choices);
  MerlaneModel(const MerlaneModel&) = delete;
  MerlaneModel& operator=(const MerlaneModel&) = delete;

  /// 0 reads data, above 0 evaluates, -1 writes the results or simulates; any other code does nothing, -2 since the
  /// model has no analytical derivatives. Raises EndProgram behind the message of a fatal data error.
  void operator()(ModelCall& call);

  /// The vectors that are going to be evaluated from the function call `NF` on; see Likelihood::EvaluateAhead.
  void EvaluateAhead(std::span<const Array1<double>> vectors, std::int32_t NF);

  /// The sums of evaluations over these data, for another run or from one.
  NotedSums& Noted() {
    TakeSetting();
    return evaluator_->Noted();
  }

  /// What the evaluations have left behind, with all its tables.
  const LikelihoodState& Evaluated() const;
  LikelihoodState& Evaluated();

  /// As long as what is returned lives nobody hears of what an evaluation finds: for those that no command asks for.
  [[nodiscard]] auto Silently() {
    return Meanwhile(setting_.tell, std::function<void(const Message&)>([](const Message&) {}));
  }

  /// The vector as an evaluation leaves it: with the signs and the limits under which the model takes each parameter.
  /// RuntimeFailure when an age is beyond 32767 days.
  Array1<double> AsEvaluated(const AlgorithmData& algorithm) const;

  /// How many threads share an evaluation, and what is told of it.
  int cores = Workers::Cores();
  Workers& SharingWorkers();

  /// What results leave behind of survival. Much with large data, and so without room as long as nobody asks.
  const SurvivalEstimates& Estimates() const;
  SurvivalEstimates& Estimates();

  BroodData data;
  Simulation simulation;  // what simulations leave behind

  /// Data and results, to be put back after other data have been read.
  struct Kept {
    BroodData data;
    LikelihoodState likelihood;
    SurvivalEstimates estimates;
    Simulation simulation;
  };
  Kept Keep() const { return {data, Evaluated(), estimates_, simulation}; }
  void PutBack(Kept kept);

  /// Data that have been read elsewhere, with the plans for evaluating them. While there are such, the next reading,
  /// which is one of a bootstrap, takes them.
  struct ReadElsewhere {
    std::shared_ptr<const BroodData> data;
    std::shared_ptr<EvaluationPlans> plans;
  };
  std::optional<ReadElsewhere> readElsewhere;

  // What dialogues do for the model.
  std::function<void(ModelCall&)> writeResults;  // NF = -1 in an analysis
  std::function<void(ModelCall&)> simulate;      // NF = -1 in a simulation
  /// Reads the data file that the data and the run's flags name; false when nothing was read, which the user knows.
  std::function<bool(BroodData&)> readData;

 private:
  void ReadBroodData(ModelCall& call);
  void TakeReadElsewhere(ModelCall& call);
  void Evaluate(ModelCall& call);
  void TakeSetting();

  void TakeChoices(const Initialisation& choices, ModelCall& call);
  void TakeDataFileName(const std::string& path);
  /// All results are without values; they get the shape of the data when they are looked at.
  void ForgetResults();
  void Dimension() const;

  Desk& desk_;
  RunState& state_;
  const std::function<Initialisation()> choices_;
  EvaluationSetting setting_;
  // Mutable, since tables that are owed are filled for whoever looks first, as they and the estimates get their room.
  mutable LikelihoodState likelihood_;
  mutable bool dimensioned_ = true;  // for these data
  mutable SurvivalEstimates estimates_;
  std::optional<Workers> workers_;
  std::shared_ptr<EvaluationPlans> plans_;       // for the data, where they came with them
  mutable std::optional<Likelihood> evaluator_;  // made for the data at their first evaluation
};

}  // namespace merlane
