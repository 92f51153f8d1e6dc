#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <nlohmann/json.hpp>

#include "base/text.h"
#include "priors/frm_load_priors.h"
#include "priors/frm_set_priors.h"
#include "priors/priors_file.h"
#include "support/scripted_host.h"

namespace merlane::test {

using Json = nlohmann::json;

inline Json Kept(const std::string& name) {
  std::ifstream file(std::string(MERLANE_GOLDEN_DIR) + "/plots/" + name + ".json");
  return Json::parse(file);
}

/// Lines of kept texts end with LF, those of the program's with CR LF.
inline std::string Told(const std::string& kept) { return WithCrLf(kept); }

inline std::string TermText(const PriorTerm& term) {
  return std::holds_alternative<double>(term) ? Json(std::get<double>(term)).dump() : std::get<std::string>(term);
}

inline std::string TermText(const Json& kept) { return kept.is_number() ? kept.dump() : kept.get<std::string>(); }

/// The forms of the priors, and what stands around them.
class PriorsForms : public testing::Test {
 protected:
  ScriptedHost host;
  Desk desk{host.Get()};
  RunState state;
  Priors priors;
  Objective objective{state, [this](ModelCall& call) {
                        ++calls;
                        call.F = 20;
                      }};
  int calls = 0;
  FrmMain frmMain{desk};
  Form caller{desk, "frmMenu", "Menu"};  // calls for the priors
  PriorsCommands commands{desk, state, frmMain, priors};
  FrmSetPriors editor{desk, state, objective, frmMain, priors, commands};
  FrmLoadPriors chooser{desk, state, frmMain, priors, commands, editor};
  ScriptedWindows& windows = host.windows;
  const std::string folder = testing::TempDir();

  void Begin(int NPAR) {
    state.algorithm.NPAR = static_cast<std::int16_t>(NPAR);
    state.algorithm.ParName.Dimension(NPAR);
    for (int i = 1; i <= NPAR; ++i)
      state.algorithm.ParName(i) = "Description of parameter " + std::to_string(i) + " [0]";
    priors.Reset(NPAR);
    desk.Show(frmMain);
    desk.charge.home = &caller;
    desk.Show(caller);
  }
  /// Opens the editor as the chooser does when nothing is set yet.
  void OpenEditor() {
    chooser.Open();
    if (!priors.AnySet()) windows.Yes("Setting Bayesian Priors");
    EXPECT_TRUE(desk.Press(chooser.cmdSet));
  }
  void Select(int parameter) { EXPECT_TRUE(desk.Click(editor.grdPriors, parameter + 1, 1)); }
  void Choose(const std::string& command, const std::vector<std::string>& replies) {
    for (const std::string& reply : replies) windows.Enter(reply);
    EXPECT_TRUE(desk.Press(dynamic_cast<MenuEntry&>(*editor.Find(command))));
  }
  std::string File(const std::string& name, const std::string& text) {
    std::ofstream(folder + name, std::ios::binary) << text;
    return folder + name;
  }
  void ExpectRow(int row, const Json& cells, const Json& colours) {
    for (int column = 0; column < editor.grdPriors.Columns(); ++column) {
      const auto at = static_cast<std::size_t>(column);
      EXPECT_EQ(editor.grdPriors.At(row, column).text, cells[at].get<std::string>()) << row << ", " << column;
      EXPECT_EQ(static_cast<int>(editor.grdPriors.At(row, column).fore), colours[at]) << row << ", " << column;
    }
  }
};

}  // namespace merlane::test
