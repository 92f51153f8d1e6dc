#include "survival/survival_tables.h"

#include <algorithm>

namespace merlane {
namespace {

template <class Action>
void ForBroodColumns(SurvivalTables& t, Action action) {
  for (auto* column : {&t.EHatchR, &t.EHatchC, &t.EHatch, &t.PCorrHatch, &t.JuvRR, &t.JuvCR, &t.JuvRC, &t.JuvCC})
    action(*column);
}

template <class Action>
void ForVisitColumns(SurvivalTables& t, Action action) {
  for (auto* column : {&t.EVisitR, &t.EVisitC, &t.EVisit, &t.PCorrEgg, &t.PCorrJuv}) action(*column);
}

}  // namespace

void SurvivalTables::Dimension(const BroodData& data) {
  ForBroodColumns(*this, [&](auto& column) { column.assign(static_cast<std::size_t>(data.Broods()), 0.0); });
  ForVisitColumns(*this, [&](auto& column) { column.assign(static_cast<std::size_t>(data.Visits()), 0.0); });
}

void SurvivalTables::Preset() {
  const auto preset = [](auto& column) { std::fill(column.begin(), column.end(), static_cast<double>(Missing)); };
  ForBroodColumns(*this, preset);
  ForVisitColumns(*this, preset);
}

}  // namespace merlane
