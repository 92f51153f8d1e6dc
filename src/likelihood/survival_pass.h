#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "likelihood/prepared_visits.h"
#include "survival/survival.h"
#include "survival/survival_tables.h"

namespace merlane {

/// Fills the survival tables for one vector of parameters after another. Survivals that recur, within a vector or from
/// one vector to the next, are computed once; the tables hold the very bits that computing each anew would give.
class SurvivalPass {
 public:
  /// Keeps references to both.
  SurvivalPass(const BroodData& data, const PreparedVisits& prepared);

  /// Fills the tables for decoded parameters, clutches first, since the broods build on what hatches. Adds to
  /// `Penalty` what too few survivors and rates beyond 10 cost. `turn` runs once, between clutches and broods.
  /// RuntimeFailure when a brood's attributes drive a rate or shape to an overflow.
  void FillSurvivalTables(const Parameters& parameters, bool BootstrapMode, const std::function<void(long)>& turn,
                          SurvivalTables& tables, double& Penalty);

  /// Whether all broods of a group have the same mortality: no attribute acts, and no covariate in which they differ.
  bool BroodsShareMortalities(const Parameters& parameters) const;

 private:
  /// A mortality in use. Whatever is kept of an earlier calculation bears the stamp of its mortality, and is valid
  /// while the mortality's stamp is the same; a mortality that changes gets a stamp never used before.
  struct Stage {
    Mortality mortality;
    SurvivalFunctions functions;
    double startAge = 0;         // age at which the stage's time begins
    bool BootstrapMode = false;  // in a bootstrap too few survivors are treated otherwise
    std::uint64_t stamp = 0;     // 0: never set
    // Of the broods' mortalities: whose it is.
    BroodMortality effective;
    std::uint64_t filling = 0;
    int brood = -1;
  };
  struct KeptShares {
    std::uint64_t stamp = 0;
    SharesAlive shares;
  };
  struct KeptSurvivors {
    std::uint64_t stamp = 0;
    double N = 0;
    Survivors survivors;
  };

  void FillClutches(const std::function<void(long)>& turn, SurvivalTables& tables, double& Penalty);
  void FillBroods(SurvivalTables& tables, double& Penalty);
  void FillFromClutch(const PreparedVisits::BroodStep& step, const Stage& stage, SurvivalTables& tables,
                      double& Penalty);

  void Set(Stage& stage, const Mortality& mortality, double startAge);
  /// The mortality of a brood, by age or by date, whose E[brood size@hatch] is E.
  const Stage& StageOfBrood(int number, int brood, double E, bool byAge);
  const SharesAlive& SharesAt(int time, const Stage& stage);
  const Survivors& SurvivorsOf(int interval, const Stage& stage, double N);

  const BroodData& data_;
  const PreparedVisits& prepared_;
  std::vector<Stage> stages_;
  std::vector<KeptShares> shares_;
  std::vector<KeptSurvivors> survivors_;
  std::uint64_t lastStamp_ = 0;

  // While tables are filled.
  const Parameters* parameters_ = nullptr;
  bool bootstrapMode_ = false;
  std::uint64_t filling_ = 0;    // counts the fillings
  bool groupsAreAlike_ = false;  // all broods of a group have the same mortality
};

}  // namespace merlane
