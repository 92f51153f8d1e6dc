#include "data/frm_initialize.h"

#include <fmt/format.h>

#include <initializer_list>

#include "base/arithmetic.h"
#include "base/number_text.h"
#include "base/text.h"
#include "control/version.h"
#include "data/initialize_help.h"

namespace merlane {
namespace {

std::vector<std::string> Numbers(std::initializer_list<int> numbers) {
  std::vector<std::string> texts;
  for (const int n : numbers) texts.push_back(std::to_string(n));
  return texts;
}

std::vector<std::string> Range(int first, int last, int by = 1) {
  std::vector<std::string> texts;
  for (int n = first; n <= last; n += by) texts.push_back(std::to_string(n));
  return texts;
}

/// A typed number as the setting takes it: read leniently and rounded.
std::int16_t Setting(const ComboBox& box) { return ToInt16(LenientNumber(box.text)); }

std::string LastTime(const Initialisation& last) {
  std::string words = fmt::format("Chosen last time: years {} to {}, {} covariate{}", last.FirstYear, last.LastYear,
                                  last.NCov, last.NCov == 1 ? "" : "s");
  if (last.NCov > 0) words += last.CovariateFormat == "A" ? " as anomalies" : " as they stand";
  if (last.CensorEggs) words += ", eggs censored";
  if (last.CensorJuvs) words += ", juveniles censored";
  return words + ".";
}

}  // namespace

FrmInitialize::FrmInitialize(Desk& d, FrmMain& main) : Form(d, "frmInitialize", ""), main_(main) {
  optRead.value = true;
  txtDataInput.readOnly = true;
  txtInitialize.fixedPitch = txtDataFormat.fixedPitch = false;
  txtInitialize.wraps = txtDataFormat.wraps = true;
  FillLists();
  SetToolTips();
  ShowWhatApplies();

  optRead.onClick = [this] { ShowWhatApplies(); };
  optSimulate.onClick = [this] { ChooseSimulate(); };
  cboBroodCovs.onChange = [this] { CheckBroodCovs(); };
  cboFormat.onChange = [this] { CheckFormat(); };
  cboMinHatchDay.onChange = [this] { CheckHatchDay(cboMinHatchDay); };
  cboMaxHatchDay.onChange = [this] { CheckHatchDay(cboMaxHatchDay); };
  chkCensorEggs.onClick = [this] {
    if (chkCensorEggs.value) chkCensorJuvs.value = false;
  };
  chkCensorJuvs.onClick = [this] {
    if (chkCensorJuvs.value) chkCensorEggs.value = false;
  };
  cmdLoadData.onClick = [this] { LoadData(); };
  cmdImport.onClick = [this] { ImportData(); };
  cmdFit.onClick = [this] { FitToFile(); };
  cmdLastTime.onClick = [this] { ChooseAsLastTime(); };
  cmdDone.onClick = [this] { Done(); };
  cmdCancel.onClick = [this] { Cancel(); };
}

void FrmInitialize::FillLists() {
  std::vector<std::string> sizes = Range(5, 50, 5);
  sizes.insert(sizes.begin(), {"1", "2"});
  cboBroodCovs.items = Range(0, 50);
  cboFormat.items = {"O", "A"};
  cboStartYear.items = cboEndYear.items = Range(1980, 2010);
  cboMinInitBroodSize.items = cboMaxInitBroodSize.items = sizes;
  cboInitBroodAge.items = Numbers({-20, -10, -5, -1, 0, 1, 5, 10});
  cboFinalBroodAge.items = Numbers({1, 2, 5, 10, 20, 25, 40, 50, 100});
  cboNClutchesBroods.items = Numbers({1, 2, 5, 10, 20, 25, 40, 50, 100, 200, 400, 500, 1000, 2000});
  cboMinHatchDay.items = cboMaxHatchDay.items = Range(0, 360, 20);
  cboSampFreq1.items = cboSampFreq2.items = Range(1, 20);
}

void FrmInitialize::SetToolTips() {
  chkCensorEggs.toolTip = "Check this box to ignore all egg records in the data file (hatch day record not ignored)";
  chkCensorJuvs.toolTip =
      "Check this box to ignore all juvenile records in the data file (hatch day record not ignored)";
  lblFormat.toolTip =
      "Choose how to treat the brood covariate data series (i.e., use the (O)riginal, perhaps categorical, data or "
      "transform it to a standard (A)nomaly from the mean)";
  lblBroodCovs.toolTip = "Choose the number of brood covariate series to read from your data file";
  lblMinHatchDay.toolTip = "The minimum value for a uniformly randomized hatch day of the year";
  lblMaxHatchDay.toolTip = "The maximum value for a uniformly randomized hatch day of the year";
  lblSimInitBroodAge.toolTip = "Simulation will start at this brood age for eggs (-) or juveniles (+)";
  lblSimFinalBroodAge.toolTip = "The brood age (perhaps the age @ fledge) at which the simulation stops";
  optRead.toolTip = "Read a data file already prepared for analysis";
  optSimulate.toolTip = "Simulate new data based on the values for parameters 1 to 42 in the algorithm data";
  cmdLoadData.toolTip = "Choose a data file with data already prepared for analysis";
  cmdImport.toolTip = "Make a data file of a table as spreadsheets and other programs write them";
  cmdFit.toolTip = "Choose the years and the number of covariates that the data file holds";
  cmdLastTime.toolTip = "Choose what was chosen when this data file was read last";
  cmdDone.toolTip = "Continue with analysis or simulation";
}

void FrmInitialize::OnLoad() {
  desk.charge.Take(*this, Charge::Resting::Commands);
  main_.title = fmt::format("Merlane Survival Estimation Model: Version{}", Version());
  title = fmt::format("Initialize Merlane Survival Model (Version{})", Version());
  txtInitialize.text = ModelHelp();
  txtDataFormat.text = DataFormatHelp();
  txtLimits.text = ExampleData();
  outline_ = {};
}

void FrmInitialize::ShowWhatApplies() {
  const bool read = optRead.value;
  cmdLoadData.enabled = cmdImport.enabled = read;
  for (Control* control :
       std::initializer_list<Control*>{&lblDataInput, &txtDataInput, &lblBroodCovs, &cboBroodCovs, &lblStartYear,
                                       &cboStartYear, &lblEndYear, &cboEndYear, &chkCensorEggs, &chkCensorJuvs})
    control->visible = read;
  for (Control* control : std::initializer_list<Control*>{
           &fraSims, &lblMinInitBroodSize, &cboMinInitBroodSize, &lblMaxInitBroodSize, &cboMaxInitBroodSize,
           &lblSimInitBroodAge, &cboInitBroodAge, &lblSimFinalBroodAge, &cboFinalBroodAge, &lblNClutchesBroods,
           &cboNClutchesBroods, &lblMinHatchDay, &cboMinHatchDay, &lblMaxHatchDay, &cboMaxHatchDay, &lblSampFreq,
           &cboSampFreq1, &cboSampFreq2, &lblSampDays})
    control->visible = !read;
  CheckBroodCovs();
  ShowDataFile();
}

void FrmInitialize::ShowDataFile() {
  const std::string& path = txtDataInput.text;
  const auto last = path.empty() ? std::nullopt : chosenBefore.For(path);
  lblFileHolds.text = outline_.InWords();
  lblLastTime.text = last ? LastTime(*last) : "";
  lblFileHolds.visible = optRead.value && !path.empty() && !lblFileHolds.text.empty();
  cmdFit.visible = lblFileHolds.visible && outline_.records > 0;
  lblLastTime.visible = cmdLastTime.visible = optRead.value && last.has_value();
}

void FrmInitialize::FitToFile() {
  cboStartYear.text = std::to_string(outline_.firstYear);
  cboEndYear.text = std::to_string(outline_.lastYear);
  cboBroodCovs.text = std::to_string(outline_.covariates);
  CheckBroodCovs();
}

void FrmInitialize::ChooseAsLastTime() {
  const auto last = chosenBefore.For(txtDataInput.text);
  if (!last) return;
  cboStartYear.text = std::to_string(last->FirstYear);
  cboEndYear.text = std::to_string(last->LastYear);
  cboBroodCovs.text = std::to_string(last->NCov);
  cboFormat.text = last->CovariateFormat;
  chkCensorEggs.value = last->CensorEggs;
  chkCensorJuvs.value = last->CensorJuvs;
  CheckBroodCovs();
}

void FrmInitialize::ChooseSimulate() {
  cboBroodCovs.text = "0";
  cboStartYear.text = cboEndYear.text = "1";
  txtDataInput.text.clear();
  ShowWhatApplies();
}

void FrmInitialize::CheckBroodCovs() {
  const double number = LenientNumber(cboBroodCovs.text);
  if (number < 0 || number > 50) cboBroodCovs.text = "0";
  const bool any = LenientNumber(cboBroodCovs.text) != 0;
  lblFormat.visible = cboFormat.visible = any && optRead.value;
  if (!any) cboFormat.text = "O";
}

void FrmInitialize::CheckFormat() {
  cboFormat.text = UpperCase(cboFormat.text);
  if (cboFormat.text != "A" && cboFormat.text != "O") cboFormat.text = "O";
}

void FrmInitialize::CheckHatchDay(ComboBox& box) {
  const double day = LenientNumber(box.text);
  if (day < 0 || day > 365) box.text = "0";
}

void FrmInitialize::LoadData() {
  const auto path = desk.AskFile({FileRequest::Kind::Open, "Load brood survival data file",
                                  "All Files (*.*)|*.*|"
                                  "Original text and EXCEL data files (*.dat;*.xls)|*.dat;*.xls|"
                                  "Original text data files (*.dat)|*.dat|"
                                  "Original EXCEL data files (*.xls)|*.xls|"
                                  "Simulated text data Files (*.sim)|*.sim|"
                                  "Tables to import (*.csv;*.tsv;*.txt;*.xlsx;*.xls)|*.csv;*.tsv;*.txt;*.xlsx;*.xls",
                                  2, ""});
  if (!path) return;
  TakeDataFile(*path);
  onChosen(*path);
}

void FrmInitialize::ImportData() {
  const auto path = desk.AskFile({FileRequest::Kind::Open, "Import data",
                                  "All Files (*.*)|*.*|"
                                  "Tables (*.csv;*.tsv;*.txt;*.xlsx;*.xls)|*.csv;*.tsv;*.txt;*.xlsx;*.xls|",
                                  2, txtDataInput.text});
  if (path) onImport(*path);
}

void FrmInitialize::TakeDataFile(const std::string& path) {
  txtDataInput.text = path;
  outline_ = OutlineOfFile(path);
  optSimulate.value = false;
  optRead.value = true;
  ShowWhatApplies();
  focus = &cmdDone;
}

bool FrmInitialize::Refuse(const char* problem, const char* text) {
  desk.Tell(problem, text, style::Information);
  return false;
}

bool FrmInitialize::ChoicesAreSound() {
  if (Setting(cboEndYear) < Setting(cboStartYear))
    return Refuse("Problem with your choice of years", "The first year of data exceeds the last year of data");
  if (optSimulate.value) return SimulationIsSound();
  return !txtDataInput.text.empty() || Refuse("Missing input", "Please choose a data file");
}

bool FrmInitialize::SimulationIsSound() {
  constexpr const char* Problem = "Bad input";
  const std::int16_t minSize = StrictInt16(cboMinInitBroodSize.text);
  const std::int16_t maxSize = StrictInt16(cboMaxInitBroodSize.text);
  const std::int16_t broods = StrictInt16(cboNClutchesBroods.text);
  if (minSize == 0 || maxSize == 0 || broods == 0)
    return Refuse(Problem, "Please choose non-zero values for brood size and (or) final brood age");
  if (maxSize < minSize) return Refuse(Problem, "Please choose a maximum hatch day >= the minimum hatch day");
  if (Setting(cboSampFreq1) > Setting(cboSampFreq2))
    return Refuse(Problem,
                  "Please assure simulated clutch/brood visitation intervals don't decrease from left to right");
  if (Setting(cboSampFreq1) <= 0 || Setting(cboSampFreq2) <= 0)
    return Refuse(Problem, "Please assure simulated clutch/brood visitation intervals are greater than zero");
  if (Setting(cboMaxHatchDay) < Setting(cboMinHatchDay))
    return Refuse(Problem, "Please choose a maximum hatch day >= the minimum hatch day");
  return true;
}

Initialisation FrmInitialize::Choices() const {
  Initialisation c;
  c.Simulate = optSimulate.value;
  c.DataFileName = txtDataInput.text;
  c.NCov = Setting(cboBroodCovs);
  c.CovariateFormat = cboFormat.text;
  c.FirstYear = Setting(cboStartYear);
  c.LastYear = Setting(cboEndYear);
  c.CensorEggs = chkCensorEggs.value;
  c.CensorJuvs = chkCensorJuvs.value;
  if (!c.Simulate) return c;
  c.simulator.MinInitSize = Setting(cboMinInitBroodSize);
  c.simulator.MaxInitSize = Setting(cboMaxInitBroodSize);
  c.simulator.InitAge = Setting(cboInitBroodAge);
  c.simulator.FinalAge = Setting(cboFinalBroodAge);
  c.simulator.MinHatchDay = Setting(cboMinHatchDay);
  c.simulator.MaxHatchDay = Setting(cboMaxHatchDay);
  c.simulator.SampFreq1 = Setting(cboSampFreq1);
  c.simulator.SampFreq2 = Setting(cboSampFreq2);
  c.SimulatedBroods = Setting(cboNClutchesBroods);
  return c;
}

void FrmInitialize::Done() {
  if (!ChoicesAreSound()) return;
  onDone();
  if (optRead.value) chosenBefore.Remember(Choices());
}

void FrmInitialize::Cancel() {
  desk.ShowBehind(*this);
  desk.Unload(*this);
}

bool FrmInitialize::OnCloseRequest() {
  desk.ShowBehind(*this);
  return true;
}

void FrmInitialize::OnUnload() { onClosed(); }

}  // namespace merlane
