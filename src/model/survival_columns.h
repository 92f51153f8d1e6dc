#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "data/brood_data.h"
#include "model/objective_plan.h"
#include "model/parameters.h"
#include "model/survival.h"

namespace merlane {

/// How many individuals live through each interval, as the plan numbers them: one column after the other, with the bits
/// of SurvivalPass. A filling is false where something is out of the ordinary, an overflow or a penalty.
class SurvivalColumns {
 public:
  /// Keeps references to both.
  SurvivalColumns(const BroodData& data, const ObjectivePlan& plan);

  /// Room for the values of a piece; each thread has its own.
  struct Rows {
    explicit Rows(const ObjectivePlan& plan);
    std::vector<double> distinctPower, power, exponent, surviving, attenuation;
  };

  bool FillClutches(const Parameters& parameters, bool BootstrapMode, Rows& rows);
  /// Behind the clutches: broods begin with what hatches. The pieces are independent of each other.
  void BeginAtHatch();
  bool FillBroods(const ObjectivePlan::Piece& piece, const Parameters& parameters, bool BootstrapMode, Rows& rows);

  // Of spans: the shares that live through, and the probability of the correlated state at the start.
  std::vector<double> aliveR, aliveC, aliveAll, PCorr;
  // Of intervals: individuals at the start, and expected at the end.
  std::vector<double> N, OutR, OutC, OutAll;

 private:
  enum class Kind { Random, Correlated, Both };  // which mortality acts
  /// What all mortalities of a piece have in common.
  struct Acting {
    Kind kind = Kind::Both;
    double f = 0;
  };
  bool SetMortality(std::size_t number, const Mortality& mortality, bool first, Acting& acting);
  bool FillSurvival(const ObjectivePlan::Piece& piece, const Acting& acting, bool BootstrapMode, Rows& rows);
  void FillPowers(const ObjectivePlan::Piece& piece, const std::vector<double>& Beta, Rows& rows) const;
  bool FillSharesR(const ObjectivePlan::Piece& piece, double f, Rows& rows);
  bool FillSharesC(const ObjectivePlan::Piece& piece, double f, Rows& rows);
  bool FillSpans(const ObjectivePlan::Piece& piece, Kind kind);
  bool FillSurvivors(const ObjectivePlan::Piece& piece, bool BootstrapMode);

  const BroodData& data_;
  const ObjectivePlan& plan_;
  std::vector<double> AlphaR_, BetaR_, AlphaC_, BetaC_, normaliser_, shareR_, shareC_;  // of mortalities
  std::vector<double> SR_, SC_;                                                         // shares alive at each time
};

}  // namespace merlane
