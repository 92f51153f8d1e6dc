#pragma once

#include <string>

#include "forms/desk.h"
#include "model/merlane_model.h"
#include "plots/frm_xy_plot.h"

namespace merlane {

/// Offers plots of the fit behind a results summary: page by page for each brood, for each year, and for all years
/// together. While a page is open the summary can be read but not used.
class DetailPlots {
 public:
  DetailPlots(Desk& desk, const MerlaneModel& model, FrmXyPlot& plot) : desk_(desk), model_(model), plot_(plot) {}

  void Offer();

 private:
  bool Wanted(const std::string& question);
  /// Shows a page until it is closed; false when the user wants no further one.
  bool ShowPage(PlotTable page);
  void OfferBroods();
  void OfferYears();

  Desk& desk_;
  const MerlaneModel& model_;
  FrmXyPlot& plot_;
};

}  // namespace merlane
