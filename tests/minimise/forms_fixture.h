#pragma once

#include <gtest/gtest.h>

#include <filesystem>

#include "control/frm_menu.h"
#include "forms/desk.h"
#include "minimise/frm_marquardt.h"
#include "minimise/frm_simplex.h"
#include "platform/files.h"
#include "support/function_run.h"
#include "support/scripted_host.h"
#include "support/textbook.h"

namespace merlane::test {

/// The windows of both minimisers over a textbook function.
class MinimiserForms : public testing::Test {
 protected:
  /// Makes the forms for a function and packs its parameters. Both panes report at each iteration.
  void Open(const std::vector<double>& start, Function function, double step = 0.1) {
    run = std::make_unique<FunctionRun>(start, std::move(function), step);
    run->state.algorithm.TerminalFreq = 1;
    run->Pack();
    frmMenu = std::make_unique<FrmMenu>(desk, run->state);
    frmSimplex = std::make_unique<FrmSimplex>(desk, frmMain, run->state, run->objective, simplex, log, profile);
    frmMarquardt = std::make_unique<FrmMarquardt>(desk, frmMain, run->state, run->objective, log, profile);
  }

  /// Runs a command that is busy, as a button of the menu would start it.
  void Command(const std::function<void()>& command) {
    Form starter(desk, "frmStarter", "");
    Button go(starter, "go", "");
    go.onClick = [&] {
      const auto running = desk.charge.LongCommand();
      command();
    };
    desk.Show(starter);
    desk.Press(go);
    desk.Hide(starter);
    std::erase(windows().events, "shown frmStarter");
    std::erase(windows().events, "hidden frmStarter");
  }

  void OpenLog() {
    run->state.algorithm.FileFreq = 1;
    log.Open(logPath);
  }
  std::string LogText() { return ReadWholeFile(logPath); }

  ScriptedWindows& windows() { return host.windows; }
  /// The texts that a panel has held, in order.
  std::vector<std::string> Panel(int panel) const {
    std::vector<std::string> texts;
    for (const auto& status : host.windows.statuses)
      if (status.bar == "stbMain5" && status.panel == panel) texts.push_back(status.text);
    return texts;
  }
  void ExpectPanelsEmpty() const {
    for (int panel = 1; panel <= 4; ++panel) EXPECT_EQ(frmMain.stbMain5.Get(panel), "") << panel;
  }

  ScriptedHost host;
  Desk desk{host.Get()};
  FrmMain frmMain{desk};
  LogFile log;
  ProfileRun profile;
  SimplexState simplex;
  std::unique_ptr<FunctionRun> run;
  std::unique_ptr<FrmMenu> frmMenu;
  std::unique_ptr<FrmSimplex> frmSimplex;
  std::unique_ptr<FrmMarquardt> frmMarquardt;
  std::string logPath = (std::filesystem::path(testing::TempDir()) /
                         (std::string(testing::UnitTest::GetInstance()->current_test_info()->name()) + ".tvl"))
                            .string();
};

}  // namespace merlane::test
