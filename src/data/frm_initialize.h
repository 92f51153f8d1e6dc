#pragma once

#include <functional>

#include "control/frm_main.h"
#include "data/chosen_before.h"
#include "data/file_outline.h"
#include "data/initialisation.h"
#include "forms/desk.h"

namespace merlane {

/// The form on which an analysis is described: data to read or to simulate, years, covariates, censoring and the
/// settings of the simulator, with help on the model and the format of the data.
class FrmInitialize : public Form {
 public:
  FrmInitialize(Desk& d, FrmMain& main);

  /// What the user has chosen. RuntimeFailure for a number beyond the range of its setting.
  Initialisation Choices() const;

  /// The choices have been found sound: reads or plans the data and begins the run.
  std::function<void()> onDone;
  /// Begins to make a data file of a file of another kind.
  std::function<void(const std::string& path)> onImport = [](const std::string&) {};
  /// A data file was chosen.
  std::function<void(const std::string& path)> onChosen = [](const std::string&) {};
  /// The form was closed, whichever way.
  std::function<void()> onClosed = [] {};

  /// Makes a file the data file that is to be read, and says what it holds.
  void TakeDataFile(const std::string& path);

  /// What was chosen for data files when they were read last.
  ChosenBefore chosenBefore;

  Label lblReadOrSimulate{*this, "lblReadOrSimulate", "Read or simulate data?"};
  OptionButton optRead{*this, "optRead", "Read"};
  OptionButton optSimulate{*this, "optSimulate", "Simulate"};
  Button cmdLoadData{*this, "cmdLoadData", "Select data file"};
  Button cmdImport{*this, "cmdImport", "&Import..."};
  Label lblDataInput{*this, "lblDataInput", "Data input file:"};
  TextBox txtDataInput{*this, "txtDataInput", ""};
  Label lblFileHolds{*this, "lblFileHolds", ""};
  Button cmdFit{*this, "cmdFit", "&Set these"};
  Label lblLastTime{*this, "lblLastTime", ""};
  Button cmdLastTime{*this, "cmdLastTime", "Set a&gain"};
  Label lblBroodCovs{*this, "lblBroodCovs", "The number of brood covariate series (0-50):"};
  ComboBox cboBroodCovs{*this, "cboBroodCovs", "0"};
  Label lblFormat{*this, "lblFormat", "Covariate format:"};
  ComboBox cboFormat{*this, "cboFormat", "O"};
  Label lblStartYear{*this, "lblStartYear", "Accept/simulate data for years:"};
  ComboBox cboStartYear{*this, "cboStartYear", "1995"};
  Label lblEndYear{*this, "lblEndYear", "to:"};
  ComboBox cboEndYear{*this, "cboEndYear", "1995"};
  CheckBox chkCensorEggs{*this, "chkCensorEggs", "Censor all egg records"};
  CheckBox chkCensorJuvs{*this, "chkCensorJuvs", "Censor all juvenile records"};

  Label fraSims{*this, "fraSims", "Simulation"};
  Label lblMinInitBroodSize{*this, "lblMinInitBroodSize", "Minimum initial clutch/brood size:"};
  ComboBox cboMinInitBroodSize{*this, "cboMinInitBroodSize", "10"};
  Label lblMaxInitBroodSize{*this, "lblMaxInitBroodSize", "Maximum initial clutch/brood size:"};
  ComboBox cboMaxInitBroodSize{*this, "cboMaxInitBroodSize", "20"};
  Label lblSimInitBroodAge{*this, "lblSimInitBroodAge", "Initial clutch/brood age:"};
  ComboBox cboInitBroodAge{*this, "cboInitBroodAge", "0"};
  Label lblSimFinalBroodAge{*this, "lblSimFinalBroodAge", "Final clutch/brood age:"};
  ComboBox cboFinalBroodAge{*this, "cboFinalBroodAge", "30"};
  Label lblNClutchesBroods{*this, "lblNClutchesBroods", "Number of broods:"};
  ComboBox cboNClutchesBroods{*this, "cboNClutchesBroods", "20"};
  Label lblMinHatchDay{*this, "lblMinHatchDay", "Minimum hatch day:"};
  ComboBox cboMinHatchDay{*this, "cboMinHatchDay", "0"};
  Label lblMaxHatchDay{*this, "lblMaxHatchDay", "Maximum hatch day:"};
  ComboBox cboMaxHatchDay{*this, "cboMaxHatchDay", "0"};
  Label lblSampFreq{*this, "lblSampFreq", "Visit clutches/broods randomly every"};
  ComboBox cboSampFreq1{*this, "cboSampFreq1", "1"};
  ComboBox cboSampFreq2{*this, "cboSampFreq2", "1"};
  Label lblSampDays{*this, "lblSampDays", "days."};

  Label lblInitialize{*this, "lblInitialize", "Here's what I do:"};
  Pane txtInitialize{*this, "txtInitialize"};
  Label lblDataFormat{*this, "lblDataFormat", "Data input format and limitations:"};
  Pane txtDataFormat{*this, "txtDataFormat"};
  Label lblLimits{*this, "lblLimits", "Example text data file:"};
  Pane txtLimits{*this, "txtLimits"};
  Label lblObjective{*this, "lblObjective", "Objective function is -2lnL"};

  Button cmdDone{*this, "cmdDone", "C&ontinue"};
  Button cmdCancel{*this, "cmdCancel", "&Cancel"};

 protected:
  void OnLoad() override;
  bool OnCloseRequest() override;
  void OnUnload() override;

 private:
  void FillLists();
  void SetToolTips();

  /// Shows what belongs to reading or to simulating, as chosen.
  void ShowWhatApplies();
  /// Shows what the data file holds and what was chosen for it last, as far as that is known.
  void ShowDataFile();
  void FitToFile();
  void ChooseAsLastTime();
  void ChooseSimulate();
  void CheckBroodCovs();
  void CheckFormat();
  void CheckHatchDay(ComboBox& box);
  void LoadData();
  void ImportData();
  /// Says what is wrong with the choices; true when nothing is.
  bool ChoicesAreSound();
  bool SimulationIsSound();
  bool Refuse(const char* problem, const char* text);
  void Done();
  void Cancel();

  FrmMain& main_;
  FileOutline outline_;  // of the data file
};

}  // namespace merlane
