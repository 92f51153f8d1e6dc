#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "data/brood_data.h"
#include "likelihood/column_loops.h"
#include "likelihood/effect_columns.h"
#include "likelihood/objective_plan.h"
#include "survival/parameters.h"
#include "survival/survival.h"

namespace merlane {

/// How many individuals live through each interval, as the plan numbers them: one column after the other, with the bits
/// of SurvivalPass. A filling is false where something is out of the ordinary, an overflow or a penalty. Columns are
/// kept from one filling to the next: what would be computed from the very same numbers once more is left as it is.
class SurvivalColumns {
 public:
  /// Keeps references to both.
  SurvivalColumns(const BroodData& data, const ObjectivePlan& plan);

  /// Room for the values of a piece; each thread has its own.
  struct Rows {
    explicit Rows(const ObjectivePlan& plan);
    std::vector<double> distinctPower, exponent, surviving, attenuation;
    EffectColumns::Rows effects;
  };

  bool FillClutches(const Parameters& parameters, bool BootstrapMode, Rows& rows);
  /// Behind the clutches: broods begin with what hatches. The pieces of broods are independent of each other.
  void BeginAtHatch();
  bool FillBroods(std::size_t piece, const Parameters& parameters, bool BootstrapMode, Rows& rows);

  /// How often what survives of a stage has changed, under random and under correlated mortality. While the numbers are
  /// the same so are the columns, the intervals from hatch excepted.
  struct Changes {
    std::int64_t random = 0, correlated = 0;
    bool operator==(const Changes&) const = default;
  };
  const Changes& OfClutches() const { return filled_.front().changes; }
  Changes OfBroods() const;

  // Of spans: the shares that live through, and the probability of the correlated state at the start.
  std::vector<double> aliveR, aliveC, aliveAll, PCorr;
  // Of intervals: individuals at the start, and expected at the end.
  std::vector<double> N, OutR, OutC, OutAll;

 private:
  enum class Kind { Random, Correlated, Both };  // which mortality acts
  static Kind KindOf(double AlphaR, double AlphaC);
  /// The shares alive under one kind of mortality, and what they were computed from.
  struct Shares {
    std::vector<SurvivalRate> rate, made;       // of each mortality: now, and of those in `alive`
    std::vector<double> alive, power, madeFor;  // of each time; its power, and of each mortality the shape of those
  };
  /// How a piece was filled: the clutches, then those of broods.
  struct Filled {
    bool whole = false;
    Kind kind = Kind::Both;
    bool BootstrapMode = false;
    Changes hatched;  // of the clutches with which its intervals from hatch begin
    Changes changes;
  };

  bool SetMortalities(std::size_t piece, const Parameters& p, Kind& kind, Rows& rows);
  /// All of a piece at once; false where one has to be looked at alone.
  bool SetMortalitiesInRow(const ObjectivePlan::Piece& piece, const Parameters& p, Kind& kind, Rows& rows);
  /// False where its constants fail, or where it is of another kind than the first of its piece.
  bool SetMortality(std::size_t number, const Mortality& mortality, bool first, Kind& kind);
  bool FillSurvival(const ObjectivePlan::Piece& piece, Kind kind, bool BootstrapMode, const Changes& hatched,
                    Filled& filled, Rows& rows);
  static bool AreMade(const ObjectivePlan::Piece& piece, const Shares& shares);
  void FillPowers(const ObjectivePlan::Piece& piece, Shares& shares, Rows& rows) const;
  bool FillSharesR(const ObjectivePlan::Piece& piece, Rows& rows);
  bool FillSharesC(const ObjectivePlan::Piece& piece, Rows& rows);
  static void NoteMade(const ObjectivePlan::Piece& piece, Shares& shares);
  bool FillSpans(const ObjectivePlan::Piece& piece, Kind kind);
  bool FillSurvivors(const ObjectivePlan::Piece& piece, bool BootstrapMode);

  const BroodData& data_;
  const ObjectivePlan& plan_;
  const EffectColumns effects_;
  std::vector<bool> effectsServe_;  // each piece of broods
  Shares random_, correlated_;
  std::vector<Filled> filled_;
};

}  // namespace merlane
