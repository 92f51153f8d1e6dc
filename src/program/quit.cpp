#include <fmt/format.h>

#include <filesystem>

#include "base/at_end.h"
#include "base/failure_text.h"
#include "control/algorithm_file.h"
#include "platform/files.h"
#include "priors/priors_file.h"
#include "program/program.h"

namespace merlane {
namespace {

/// A name that nobody has yet, made from a file's by adding the time. A file without a folder goes to that of the data.
std::string NameBeside(const std::string& file, const std::string& dataFile, const std::string& time) {
  const std::filesystem::path own(file), data(dataFile);
  const std::filesystem::path folder = own.has_parent_path() ? own.parent_path() : data.parent_path();
  for (int number = 1;; ++number) {
    const std::string more = number == 1 ? "" : fmt::format("_{}", number);
    const std::filesystem::path name =
        folder / fmt::format("{}_{}{}{}", own.stem().string(), time, more, own.extension().string());
    std::error_code unknown;
    if (!std::filesystem::exists(name, unknown)) return name.string();
  }
}

}  // namespace

void Program::Quit(const std::string& priorsTitle, const std::string& priorsText) {
  if (desk.Ask("Exit Tolvane", "Do you want to quit Tolvane?", style::YesNoQuestionDefaultNo) != Answer::Yes) return;
  const auto users = parametricBootstrap.UsersRun();
  // Whoever wants to save and then does not choose a file has thought better of leaving.
  if (desk.Ask("What about algorithm data?", "Save algorithm data?", style::YesNoQuestion) == Answer::Yes &&
      !SaveUsersAlgorithmData([this] { return algorithmCommands.Save_Alg(); }))
    return;
  if (!priors.AnySet())
    frmMain.ShowPriorsFile("");
  else if (desk.Ask(priorsTitle, priorsText, style::YesNoQuestion) == Answer::Yes && !priorsCommands.SavePriors())
    return;
  if (!frmRank.OfferSaving()) return;
  log.Close();
  throw EndProgram{};
}

std::vector<std::string> Program::SaveUnasked() {
  std::vector<std::string> problems;
  const auto save = [&](const std::string& file, const std::string& text) {
    try {
      std::error_code unknown;
      if (std::filesystem::is_regular_file(file, unknown) && ReadWholeFile(file) == text) return;
      WriteWholeFile(NameBeside(file, model.data.DataFileName, ClockName(desk.host.clock)), text);
    } catch (const std::exception& failure) {
      problems.push_back(FailureText(failure));
    }
  };
  const auto users = parametricBootstrap.UsersRun();
  SaveUsersAlgorithmData([&] {
    const AlgorithmData& a = state.algorithm;
    if (!a.AlgName.empty()) save(a.AlgName, AlgorithmText(a, AlgorithmForm::Menu));
    return true;
  });
  const std::string& priorsFile = state.flags.PriorFileName;
  if (priors.AnySet()) save(priorsFile.empty() ? "priors.pri" : priorsFile, PriorsFileText(priors));
  if (const auto table = frmRank.UnsavedTable()) save("ranking.mms", *table);
  log.Close();
  return problems;
}

bool Program::SaveUsersAlgorithmData(const std::function<bool()>& save) {
  const auto& pinned = state.profile.pinned;
  if (!pinned) return save();
  // Who leaves in the middle of an evaluation leaves with what he evaluated, and not with one of its points.
  AlgorithmData& a = state.algorithm;
  const auto ownValues = Meanwhile(a.Value, Array1<double>(pinned->Value));
  const auto ownSteps = Meanwhile(a.Step, Array1<double>(pinned->Step));
  return save();
}

}  // namespace merlane
