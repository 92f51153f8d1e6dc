#pragma once

#include "control/fit_label.h"
#include "forms/desk.h"
#include "plots/distribution_series.h"

namespace merlane {

/// Plots the seven series of one parameter, one press over the other.
class FrmDistPlot : public Form {
 public:
  explicit FrmDistPlot(Desk& d);

  Canvas picGraph{*this, "picGraph"};
  Label lblGraphMax{*this, "lblGraphMax", ""};
  Label lblVar{*this, "lblVar", ""};
  Label lblXStart{*this, "lblXStart", ""};
  Label lblXEnd{*this, "lblXEnd", ""};
  Label lblNote{*this, "lblNote", ""};
  Label lblCI{*this, "lblCI", ""};
  Label lblEstimateNames{*this, "lblEstimateNames", ""};
  Label lblEstimateValues{*this, "lblEstimateValues", ""};
  ListBox listVar{*this, "listVar"};
  Label lblOptions{*this, "lblOptions", "Plot Options:"};
  CheckBox Check_Line{*this, "Check_Line", "Draw lines"};
  CheckBox Check_Scatter{*this, "Check_Scatter", "Draw points"};
  CheckBox Check_Drop{*this, "Check_Drop", "Drop line plot"};
  FitLabel lblFit{*this};
  Button cmdPlot{*this, "cmdPlot", "&Plot it!"};
  Button cmdClear{*this, "cmdClear", "Cl&ear"};
  Button cmdDone{*this, "cmdDone", "&Done"};

  /// Opens the form on a parameter's series, of a fit that `words` tell.
  void ShowDistPlot(DistributionSeries series, std::function<std::string()> words);

 private:
  void Clear();
  void Plot();
  std::vector<double> Selected() const;
  void DrawMarkers(int number);
  void ShowEstimates();

  DistributionSeries series_;
};

}  // namespace merlane
