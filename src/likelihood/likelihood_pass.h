#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "data/brood_data.h"
#include "likelihood/count_distributions.h"
#include "likelihood/evaluation_setting.h"
#include "likelihood/hatch_fates.h"
#include "likelihood/likelihood_state.h"
#include "likelihood/prepared_visits.h"

namespace merlane {

/// Judges the counts of all visits against what the survival tables expect. Predictions that recur, within a vector of
/// parameters or from one vector to the next, are computed once; the tables hold the very bits that computing each anew
/// would give.
class LikelihoodPass {
 public:
  /// Keeps references to both.
  LikelihoodPass(const BroodData& data, const PreparedVisits& prepared);

  /// Adds -2 ln P of all predictions to `F`, in the order of the visits, and fills deviances, variances and individuals
  /// at risk. A negative mixed probability adds P^2 1e20 to the penalty. `NF` = 1 also tests whether the probabilities
  /// of a prediction over hatch sum to 1. RuntimeFailure when a deviance, variance or overdispersion overflows.
  void Do_Likelihoods(const EvaluationSetting& setting, std::int32_t NF, LikelihoodState& state, double& F);

 private:
  /// A kept prediction of a clutch or brood. It is valid for the stamp of the errors, and for the expected numbers
  /// and the probability of the correlated state from which it was computed.
  struct KeptOutcome {
    std::uint64_t stamp = 0;
    double ER = 0, EC = 0, q = 0;
    double VarR = 0, VarC = 0;
    double clampedEC = 0;  // what the beta-binomial distribution leaves in the table
    double P = 0, deviance = 0;
  };
  /// Kept distributions of the count over hatch, valid likewise.
  struct KeptSpanning {
    std::uint64_t stamp = 0;
    OverHatch expected;
    std::size_t firstProbability = 0;  // of the four distributions in probabilities_
    std::array<bool, 4> accurate = {true, true, true, true};
  };
  /// The four distributions of the count over hatch, probability of k individuals at [fate * (n + 1) + k].
  struct FateDistributions {
    const KeptSpanning& kept;
    std::span<const double> probabilities;
  };

  void TakeErrors(const Parameters& p);
  const KeptOutcome& Outcome(std::size_t visit, double ER, double EC, double q);
  void JudgeOne(std::size_t visit, double q, LikelihoodState& state);
  void JudgeSpanning(std::size_t visit, int n, const EvaluationSetting& setting, std::int32_t NF,
                     LikelihoodState& state);
  FateDistributions DistributionsOverHatch(std::size_t visit, int n, const SurvivalTables& tables,
                                           const std::function<void(long)>& turn);
  void FillDistributions(KeptSpanning& kept, std::span<double> probabilities, std::size_t visit, int n,
                         const OverHatch& expected, const std::function<void(long)>& turn);

  const BroodData& data_;
  const PreparedVisits& prepared_;
  CountDistributions distributions_;
  KeptGammaLn logGamma_;
  CountErrors errors_;
  std::uint64_t stamp_ = 0;
  std::vector<KeptOutcome> outcomes_;
  std::vector<KeptSpanning> spanning_;
  std::vector<double> probabilities_;
  // For a prediction over hatch from the count of another visit.
  KeptSpanning passing_;
  std::vector<double> passingProbabilities_;
};

}  // namespace merlane
