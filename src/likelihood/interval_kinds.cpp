#include "likelihood/interval_kinds.h"

namespace merlane {
namespace {

bool IsFirst(const BroodData& data, int brood, int visit) {
  return visit == data.FirstVisit[static_cast<std::size_t>(brood)];
}

/// Two visits in one stage, of which the later has a count to be predicted.
bool WithinStage(const BroodData& data, std::size_t v, int stage) {
  return data.VisitStage[v - 1] == stage && data.VisitStage[v] == stage && data.VisitCount[v] != Missing;
}

}  // namespace

std::optional<ClutchInterval> ClutchIntervalTo(const BroodData& data, int brood, int visit) {
  const auto v = static_cast<std::size_t>(visit);
  const bool first = IsFirst(data, brood, visit);
  const double age = data.VisitAge[v];
  if (!data.ClutchAgeKnown[static_cast<std::size_t>(brood)]) {
    if (!first && WithinStage(data, v, -1)) return ClutchInterval::ByDate;
  } else if (first) {
    if (age == 0) return ClutchInterval::FirstOnHatchDay;
  } else if (const double before = data.VisitAge[v - 1]; age != Missing && before != Missing && before < 0) {
    return age < 0 ? ClutchInterval::ByAge : age == 0 ? ClutchInterval::ToHatchDay : ClutchInterval::ToHatch;
  }
  return std::nullopt;
}

std::optional<BroodInterval> BroodIntervalTo(const BroodData& data, int brood, int visit) {
  const auto v = static_cast<std::size_t>(visit);
  const bool first = IsFirst(data, brood, visit);
  const double age = data.VisitAge[v];
  if (!data.BroodAgeKnown[static_cast<std::size_t>(brood)]) {
    if (!first && WithinStage(data, v, 1)) return BroodInterval::ByDate;
  } else if (first) {
    if (age == 0) return BroodInterval::FirstOnHatchDay;
  } else if (age > 0) {
    const double before = data.VisitAge[v - 1];
    return before == Missing ? BroodInterval::AgeBeforeUnknown
           : before < 0      ? BroodInterval::FromClutch
                             : BroodInterval::ByAge;
  }
  return std::nullopt;
}

Prediction PredictionOf(const BroodData& data, int visit) {
  const auto v = static_cast<std::size_t>(visit);
  const int before = data.VisitStage[v - 1], stage = data.VisitStage[v];
  if (before == -1 && (stage == -1 || data.VisitAge[v] == 0)) return Prediction::Clutch;
  if (before == 1 && stage == 1) return Prediction::Brood;
  if (before == -1 && stage == 1) return Prediction::Spanning;
  return Prediction::None;
}

}  // namespace merlane
