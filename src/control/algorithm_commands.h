#pragma once

#include <functional>
#include <string>

#include "control/algorithm_file.h"
#include "control/frm_main.h"
#include "control/frm_menu.h"

namespace merlane {

/// The commands that load and save the algorithm data: questions, files, names and what the windows show of them.
class AlgorithmCommands {
 public:
  /// `dataBaseName` tells the name of the data file, without folder and extension, after which a file may be named.
  AlgorithmCommands(Desk& desk, RunState& state, FrmMain& main, FrmMenu& menu,
                    std::function<std::string()> dataBaseName);

  /// The menu's load: a file, or default values.
  void LoadAlg();
  /// Asks for a file and reads it, the form `asking` being inactive while a failure is told. False when the command
  /// ends there: the user cancelled, or the reading failed while the tolerance was below 1E-06.
  bool LoadFile(Form& asking);
  /// What every load ends with: the main window names the data.
  void ShowLoaded();
  /// Asks for a file and writes it, in the menu's form or in the one given; a cancelled question writes nothing.
  void Save_Alg() { Save(AlgorithmForm::Menu); }
  void Save(AlgorithmForm form);

 private:
  void TakeDefaults();
  void TellFailure(const AlgorithmReading& reading, const std::string& path, Form& asking);
  void TakeName(const std::string& path);

  Desk& desk_;
  RunState& state_;
  FrmMain& main_;
  FrmMenu& menu_;
  std::function<std::string()> dataBaseName_;
};

}  // namespace merlane
