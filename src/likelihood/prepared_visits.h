#pragma once

#include <cstdint>
#include <vector>

#include "data/brood_data.h"
#include "likelihood/interval_kinds.h"

namespace merlane {

/// What the evaluations of the objective need to know of the visits and what no vector of parameters changes, found
/// once when the data have been read: the kind of each interval between two visits, and which calculations recur. Field
/// data are whole days and small counts, so the same ages, intervals and counts come back many times; each recurring
/// calculation has a number here, and an evaluation makes it once.
struct PreparedVisits {
  explicit PreparedVisits(const BroodData& data);

  // Survival functions.

  /// Broods whose covariates are equal form a group and share calculations. Where hardly any are equal, all broods are
  /// one group, so that its calculations are kept from visit to visit of a brood only.
  std::vector<int> GroupOfBrood;
  int Groups = 0;
  bool GroupsShareCovariates = true;

  /// Each stage, and within the broods each group, has a mortality by age and one by date.
  static constexpr int ClutchByAge = 0, ClutchByDate = 1;
  static int BroodByAge(int group) { return 2 + 2 * group; }
  static int BroodByDate(int group) { return 3 + 2 * group; }
  int Mortalities() const { return 2 + 2 * Groups; }

  /// Distinct times, each under one of the mortalities: an age (0 also for the hatch that ends the clutch) or a date.
  std::vector<double> Times;
  /// Distinct survivals of a number of individuals between two times, which are indexes into Times.
  struct Interval {
    int from = 0, to = 0;
  };
  std::vector<Interval> Intervals;

  struct ClutchStep {
    int visit = 0, brood = 0;
    int interval = 0;        // its number in Intervals
    std::int16_t count = 0;  // of the visit before; of the visit itself when it is the first
    ClutchInterval kind{};
  };
  /// In the order brood, visit.
  std::vector<ClutchStep> ClutchSteps;
  struct BroodStep {
    int visit = 0, brood = 0;
    int interval = 0;            // of FromClutch: for eggs under random mortality
    int intervalCorrelated = 0;  // of FromClutch: for eggs under correlated mortality
    std::int16_t count = 0;      // of the visit before; of the visit itself when it is the first
    BroodInterval kind{};
    bool secondVisit = false;
  };
  std::vector<BroodStep> BroodSteps;

  // Likelihood.

  /// The prediction of a visit's count from the visit before.
  struct Judgement {
    int brood = 0;
    int outcome = -1;              // number of the distinct prediction, among those of its kind
    std::int16_t countBefore = 0;  // 0 at a brood's first visit
    std::int16_t count = 0;
    std::int8_t stageBefore = 0;  // 0 at a brood's first visit
    Prediction prediction = Prediction::None;
    bool onHatchDay = false;
  };
  /// One for each visit.
  std::vector<Judgement> Judgements;
  int Outcomes = 0;  // distinct predictions of clutches and of broods
  /// Largest count of each distinct prediction over hatch.
  std::vector<int> SpanningCounts;
  int MaxCount = 0;  // largest count of all visits, at least 0
};

}  // namespace merlane
