#include <exception>

#include "control/fuses.h"
#include "program/program.h"

namespace merlane {

void Program::Initialize() {
  if (!state.algorithm.AlgName.empty()) {
    const Answer answer = desk.Ask("Initialize",
                                   "  Do you need to save current algorithm data?\r\n\r\n"
                                   "Algorithm data will be lost during this initialization.",
                                   style::YesNoCancelExclamation);
    if (answer == Answer::Cancel) return;
    if (answer == Answer::Yes && !SaveAlg()) return;
    state.algorithm.AlgName.clear();
    frmMain.ShowAlgorithmFile("");
  }
  desk.Show(frmInitialize);
  desk.Hide(frmMenu);
  desk.Unload(frmMenu);
}

void Program::BeginRun() {
  RunFlags& flags = state.flags;
  desk.Load(frmMenu);  // so that what is written to its buttons stays when it is shown
  frmSummary.ForgetResults();
  ReadData();

  // A file of which nothing was read is not that of the run.
  frmMain.ShowDataFile(flags.SimulationMode ? "<< no data file, simulating data >>"
                       : model.data.ReadOK  ? model.data.DataFileName
                                            : "");
  ForgetRun();
  flags.ModelInitialised = true;
  if (readingDialogue.ImportAsked()) {  // instead of what was read: the description of the analysis stays
    desk.Unload(frmMenu);
    return frmImport.Open(model.data.DataFileName);
  }
  frmMenu.ApplyPatternOfNewData();
  desk.Show(frmMenu);
  desk.Unload(frmInitialize);
}

void Program::ReadData() {
  frmMain.ShowProgress("");  // why there were no data before
  try {
    ApplyFuses(state.algorithm.Value, state);
    SummaryValue_ = objective.Call(state.algorithm.Value, 0, SummaryValue_);
  } catch (const std::exception&) {
    // The data are half taken: nothing may be calculated from them, and what the run before had is gone.
    ForgetRun();
    frmMain.ShowDataFile("");
    state.flags.ModelInitialised = false;
    desk.Unload(frmMenu);
    throw;
  }
}

void Program::ForgetRun() {
  RunFlags& flags = state.flags;
  flags.PriorFileName.clear();
  flags.PriorsKnownAs.clear();
  flags.BayesOn = false;
  fit = {};
  DimensionRun();
  frmMain.ShowPriorsFile("");
  priorsCommands.ShowWhetherInForce();
}

void Program::DimensionRun() {
  AlgorithmData& a = state.algorithm;
  a.Value.Dimension(a.NPAR);
  a.Step.Dimension(a.NPAR);
  a.Fuse.Dimension(a.NPAR, Unfused);
  state.free.FreeValue.Dimension(a.NPAR);
  state.free.FreeStep.Dimension(a.NPAR);
  state.free.FreeIndex.Dimension(a.NPAR);
  priors.Reset(a.NPAR);
  state.profile.ProfileState = 0;
}

}  // namespace merlane
