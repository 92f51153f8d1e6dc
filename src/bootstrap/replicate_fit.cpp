#include "bootstrap/replicate_fit.h"

#include "control/fuses.h"
#include "data/brood_reader.h"
#include "data/record_places.h"
#include "data/standard_anomalies.h"
#include "model/simulator.h"

namespace merlane {

ReplicateFit::ReplicateFit(const FitOrigin& origin, FitWatch& watch)
    : origin_(origin),
      watch_(watch),
      data_(std::make_shared<BroodData>(origin.data)),
      likelihood_(origin.fit),
      run_(origin.run),
      untold_(1, {}) {
  setting_.BootstrapMode = true;
  setting_.tell = [this](const Message& message) { now_->messages.push_back(message); };
  setting_.turn = [this](long turns) {
    now_->turns.fetch_add(turns, std::memory_order_relaxed);
    watch_.OnTurn();
  };
}

void ReplicateFit::Simulate(int attempt, KeptPredictions& predictions) {
  RandomStreams random = origin_.random;
  random.Skip(attempt - 1);
  Simulation simulation;
  const CalculationWatch watch{.turn = [this] { watch_.OnTurn(); }};
  SimulateData(*data_, {.BootstrapMode = true}, likelihood_.best, random, watch, simulation, &predictions);
  const std::string text = origin_.text.Of(simulation.SimCount);
  watch_.OnData(text);
  ReadingReport unread;
  ReadTextData(
      text, true, *data_, [this](const Message&) { toldReading_ = true; }, unread);
  RecordPlaces(origin_.data).GiveTo(*data_);
  likelihood_.Dimension(*data_);
  if (data_->CovariateFormat == "A") StandardiseCovariates(*data_);
}

bool ReplicateFit::Minimise() {
  evaluator_.emplace(*data_);
  const Model evaluate = [this](ModelCall& call) { Evaluate(call); };
  ApplyFuses(run_.algorithm.Value, run_);
  Objective(run_, evaluate).Call(run_.algorithm.Value, 1);
  watch_.OnRead(toldReading_ ? std::nullopt : std::optional<MerlaneModel::ReadElsewhere>({data_, evaluator_->Plans()}));
  Objective objective(run_, [&](ModelCall& call) {
    now_ = &watch_.OnCall(call.NF, call.X);
    std::exception_ptr failure;
    try {
      evaluate(call);
    } catch (...) {
      failure = std::current_exception();
    }
    FitCall& done = *now_;
    now_ = &untold_;
    done.failure = failure;
    done.left = call.X;
    done.F = call.F;
    done.done.store(true, std::memory_order_release);
    watch_.OnDone();
    if (failure) std::rethrow_exception(failure);
  });
  objective.priorTerm = origin_.priorTerm;
  return origin_.minimise(run_, objective);
}

double ReplicateFit::Penalty() {
  ApplyFuses(run_.algorithm.Value, run_);
  Objective(run_, [this](ModelCall& call) { Evaluate(call); }).Call(run_.algorithm.Value, 1);
  return likelihood_.Penalty;
}

void ReplicateFit::Evaluate(ModelCall& call) {
  evaluator_->EvaluateObjective(setting_, likelihood_, call.F, call.X, call.StepSize, call.Names, call.Fuses, call.N,
                                call.NF, call.K);
}

}  // namespace merlane
