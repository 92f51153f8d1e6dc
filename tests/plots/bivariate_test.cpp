#include "plots/bivariate.h"

#include "base/elementary.h"
#include "plots/frm_bivar_plot.h"
#include "plots/kept_drawing.h"
#include "support/scripted_host.h"

namespace merlane::test {
namespace {

Array1<double> Counted(const std::vector<double>& values) {
  Array1<double> counted(static_cast<int>(values.size()));
  std::ranges::copy(values, counted.begin());
  return counted;
}

BivariateDensity DensityOf(const std::vector<double>& x, const std::vector<double>& y,
                           const std::vector<std::vector<double>>& f, double fmax) {
  BivariateDensity d;
  d.X = Counted(x);
  d.Y = Counted(y);
  d.f.Dimension(d.Y.Size(), d.X.Size());
  for (int j = 1; j <= d.Y.Size(); ++j)
    for (int i = 1; i <= d.X.Size(); ++i)
      d.f(j, i) = f[static_cast<std::size_t>(j) - 1][static_cast<std::size_t>(i) - 1];
  d.fmax = fmax;
  return d;
}

class KeptBivariate : public testing::TestWithParam<const char*> {};

TEST_P(KeptBivariate, IsDrawnFigureByFigure) {
  const Json kept = KeptPlot(GetParam());
  const Json& input = kept["input"];
  BivariateDensity density = DensityOf(input["X"], input["Y"], input["f"], input["fmax"]);
  density.firstParameter = input["first"];
  density.secondParameter = input["second"];
  density.peakX = input["peak"][0];
  density.peakY = input["peak"][1];
  const BivariatePlot plot = DrawBivariate(density);
  EXPECT_EQ(plot.drawn, kept["drawn"].get<bool>());
  ExpectItems(plot.drawing, 0, kept["primitives"]);
  ExpectItems(plot.legend, 0, kept["legend"]);
  EXPECT_EQ(plot.drawing.left, kept["canvas"]["left"]);
  EXPECT_EQ(plot.drawing.top, kept["canvas"]["top"]);
  EXPECT_EQ(plot.drawing.right, kept["canvas"]["right"]);
  EXPECT_EQ(plot.drawing.bottom, kept["canvas"]["bottom"]);
  ScriptedHost host;
  Desk desk(host.Get());
  FrmBivarPlot form(desk);
  form.ShowBivarPlot(density);
  ExpectTexts(form, kept["labels"]);
}

INSTANTIATE_TEST_SUITE_P(All, KeptBivariate,
                         testing::Values("bivar_flat", "bivar_lines", "bivar_no_lines", "bivar_three_by_three"),
                         [](const auto& kept) { return std::string(kept.param); });

/// The colour of the only cell of a 3-by-3 grid whose centre is at the fraction `d` of the peak.
int ColourAt(double d) {
  const BivariatePlot plot = DrawBivariate(DensityOf({2, 3, 4}, {5, 6, 7}, {{0, 0, 0}, {0, d, 0}, {0, 0, 0}}, 1));
  return std::get<Drawing::Box>(plot.drawing.items.back()).colour;
}

TEST(Bivariate, ACellExactlyAtThePeakIsLightRed) { EXPECT_EQ(ColourAt(1), 12); }

TEST(Bivariate, ACellTakesTheBandOfItsDistanceFromThePeak) {
  EXPECT_EQ(ColourAt(0.9), 6);
  EXPECT_EQ(ColourAt(0.5), 2);  // between 1 and 1.5 standard errors
  EXPECT_EQ(ColourAt(0.3), 3);  // between 1.5 and 2
  EXPECT_EQ(ColourAt(0.001), 15);
}

TEST(Bivariate, ADensityOnTheEdgeOfTwoBandsBelongsToTheNearer) {
  EXPECT_EQ(ColourAt(Exp(-1.0 * 1.0 / 2)), 14);
  EXPECT_EQ(ColourAt(std::nextafter(Exp(-1.0 * 1.0 / 2), 0)), 2);
}

TEST(Bivariate, AThreeByThreeGridPaintsOneCell) {
  const BivariatePlot plot = DrawBivariate(DensityOf({2, 3, 4}, {5, 6, 7}, {{1, 1, 1}, {1, 1, 1}, {1, 1, 1}}, 1));
  int cells = 0;
  for (const auto& item : plot.drawing.items) cells += std::holds_alternative<Drawing::Box>(item) ? 1 : 0;
  EXPECT_EQ(cells, 1);
}

TEST(Bivariate, AGridWhoseXRangeIsZeroDrawsNothing) {
  const BivariatePlot plot = DrawBivariate(DensityOf({3, 3, 3}, {5, 6, 7}, {{1, 1, 1}, {1, 1, 1}, {1, 1, 1}}, 1));
  EXPECT_FALSE(plot.drawn);
  EXPECT_TRUE(plot.drawing.items.empty());
}

struct BivarForm : testing::Test {
  ScriptedHost host;
  Desk desk{host.Get()};
  FrmBivarPlot form{desk};
};

TEST_F(BivarForm, ADegenerateDensityShowsAnEmptyCanvas) {
  form.ShowBivarPlot(DensityOf({2, 3, 4}, {5, 6, 7}, {{0, 0, 0}, {0, 0, 0}, {0, 0, 0}}, 0));
  EXPECT_TRUE(form.picGraph.drawing.items.empty());
  EXPECT_EQ(form.lblVar.text, "");
}

TEST_F(BivarForm, ClearLeavesTheTickMarksOfTheWidenedCanvas) {
  const BivariateDensity density = DensityOf({2, 3, 4}, {5, 6, 7}, {{1, 1, 1}, {1, 1, 1}, {1, 1, 1}}, 1);
  form.ShowBivarPlot(density);
  const Drawing drawn = form.picGraph.drawing;
  desk.Press(form.cmdClear);
  const Drawing& cleared = form.picGraph.drawing;
  EXPECT_EQ(cleared.left, drawn.left);
  EXPECT_EQ(cleared.bottom, drawn.bottom);
  ASSERT_EQ(cleared.items.size(), 20U);
  for (std::size_t i = 0; i < cleared.items.size(); ++i) {
    const auto &tick = std::get<Drawing::Line>(cleared.items[i]), &before = std::get<Drawing::Line>(drawn.items[i]);
    EXPECT_EQ(tick.x1, before.x1);
    EXPECT_EQ(tick.y1, before.y1);
  }
  for (const Control* control : form.Controls())
    if (dynamic_cast<const Label*>(control) != nullptr) {
      EXPECT_EQ(control->text, "") << control->name;
    }
  form.ShowBivarPlot(density);
  EXPECT_EQ(form.lblHighDensity.text, "High Density");
  EXPECT_EQ(form.lblLowDensity.text, "Low Density");
}

}  // namespace
}  // namespace merlane::test
