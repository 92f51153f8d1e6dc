#include "web/layouts.h"

#include <map>
#include <set>
#include <string_view>

#include "base/json_text.h"

namespace merlane {
namespace {

/// A part of a window: a control, or others side by side or one below the other.
struct Box {
  Box(const char* control) : name(control) {}  // NOLINT: a control is a box
  Box(std::string boxKind, std::vector<Box> boxParts) : kind(std::move(boxKind)), parts(std::move(boxParts)) {}

  std::string kind = "control";
  std::string name;  // of the control, or the title of a group
  std::vector<Box> parts{};
  std::string look{};  // how a label is set: "heading", "title", "quiet", "fixed"
  int grows = 0;       // its part of the room that is left
  int lines = 0;       // that it has at least
};

Box Row(std::vector<Box> parts) { return {"row", std::move(parts)}; }
Box Column(std::vector<Box> parts) { return {"column", std::move(parts)}; }
/// Lines of a label and its fields, the fields below each other.
Box Fields(std::vector<Box> parts) { return {"fields", std::move(parts)}; }
/// Below all else, always in sight.
Box Pinned(std::vector<Box> parts) { return {"pinned", std::move(parts)}; }
/// Seen while one of its parts is.
Box Group(const char* title, std::vector<Box> parts) {
  Box group("group", std::move(parts));
  group.name = title;
  return group;
}
Box Grows(Box box, int part = 1) {
  box.grows = part;
  return box;
}
Box Lines(int lines, Box box) {
  box.lines = lines;
  return box;
}
Box Set(const char* look, Box box) {
  box.look = look;
  return box;
}

/// A window: where it opens ("left", beside the menu, "whole" or "above"), how large it would be, and what is in it.
struct Layout {
  const char* room;
  int columns, lines;  // of text
  const char* pressedByEnter;
  const char* pressedByEscape;  // "close": the window closes as by its frame
  std::vector<Box> parts;
};

/// A stage of an analysis: its number, its title and its buttons, at most two on each line.
Box Stage(const char* title, std::vector<Box> lines) {
  Box stage = Column(std::move(lines));
  stage.kind = "stage";
  stage.name = title;
  return stage;
}

Box Part(const char* heading, const char* table, int lines) {
  return Grows(Column({Set("title", heading), Grows(Lines(lines, table))}));
}

/// A drawing that fills its place, whatever the proportions of that.
Box Stretched(const char* canvas) { return Set("stretches", canvas); }

/// The drawing with its limits above and the ends of its X axis below.
Box Graph(Box above, Box picture) {
  return Column({std::move(above), Grows(std::move(picture)), {"ends", {"lblXStart", "lblXEnd"}}});
}

const std::map<std::string, Layout>& Layouts() {
  static const std::map<std::string, Layout> layouts{
      {"frmMenu",
       {"left",
        46,
        0,
        "",
        "",
        {Set("heading", "lblModelname"), Set("quiet", "lblVersion"), Stage("Model", {Row({"cmdInitialize"})}),
         Stage("Algorithm data", {Row({"cmdLoadAlg", "cmdEditAlg"}), Row({"cmdSaveAlg", "cmdBayesian"})}),
         Stage("Minimization", {Row({"cmdOneFunction"}), Row({"cmdSimplex", "cmdMarquardt"})}),
         Stage("Estimates", {Row({"cmdCovariance"}), Row({"cmdParEstimate"})}),
         Stage("Results", {Row({"cmdUserSummary"}), Row({"cmdRank"})}), Pinned({"cmdQuit"})}}},
      {"frmInitialize",
       {"whole",
        150,
        36,
        "cmdDone",
        "cmdCancel",
        {Grows(Row(
             {Column({Group("Data", {Row({"lblReadOrSimulate", "optRead", "optSimulate"}),
                                     Row({"lblDataInput", "cmdLoadData", "cmdImport"}), "txtDataInput",
                                     Row({Grows("lblFileHolds"), "cmdFit"}), Row({Grows("lblLastTime"), "cmdLastTime"}),
                                     Row({"lblStartYear", "cboStartYear", "lblEndYear", "cboEndYear"}),
                                     Row({"lblBroodCovs", "cboBroodCovs"}), Row({"lblFormat", "cboFormat"}),
                                     Row({"chkCensorEggs", "chkCensorJuvs"})}),
                      Group("", {Set("title", "fraSims"),
                                 Fields({Row({"lblMinInitBroodSize", "cboMinInitBroodSize"}),
                                         Row({"lblMaxInitBroodSize", "cboMaxInitBroodSize"}),
                                         Row({"lblSimInitBroodAge", "cboInitBroodAge"}),
                                         Row({"lblSimFinalBroodAge", "cboFinalBroodAge"}),
                                         Row({"lblNClutchesBroods", "cboNClutchesBroods"}),
                                         Row({"lblMinHatchDay", "cboMinHatchDay"}),
                                         Row({"lblMaxHatchDay", "cboMaxHatchDay"}),
                                         Row({"lblSampFreq", "cboSampFreq1", "cboSampFreq2", "lblSampDays"})})}),
                      Set("quiet", "lblObjective")}),
              Grows(Column({Set("title", "lblInitialize"), Grows(Lines(2, "txtInitialize"), 2),
                            Set("title", "lblDataFormat"), Grows(Lines(3, "txtDataFormat"), 3),
                            Set("title", "lblLimits"), Grows(Lines(2, "txtLimits"), 2)}))})),
         Pinned({"cmdDone", "cmdCancel"})}}},
      {"frmImport",
       {"whole",
        150,
        48,
        "cmdDone",
        "cmdCancel",
        {Row({"lblFile", Grows("txtFile")}), "lblProposal",
         Grows(
             Row({Grows(Column({Group("How the file is written",
                                      {"chkHeading",
                                       Fields({Row({"lblSheet", "cboSheet"}), Row({"lblEncoding", "cboEncoding"}),
                                               Row({"lblDelimiter", "cboDelimiter"}), Row({"lblDecimal", "cboDecimal"}),
                                               Row({"lblDates", "cboDates"}), Row({"lblUnknownAge", "cboUnknownAge"}),
                                               Row({"lblYear", "txtYear"})})}),
                                "lblNests", Part("lblRemarks", "txtRemarks", 3)}),
                        2),
                  Grows(Column({Grows(Column({Set("title", "lblColumns"), Grows(Lines(5, "grdColumns")),
                                              Row({"lblRole", "cboRole"})})),
                                Part("lblPreview", "txtPreview", 4)}),
                        3)})),
         Pinned({"lblProgress", "cmdDone", "cmdChoices", "cmdCancel"})}}},
      {"frmAlgo",
       {"whole",
        170,
        48,
        "",
        "",
        {Grows(Row(
             {Grows(Column(
                  {Grows("grdVS"), Set("quiet", "lblNote3"), Set("quiet", "lblNote1"), Set("quiet", "lblNote2")})),
              Column({Group("Minimization", {"lblAbsRel", "txtAbsRel", "lblSimplex", "lblMarquardt", "txtMaxFunctions",
                                             "lblReduction", "txtReduction", "lblTerminalFreq", "txtTerminalFreq"}),
                      Group("Log file", {"lblFileName", "txtFileName", Row({"cmdOpenLog", "cmdCloseLog"}),
                                         "lblFileFreq", "txtFileFreq"})})})),
         Pinned({"cmdUpdate", "cmdFinish"})}}},
      {"frmRank",
       {"whole",
        150,
        48,
        "",
        "",
        {Row({Grows(Group("Models", {Row({Grows("lblAdd"), Column({Row({"cmdLoadAlg", "cmdEditAlg"}),
                                                                   Row({"cmdSaveAlg", "cmdBayesian"})})})})),
              Group("Statistics", {Row({"cmdAICc", "cmdQAICc", "txtCHat"}), Row({"cmdRank", "cmdAverage"})})}),
         Grows(Lines(6, "grdRank")), "lblAverage", Grows(Lines(4, "txtAverage")), Set("quiet", "lblDelete"),
         Set("quiet", "lblCovariance"), Set("quiet", "lblNotes"), Pinned({"cmdSaveRank", "cmdFinish"})}}},
      {"frmXYPlot",
       {"whole",
        150,
        48,
        "cmdPlot",
        "cmdCancel",
        {Grows(Row(
             {Grows(Column({Grows(Graph(Row({"lblYMaxMin", "lblXMaxMin"}), Stretched("picGraph"))),
                            Row({"lblYZero", "lblXZero"}), Set("quiet", "lblNote")}),
                    4),
              Grows(Column({"lblPage", "lblY", Grows(Lines(5, "listYVar")), "lblX", Grows(Lines(5, "listXVar")),
                            Fields({Row({"lblYmax", "txtYmax", "lblXmax", "txtXmax"}),
                                    Row({"lblYmin", "txtYmin", "lblXmin", "txtXmin"})}),
                            Row({Group("Plot as",
                                       {Row({Column({"Check_Line", "Check_Line_LtoR", "Check_Line_RtoL"}),
                                             Column({"Check_Scatter", "Check_Drop", "Check_8X8", "Check_10X10"})})}),
                                 Set("fixed", "lblCorr")})}),
                    3)})),
         Pinned({"cmdPlot", "cmdClear", "cmdNext_Page", "cmdCancel"})}}},
      {"frmDistPlot",
       {"whole",
        120,
        42,
        "cmdPlot",
        "cmdDone",
        {Grows(Row(
             {Grows(Column({Grows(Graph(Row({"lblGraphMax", "lblVar", "lblCI"}), Stretched("picGraph"))), "lblNote"}),
                    3),
              Grows(Column({Lines(8, "listVar"), "lblOptions", Row({"Check_Line", "Check_Scatter", "Check_Drop"}),
                            Row({Set("fixed", "lblEstimateNames"), Set("fixed", "lblEstimateValues")}),
                            Set("quiet", "lblFit")}),
                    2)})),
         Pinned({"cmdPlot", "cmdClear", "cmdDone"})}}},
      {"frmBivarPlot",
       {"whole",
        104,
        42,
        "cmdDone",
        "cmdDone",
        {Grows(Row({Grows(Column({Grows(Column({"lblVar", Grows("picGraph")})), "lblNote"})),
                    Column({Set("fixed", "lblXYMax"), Set("fixed", "lblXYMin"), Set("fixed", "XYPeak"),
                            Set("fixed", "lblCorr"), "lblHighDensity", "lblLegendHead",
                            Set("legend", Row({"LegendBox", "lblLegend"})), "lblLowDensity"})})),
         Pinned({"cmdClear", "cmdDone"})}}},
      {"frmCovDisplay",
       {"left", 40, 24, "", "", {"lblCovDisplay", "lblFit", "cmdScreen", "cmdFile", "cmdFinish", Grows("txtExplain")}}},
      {"frmAbort", {"above", 44, 1, "", "", {"cmdAbort"}}},
      {"frmDefaults", {"", 96, 40, "cmdOK", "cmdOK", {}}},
      {"frmWisdom", {"", 96, 40, "cmdOK", "cmdOK", {}}},
      {"frmCredits", {"", 96, 40, "cmdOK", "cmdOK", {}}},
      {"frmSetPriors", {"whole", 150, 48, "", "", {}}},
      {"frmOneFunction", {"whole", 170, 46, "", "close", {}}},
      {"frmSummary", {"whole", 170, 46, "", "", {}}},
      {"frmSimplex", {"", 120, 46, "", "", {}}},
      {"frmMarquardt", {"", 120, 46, "", "", {}}},
      {"frmCovData", {"", 120, 46, "", "close", {}}},
      {"frmMaxLike", {"", 120, 46, "", "", {}}},
      {"frmBayesian", {"", 120, 46, "", "", {}}},
      {"frmReviewPriors", {"", 120, 46, "", "", {}}},
      {"frmPriorDists", {"", 120, 46, "", "", {}}},
      {"frmEditVS", {"", 74, 1, "", "close", {}}},
      {"frmLoadPriors", {"", 74, 1, "", "cmdCancel", {}}},
      {"frmParEvals", {"", 74, 1, "", "cmdCancel", {}}},
  };
  return layouts;
}

template <class Kind>
bool Is(const Control& control) {
  return dynamic_cast<const Kind*>(&control) != nullptr;
}

/// What no layout names: buttons in a row above a text or a table, which take what room there is; without one, one
/// control below the other, a field beside the label before it.
std::vector<Box> Rest(const Form& form, const std::set<std::string>& named) {
  std::vector<Box> above, buttons, large;
  const std::vector<Control*>& controls = form.Controls();
  for (std::size_t i = 0; i < controls.size(); ++i) {
    const Control& control = *controls[i];
    if (named.contains(control.name) || Is<MenuEntry>(control)) continue;
    const auto isField = [&](std::size_t k) {
      return k < controls.size() && (Is<TextBox>(*controls[k]) || Is<ComboBox>(*controls[k]));
    };
    if (Is<Button>(control)) {
      buttons.emplace_back(control.name.c_str());
    } else if (Is<Pane>(control) || Is<Grid>(control) || Is<ListBox>(control) || Is<Canvas>(control)) {
      large.push_back(Grows(Lines(4, control.name.c_str())));
    } else if (Is<Label>(control) && isField(i + 1)) {
      above.push_back(Row({control.name.c_str(), Grows(controls[i + 1]->name.c_str())}));
      ++i;
    } else {
      above.emplace_back(control.name.c_str());
    }
  }
  std::vector<Box> rest = std::move(above);
  if (!buttons.empty()) rest.push_back(large.empty() ? Column(std::move(buttons)) : Row(std::move(buttons)));
  for (Box& box : large) rest.push_back(std::move(box));
  return rest;
}

void AddNames(const std::vector<Box>& boxes, std::set<std::string>& names) {
  for (const Box& box : boxes) {
    if (box.kind == "control") names.insert(box.name);
    AddNames(box.parts, names);
  }
}

std::string JsonOfBoxes(const std::vector<Box>& boxes, const Form& form) {
  std::vector<std::string> parts;
  for (const Box& box : boxes) {
    if (box.kind == "control" && form.Find(box.name) == nullptr) continue;
    JsonMembers members{{"kind", JsonOf(box.kind)}};
    if (!box.name.empty()) members.emplace_back("name", JsonOf(box.name));
    if (!box.look.empty()) members.emplace_back("look", JsonOf(box.look));
    if (box.grows != 0) members.emplace_back("grows", JsonOf(box.grows));
    if (box.lines != 0) members.emplace_back("lines", JsonOf(box.lines));
    if (!box.parts.empty()) members.emplace_back("parts", JsonOfBoxes(box.parts, form));
    parts.push_back(JsonObject(members));
  }
  return JsonArray(parts);
}

/// The layout of a form, or what one without has.
const Layout& LayoutFor(const Form& form) {
  static const Layout none{"", 80, 1, "", "", {}};
  const auto found = Layouts().find(form.name);
  return found == Layouts().end() ? none : found->second;
}

std::set<std::string> NamesIn(const Layout& layout) {
  std::set<std::string> names;
  AddNames(layout.parts, names);
  for (const char* button : {layout.pressedByEnter, layout.pressedByEscape})
    if (std::string_view(button).starts_with("cmd")) names.insert(button);
  return names;
}

}  // namespace

std::vector<std::string> StrangersInLayoutOf(const Form& form) {
  std::vector<std::string> strangers;
  for (const std::string& name : NamesIn(LayoutFor(form)))
    if (form.Find(name) == nullptr) strangers.push_back(name);
  return strangers;
}

std::string LayoutOf(const Form& form) {
  const Layout& layout = LayoutFor(form);
  std::set<std::string> named;
  AddNames(layout.parts, named);
  std::vector<Box> parts = layout.parts;
  for (Box& box : Rest(form, named)) parts.push_back(std::move(box));
  return JsonObject({{"room", JsonOf(layout.room)},
                     {"columns", JsonOf(layout.columns)},
                     {"lines", JsonOf(layout.lines)},
                     {"enter", JsonOf(layout.pressedByEnter)},
                     {"escape", JsonOf(layout.pressedByEscape)},
                     {"parts", JsonOfBoxes(parts, form)}});
}

}  // namespace merlane
