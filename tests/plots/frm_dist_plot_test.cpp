#include "plots/frm_dist_plot.h"

#include "plots/kept_drawing.h"
#include "support/scripted_host.h"

namespace merlane::test {
namespace {

DistributionSeries SeriesOf(const Json& input) {
  DistributionSeries s;
  s.parameter = input["parameter"];
  s.source = input["prior_on"] == "on"       ? DistributionSeries::Source::Prior
             : input["posterior_on"] == "on" ? DistributionSeries::Source::Posterior
                                             : DistributionSeries::Source::LikelihoodProfile;
  s.values = input["X"].get<std::vector<double>>();
  s.negLnL = input["neg_lnl"].get<std::vector<double>>();
  s.density = input["pdf"].get<std::vector<double>>();
  s.regionOnMode = input["ci_mode"].get<std::vector<double>>();
  s.regionOnMean = input["ci_mean"].get<std::vector<double>>();
  s.cumulative = input["cumulative"].get<std::vector<double>>();
  s.normal = input["normal"].get<std::vector<double>>();
  s.maximumLikelihood = input["ml"];
  s.expected = input["expected"];
  s.difference = input["diff"];
  s.standardError = input["se"];
  return s;
}

class DistPlot : public testing::Test {
 protected:
  ScriptedHost host;
  Desk desk{host.Get()};
  FrmDistPlot form{desk};

  std::size_t Items() const { return form.picGraph.drawing.items.size(); }
  void Select(int number) { EXPECT_TRUE(desk.Select(form.listVar, number - 1)); }
  void Press() { EXPECT_TRUE(desk.Press(form.cmdPlot)); }
};

class KeptDistPlot : public DistPlot, public testing::WithParamInterface<const char*> {};

TEST_P(KeptDistPlot, IsDrawnFigureByFigure) {
  const Json kept = KeptPlot(GetParam());
  form.ShowDistPlot(SeriesOf(kept["input"]), [] { return std::string(); });
  EXPECT_EQ(form.listVar.items, kept["names"].get<std::vector<std::string>>());
  for (const Json& step : kept["steps"]) {
    SCOPED_TRACE(step["action"].dump());
    const std::string kind = step["action"][0];
    const std::size_t before = Items();
    if (kind == "press")
      Press();
    else if (kind == "select")
      Select(step["action"][1]);
    else if (kind == "clear")
      desk.Press(form.cmdClear);
    else
      desk.Tick(dynamic_cast<CheckBox&>(*form.Find(step["action"][1])), step["action"][2]);
    ExpectItems(form.picGraph.drawing, kind == "clear" ? 0 : before, step["added"]);
    ExpectTexts(form, step["labels"]);
  }
}

INSTANTIATE_TEST_SUITE_P(All, KeptDistPlot,
                         testing::Values("dist_profile", "dist_posterior", "dist_neither", "dist_small_numbers"),
                         [](const auto& kept) { return std::string(kept.param); });

DistributionSeries Simple(double first, double last) {
  DistributionSeries s;
  s.parameter = 15;
  s.values = {first, (first + last) / 2, last};
  s.negLnL = {2, 0, 2};
  s.density = {0.1, 0.7, 0.1};
  s.regionOnMode = s.regionOnMean = {0.95, 0, 0.95};
  s.cumulative = {0.05, 0.5, 1};
  s.normal = {0.1, 0.6, 0.1};
  s.maximumLikelihood = 2;
  s.expected = 3;
  s.difference = 1;
  s.standardError = 0.5;
  return s;
}

TEST_F(DistPlot, SeriesSixAtAnyPointEqualsOneMinusSeriesFive) {
  form.ShowDistPlot(Simple(2, 4), [] { return std::string(); });
  const auto heights = [&](int number) {
    desk.Press(form.cmdClear);
    Select(number);
    Press();
    std::vector<double> y;
    for (const auto& item : form.picGraph.drawing.items)
      if (const auto* circle = std::get_if<Drawing::Circle>(&item)) y.push_back(circle->y);
    return y;
  };
  const std::vector<double> five = heights(5), six = heights(6);
  ASSERT_EQ(five.size(), 3U);
  ASSERT_EQ(six.size(), 3U);
  // Both span 0 to their largest value; the last points lie at 1 and at 0.
  EXPECT_DOUBLE_EQ(five[2], 480);
  EXPECT_DOUBLE_EQ(six[2], 6720);
  EXPECT_NEAR((6720 - five[1]) / 6240, 0.5, 1e-12);
  EXPECT_NEAR((6720 - six[1]) / 6240 * 0.95, 0.5, 1e-12);
}

TEST_F(DistPlot, APosteriorRunNamesSeriesTwoBayesianPosteriorDistribution) {
  DistributionSeries s = Simple(2, 4);
  s.source = DistributionSeries::Source::Posterior;
  form.ShowDistPlot(s, [] { return std::string(); });
  EXPECT_EQ(form.listVar.items[1], "Bayesian Posterior Distribution");
}

TEST_F(DistPlot, AParameterWhoseRangeCrossesNeitherZeroNorOneShowsNoVerticalLineAndNoNote) {
  form.ShowDistPlot(Simple(2, 4), [] { return std::string(); });
  const std::size_t before = Items();
  Press();
  EXPECT_EQ(form.lblNote.text, "");
  EXPECT_EQ(Items() - before, 2U + 3U);
}

TEST_F(DistPlot, SelectingSeriesTwoShowsTheEstimateBlockAndOtherSeriesDoNotTouchIt) {
  form.ShowDistPlot(Simple(2, 4), [] { return std::string(); });
  Press();
  EXPECT_EQ(form.lblEstimateValues.text, "");
  Select(2);
  Press();
  EXPECT_EQ(form.lblEstimateValues.text, "2.000E+00\n3.000E+00\n1.000E+00\n5.000E+01\n5.000E-01");
  Select(3);
  Press();
  EXPECT_EQ(form.lblEstimateValues.text, "2.000E+00\n3.000E+00\n1.000E+00\n5.000E+01\n5.000E-01");
}

TEST_F(DistPlot, AnEstimateOfZeroCostsThePercentageAlone) {
  DistributionSeries s = Simple(2, 4);
  s.maximumLikelihood = 0;
  form.ShowDistPlot(s, [] { return std::string(); });
  Select(2);
  const std::size_t before = Items();
  Press();
  EXPECT_GT(Items(), before);
  EXPECT_EQ(form.lblEstimateValues.text, "0.000E+00\n3.000E+00\n1.000E+00\nundefined\n5.000E-01");
}

TEST_F(DistPlot, ARangeOfZeroDrawsNothing) {
  form.ShowDistPlot(Simple(3, 3), [] { return std::string(); });
  const std::size_t before = Items();
  Press();
  EXPECT_EQ(Items(), before);
  EXPECT_EQ(form.lblVar.text, "");
}

TEST_F(DistPlot, DropLinesExcludeLinesAndPoints) {
  form.ShowDistPlot(Simple(2, 4), [] { return std::string(); });
  desk.Tick(form.Check_Drop, true);
  EXPECT_FALSE(form.Check_Line.value || form.Check_Scatter.value);
  desk.Tick(form.Check_Scatter, true);
  EXPECT_FALSE(form.Check_Drop.value);
}

}  // namespace
}  // namespace merlane::test
