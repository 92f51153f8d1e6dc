#include "plots/frm_xy_plot.h"

#include <filesystem>

#include "plots/kept_drawing.h"
#include "support/scripted_host.h"

namespace merlane::test {
namespace {

PlotTable TableOf(const std::vector<std::vector<double>>& columns) {
  PlotTable table;
  const int points = static_cast<int>(columns[0].size()), variables = static_cast<int>(columns.size());
  table.PlotData.Dimension(variables, points);
  table.PlotYMin.Dimension(variables, 0);
  table.PlotYMax.Dimension(variables, 0);
  table.PlotVarName.Dimension(variables);
  for (int v = 1; v <= variables; ++v) {
    table.PlotVarName(v) = "variable " + std::to_string(v);
    for (int i = 1; i <= points; ++i)
      table.PlotData(v, i) = columns[static_cast<std::size_t>(v) - 1][static_cast<std::size_t>(i) - 1];
  }
  table.PlotXName = "Data Record";
  table.PlotXMax = table.PlotXLabelMax = points;
  return table;
}

/// A kept case's input; the plots of a detail series name the file that holds its table.
PlotTable TableOf(const Json& input) {
  if (input.is_string()) {
    const Json series = KeptPlot(std::filesystem::path(input.get<std::string>()).stem());
    std::vector<std::vector<double>> columns;
    for (const Json& variable : series["variables"]) columns.push_back(variable["values"]);
    PlotTable table = TableOf(columns);
    for (int v = 1; v <= table.PlotYMin.Size(); ++v) {
      const Json& variable = series["variables"][static_cast<std::size_t>(v) - 1];
      table.PlotYMin(v) = variable["y_min"];
      table.PlotYMax(v) = variable["y_max"];
    }
    table.PlotPageText = series["page_text"];
    return table;
  }
  PlotTable table = TableOf(input["columns"].get<std::vector<std::vector<double>>>());
  for (int v = 1; v <= table.PlotYMin.Size(); ++v) {
    if (input.contains("y_min")) table.PlotYMin(v) = input["y_min"][static_cast<std::size_t>(v) - 1];
    if (input.contains("y_max")) table.PlotYMax(v) = input["y_max"][static_cast<std::size_t>(v) - 1];
  }
  table.PlotXMin = input.value("x_min", table.PlotXMin);
  table.PlotXMax = input.value("x_max", table.PlotXMax);
  table.PlotXLabelMin = input.value("x_label_min", table.PlotXLabelMin);
  table.PlotXLabelMax = input.value("x_label_max", table.PlotXLabelMax);
  table.PlotPageText = input.value("page_text", "");
  return table;
}

class XyPlot : public testing::Test {
 protected:
  ScriptedHost host;
  Desk desk{host.Get()};
  FrmXyPlot form{desk};

  std::size_t Items() const { return form.picGraph.drawing.items.size(); }
  void Open(const std::vector<std::vector<double>>& columns) { form.ShowXYPlot(TableOf(columns)); }
  void Press() { EXPECT_TRUE(desk.Press(form.cmdPlot)); }
  void Set(CheckBox& box, bool value) { EXPECT_TRUE(desk.Tick(box, value)); }

  /// Plays an action of a kept case; returns where what it draws begins.
  std::size_t Play(const Json& action) {
    const std::string kind = action[0];
    const std::size_t before = Items();
    if (kind == "press") {
      Press();
    } else if (kind == "clear") {
      EXPECT_TRUE(desk.Press(form.cmdClear));
      return 0;
    } else if (kind == "select_y") {
      EXPECT_TRUE(desk.Select(form.listYVar, action[1].get<int>() - 1));
    } else if (kind == "select_x") {
      EXPECT_TRUE(desk.Select(form.listXVar, action[1].get<int>()));
    } else if (kind == "set_box") {
      EXPECT_TRUE(desk.SetText(dynamic_cast<TextBox&>(*form.Find(action[1])), action[2]));
    } else {
      Set(dynamic_cast<CheckBox&>(*form.Find(action[1])), action[2]);
    }
    return before;
  }

