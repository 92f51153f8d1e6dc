#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "control/frm_edit_vs.h"
#include "control/frm_menu.h"
#include "support/function_run.h"
#include "support/scripted_host.h"
#include "uncertainty/frm_par_evals.h"
#include "uncertainty/posterior_dialogue.h"
#include "uncertainty/profile_dialogue.h"

namespace merlane::test {

/// Windows whose sound is counted.
struct BeepingWindows : ScriptedWindows {
  void Beep() override { ++beeps; }
  int beeps = 0;
};

/// The evaluation of estimates over a function, as the menu's button opens it. Objectives are -2 ln[L].
struct EvaluationForms : ::testing::Test {
  EvaluationForms(const std::vector<double>& start, const std::vector<double>& steps, Function f)
      : run(start, steps, std::move(f)) {
    run.state.flags.ObjectiveConstant = 0;
    run.state.flags.ObjectiveHint = 0.5;
    frmParEvals.evaluateProfile = [this] { profileDialogue.EvaluateProfile(); };
    frmParEvals.evaluatePosterior = [this] { posteriorDialogue.EvaluatePosterior(); };
    frmMain.mnuInterruptML.onClick = [this] { state.flags.InterruptML = true; };
    frmMain.mnuInterruptBayes.onClick = [this] { state.flags.InterruptBayes = true; };
    desk.onFailed = [this](Form&) { desk.Show(frmMenu); };
    desk.Show(frmMain);
    desk.Show(frmMenu);
  }

  /// Opens the choice and presses one of its buttons.
  void Choose(Button& button) {
    desk.Unload(frmMenu);
    desk.Show(frmParEvals);
    ASSERT_TRUE(desk.Press(button));
  }

  /// The user looks at the editor, does `action` and finishes.
  void Edit(std::function<void()> action = [] {}) {
    windows.AtWait([this, action] {
      EXPECT_TRUE(frmAlgo.Visible());
      action();
      EXPECT_TRUE(desk.Press(frmAlgo.cmdFinish));
    });
  }
  /// The user looks at the plots, does `action` and closes them.
  void SeePlots(std::function<void()> action = [] {}) {
    windows.AtWait([this, action] {
      EXPECT_TRUE(frmDistPlot.Visible());
      action();
      EXPECT_TRUE(desk.Press(frmDistPlot.cmdDone));
    });
  }

  /// The user presses a button at the n-th turn, counted from here, that finds it usable.
  void PressAtUsableTurn(Button& button, int n) {
    const auto left = std::make_shared<int>(n);
    for (int turn = 1; turn < 4000; ++turn)
      windows.AtTurn(turn, [this, &button, left] {
        if (*left == 0 || !desk.Usable(button)) return;
        if (--*left == 0) desk.Press(button);
      });
  }

  /// The command is over: the menu is back, and nothing of the calculation is left.
  void ExpectBackAtMenu() {
    EXPECT_TRUE(frmMenu.Visible());
    EXPECT_FALSE(frmParEvals.Loaded());
    EXPECT_TRUE(frmMain.mnuApplication.enabled);
    EXPECT_FALSE(state.profile.ProfileOn || state.profile.IntegrationOn);
    for (int panel = 1; panel <= 4; ++panel) EXPECT_EQ(frmMain.stbMain5.Get(panel), "") << panel;
  }

  /// Covariances of the run as it stands, with these standard errors times the number of the grid.
  void TakeCovariances(const Array1<double>& standardErrors) {
    covariances.CovBaseValue = algorithm.Value;
    covariances.CovCount = static_cast<std::int16_t>(standardErrors.Size());
    covariances.CovIndex.Dimension(covariances.CovCount);
    for (std::int16_t a = 1; a <= covariances.CovCount; ++a) covariances.CovIndex(a) = a;
    for (int g = 1; g <= 3; ++g) {
      covariances.grid(g).ending = GridEnding::Calculated;
      covariances.grid(g).standardErrors = standardErrors;
      for (double& error : covariances.grid(g).standardErrors) error *= g;
    }
    covariances.basis = run.objective.Present();
    covariances.basis->constant = 2;  // as the evaluation will have it entered
  }

  /// The texts that a panel has held, in order, empty ones left out.
  std::vector<std::string> Panel(int panel) const {
    std::vector<std::string> texts;
    for (const auto& status : windows.statuses)
      if (status.bar == "stbMain5" && status.panel == panel && !status.text.empty()) texts.push_back(status.text);
    return texts;
  }

  FunctionRun run;
  RunState& state = run.state;
  AlgorithmData& algorithm = run.state.algorithm;
  ScriptedHost host;
  BeepingWindows windows;
  Desk desk{{windows, host.clock, host.random, host.workbooks}};
  LogFile log;
  FrmMain frmMain{desk};
  FrmMenu frmMenu{desk, run.state};
  FrmAlgo frmAlgo{desk, run.state, log, frmMain};
  FrmEditVS frmEditVS{desk, run.state, frmAlgo};
  SimplexState simplex;
  ProfileRun profileRun;
  FrmSimplex frmSimplex{desk, frmMain, run.state, run.objective, simplex, log, profileRun};
  FrmMarquardt frmMarquardt{desk, frmMain, run.state, run.objective, log, profileRun};
  Covariances covariances;
  FrmDistPlot frmDistPlot{desk};
  FrmBivarPlot frmBivarPlot{desk};
  Evaluation evaluation;
  FrmParEvals frmParEvals{desk};
  EvaluationParts parts{desk,       run.state, run.objective, simplex,     covariances,
                        evaluation, frmMain,   frmAlgo,       frmDistPlot, frmParEvals};
  FrmDistributionTable frmMaxLike{desk, FrmDistributionTable::MaxLike};
  FrmDistributionTable frmBayesian{desk, FrmDistributionTable::Bayesian};
  ProfileDialogue profileDialogue{parts, frmMaxLike, frmSimplex, frmMarquardt, profileRun};
  PosteriorDialogue posteriorDialogue{parts, frmBayesian, frmBivarPlot};
};

}  // namespace merlane::test
