#pragma once

#include <limits>
#include <optional>
#include <vector>

#include "data/brood_data.h"
#include "model/count_distributions.h"
#include "model/count_logs.h"
#include "model/kept_gamma_ln.h"
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
  /// The logarithms that a span had last: its intervals have the same share but for the last bit.
  struct KeptLogs {
    double p = std::numeric_limits<double>::quiet_NaN();
    BinomialLogs logs;
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
  void FillJudgedLogs();
  static const BinomialLogs& LogsOf(double p, KeptLogs& kept);
  bool Judge(const std::vector<ObjectivePlan::Prediction>& predictions, const StageErrors& errors,
             const std::vector<double>& thetas, double* deviance);
  double OverdispersedProbability(const ObjectivePlan::Prediction& prediction, double theta);
  bool JudgeSpanning(const CountErrors& errors, bool testSums, double* deviance);

  const BroodData& data_;
  KeptGammaLn logGamma_;
  SpanningJudge spanningJudge_;
  const ObjectivePlan plan_;
  Stage clutches_, broods_;

  // Columns, as the plan numbers mortalities, times, intervals and predictions.
  std::vector<double> AlphaR_, BetaR_, AlphaC_, BetaC_, normaliser_, shareR_, shareC_;
  std::vector<double> distinctPower_, powerR_, powerC_, SR_, SC_;
  std::vector<double> aliveR_, aliveC_, aliveAll_, PCorr_;  // of spans: the shares that live through
  std::vector<double> N_, OutR_, OutC_, OutAll_;            // of intervals
  std::vector<double> thetaEggs_, thetaJuvs_;
  std::vector<KeptLogs> keptLogsR_, keptLogsC_;
  std::vector<BinomialLogs> logsR_, logsC_;  // of the intervals judged
  std::vector<double> deviance_;
};

}  // namespace merlane
