#include "priors/priors_commands.h"

#include <algorithm>

#include "base/text.h"
#include "priors/priors_file.h"

namespace merlane {
namespace {

// Behind the name of a file, for the priors that are no longer those in it, and those that are in none yet.
constexpr std::string_view ChangedSince = " (changed since)";
constexpr std::string_view NotSaved = " (not saved)";

}  // namespace

void PriorsCommands::NameByClock() {
  std::string& name = state_.flags.PriorFileName;
  if (!name.empty()) return;
  name = ClockName(desk_.host.clock) + ".pri";
  state_.flags.PriorsKnownAs = name;
  state_.flags.PriorsKnownAs += NotSaved;
}

void PriorsCommands::TakeFile(const std::string& path) {
  state_.flags.PriorFileName = state_.flags.PriorsKnownAs = path;
  inFile_ = PriorsInFile(priors_);
}

void PriorsCommands::NoteEdit() {
  std::string& name = state_.flags.PriorsKnownAs;
  if (name.empty() || name.ends_with(NotSaved)) return;
  if (name.ends_with(ChangedSince)) name.resize(name.size() - ChangedSince.size());
  if (PriorsInFile(priors_) != inFile_) name += ChangedSince;
  ShowName();
}

bool PriorsCommands::SavePriors() {
  NameByClock();
  const auto path =
      desk_.AskFile({FileRequest::Kind::Save, "Save Bayesian priors file in...",
                     "All files (*.*)|*.*|Bayesian prior files (*.pri)|*.pri", 2, state_.flags.PriorFileName});
  if (!path) return false;
  desk_.Write(*path, PriorsFileText(priors_));
  TakeFile(*path);
  ShowName();
  return true;
}

void PriorsCommands::ShowName() {
  std::string_view bare = FileName(state_.flags.PriorsKnownAs), note;
  for (const std::string_view said : {ChangedSince, NotSaved})
    if (bare.ends_with(said)) {
      note = said;
      bare.remove_suffix(said.size());
    }
  bare.remove_suffix(std::min<std::size_t>(bare.size(), 4));
  main_.ShowPriorsFile(std::string(bare).append(note));
}

void PriorsCommands::ShowWhetherInForce() {
  const bool idle = priors_.AnySet() && !state_.flags.BayesOn;
  main_.ShowPriorsNote(idle ? "Priors are not in force: open them once more and choose Cancel" : "");
}

}  // namespace merlane
