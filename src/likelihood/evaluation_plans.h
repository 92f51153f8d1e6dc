#pragma once

#include <memory>
#include <mutex>

#include "data/brood_data.h"
#include "likelihood/count_distributions.h"
#include "likelihood/objective_plan.h"
#include "likelihood/prepared_visits.h"

namespace merlane {

/// What evaluations of a data set need to know of it, found once: the visits prepared, and plans of the objective as
/// they are asked for. Any number of threads may look at it and ask, each with a copy of the data.
class EvaluationPlans {
 public:
  explicit EvaluationPlans(const BroodData& data) : visits(data), distributions(visits.MaxCount) {}

  const PreparedVisits visits;
  const CountDistributions distributions;
  /// Kept until another is asked for, those for broods that share their mortalities apart from the others.
  std::shared_ptr<const ObjectivePlan> For(const BroodData& data, const ObjectivePlan::Subject& subject);

 private:
  std::mutex mutex_;  // guards all below
  std::shared_ptr<const ObjectivePlan> shared_, own_;
};

}  // namespace merlane
