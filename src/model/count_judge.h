#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "model/count_distributions.h"
#include "model/kept_gamma_ln.h"
#include "model/objective_plan.h"
#include "model/spanning_judge.h"
#include "model/stage_errors.h"
#include "model/survival_columns.h"

namespace merlane {

/// Computes the deviances of predictions, a row of distributions at a time, with the bits of LikelihoodPass. For one
/// thread.
class CountJudge {
 public:
  /// Keeps references to both.
  CountJudge(const ObjectivePlan& plan, const CountDistributions& distributions, int maxCount);

  /// The overdispersion under correlated mortality at each of the plan's ages; NaN where it overflows, since it may not
  /// be needed there.
  struct Thetas {
    std::vector<double> eggs, juveniles;
  };
  using Distributions = std::span<const ObjectivePlan::Distribution>;

  /// -2 ln P of each prediction of the distributions, which follow one another, to its place in `deviance`. False where
  /// something is out of the ordinary: an overflow, a penalty.
  bool JudgeStage(Distributions distributions, const SurvivalColumns& survival, const StageErrors& errors,
                  const std::vector<double>& thetas, std::vector<double>& deviance);
  /// The same over hatch, also false where a warning may be due; `testSums` as in SpanningJudge.
  bool JudgeOverHatch(Distributions distributions, const SurvivalColumns& survival, const CountErrors& errors,
                      const Thetas& thetas, bool testSums, std::vector<double>& deviance);

 private:
  void Begin(Distributions distributions);
  void FillBinomialLogs(Distributions distributions, const SurvivalColumns& survival, const std::vector<double>& Out);
  void FillBinomialExponents(const ObjectivePlan::Distribution& distribution, std::size_t number);
  bool FillCorrelatedExponents(Distributions distributions, const SurvivalColumns& survival, const StageErrors& errors,
                               const std::vector<double>& thetas);
  void FillOverdispersedExponents(const ObjectivePlan::Distribution& distribution, double E, double theta);
  bool FillDeviances(std::vector<double>& deviance);

  const ObjectivePlan& plan_;
  KeptGammaLn logGamma_;
  SpanningJudge spanningJudge_;
  std::size_t first_ = 0;                              // the first prediction of the row
  std::vector<double> share_, logs_;                   // of each distribution: p, 1 - p
  std::vector<double> exponent_, P_, PR_, PC_, logP_;  // of each prediction
};

}  // namespace merlane
