#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>

#include "data/brood_data.h"
#include "likelihood/evaluation_plans.h"
#include "likelihood/evaluation_setting.h"
#include "likelihood/likelihood_pass.h"
#include "likelihood/likelihood_state.h"
#include "likelihood/noted_sums.h"
#include "likelihood/objective_pass.h"
#include "likelihood/sums_ahead.h"
#include "likelihood/survival_pass.h"
#include "platform/workers.h"

namespace merlane {

/// The objective of a data set. To be made anew whenever data have been read; an evaluation allocates nothing.
class Likelihood {
 public:
  /// Prepares for the data, which must stay where they are and as they are; `plans` of the very same data spare that.
  /// `workers` share the work; without them all is done by the caller.
  explicit Likelihood(const BroodData& data, Workers* workers = nullptr,
                      std::shared_ptr<EvaluationPlans> plans = nullptr);
  Likelihood(const Likelihood&) = delete;
  Likelihood& operator=(const Likelihood&) = delete;

  /// F = -2 ln[L] of the visits plus penalties, at `Value`, which is decoded and thereby brought into range in place.
  /// `NF` counts the calls of a run from 1: the first presets all tables and, in a run of one function call or a
  /// simulation, may repair `Value`, `Step`, `Names` and `Fuse`. `state` must have the shape of the data. The first
  /// call and each lower F are kept in it as the best, and they alone write `SampleSize`. For a vector of zeros nothing
  /// is evaluated: F is 0, the `SampleSize` of a first call too, and all else stays as it was. The tables of `state`
  /// may be left for FillTables.
  ///
  /// ArithmeticFailure, told with parameter or visit and brood, where a number overflows for which there is no penalty.
  void EvaluateObjective(const EvaluationSetting& setting, LikelihoodState& state, double& F, Array1<double>& Value,
                         Array1<double>& Step, Array1<std::string>& Names, Array1<std::string>& Fuse, std::int16_t NPAR,
                         std::int32_t NF, std::int32_t& SampleSize);

  /// The vectors that are going to be evaluated, from the function call `NF` on: the workers compute at once those that
  /// are of the last evaluation's kind. Changes nothing of what the evaluations give and leave behind.
  void EvaluateAhead(const EvaluationSetting& setting, std::span<const Array1<double>> vectors,
                     const Array1<double>& Step, std::int32_t NF);

  /// The sums that evaluations note for another run, and take from one; whoever evaluates goes on as if nobody had.
  NotedSums& Noted() {
    if (!noted_) noted_.emplace(data_);
    return *noted_;
  }

  /// For who evaluates the same data elsewhere.
  const std::shared_ptr<EvaluationPlans>& Plans() const { return plans_; }

  /// Writes the tables that the evaluations have left: those of the lowest F, then those of the last evaluation. To be
  /// called before anybody looks at a table.
  void FillTables(LikelihoodState& state);

 private:
  bool EvaluateWithoutTables(const EvaluationSetting& setting, LikelihoodState& state, double& F,
                             const Array1<double>& Value, std::int32_t NF);
  void EvaluateByTables(const EvaluationSetting& setting, LikelihoodState& state, double& F, Array1<double>& Value,
                        Array1<double>& Step, Array1<std::string>& Names, Array1<std::string>& Fuse, std::int16_t NPAR,
                        std::int32_t NF);
  void FillFrom(Parameters& parameters, bool BootstrapMode, LikelihoodState& state);
  SumsAhead::Passes& PassesFor(const ObjectivePlan::Subject& subject);
  void AddPass(SumsAhead::Passes& passes, std::shared_ptr<const ObjectivePlan> plan);

  const BroodData& data_;
  const std::shared_ptr<EvaluationPlans> plans_;
  Workers* const workers_;
  // The objective alone, for broods that share their mortalities and for broods of which each has its own.
  SumsAhead::Passes sharedPasses_, ownPasses_;
  bool lastWasShared_ = true;
  std::optional<SumsAhead> ahead_;
  std::optional<NotedSums> noted_;
  // The tables.
  SurvivalPass survivalPass_{data_, plans_->visits};
  LikelihoodPass likelihoodPass_{data_, plans_->visits};
};

}  // namespace merlane
