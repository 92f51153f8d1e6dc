#include "results/detail_plots.h"

#include <fmt/format.h>

#include <utility>

#include "results/detail_series.h"

namespace merlane {
namespace {

constexpr const char* Title = "Data and prediction plots";

}  // namespace

void DetailPlots::Offer() {
  if (Wanted("Do you want to see detailed data plots for each brood?")) OfferBroods();
  if (Wanted("Do you want to see annual summary plots for all broods?")) OfferYears();
}

bool DetailPlots::Wanted(const std::string& question) {
  return desk_.Ask(Title, question, style::YesNoQuestion) == Answer::Yes;
}

bool DetailPlots::ShowPage(PlotTable page) {
  plot_.ShowXYPlot(std::move(page));
  desk_.WaitFor(plot_);
  return plot_.PlotGoOn;
}

void DetailPlots::OfferBroods() {
  const BroodData& data = model_.data;
  const DetailSubject subject{data, model_.Evaluated().best, model_.Estimates(), model_.simulation};
  for (int brood = 0; brood < data.Broods(); ++brood) {
    // Hundreds of broods may follow: Cancel asks about no more of them.
    const Answer answer =
        desk_.Ask(Title, fmt::format("Do you want to see plots for mother {}?", BroodLabel(data, brood)),
                  style::YesNoCancelQuestion);
    if (answer == Answer::Cancel) return;
    if (answer == Answer::Yes && !ShowPage(BuildBroodPlot(subject, brood))) return;
  }
}

void DetailPlots::OfferYears() {
  const BroodData& data = model_.data;
  const DetailSubject subject{data, model_.Evaluated().best, model_.Estimates(), model_.simulation};
  for (int year = data.FirstYear; year <= data.LastYear; ++year)
    if (Wanted(fmt::format("Do you want to see plots for year {}?", year)) && !ShowPage(BuildYearPlot(subject, year)))
      return;
  if (Wanted("Do you want to see plots for all years combined?")) ShowPage(BuildYearPlot(subject, {}));
}

}  // namespace merlane
