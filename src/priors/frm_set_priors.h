#pragma once

#include <cstdint>
#include <functional>

#include "control/frm_main.h"
#include "control/objective.h"
#include "control/run_state.h"
#include "forms/desk.h"
#include "priors/distributions.h"
#include "priors/priors_commands.h"

namespace merlane {

/// The editor of the priors: a row for each parameter and a command for each distribution. There is no working copy;
/// what a command stores is at once in force.
class FrmSetPriors : public Form {
 public:
  FrmSetPriors(Desk& d, RunState& state, Objective& objective, FrmMain& main, Priors& priors, PriorsCommands& commands);

  MenuEntry mnuApplication{*this, "mnuApplication", "&Application"};
  MenuEntry mnuMenu{*this, "mnuMenu", "Main &menu", &mnuApplication};
  MenuEntry mnuExit{*this, "mnuExit", "E&xit", &mnuApplication};
  MenuEntry mnuEdit{*this, "mnuEdit", "&Edit prior distributions"};
  MenuEntry mnuU{*this, "mnuU", "&Uniform - unbounded", &mnuEdit};
  MenuEntry mnuT{*this, "mnuT", "Uniform - &bounded", &mnuEdit};
  MenuEntry mnuN{*this, "mnuN", "Gaussian or &Normal", &mnuEdit};
  MenuEntry mnuE{*this, "mnuE", "&Exponential", &mnuEdit};
  MenuEntry mnuG{*this, "mnuG", "&Gamma", &mnuEdit};
  MenuEntry mnuB{*this, "mnuB", "Be&ta", &mnuEdit};
  MenuEntry MnuS{*this, "MnuS", "&Left-side cliff", &mnuEdit};
  MenuEntry mnuR{*this, "mnuR", "&Right-side cliff", &mnuEdit};
  MenuEntry mnuL{*this, "mnuL", "Ln-n&ormal", &mnuEdit};
  MenuEntry mnuProfile{*this, "mnuProfile", "&Profile prior distributions"};
  MenuEntry mnuSave{*this, "mnuSave", "&Save prior distributions"};
  WindowMenu windowMenu;
  MenuEntry mnuHelp{*this, "mnuHelp", "&Help with prior distributions"};
  MenuEntry mnuFinished{*this, "mnuFinished", "&Finished"};
  Grid grdPriors{*this, "grdPriors"};

  /// Shows the editor, which is in charge until it closes.
  void Open();

  /// The quit dialogue, and the profile of the priors, which proposes this parameter; assigned where the program is put
  /// together.
  std::function<void()> quit;
  std::function<void(std::int16_t selected)> profile;

 protected:
  void OnLoad() override;
  void OnUnload() override;

 private:
  void Fill();
  /// Saves the priors on the way out. When the file cannot be written the editor is open again.
  void SaveOrStayOpen();
  /// The answers to a command's prompts; none when the command ends.
  std::optional<std::vector<std::string>> Prompt(const std::string& box, const std::vector<std::string>& prompts);
  std::string Ask(const std::string& box, const std::string& prompt);

  void SetNormal();
  void SetGamma();
  void SetExponential();
  void SetLnNormal();
  void SetBeta();
  void SetCliff(const char* code, const char* box, const char* side);
  void SetBounded();
  void SetUniform();

  int Parameter() const { return grdPriors.selectedRow - 1; }
  void Store(const char* code, double mean, double sd, const PriorTerm& secondMean = PriorUnused,
             const PriorTerm& secondSD = PriorUnused);
  // Of two replies, read before anything is stored: the first as it is, or the magnitudes of both.
  void StoreMeanAndSD(const char* code, const std::vector<std::string>& replies);
  void StoreMagnitudes(const char* code, const std::vector<std::string>& replies);
  void ShowRow(int parameter);
  /// Paints a row as it stands while it is not selected.
  void PaintPlain(int parameter);
  void PaintSelected(int parameter);
  void PaintEdited(int parameter);
  void Select(int row);
  void ShowHelp();

  RunState& state_;
  Objective& objective_;
  FrmMain& main_;
  Priors& priors_;
  PriorsCommands& commands_;
  int painted_ = 0;  // the parameter whose row shows that it is selected or was just edited
};

}  // namespace merlane
