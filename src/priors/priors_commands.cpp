#include "priors/priors_commands.h"

#include <algorithm>

#include "base/text.h"
#include "priors/priors_file.h"

namespace merlane {

void PriorsCommands::NameByClock() {
  std::string& name = state_.flags.PriorFileName;
  if (name.empty()) name = state_.flags.PriorsKnownAs = ClockName(desk_.host.clock) + ".pri";
}

bool PriorsCommands::SavePriors() {
  NameByClock();
  const auto path =
      desk_.AskFile({FileRequest::Kind::Save, "Save Bayesian priors file in...",
                     "All files (*.*)|*.*|Bayesian prior files (*.pri)|*.pri", 2, state_.flags.PriorFileName});
  if (!path) return false;
  desk_.Write(*path, PriorsFileText(priors_));
  state_.flags.PriorFileName = state_.flags.PriorsKnownAs = *path;
  ShowName();
  return true;
}

void PriorsCommands::ShowName() {
  std::string_view bare = FileName(state_.flags.PriorFileName);
  bare.remove_suffix(std::min<std::size_t>(bare.size(), 4));
  main_.ShowPriorsFile(std::string(bare));
}

void PriorsCommands::ShowWhetherInForce() {
  const bool idle = priors_.AnySet() && !state_.flags.BayesOn;
  main_.ShowPriorsNote(idle ? "Priors are not in force: open them once more and choose Cancel" : "");
}

}  // namespace merlane
