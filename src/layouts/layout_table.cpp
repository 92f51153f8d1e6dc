// What stands where, window by window.
#include "layouts/boxes.h"
#include "layouts/layouts.h"

namespace merlane {
namespace {

using namespace boxes;
using Place = Layout::Place;
using Look = Box::Look;

/// A text, its commands above it and the line that tells of which fit it is.
Layout Results(std::vector<Box> commands, Box texts) {
  return {.columns = 120, .lines = 46, .parts = {Row(std::move(commands)), Quiet(Note("lblFit")), std::move(texts)}};
}

/// The menu is away while these results are open, and their lines are long.
Layout Wide(Layout layout) {
  layout.place = Place::Whole;
  layout.columns = 170;
  return layout;
}

/// A page to be read.
Layout Page(const char* text) {
  return {.columns = 96,
          .lines = 40,
          .enter = "cmdOK",
          .escape = "cmdOK",
          .parts = {Grows(Set(Look::Frameless, text)), Pinned({"cmdOK"})}};
}

/// Commands to choose from, one below the other.
Layout Commands(const char* escape, std::vector<Box> parts) {
  return {.columns = 74, .lines = 1, .escape = escape, .parts = std::move(parts)};
}

/// A drawing that fills its place, between the figures at its upper edge and those at its lower one.
std::vector<Box> Graph(Box above, std::vector<Box> below) {
  std::vector<Box> graph{std::move(above), Grows(Set(Look::Stretched, "picGraph")),
                         Figures(1, {"lblXStart", Space(), "lblXEnd"})};
  std::move(below.begin(), below.end(), std::back_inserter(graph));
  return graph;
}

/// The status bars below the work area: the files of the analysis, and what is going on.
Layout Main() {
  return {.parts = {Figures(1, {Grows("stbMain0"), Grows("stbMain1")}), Figures(1, {Grows("stbMain5"), "stbMain2"})}};
}

/// A worklist, narrow enough to stand beside the results: an analysis goes down its stages.
Layout Menu() {
  return {.place = Place::Left,
          .stays = true,
          .parts = {
              Notes({Set(Look::Heading, "lblModelname"), Quiet("lblVersion")}),
              Column({Stage("Model", {Row({"cmdInitialize"})}),
                      Stage("Algorithm data", {Row({"cmdLoadAlg", "cmdEditAlg"}), Row({"cmdSaveAlg", "cmdBayesian"})}),
                      Stage("Minimization", {Row({"cmdOneFunction"}), Row({"cmdSimplex", "cmdMarquardt"})}),
                      Stage("Estimates", {Row({"cmdCovariance"}), Row({"cmdParEstimate"})}),
                      Stage("Results", {Row({"cmdUserSummary"}), Row({"cmdRank"})})}),
              Pinned({"cmdQuit"})}};
}

/// The choices at the left, the help on model and data beside them.
Layout Initialize() {
  const Box data = Group(
      "Data",
      {Row({"lblReadOrSimulate", "optRead", "optSimulate"}), Row({"lblDataInput", "cmdLoadData", "cmdImport"}),
       "txtDataInput", Row({Grows(Note("lblFileHolds")), "cmdFit"}), Row({Grows(Note("lblLastTime")), "cmdLastTime"}),
       Row({"lblStartYear", "cboStartYear", "lblEndYear", "cboEndYear"}), Row({"lblBroodCovs", "cboBroodCovs"}),
       Row({"lblFormat", "cboFormat"}), Row({"chkCensorEggs", "chkCensorJuvs"})});
  const Box simulation = Group(
      "", {Set(Look::Title, "fraSims"),
           Fields({Row({"lblMinInitBroodSize", "cboMinInitBroodSize"}),
                   Row({"lblMaxInitBroodSize", "cboMaxInitBroodSize"}), Row({"lblSimInitBroodAge", "cboInitBroodAge"}),
                   Row({"lblSimFinalBroodAge", "cboFinalBroodAge"}), Row({"lblNClutchesBroods", "cboNClutchesBroods"}),
                   Row({"lblMinHatchDay", "cboMinHatchDay"}), Row({"lblMaxHatchDay", "cboMaxHatchDay"}),
                   Row({"lblSampFreq", "cboSampFreq1", "cboSampFreq2", "lblSampDays"})})});
  const Box help =
      Column({Grows(Part("lblInitialize", "txtInitialize", 2), 2), Grows(Part("lblDataFormat", "txtDataFormat", 3), 3),
              Grows(Part("lblLimits", "txtLimits", 2), 2)});
  return {.place = Place::Whole,
          .columns = 150,
          .lines = 36,
          .enter = "cmdDone",
          .escape = "cmdCancel",
          .parts = {Sides({Scrolled({data, simulation, Space(), Quiet("lblObjective")}), Grows(help)}),
                    Pinned({"cmdDone", "cmdCancel"})}};
}

/// How the file is written and what should be looked at stand at the left, what its columns are and what becomes of
/// them beside it; the columns come first, so Tab goes to them first.
Layout Import() {
  const Box writing = Group(
      "How the file is written",
      {"chkHeading",
       Fields({Row({"lblSheet", "cboSheet"}), Row({"lblEncoding", "cboEncoding"}),
               Row({"lblDelimiter", "cboDelimiter"}), Row({"lblDecimal", "cboDecimal"}), Row({"lblDates", "cboDates"}),
               Row({"lblUnknownAge", "cboUnknownAge"}), Row({"lblYear", "txtYear"})})});
  Box columns = Part("lblColumns", "grdColumns", 5);
  columns.parts.push_back(Row({"lblRole", "cboRole"}));
  return {
      .place = Place::Whole,
      .columns = 150,
      .lines = 48,
      .enter = "cmdDone",
      .escape = "cmdCancel",
      .parts =
          {Row({"lblFile", Grows("txtFile")}), Note("lblProposal"),
           Sides({Grows(Column({Scrolled({writing}), Note("lblNests"), Grows(Part("lblRemarks", "txtRemarks", 3))}), 2),
                  Grows(Split({Grows(columns, 3), Grows(Part("lblPreview", "txtPreview", 4), 2)}), 3)}),
           Pinned({"lblProgress", Space(), "cmdDone", "cmdChoices", "cmdCancel"})},
      .lastByTab = {"txtRemarks"}};
}

/// The table, and beside it the options of the minimisers and the log.
Layout Algorithm() {
  const Box minimization =
      Group("Minimization", {"lblAbsRel", "txtAbsRel", "lblSimplex", "lblMarquardt", "txtMaxFunctions", "lblReduction",
                             "txtReduction", "lblTerminalFreq", "txtTerminalFreq"});
  const Box log = Group("Log file", {Note("lblFileName"), "txtFileName", Row({"cmdOpenLog", "cmdCloseLog"}),
                                     "lblFileFreq", "txtFileFreq"});
  return {.place = Place::Whole,
          .columns = 170,
          .lines = 48,
          .parts = {Sides({Grows(Column({Grows("grdVS"), Quiet(Notes({"lblNote3", "lblNote1", "lblNote2"}))})),
                           Scrolled({minimization, log})}),
                    Pinned({"cmdUpdate", "cmdFinish"})}};
}

/// Models are added at the top, compared in the table, and averaged below it.
Layout Rank() {
  const Box models = Group(
      "Models",
      {Row({Grows(Note("lblAdd")), Fields({Row({"cmdLoadAlg", "cmdEditAlg"}), Row({"cmdSaveAlg", "cmdBayesian"})})})});
  const Box statistics = Group("Statistics", {Row({"cmdAICc", "cmdQAICc", "txtCHat"}), Row({"cmdRank", "cmdAverage"})});
  return {.place = Place::Whole,
          .columns = 150,
          .lines = 48,
          .parts = {
              Row({Grows(models), statistics}),
              Grows(Split({Grows(Lines(3, "grdRank")), Grows(Column({"lblAverage", Grows(Lines(2, "txtAverage"))}))})),
              Pinned({Grows(Quiet(Notes({"lblDelete", "lblCovariance", "lblNotes"}))), "cmdSaveRank", "cmdFinish"})}};
}

/// The names of the variables are long, so their lists stand one below the other.
Layout XyPlot() {
  const Box graph = Picture(Graph(Figures(2, {"lblYMaxMin", "lblXMaxMin"}), {Figures(1, {"lblYZero", "lblXZero"})}));
  const Box limits = Fields({Row({"lblYmax", Grows("txtYmax"), "lblXmax", Grows("txtXmax")}),
                             Row({"lblYmin", Grows("txtYmin"), "lblXmin", Grows("txtXmin")})});
  const Box kinds = Group("Plot as", {Row({Column({"Check_Line", "Check_Line_LtoR", "Check_Line_RtoL"}),
                                           Column({"Check_Scatter", "Check_Drop", "Check_8X8", "Check_10X10"})})});
  const Box side = Scrolled({Figures(1, {"lblPage"}), Grows(Column({"lblY", Grows(Lines(4, "listYVar"))})),
                             Grows(Column({"lblX", Grows(Lines(4, "listXVar"))})), limits,
                             Row({kinds, Grows(FixedPitch(Figures(7, {"lblCorr"})))})});
  return {.place = Place::Whole,
          .columns = 150,
          .lines = 48,
          .enter = "cmdPlot",
          .escape = "cmdCancel",
          .parts = {Sides({Grows(Column({Grows(graph), Quiet(Note("lblNote"))}), 4), Grows(side, 3)}),
                    Pinned({"cmdPlot", "cmdClear", "cmdNext_Page", "cmdCancel"})}};
}

Layout DistPlot() {
  // The interval is named at the end of its line.
  const Box graph = Picture(
      Graph(Figures(2, {"lblGraphMax", "lblVar", Space(), Set(Look::Low, "lblCI")}), {Figures(2, {"lblNote"})}));
  const Box side = Scrolled({Lines(8, "listVar"), "lblOptions", Row({"Check_Line", "Check_Scatter", "Check_Drop"}),
                             FixedPitch(Figures(5, {"lblEstimateNames", "lblEstimateValues"})), Quiet(Note("lblFit"))});
  return {.place = Place::Whole,
          .columns = 120,
          .lines = 42,
          .enter = "cmdPlot",
          .escape = "cmdDone",
          .parts = {Sides({Grows(graph, 3), Grows(side, 2)}), Pinned({"cmdPlot", "cmdClear", "cmdDone"})}};
}

Layout BivarPlot() {
  const Box graph = Column({Figures(2, {"lblVar"}), Grows("picGraph"), Figures(1, {"lblNote"})});
  const Box side = Column({FixedPitch(Figures(2, {"lblXYMax"})), FixedPitch(Figures(2, {"lblXYMin"})),
                           FixedPitch(Figures(2, {"XYPeak"})), FixedPitch(Figures(1, {"lblCorr"})), Space(),
                           Figures(1, {"lblHighDensity"}), Figures(1, {"lblLegendHead"}),
                           Legend(13, "LegendBox", "lblLegend"), Figures(1, {"lblLowDensity"}), Space()});
  return {.place = Place::Whole,
          .columns = 104,
          .lines = 42,
          .enter = "cmdDone",
          .escape = "cmdDone",
          .parts = {Grows(Picture({Sides({Grows(graph), Columns(22, side)})})), Pinned({"cmdClear", "cmdDone"})}};
}

/// Stands where the menu stood, so that the results that it is about are seen beside it.
Layout CovDisplay() {
  return {.place = Place::Left,
          .columns = 40,
          .lines = 24,
          .parts = {Note("lblCovDisplay"), Note("lblFit"), Column({"cmdScreen", "cmdFile", "cmdFinish"}),
                    Grows("txtExplain")}};
}

Layout XlsWorksheets() {
  return {.columns = 46,
          .lines = 14,
          .enter = "cmdOK",
          .escape = "cmdCancel",
          .parts = {Note("lblSelect"), Grows(Lines(4, "lstWorksheets")), Pinned({"cmdOK", "cmdCancel"})}};
}

}  // namespace

const std::map<std::string, Layout>& Layouts() {
  static const std::map<std::string, Layout> layouts{
      {"frmMain", Main()},
      {"frmMenu", Menu()},
      {"frmInitialize", Initialize()},
      {"frmImport", Import()},
      {"frmXLSworksheets", XlsWorksheets()},
      {"frmAlgo", Algorithm()},
      {"frmEditVS", Commands(Layout::Closes, {"cmdFree", "cmdProp", "cmdNoProp", "Change_Fraction", "cmdUnFuse",
                                              Quiet(Note("lblNote"))})},
      {"frmOneFunction",
       Wide({.lines = 46, .escape = Layout::Closes, .parts = {Quiet(Note("lblFit")), Grows("rtbOneFunction")}})},
      {"frmSummary", Wide(Results({"cmdSaveSummary", "cmdPlots", "cmdBootstrap"}, Grows("rtbOut")))},
      {"frmAbort", {.place = Place::Above, .columns = 44, .lines = 1, .parts = {Set(Look::Centred, "cmdAbort")}}},
      {"frmDefaults", Page("txtDefaultNames")},
      {"frmWisdom", Page("txtWisdom")},
      {"frmCredits", Page("txtCredits")},
      {"frmSetPriors", {.place = Place::Whole, .columns = 150, .lines = 48, .parts = {Grows("grdPriors")}}},
      {"frmLoadPriors", Commands("cmdCancel", {"cmdOpen", "cmdSet", "cmdUniform", "cmdCancel"})},
      {"frmReviewPriors", Results({"cmdSave"}, Grows("rtbReview"))},
      {"frmSimplex", Results({"cmdStop"}, Grows(Split({Grows("rtbSimplexInitial"), Grows("rtbSimplex", 2)})))},
      {"frmMarquardt", Results({"cmdIteration", "cmdContinue", "cmdStop"}, Grows("rtbMarquardt"))},
      {"frmCovData", {.columns = 120, .lines = 46, .parts = {Row({"cmdStop"}), Grows("rtbCovData")}}},
      {"frmCovDisplay", CovDisplay()},
      {"frmParEvals", Commands("cmdCancel", {Note("lblChoice"), "cmdML", "cmdBP", "cmdCancel", Quiet(Note("lblValid")),
                                             Quiet(Note("lblEdits")), Quiet(Note("lblLinked"))})},
      {"frmMaxLike", Results({"cmdSaveML"}, Grows("rtbMaxLike"))},
      {"frmBayesian", Results({"cmdSaveBayesian"}, Grows("rtbBayesian"))},
      {"frmPriorDists", Results({"cmdSavePriorDists"}, Grows("rtbPriorDists"))},
      {"frmXYPlot", XyPlot()},
      {"frmDistPlot", DistPlot()},
      {"frmBivarPlot", BivarPlot()},
      {"frmRank", Rank()},
  };
  return layouts;
}

}  // namespace merlane
