#pragma once

#include "forms/desk.h"
#include "plots/bivariate.h"

namespace merlane {

/// Paints a joint density of two parameters.
class FrmBivarPlot : public Form {
 public:
  explicit FrmBivarPlot(Desk& d);

  Canvas picGraph{*this, "picGraph"};
  Label lblLegendHead{*this, "lblLegendHead", ""};
  Canvas LegendBox{*this, "LegendBox"};
  Label lblLegend{*this, "lblLegend", ""};
  Label lblHighDensity{*this, "lblHighDensity", ""};
  Label lblLowDensity{*this, "lblLowDensity", ""};
  Label lblVar{*this, "lblVar", ""};
  Label lblXYMax{*this, "lblXYMax", ""};
  Label lblXYMin{*this, "lblXYMin", ""};
  Label XYPeak{*this, "XYPeak", ""};
  Label lblCorr{*this, "lblCorr", ""};
  Label lblNote{*this, "lblNote", ""};
  Button cmdClear{*this, "cmdClear", "Cl&ear"};
  Button cmdDone{*this, "cmdDone", "&Done"};

  /// Opens the form and paints the density.
  void ShowBivarPlot(const BivariateDensity& density);

 private:
  void Clear();

  Drawing empty_;  // the canvas of the present density with its tick marks alone
};

}  // namespace merlane
