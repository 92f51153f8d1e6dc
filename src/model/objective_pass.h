#pragma once

#include <optional>
#include <vector>

#include "data/brood_data.h"
#include "model/count_distributions.h"
#include "model/count_judge.h"
#include "model/objective_plan.h"
#include "model/parameters.h"
#include "model/prepared_visits.h"
#include "model/stage_errors.h"
#include "model/survival_columns.h"

namespace merlane {

/// Computes the objective alone, without tables: each distinct calculation of the plan once, column after column, and
/// at the end the sum over the visits. The sum has the very bits that the tables' passes (SurvivalPass, LikelihoodPass)
/// give, which say what is computed and do it wherever something is out of the ordinary.
class ObjectivePass {
 public:
  /// Keeps references to the data and the distributions.
  ObjectivePass(const BroodData& data, const PreparedVisits& prepared, const CountDistributions& distributions,
                const ObjectivePlan::Subject& subject);

  const ObjectivePlan& Plan() const { return plan_; }

  /// -2 ln P of all visits that count. None where the tables have to be filled: where the data are not regular, an
  /// overflow, a penalty or a warning comes up. `testSums`: also the sums of predictions over hatch are tested.
  std::optional<double> Sum(const Parameters& parameters, bool BootstrapMode, bool testSums);

 private:
  bool FillSurvival(const Parameters& parameters, bool BootstrapMode);
  void FillThetas(const Parameters& parameters);
  bool FillDeviances(const CountErrors& errors, bool testSums);

  const ObjectivePlan plan_;
  SurvivalColumns survival_;
  SurvivalColumns::Rows rows_;
  CountJudge::Thetas thetas_;
  CountJudge judge_;
  std::vector<double> deviance_;  // of each prediction
};

}  // namespace merlane
