#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "control/algorithm_file.h"
#include "platform/files.h"
#include "program/program.h"
#include "support/scripted_host.h"

namespace merlane::test {

/// A golden file's path.
inline std::string Golden(const std::string& name) { return std::string(MERLANE_GOLDEN_DIR "/") + name; }

/// What the user chooses when an analysis of a data file begins.
struct DataChoices {
  std::string path;
  std::string startYear = "1995", endYear = "1995";
  std::string covariates = "0", format = "O";
  bool censorEggs = false, censorJuvs = false;
};

/// A program on a scripted host, and the hand of somebody who works down its menu.
struct Analysis {
  ScriptedHost host;
  ScriptedWindows& windows = host.windows;
  Program program{host.Get()};
  Desk& desk = program.desk;
  RunState& state = program.state;
  FrmMenu& menu = program.frmMenu;

  Analysis() { program.Start(); }

  /// Fills the form of initialisation and presses Continue.
  void Initialize(const DataChoices& choices) {
    ASSERT_TRUE(desk.Press(menu.cmdInitialize));
    FrmInitialize& form = program.frmInitialize;
    windows.File(choices.path, "Load brood survival data file");
    ASSERT_TRUE(desk.Press(form.cmdLoadData));
    ASSERT_TRUE(desk.SetText(form.cboStartYear, choices.startYear));
    ASSERT_TRUE(desk.SetText(form.cboEndYear, choices.endYear));
    ASSERT_TRUE(desk.SetText(form.cboBroodCovs, choices.covariates));
    if (choices.covariates != "0") {
      ASSERT_TRUE(desk.SetText(form.cboFormat, choices.format));
    }
    if (choices.censorEggs) {
      ASSERT_TRUE(desk.Tick(form.chkCensorEggs, true));
    }
    if (choices.censorJuvs) {
      ASSERT_TRUE(desk.Tick(form.chkCensorJuvs, true));
    }
    ASSERT_TRUE(desk.Press(form.cmdDone));
  }

  /// Chooses the simulation of a data set as the form proposes it and presses Continue.
  void InitializeSimulation() {
    ASSERT_TRUE(desk.Press(menu.cmdInitialize));
    ASSERT_TRUE(desk.Choose(program.frmInitialize.optSimulate));
    ASSERT_TRUE(desk.Press(program.frmInitialize.cmdDone));
  }

  void LoadAlg(const std::string& path) {
    windows.Yes("Load algorithm data");
    windows.File(path, "Open algorithm data file");
    ASSERT_TRUE(desk.Press(menu.cmdLoadAlg));
  }

  void LoadDefaults() {
    windows.No("Load algorithm data");
    ASSERT_TRUE(desk.Press(menu.cmdLoadAlg));
  }

  /// The run of a golden case of one year without covariates, up to its loaded algorithm data.
  void Ready(const std::string& name) {
    Initialize({.path = Golden(name + ".dat")});
    LoadAlg(Golden(name + ".alg"));
  }

  /// Opens a priors file from the menu and closes the editor, with the constant that the model proposes.
  void LoadPriors(const std::string& path) {
    ASSERT_TRUE(desk.Press(menu.cmdBayesian));
    windows.File(path, "Load Bayesian Priors file");
    ASSERT_TRUE(desk.Press(program.frmLoadPriors.cmdOpen));
    windows.No("Save Bayesian priors");
    windows.Enter("0.5", "Enter constant");
    ASSERT_TRUE(desk.Press(program.frmSetPriors.mnuFinished));
  }

  /// Runs `action` with the number of the attempt when a bootstrap shows this status.
  void AtEachAttempt(const std::string& status, std::function<void(int attempt)> action) {
    windows.onStatus = [before = std::move(windows.onStatus), status, action = std::move(action),
                        attempt = 0](const ScriptedWindows::Status& shown) mutable {
      if (before) before(shown);
      if (shown.bar == "stbMain5" && shown.text == status) action(++attempt);
    };
  }
  /// The same when it is about to fit a replicate.
  void AtEachFit(std::function<void(int attempt)> action) {
    AtEachAttempt("Estimating parameters for simulated data", std::move(action));
  }
  /// Saves the algorithm data under this path, and lets a bootstrap fit changed ones in the attempts of which
  /// `isChanged` says so.
  void SaveForABootstrap(const std::string& path, std::function<void(AlgorithmData&)> change,
                         std::function<bool(int attempt)> isChanged) {
    windows.File(path);
    ASSERT_TRUE(desk.Press(menu.cmdSaveAlg));
    AtEachFit([this, change = std::move(change), isChanged = std::move(isChanged)](int attempt) {
      if (isChanged(attempt)) change(state.algorithm);
    });
  }

  /// Opens the chooser of the priors and leaves it again.
  void OpenAndCancelPriors() {
    ASSERT_TRUE(desk.Press(menu.cmdBayesian));
    ASSERT_TRUE(desk.Press(program.frmLoadPriors.cmdCancel));
  }

  /// One function call, its window closed again.
  void OneFunction() {
    ASSERT_TRUE(desk.Press(menu.cmdOneFunction));
    ASSERT_TRUE(desk.Close(program.frmOneFunction));
  }

  /// Searches from the menu, whose windows stay open.
  void Simplex() {
    windows.Yes("Just checking");
    ASSERT_TRUE(desk.Press(menu.cmdSimplex));
  }
  /// By numerical derivatives, which are not shown.
  void Marquardt() {
    windows.Yes("Just checking");
    windows.No("Marquardt minimization");
    windows.No("Marquardt minimization");
    ASSERT_TRUE(desk.Press(menu.cmdMarquardt));
  }
  /// Covariances on three grids; the window that offers them stays open.
  void Covariances(const std::vector<std::string>& factors = {"1", "0.1", "0.01"}) {
    windows.No("Covariance calculator");
    windows.Reply(Answer::Ok, "Covariance calculator");
    windows.AtWait([this] { desk.Press(program.frmAlgo.cmdFinish); });
    for (const std::string& factor : factors) windows.Enter(factor, "Covariance calculator");
    windows.Yes("Covariance calculator");
    windows.Enter("0.5", "Enter constant");
    windows.No("Calculate optimistic SEs only?");
    ASSERT_TRUE(desk.Press(menu.cmdCovariance));
  }

  /// The buttons of the menu that can be pressed at this moment, in the order of the form.
  std::vector<std::string> Usable() const {
    std::vector<std::string> names;
    for (const Control* control : menu.Controls())
      if (dynamic_cast<const Button*>(control) != nullptr && desk.Usable(*control)) names.push_back(control->name);
    return names;
  }

  bool ApplicationMenuUsable() const { return program.frmMain.mnuApplication.enabled; }
};

/// An empty folder that goes when the test ends.
class Folder {
 public:
  explicit Folder(const std::string& name) : path_(::testing::TempDir() + "merlane_" + name) {
    std::filesystem::remove_all(path_);
    std::filesystem::create_directories(path_);
  }
  ~Folder() { std::filesystem::remove_all(path_); }
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;
  std::string operator/(const std::string& file) const { return path_ + "/" + file; }

 private:
  std::string path_;
};

}  // namespace merlane::test
