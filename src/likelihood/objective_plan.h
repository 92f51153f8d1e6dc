#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "data/brood_data.h"
#include "likelihood/count_distributions.h"
#include "likelihood/interval_kinds.h"
#include "likelihood/prepared_visits.h"

namespace merlane {

/// What has to be computed for the objective alone, without tables: each distinct mortality, time, interval and
/// prediction once, in columns, and which prediction each visit that counts has. Found for the data, the ages at laying
/// and fledging, and the knowledge whether broods share their mortalities; no other parameter changes it.
///
/// It tells the whole objective only where each entry of the tables is filled from one interval at most and all that is
/// not filled is Missing. Data in which that is not so (clutches behind broods, several hatches of one brood, counts
/// that rise) are not regular, and their objective is computed from the tables. So is that of counts over hatch which
/// take long, during which the user interface has its turns.
struct ObjectivePlan {
  /// What the plan is for.
  struct Subject {
    std::int16_t LayAge = 0, FledgeAge = 0;
    bool broodsShareMortalities = true;
    bool operator==(const Subject&) const = default;
  };
  ObjectivePlan(const BroodData& data, const PreparedVisits& prepared, const CountDistributions& distributions,
                const Subject& subject);

  Subject subject;
  bool regular = true;

  /// A part of a column.
  struct Range {
    std::size_t begin = 0, end = 0;
    std::size_t Size() const { return end - begin; }
    template <class T>
    std::span<const T> Of(const std::vector<T>& column) const {
      return std::span(column).subspan(begin, Size());
    }
  };
  /// Broods that share no mortality, time, span or interval with those of other pieces.
  struct Piece {
    Range mortality, time, span, interval;
    Range distinctTime;  // which all pieces of broods share
  };
  Piece clutches;
  std::vector<Piece> broodPieces;

  // Columns, in which clutches come first.

  // Mortalities: ClutchByAge and ClutchByDate of PreparedVisits, then those of broods.
  struct BroodMortalityOf {
    int brood = 0;
    bool byAge = true;
    double EHatch = Missing;  // E[brood size@hatch] where it is known,
    int hatch = -1;           // or the clutch interval that gives it
  };
  std::vector<BroodMortalityOf> broods;
  bool clutchesByAge = false, clutchesByDate = false;  // whether any clutch has them
  static constexpr int ClutchMortalities = 2;
  int Mortalities() const { return ClutchMortalities + static_cast<int>(broods.size()); }

  // Times. The same time under several mortalities has one power where these share a shape.
  std::vector<double> Time;  // days since laying or since hatch, or a date
  std::vector<int> mortalityOfTime;
  std::vector<int> distinctTime;  // its number among DistinctTimes
  std::vector<double> DistinctTimes;

  // Spans between two times, and the intervals in which so many individuals live through one.
  std::vector<int> from, to;  // times of a span
  std::vector<int> span;      // of an interval
  std::vector<double> N;      // individuals at its start; of intervals from hatch what the evaluation finds

  /// Two intervals from hatch that begin with the survivors of a clutch interval, of one and of the other fate.
  struct FromHatch {
    int clutch = 0, random = 0, correlated = 0;
  };
  std::vector<FromHatch> fromHatch;

  /// How many of the n individuals that begin an interval are counted at its end. The counts that were met follow one
  /// another in `k`.
  struct Distribution {
    int interval = 0;  // of one stage; over hatch its number among fromHatch
    int age = 0;       // at the visit before: its number among Ages
    int n = 0;
    int prediction = 0, predictionEnd = 0;
  };
  // Such as resemble each other stand side by side.
  std::vector<Distribution> clutchDistributions, broodDistributions, spanningDistributions;
  std::vector<double> Ages;  // distinct ages at the visit before, for the overdispersion
  /// So many distributions of one kind as are judged in a row.
  struct Row {
    Prediction kind{};
    Range distributions;
  };
  std::vector<Row> rows;
  std::span<const Distribution> DistributionsOf(const Row& row) const;

  // Predictions: a count k of a distribution, ascending in each.
  std::vector<std::int16_t> k, others;  // the others being n - k
  std::vector<int> distribution;        // its number in its row
  std::vector<int> spanOfPrediction;    // of one stage; over hatch the distribution's number among fromHatch
  std::vector<double> logChoices;       // ln of the number of ways to choose k of n
  std::vector<int> counted;             // the prediction of each visit that counts, in the order of visits

  /// Worth to be shared by several cores. Measured on two: with binomial counts sharing gains nothing up to 3,000
  /// predictions, 7 % at 4,500, 15 % at 6,000 and 60 % at 11,000; with overdispersed ones 20 to 30 % from 2,500 on and
  /// half as much again from 6,000 on. Below, whole evaluations that are announced gain more beside each other.
  bool IsLarge() const { return k.size() >= 5000; }

  std::int32_t EggsAtRisk = 0, JuvsAtRisk = 0;
  long turns = 0;  // visits at which the window system gets a turn
};

}  // namespace merlane
