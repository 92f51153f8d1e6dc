#include "control/frm_menu.h"

#include "control/version.h"
#include "forms/desk.h"

namespace merlane {
namespace {

constexpr const char* ResultsToolTip =
    "Produces a saveable summary (and perhaps plots) of model results for the current parameter estimates";
constexpr const char* SimulationToolTip =
    "Simulates brood survivorship data using your initialization input and parameter values from the algorithm data";

}  // namespace

FrmMenu::FrmMenu(Desk& d, const RunState& state) : Form(d, "frmMenu", "Main menu"), state_(state) {
  cmdInitialize.toolTip = "Choose the data, or the settings of a simulation, with which an analysis begins";
  cmdLoadAlg.toolTip = "Load parameter values, step sizes and fuses from a file, or take default values";
  cmdEditAlg.toolTip = "Change parameter values, step sizes, fuses and the options of the minimizers";
  cmdSaveAlg.toolTip = "Save parameter values, step sizes, fuses and options in a file";
  cmdOneFunction.toolTip = "Evaluate the model once at the current parameter values and check them against the data";
  cmdSimplex.toolTip = "Minimize the objective function by the simplex method, which needs no derivatives";
  cmdMarquardt.toolTip = "Minimize the objective function by the Marquardt method, which uses derivatives";
  cmdCovariance.toolTip = "Calculate standard errors, covariances and correlations of the current estimates";
  cmdBayesian.toolTip = "Load or set the prior distributions of the parameters";
  cmdParEstimate.toolTip = "Calculate likelihood profiles or posterior distributions of single parameters";
  cmdUserSummary.toolTip = ResultsToolTip;
  cmdRank.toolTip = "Rank competing models of the same data and average their estimates";
  cmdQuit.toolTip = "Leave the program; you will be asked about saving";

  EnableAnalysis(false);
  cmdLoadAlg.enabled = false;
  beginsCommands = true;
  desk.charge.home = this;
}

void FrmMenu::OnLoad() {
  if (state_.flags.ModelInitialised) {
    cmdLoadAlg.enabled = true;
    if (!state_.algorithm.AlgName.empty()) EnableAnalysis(true);
  }
  lblVersion.text = "Version: " + std::string(Version());
  lblModelname.text = "Merlane Survivorship Model";
}

bool FrmMenu::OnCloseRequest() { return !desk.charge.ApplicationMenuRests(); }

void FrmMenu::ApplyPattern() {
  const bool loaded = !state_.algorithm.AlgName.empty();
  EnableAnalysis(loaded && !state_.flags.SimulationMode);
  cmdEditAlg.enabled = cmdSaveAlg.enabled = cmdUserSummary.enabled = loaded;
  NameUserSummary();
}

void FrmMenu::ApplyPattern(Button& analysing) {
  ApplyPattern();
  Button& next = state_.flags.SimulationMode ? cmdUserSummary : analysing;
  focus = next.enabled ? &next : &cmdLoadAlg;
}

void FrmMenu::ApplyPatternOfNewData() {
  EnableAnalysis(false);
  cmdLoadAlg.enabled = cmdRank.enabled = true;
  NameUserSummary();
  focus = &cmdLoadAlg;
}

void FrmMenu::NameUserSummary() {
  const bool simulating = state_.flags.SimulationMode;
  cmdUserSummary.text = simulating ? "S&imulate a data set" : "Single model res&ults summary";
  cmdUserSummary.toolTip = simulating ? SimulationToolTip : ResultsToolTip;
}

void FrmMenu::EnableAnalysis(bool enable) {
  for (Button* button : {&cmdEditAlg, &cmdSaveAlg, &cmdSimplex, &cmdMarquardt, &cmdUserSummary, &cmdOneFunction,
                         &cmdCovariance, &cmdBayesian, &cmdParEstimate, &cmdRank})
    button->enabled = enable;
}

}  // namespace merlane
