#pragma once

#include <optional>
#include <vector>

#include "data/brood_data.h"
#include "model/count_distributions.h"
#include "model/kept_values.h"
#include "model/objective_plan.h"
#include "model/parameters.h"
#include "model/prepared_visits.h"
#include "model/spanning_judge.h"
#include "model/stage_errors.h"
#include "model/survival.h"

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
  enum class Kind { Random, Correlated, Both };  // which mortality acts
  /// The calculations of one stage of life.
  struct Stage {
    std::size_t mortality, mortalityEnd, time, timeEnd, distinctTime, distinctTimeEnd, span, spanEnd, interval,
        intervalEnd;
    Kind kind = Kind::Both;
    double f = 0;
  };
  bool Evaluate(const Parameters& parameters, bool BootstrapMode, bool testSums);

  bool SetClutchMortalities(const Parameters& parameters);
  bool SetBroodMortalities(const Parameters& parameters);
  bool SetMortality(std::size_t number, const Mortality& mortality, Stage& stage);

  bool FillSurvival(const Stage& stage, bool BootstrapMode);
  void FillPowers(const Stage& stage, const std::vector<double>& Beta, std::vector<double>& powers);
  bool FillShares(const Stage& stage);
  bool FillSpans(const Stage& stage);
  bool FillSurvivors(const Stage& stage, bool BootstrapMode);
  void BeginAtHatch();

  void FillThetas(const Parameters& parameters);
  BinomialLogs LogsOf(double p);
  bool Judge(const std::vector<ObjectivePlan::Distribution>& distributions, const StageErrors& errors,
             const std::vector<double>& thetas);
  bool JudgeSpanning(const CountErrors& errors, bool testSums);
  bool FillDeviances(const ObjectivePlan::Distribution& distribution, const auto& probability);

  const BroodData& data_;
  KeptGammaLn logGamma_;
  KeptBinomialLogs binomialLogs_;
  SpanningJudge spanningJudge_;
  const ObjectivePlan plan_;
  Stage clutches_, broods_;

  // Columns, as the plan numbers mortalities, times, intervals and predictions.
  std::vector<double> AlphaR_, BetaR_, AlphaC_, BetaC_, normaliser_, shareR_, shareC_;
  std::vector<double> distinctPower_, powerR_, powerC_, SR_, SC_;
  std::vector<double> aliveR_, aliveC_, aliveAll_, PCorr_;  // of spans: the shares that live through
  std::vector<double> N_, OutR_, OutC_, OutAll_;            // of intervals
  std::vector<double> thetaEggs_, thetaJuvs_;
  std::vector<double> spanning_;  // probabilities over hatch
  std::vector<double> deviance_;
};

}  // namespace merlane
