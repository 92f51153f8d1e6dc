#include "base/at_end.h"
#include "program/program.h"

namespace merlane {

void Program::Quit(const std::string& priorsTitle, const std::string& priorsText) {
  if (desk.Ask("Exit Tolvane", "Do you want to quit Tolvane?", style::YesNoQuestionDefaultNo) != Answer::Yes) return;
  const auto users = parametricBootstrap.UsersRun();
  // Whoever wants to save and then does not choose a file has thought better of leaving.
  if (desk.Ask("What about algorithm data?", "Save algorithm data?", style::YesNoQuestion) == Answer::Yes &&
      !SaveUsersAlgorithmData())
    return;
  if (!priors.AnySet())
    frmMain.ShowPriorsFile("");
  else if (desk.Ask(priorsTitle, priorsText, style::YesNoQuestion) == Answer::Yes && !priorsCommands.SavePriors())
    return;
  log.Close();
  throw EndProgram{};
}

bool Program::SaveUsersAlgorithmData() {
  const auto& pinned = state.profile.pinned;
  if (!pinned) return algorithmCommands.Save_Alg();
  // Leaving in the middle of an evaluation shall not cost its parameter the value and step in the file.
  AlgorithmData& a = state.algorithm;
  const auto ownValue = Meanwhile(a.Value(pinned->parameter), double{pinned->value});
  const auto ownStep = Meanwhile(a.Step(pinned->parameter), double{pinned->step});
  return algorithmCommands.Save_Alg();
}

}  // namespace merlane