  void ExpectOptions(const Json& kept) {
    std::vector<std::string> on;
    for (const Control* control : form.Controls())
      if (const auto* box = dynamic_cast<const CheckBox*>(control); box != nullptr && box->value)
        on.push_back(box->name);
    EXPECT_THAT(on, testing::UnorderedElementsAreArray(kept.get<std::vector<std::string>>()));
  }
};

class KeptXyPlot : public XyPlot, public testing::WithParamInterface<const char*> {};

TEST_P(KeptXyPlot, IsDrawnFigureByFigure) {
  const Json kept = KeptPlot(GetParam());
  form.ShowXYPlot(TableOf(kept["input"]));
  ExpectItems(form.picGraph.drawing, 0, kept["at_opening"]["primitives"]);
  ExpectTexts(form, kept["at_opening"]["labels"]);
  ExpectTexts(form, kept["at_opening"]["boxes"]);
  for (const Json& step : kept["steps"]) {
    SCOPED_TRACE(step["action"].dump());
    const std::size_t first = Play(step["action"]);
    ExpectItems(form.picGraph.drawing, first, step["added"]);
    ExpectTexts(form, step["labels"]);
    ExpectTexts(form, step["boxes"]);
    EXPECT_EQ(form.Presses(), step["counter"]);
    if (form.Presses() > 0) {
      EXPECT_EQ(form.PlotColour(), step["colour"]);
    }
    ExpectOptions(step["options"]);
  }
}

INSTANTIATE_TEST_SUITE_P(All, KeptXyPlot,
                         testing::Values("xy_constants", "xy_directions", "xy_drop_lines", "xy_grids",
                                         "xy_index_first_missing", "xy_index_overlay", "xy_scaling_functions",
                                         "xy_single_record", "xy_sixteen_presses", "xy_stale_index_text",
                                         "series_hatch_day_brood_plots", "series_hatch_day_year_plots"),
                         [](const auto& kept) { return std::string(kept.param); });

TEST_F(XyPlot, ASinglePointGivesARangeOfMinusOneToOneAroundNothingWithTheZeroLineShown) {
  Open({{0}});
  Press();
  EXPECT_EQ(form.lblYMaxMin.text, "Y-Max =  1\nY-Min =  -1");
  EXPECT_EQ(form.lblYZero.text, "Horizontal dashed line shows Y=0");
}

TEST_F(XyPlot, AConstantVariableThatItsBoxesAgreeWithGivesARangeOfMinusOneToOne) {
  Open({{0, 0, 0, 0}});
  Press();
  EXPECT_EQ(form.lblYMaxMin.text, "Y-Max =  1\nY-Min =  -1");
}

TEST_F(XyPlot, AColumnOfMissingValuesDrawsNothingAndLeavesTheFigures) {
  Open({{1, 2, 4, 3}, {MissingPoint, MissingPoint, MissingPoint, MissingPoint}});
  Press();
  const std::string figures = form.lblCorr.text;
  EXPECT_FALSE(figures.empty());
  const std::size_t before = Items();
  desk.Select(form.listYVar, 1);
  Press();
  EXPECT_EQ(Items(), before);
  EXPECT_EQ(form.lblCorr.text, figures);
}

/// The lines of the last press, as pairs of the points that they join.
std::vector<std::pair<int, int>> Joined(const Drawing& drawing, std::size_t first, double distance) {
  const auto point = [&](double x) { return static_cast<int>(std::lround((x - 720) / distance)) + 1; };
  std::vector<std::pair<int, int>> joined;
  for (std::size_t i = first; i < drawing.items.size(); ++i)
    if (const auto* line = std::get_if<Drawing::Line>(&drawing.items[i]))
      joined.emplace_back(point(line->x1), point(line->x2));
  return joined;
}

TEST_F(XyPlot, TheLastVisitOfABroodIsNotJoinedToTheFirstOfTheNext) {
  PlotTable table = TableOf(std::vector<std::vector<double>>{{5, 4, 3, 6, 5, 4}});
  table.PlotRun = 3;
  form.ShowXYPlot(table);
  const std::size_t first = Items();
  Press();
  EXPECT_THAT(Joined(form.picGraph.drawing, first, 6480.0 / 5),
              testing::ElementsAre(std::pair(1, 2), std::pair(2, 3), std::pair(4, 5), std::pair(5, 6)));
}

TEST_F(XyPlot, TwoPointsGiveNoFigures) {
  Open({{1, 2}});
  Press();
  EXPECT_EQ(form.lblCorr.text, "");
}

TEST_F(XyPlot, ASecondPressOfTheEightByEightGridWipesItInWhiteAlsoOverData) {
  Open({{1, 2, 3}});
  Press();
  Set(form.Check_8X8, true);
  Press();
  const std::size_t black = Items();
  EXPECT_EQ(std::get<Drawing::Line>(form.picGraph.drawing.items.back()).colour, 0);
  Press();
  EXPECT_EQ(Items(), black + 14);
  EXPECT_EQ(std::get<Drawing::Line>(form.picGraph.drawing.items.back()).colour, 15);
}

TEST_F(XyPlot, WithAllYPositiveAndTheYMinBoxEmptyTheRangeStillStartsAtZero) {
  Open({{5, 6, 7}});
  desk.SetText(form.txtYmin, "");
  Press();
  EXPECT_EQ(form.lblYMaxMin.text, "Y-Max =  7\nY-Min =  0");
}

TEST_F(XyPlot, APageWithoutRecordsShowsItsZeroLineAndNothingFails) {
  Open({{}});
  const std::size_t before = Items();
  Press();
  EXPECT_EQ(Items(), before + 1);
  EXPECT_EQ(form.lblXStart.text, "1");
  EXPECT_EQ(form.lblXEnd.text, "0");
  desk.Select(form.listXVar, 1);
  Press();
  EXPECT_EQ(form.lblCorr.text, "");
}

TEST_F(XyPlot, LimitsTypedTheWrongWayRoundAreBothWidened) {
  Open({{7, 7, 7}});
  desk.SetText(form.txtYmin, "10");
  desk.SetText(form.txtYmax, "5");
  Press();
  EXPECT_EQ(form.txtYmin.text, "7");
  EXPECT_EQ(form.txtYmax.text, "7");
}

TEST_F(XyPlot, AnOptionThatIsSetClearsTheOthersInItsRowAndUnsettingClearsNothing) {
  Open({{1, 2, 3}, {1, 2, 3}});
  desk.Select(form.listXVar, 1);
  const std::vector<CheckBox*> all = {&form.Check_Line,    &form.Check_Line_LtoR, &form.Check_Line_RtoL,
                                      &form.Check_Scatter, &form.Check_Drop,      &form.Check_8X8,
                                      &form.Check_10X10};
  const std::map<CheckBox*, std::vector<CheckBox*>> left = {
      {&form.Check_Line, {&form.Check_Line, &form.Check_Scatter}},
      {&form.Check_Line_LtoR, {&form.Check_Line_LtoR, &form.Check_Scatter}},
      {&form.Check_Line_RtoL, {&form.Check_Line_RtoL, &form.Check_Scatter}},
      {&form.Check_Scatter, {&form.Check_Line, &form.Check_Line_LtoR, &form.Check_Line_RtoL, &form.Check_Scatter}},
      {&form.Check_Drop, {&form.Check_Drop}},
      {&form.Check_8X8, {&form.Check_8X8}},
      {&form.Check_10X10, {&form.Check_10X10}}};
  const auto set = [&all] {
    std::vector<CheckBox*> boxes;
    for (CheckBox* box : all)
      if (box->value) boxes.push_back(box);
    return boxes;
  };
  for (const auto& [pressed, remaining] : left) {
    for (CheckBox* box : all) box->value = box != pressed;
    Set(*pressed, true);
    EXPECT_EQ(set(), remaining) << pressed->text;
    for (CheckBox* box : all) box->value = true;
    Set(*pressed, false);
    EXPECT_EQ(set().size(), all.size() - 1) << pressed->text;
  }
}

TEST_F(XyPlot, ADoubleClickInEitherListPlots) {
  Open({{1, 2, 3}});
  desk.DoubleClick(form.listYVar);
  desk.DoubleClick(form.listXVar);
  EXPECT_EQ(form.Presses(), 2);
}

TEST_F(XyPlot, TheNextPageKeepsGoingAndQuitEnds) {
  Open({{1, 2, 3}});
  desk.Press(form.cmdNext_Page);
  EXPECT_FALSE(form.Loaded());
  EXPECT_TRUE(form.PlotGoOn);
  Open({{1, 2, 3}});
  desk.Press(form.cmdCancel);
  EXPECT_FALSE(form.Loaded());
  EXPECT_FALSE(form.PlotGoOn);
}

TEST_F(XyPlot, ClosingByTheFrameLeavesTheWishForAnotherPageAsItIs) {
  Open({{1, 2, 3}});
  desk.Close(form);
  EXPECT_TRUE(form.PlotGoOn);
}

}  // namespace
}  // namespace merlane::test
