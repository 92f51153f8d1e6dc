#include "plots/frm_bivar_plot.h"

#include "base/number_text.h"

namespace merlane {

FrmBivarPlot::FrmBivarPlot(Desk& d) : Form(d, "frmBivarPlot", "Bivariate pdf plot") {
  cmdClear.onClick = [this] { Clear(); };
  cmdDone.onClick = [this] { desk.Unload(*this); };
}

void FrmBivarPlot::ShowBivarPlot(const BivariateDensity& density) {
  desk.Load(*this);
  const BivariatePlot plot = DrawBivariate(density);
  empty_ = plot.empty;
  Clear();
  picGraph.drawing = plot.drawing;
  if (plot.drawn) {
    LegendBox.drawing = plot.legend;
    lblHighDensity.text = "High Density";
    lblLowDensity.text = "Low Density";
    lblLegendHead.text = "SE's";
    lblLegend.text = "   0.0  \r\n\n< 0.5\r\n\n< 1.0\r\n\n< 1.5\r\n\n< 2.0\r\n\n< 2.5\r\n\n< 3.0";
    lblVar.text = plot.axes;
    lblXYMax.text = plot.maxima;
    lblXYMin.text = plot.minima;
    XYPeak.text = plot.peak;
    lblNote.text = plot.note;
    if (plot.correlation) lblCorr.text = "       r = " + Format(*plot.correlation, "#0.0##");
  }
  focus = &cmdDone;
  desk.Show(*this);
}

void FrmBivarPlot::Clear() {
  picGraph.drawing = empty_;
  LegendBox.drawing = {};
  ++picGraph.version;
  ++LegendBox.version;
  for (Label* label : {&lblHighDensity, &lblLowDensity, &lblLegendHead, &lblLegend, &lblVar, &lblXYMax, &lblXYMin,
                       &XYPeak, &lblCorr, &lblNote})
    label->text.clear();
}

}  // namespace merlane
