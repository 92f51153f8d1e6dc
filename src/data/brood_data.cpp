#include "data/brood_data.h"

#include <fmt/format.h>

#include <algorithm>

#include "base/runtime_failure.h"
#include "data/most_visits.h"

namespace merlane {
namespace {

void RefuseMoreThanRoom(const std::vector<std::vector<int>>& visitsOf) {
  std::int64_t visits = 0;
  for (const std::vector<int>& broods : visitsOf)
    for (const int n : broods) visits += n;
  if (visits > MostVisits)
    throw RuntimeFailure(fmt::format("{} visits are too many: there is room for {}", visits, MostVisits));
}

}  // namespace

void AllocateVisits(BroodData& data, const std::vector<std::vector<int>>& visitsOf) {
  RefuseMoreThanRoom(visitsOf);
  data.FirstBrood.clear();
  data.BroodsInYear.clear();
  data.FirstVisit.clear();
  data.VisitsOf.clear();
  data.BroodYear.clear();
  data.MaxBroods = data.MaxVisits = 0;
  int visits = 0;
  int year = data.FirstYear;
  for (const std::vector<int>& broods : visitsOf) {
    data.FirstBrood.push_back(data.Broods());
    data.BroodsInYear.push_back(static_cast<int>(broods.size()));
    data.MaxBroods = std::max(data.MaxBroods, data.BroodsInYear.back());
    for (const int n : broods) {
      data.FirstVisit.push_back(visits);
      data.VisitsOf.push_back(n);
      data.BroodYear.push_back(static_cast<std::int16_t>(year));
      data.MaxVisits = std::max(data.MaxVisits, n);
      visits += n;
    }
    ++year;
  }
  const auto size = static_cast<std::size_t>(visits);
  data.VisitYear.assign(size, Missing);
  data.VisitDate.assign(size, Missing);
  data.VisitAge.assign(size, Missing);
  data.VisitStage.assign(size, 0);
  data.VisitCount.assign(size, Missing);
}

void AllocateTables(BroodData& data, const std::vector<std::vector<int>>& visitsOf) {
  AllocateVisits(data, visitsOf);
  data.ClutchesInYear.assign(visitsOf.size(), 0);
  data.JuvBroodsInYear.assign(visitsOf.size(), 0);

  const std::size_t broods = data.FirstVisit.size();
  data.BroodCode.assign(broods, "");
  data.HatchDate.assign(broods, 0);
  data.ClutchAgeKnown.assign(broods, 1);
  data.BroodAgeKnown.assign(broods, 1);
  data.Covariate.assign(broods * static_cast<std::size_t>(data.NCov), Missing);
  data.AllClutchAgesKnown = data.AllBroodAgesKnown = true;
}

void ForgetVisits(BroodData& data) {
  const auto years = static_cast<std::size_t>(std::max(0, data.LastYear - data.FirstYear + 1));
  AllocateTables(data, std::vector<std::vector<int>>(years));
  data.TotalRecords = 0;
}

bool BroodData::HasSameRecords(const BroodData& other) const {
  return VisitYear == other.VisitYear && VisitDate == other.VisitDate && VisitAge == other.VisitAge &&
         VisitStage == other.VisitStage && VisitCount == other.VisitCount && BroodCode == other.BroodCode &&
         HatchDate == other.HatchDate && ClutchAgeKnown == other.ClutchAgeKnown &&
         BroodAgeKnown == other.BroodAgeKnown && FirstVisit == other.FirstVisit && VisitsOf == other.VisitsOf &&
         Covariate == other.Covariate;
}

}  // namespace merlane
