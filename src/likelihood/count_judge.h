#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "likelihood/count_distributions.h"
#include "likelihood/count_logs.h"
#include "likelihood/hatch_row.h"
#include "likelihood/kept_gamma_ln.h"
#include "likelihood/objective_plan.h"
#include "likelihood/spanning_judge.h"
#include "likelihood/stage_errors.h"
#include "likelihood/survival_columns.h"

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
  /// P of each prediction of one stage under random and under correlated mortality, and which of them are known from
  /// the judgement before.
  struct Probabilities {
    std::vector<double> random, correlated;
  };
  struct Known {
    bool random = false, correlated = false;
    bool Both() const { return random && correlated; }
  };

  /// -2 ln P of each prediction of the distributions, which follow one another, to its place in `deviance`. False where
  /// something is out of the ordinary: an overflow, a penalty.
  bool JudgeStage(Distributions distributions, const SurvivalColumns& survival, const StageErrors& errors,
                  const std::vector<double>& thetas, const Known& known, Probabilities& probabilities,
                  std::vector<double>& deviance);
  /// The same over hatch, also false where a warning may be due; `testSums` as in SpanningJudge.
  bool JudgeOverHatch(Distributions distributions, const SurvivalColumns& survival, const CountErrors& errors,
                      const Thetas& thetas, bool testSums, std::vector<double>& deviance);

 private:
  void Begin(Distributions distributions);
  SpanningJudge::Expected ExpectedOf(const ObjectivePlan::Distribution& distribution, const SurvivalColumns& survival,
                                     const Thetas& thetas) const;
  void FillBinomialLogs(Distributions distributions, const SurvivalColumns& survival, const std::vector<double>& Out);
  void FillBinomialExponents();
  bool FillCorrelatedExponents(Distributions distributions, const SurvivalColumns& survival, const StageErrors& errors,
                               const std::vector<double>& thetas);
  struct Overdispersed {
    const ObjectivePlan::Distribution* distribution;
    BetaBinomialShapes shapes;
  };
  void FillOverdispersedExponents();
  bool FillDeviances(std::vector<double>& deviance);

  const ObjectivePlan& plan_;
  KeptGammaLn logGamma_;
  SpanningJudge spanningJudge_;
  HatchRow hatchRow_;
  // Of the row that is judged; there is room for the longest.
  std::size_t first_ = 0, size_ = 0;         // its predictions
  std::vector<int> interval_;                // of each distribution
  std::vector<double> share_, logs_;         // p of each, then 1 - p of each
  std::vector<double> exponent_, P_, logP_;  // of each prediction
  std::vector<Overdispersed> overdispersed_;
  std::vector<double> arguments_, logGammas_;  // of all that these ask ln Gamma of, and what it is
};

}  // namespace merlane
