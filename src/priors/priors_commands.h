#pragma once

#include "control/frm_main.h"
#include "control/run_state.h"
#include "forms/desk.h"
#include "priors/distributions.h"

namespace merlane {

/// What the menu, the chooser and the editor share about the file of the priors.
class PriorsCommands {
 public:
  PriorsCommands(Desk& desk, RunState& state, FrmMain& main, Priors& priors)
      : desk_(desk), state_(state), main_(main), priors_(priors) {}

  /// Asks for a file and writes the priors. False when the user cancelled: nothing is written.
  bool SavePriors();
  /// A file that has no name yet gets one from the clock, by which the priors are known as not saved.
  void NameByClock();
  /// The priors are those of this file now.
  void TakeFile(const std::string& path);
  /// The priors have been edited: whether they still are those of the file under which they are known.
  void NoteEdit();
  /// Shows the bare name of the file under which the priors in the run are known, without folder and last four
  /// characters, in the main window; nothing while they are in none.
  void ShowName();
  /// Says there whether the priors wait to be switched on.
  void ShowWhetherInForce();

 private:
  Desk& desk_;
  RunState& state_;
  FrmMain& main_;
  Priors& priors_;
  std::string inFile_;  // what the file that was taken last tells of them
};

}  // namespace merlane
