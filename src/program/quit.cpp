#include "program/program.h"

namespace merlane {

void Program::Quit(const std::string& priorsTitle, const std::string& priorsText) {
  if (desk.Ask("Exit Tolvane", "Do you want to quit Tolvane?", style::YesNoQuestionDefaultNo) != Answer::Yes) return;
  const auto users = parametricBootstrap.UsersRun();
  if (const auto& pinned = state.profile.pinned) {
    // Leaving in the middle of an evaluation shall not cost its parameter the value and step in the file.
    state.algorithm.Value(pinned->parameter) = pinned->value;
    state.algorithm.Step(pinned->parameter) = pinned->step;
  }
  if (desk.Ask("What about algorithm data?", "Save algorithm data?", style::YesNoQuestion) == Answer::Yes)
    algorithmCommands.Save_Alg();
  if (!priors.AnySet())
    frmMain.ShowPriorsFile("");
  else if (desk.Ask(priorsTitle, priorsText, style::YesNoQuestion) == Answer::Yes)
    priorsCommands.SavePriors();
  log.Close();
  throw EndProgram{};
}

}  // namespace merlane
