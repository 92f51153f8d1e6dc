#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "control/basis.h"
#include "control/frm_algo.h"
#include "control/frm_edit_vs.h"
#include "control/frm_menu.h"
#include "forms/desk.h"
#include "support/scripted_host.h"

namespace merlane {

/// The columns of the editor's table.
enum : int { Number, Value, Step, Fuse, Description };

/// A program with the editor and what stands around it, and a model of twelve parameters of which the first four are
/// free.
class EditorTest : public testing::Test {
 protected:
  static constexpr int N = 12;

  EditorTest() {
    a.NPAR = N;
    a.Value.Dimension(N, 0);
    a.Step.Dimension(N, 0);
    a.Fuse.Dimension(N, "~~");
    a.ParName.Dimension(N);
    for (int i = 1; i <= N; ++i) a.ParName(i) = "parameter " + std::to_string(i);
    for (int i = 1; i <= 4; ++i) {
      a.Value(i) = i;
      a.Step(i) = 0.5;
    }
    a.Tolerance = 0.0001;
    a.AlgName = "lake.alg";
    editVS.saveAlg = [this] { host.windows.events.push_back("saved"); };
    editor.onExit = [this] { host.windows.events.push_back("quit dialogue"); };
    desk.Show(main);
    desk.Show(menu);
  }

  void Open() {
    editor.OpenFromMenu();
    host.windows.events.clear();
  }

  /// What a person does with one cell.
  void Type(int row, int column, const std::string& text) {
    ASSERT_TRUE(desk.DoubleClick(editor.grdVS, row, column));
    ASSERT_TRUE(desk.Enter(editor.grdVS, row, column, text));
  }
  const std::string& Text(int row, int column) { return editor.grdVS.At(row, column).text; }
  Colour Fore(int row, int column) { return editor.grdVS.At(row, column).fore; }

  /// What was computed from the data as they stood at `RememberResults` is of other data now.
  void ExpectResultsVoid() {
    const Basis now = BasisOf(state, "");
    EXPECT_FALSE(kept_.SameEstimates(now) && kept_.SameSearch(now));
  }
  void ExpectResultsStand() {
    const Basis now = BasisOf(state, "");
    EXPECT_TRUE(kept_.SameEstimates(now) && kept_.SameSearch(now));
  }
  void RememberResults() { kept_ = BasisOf(state, ""); }

  test::ScriptedHost host;
  Desk desk{host.Get()};
  RunState state;
  AlgorithmData& a = state.algorithm;
  LogFile log;
  FrmMain main{desk};
  FrmMenu menu{desk, state};
  FrmAlgo editor{desk, state, log, main};
  FrmEditVS editVS{desk, state, editor};

 private:
  Basis kept_;
};

}  // namespace merlane
