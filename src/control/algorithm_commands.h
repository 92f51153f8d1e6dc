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
  /// Asks for a file and reads it. False when the command ends there: the user cancelled, or the reading failed while
  /// the tolerance was below 1E-06.
  bool LoadFile();
  /// What every load ends with: the main window names the data.
  void ShowLoaded();
  /// Asks for a file and writes it, in the menu's form or in the one given. False when the user cancelled: nothing is
  /// written.
  bool Save_Alg() { return Save(AlgorithmForm::Menu); }
  bool Save(AlgorithmForm form);

  /// The text of the run's algorithm file as it stands on the disk. Where it stands there but cannot be read at this
  /// moment, as this run last read or wrote it; empty when there is no such file.
  std::string TextOfFile() const;

  /// What the parameters are described by, before a function call has noted which are to be estimated.
  std::function<Array1<std::string>()> descriptions = [this] { return state_.algorithm.ParName; };

 private:
  void TakeDefaults();
  void TellFailure(const AlgorithmReading& reading, const std::string& path);
  void TakeFile(const std::string& path, std::string text);
  /// Names the data in the main window.
  void ShowName();

  Desk& desk_;
  RunState& state_;
  FrmMain& main_;
  FrmMenu& menu_;
  std::function<std::string()> dataBaseName_;
  std::string lastText_;  // of the run's algorithm file, as last read or written
};

}  // namespace merlane
