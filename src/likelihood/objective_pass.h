#pragma once

#include <array>
#include <memory>
#include <optional>
#include <vector>

#include "data/brood_data.h"
#include "likelihood/count_distributions.h"
#include "likelihood/count_judge.h"
#include "likelihood/objective_plan.h"
#include "likelihood/prepared_visits.h"
#include "likelihood/stage_errors.h"
#include "likelihood/survival_columns.h"
#include "platform/workers.h"
#include "survival/parameters.h"

namespace merlane {

/// Computes the objective alone, without tables: each distinct calculation of the plan once, column after column, and
/// at the end the sum over the visits. What the parameters that have moved do not touch is left as it was. The sum has
/// the very bits that the tables' passes (SurvivalPass, LikelihoodPass) give, which say what is computed and do it
/// wherever something is out of the ordinary. Large data are shared by the workers: each piece fills its own places, so
/// that the bits are the same for any number.
class ObjectivePass {
 public:
  /// Keeps references to the data, the distributions and the workers; none where it shall stay in one thread.
  ObjectivePass(const BroodData& data, const PreparedVisits& prepared, const CountDistributions& distributions,
                std::shared_ptr<const ObjectivePlan> plan, Workers* workers);

  const ObjectivePlan& Plan() const { return *plan_; }
  std::shared_ptr<const ObjectivePlan> SharedPlan() const { return plan_; }

  /// -2 ln P of all visits that count. None where the tables have to be filled: where the data are not regular, an
  /// overflow, a penalty or a warning comes up. `testSums`: also the sums of predictions over hatch are tested.
  std::optional<double> Sum(const Parameters& parameters, bool BootstrapMode, bool testSums);

 private:
  bool FillSurvival(const Parameters& parameters, bool BootstrapMode);
  void FillThetas(const Parameters& parameters);
  bool FillDeviances(const CountErrors& errors, bool testSums);
  /// With what the counts of a stage have been judged last.
  struct Judged {
    bool all = false;
    SurvivalColumns::Changes survival;
    StageErrors errors;
  };
  static CountJudge::Known KnownOf(const Judged& judged, const SurvivalColumns::Changes& survival,
                                   const StageErrors& errors);
  bool Judge(const ObjectivePlan::Row& row, CountJudge& judge, const CountErrors& errors,
             const CountJudge::Known& clutches, const CountJudge::Known& broods, bool testSums);
  template <class Fill>
  bool InPieces(std::size_t pieces, const Fill& fill);

  const std::shared_ptr<const ObjectivePlan> plan_;
  Workers* const workers_;
  SurvivalColumns survival_;
  CountJudge::Thetas thetas_;
  std::array<double, 5> thetasMadeFor_;        // all that they are computed from
  std::vector<SurvivalColumns::Rows> rowsOf_;  // of each worker
  std::vector<CountJudge> judgeOf_;
  CountJudge::Probabilities probabilities_;  // of each prediction but those over hatch
  std::vector<double> deviance_;             // of each prediction
  Judged clutchesJudged_, broodsJudged_;
};

}  // namespace merlane
