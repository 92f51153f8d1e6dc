#include "data/record_places.h"

#include <utility>

#include "base/runtime_failure.h"
#include "data/data_record_text.h"

namespace merlane {

RecordPlaces::RecordPlaces(const BroodData& data) : recordsOf_(data.VisitsOf.size()) {
  for (int y = 0; y < data.Years(); ++y) {
    const auto first = data.VisitsOf.begin() + data.FirstBrood[static_cast<std::size_t>(y)];
    visitsOf_.emplace_back(first, first + data.BroodsInYear[static_cast<std::size_t>(y)]);
  }
  ForEachRecord(data, [this](std::size_t b, std::size_t v) {
    ++recordsOf_[b];
    visits_.push_back(v);
  });
  gaps_ = recordsOf_ != data.VisitsOf;
}

void RecordPlaces::GiveTo(BroodData& data) const {
  if (data.VisitsOf != recordsOf_) throw RuntimeFailure("the records that were read are not those that were written");
  if (!gaps_) return;
  BroodData placed = data;
  AllocateVisits(placed, visitsOf_);
  for (std::size_t record = 0; record < visits_.size(); ++record) {
    const std::size_t v = visits_[record];
    placed.VisitYear[v] = data.VisitYear[record];
    placed.VisitDate[v] = data.VisitDate[record];
    placed.VisitAge[v] = data.VisitAge[record];
    placed.VisitStage[v] = data.VisitStage[record];
    placed.VisitCount[v] = data.VisitCount[record];
  }
  data = std::move(placed);
}

}  // namespace merlane
