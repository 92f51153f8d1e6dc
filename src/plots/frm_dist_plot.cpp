#include "plots/frm_dist_plot.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "base/number_text.h"
#include "plots/graph_area.h"

namespace merlane {
namespace {

constexpr int Black = 0;
constexpr int DensitySeries = 2, FirstProportion = 3, LastProportion = 6;
constexpr double NinetyFivePercent = 792;  // where 0.95 lies when a series spans 0 to 1

constexpr const char* Axis = "#0.0###";

int ColourOf(int number) {
  constexpr std::array colours{4, 2, 3, 5, 12, 13, 14};
  return colours[static_cast<std::size_t>(number) % colours.size()];
}

const char* DensityName(DistributionSeries::Source source) {
  switch (source) {
    case DistributionSeries::Source::LikelihoodProfile:
      return "Parameter Confidence Distribution";
    case DistributionSeries::Source::Posterior:
      return "Bayesian Posterior Distribution";
    case DistributionSeries::Source::Prior:
      break;
  }
  return "Bayesian Prior Distribution";
}

}  // namespace

FrmDistPlot::FrmDistPlot(Desk& d) : Form(d, "frmDistPlot", "Distribution plots") {
  Check_Line.value = Check_Scatter.value = true;
  Check_Drop.onClick = [this] {
    if (Check_Drop.value) Check_Line.value = Check_Scatter.value = false;
  };
  Check_Line.onClick = [this] {
    if (Check_Line.value) Check_Drop.value = false;
  };
  Check_Scatter.onClick = [this] {
    if (Check_Scatter.value) Check_Drop.value = false;
  };
  cmdPlot.onClick = listVar.onDoubleClick = [this] { Plot(); };
  cmdClear.onClick = [this] { Clear(); };
  cmdDone.onClick = [this] { desk.Unload(*this); };
}

void FrmDistPlot::ShowDistPlot(DistributionSeries series, std::function<std::string()> words) {
  desk.Load(*this);
  lblFit.Show(std::move(words));
  series_ = std::move(series);
  listVar.items = {"Parameter Likelihood Profile",     DensityName(series_.source),
                   "Confidence Region on mode",        "Confidence Region on mean",
                   "Cumulative L to R Distribution",   "Attenuated L to R Distribution",
                   "Gaussian Probability Distribution"};
  listVar.selected = 0;
  Clear();
  focus = &cmdPlot;
  desk.Show(*this);
}

void FrmDistPlot::Clear() {
  picGraph.drawing = DrawGridmarks();
  ++picGraph.version;
  for (Label* label :
       {&lblGraphMax, &lblVar, &lblXStart, &lblXEnd, &lblNote, &lblCI, &lblEstimateNames, &lblEstimateValues})
    label->text.clear();
}

std::vector<double> FrmDistPlot::Selected() const {
  switch (listVar.selected) {
    case 0:
      return series_.negLnL;
    case 1:
      return series_.density;
    case 2:
      return series_.regionOnMode;
    case 3:
      return series_.regionOnMean;
    case 4:
      return series_.cumulative;
    case 5: {
      std::vector<double> attenuated = series_.cumulative;
      for (double& y : attenuated) y = 1 - y;
      return attenuated;
    }
    default:
      return series_.normal;
  }
}

void FrmDistPlot::Plot() {
  const std::vector<double>& x = series_.values;
  const std::vector<double> y = Selected();
  const int number = listVar.selected + 1;
  double ymin = 0, ymax = 0;
  for (const double value : y) {
    ymin = std::min(ymin, value);
    ymax = std::max(ymax, value);
  }
  if (ymax == ymin) ymin = -1, ymax = 1;
  if (x.empty() || x.back() == x.front()) return;
  if (number == DensitySeries) ShowEstimates();

  DrawMarkers(number);
  lblGraphMax.text = "Max =  " + Format(ymax, Axis) + "\nMin =  " + Format(ymin, Axis);
  lblVar.text = "Y: " + listVar.items[static_cast<std::size_t>(listVar.selected)] + "\nX: Values for parameter #" +
                std::to_string(series_.parameter);
  lblXStart.text = Format(x.front(), Axis);
  lblXEnd.text = Format(x.back(), Axis);

  const XScale across(x.front(), x.back());
  const YScale down(ymin, ymax);
  const int colour = ColourOf(number);
  auto& items = picGraph.drawing.items;
  if (Check_Line.value)
    for (std::size_t i = 1; i < x.size(); ++i)
      items.emplace_back(Drawing::Line{across(x[i - 1]), down(y[i - 1]), across(x[i]), down(y[i]), colour});
  if (Check_Scatter.value)
    for (std::size_t i = 0; i < x.size(); ++i)
      items.emplace_back(Drawing::Circle{across(x[i]), down(y[i]), graph::PointRadius, colour});
  if (Check_Drop.value)
    for (std::size_t i = 0; i < x.size(); ++i)
      items.emplace_back(Drawing::Line{across(x[i]), down(y[i]), across(x[i]), graph::Bottom, colour});
  ++picGraph.version;
}

void FrmDistPlot::DrawMarkers(int number) {
  const double first = series_.values.front(), last = series_.values.back();
  auto& items = picGraph.drawing.items;
  const double zero = (-first / (last - first)) * graph::Width;
  const double one = ((1 - first) / (last - first)) * graph::Width;
  const bool showsZero = zero > 0 && first < 0 && last > 0;
  const bool showsOne = one > 0 && first < 1 && last > 1;
  if (showsZero) {
    items.emplace_back(DownAt(graph::Left + zero, Black, Drawing::Pen::Dotted));
    lblNote.text = "Note: Vertical line locates 0";
  }
  if (showsOne) {
    items.emplace_back(DownAt(graph::Left + one, Black, Drawing::Pen::Dotted));
    lblNote.text =
        showsZero ? "Left vertical line locates 0\nRight vertical line locates 1" : "Note: Vertical line locates 1";
  }
  if (number >= FirstProportion && number <= LastProportion) {
    items.emplace_back(AcrossAt(NinetyFivePercent, Black, Drawing::Pen::Dotted));
    lblCI.text = "< 95% CI >";
  }
}

void FrmDistPlot::ShowEstimates() {
  const double percent = series_.difference * 100 / series_.maximumLikelihood;
  const auto shown = [](double value) { return std::isfinite(value) ? Format(value, "0.000E+00") : "undefined"; };
  lblEstimateNames.text = "ML Estimate: \nEV Estimate:\nEstimated Diff:\nPercent Diff:\nEstimated SE:";
  lblEstimateValues.text.clear();
  for (const double value :
       {series_.maximumLikelihood, series_.expected, series_.difference, percent, series_.standardError})
    lblEstimateValues.text += (lblEstimateValues.text.empty() ? "" : "\n") + shown(value);
}

}  // namespace merlane
