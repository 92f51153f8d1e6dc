#include "control/algorithm_commands.h"

#include <fmt/format.h>

#include <filesystem>

#include "base/runtime_failure.h"
#include "base/text.h"
#include "control/fuses.h"
#include "control/parameter_notes.h"
#include "forms/desk.h"
#include "platform/files.h"

namespace merlane {
namespace {

/// The failure in the words of its message.
std::string FailureText(const AlgorithmReading& reading, const std::string& path, int NPAR) {
  switch (reading.failure) {
    case AlgorithmReading::Failure::ParameterCount:
      return fmt::format("Algorithm file  {}  has {} parameters, but your model specifies {}", path, reading.fileCount,
                         NPAR);
    case AlgorithmReading::Failure::TooManyLines:
      return "Algorithm file seems to have too many lines of information - better check it!";
    case AlgorithmReading::Failure::TooFewLines:
      return "Algorithm file seems to have too few lines of information - better check it!";
    default:
      return "Algorithm file seems to have inappropriate, badly formatted, or missing, information - better check it!";
  }
}

/// Loaded data are not logged, also where those before were.
void TellOfSilentLog(FrmMain& main, const AlgorithmData& before, const AlgorithmData& loaded) {
  if (before.FileFreq > 0 && loaded.FileFreq == 0)
    main.ShowProgress("Note: Nothing more is written into the log until you give it an output frequency in the editor");
}

/// Whether these data have the same fused groups when they are read from a file of this form, whatever they are called.
bool KeepsGroups(const AlgorithmData& a, AlgorithmForm form) {
  AlgorithmData read = a;
  return ReadAlgorithm(AlgorithmText(a, form), read).failure != AlgorithmReading::Failure::None ||
         SameGroups(a.Fuse, read.Fuse);
}

}  // namespace

AlgorithmCommands::AlgorithmCommands(Desk& desk, RunState& state, FrmMain& main, FrmMenu& menu,
                                     std::function<std::string()> dataBaseName)
    : desk_(desk), state_(state), main_(main), menu_(menu), dataBaseName_(std::move(dataBaseName)) {}

void AlgorithmCommands::LoadAlg() {
  const Answer answer =
      desk_.Ask("Load algorithm data", "Load an existing algorithm data file?\r\n\r\n     Choose NO for default values",
                style::YesNoCancelQuestion);
  if (answer == Answer::Cancel) return;
  if (answer == Answer::No) {
    TakeDefaults();
  } else if (!LoadFile()) {
    return;
  }
  ShowLoaded();
  menu_.ApplyPattern(menu_.cmdEditAlg);
}

void AlgorithmCommands::TakeDefaults() {
  AlgorithmData& a = state_.algorithm;
  const AlgorithmData before = a;
  SetDefaultAlgorithm(a);
  TakeBackNotes(a, before, descriptions());
  TellOfSilentLog(main_, before, a);
  a.AlgName = a.AlgShortName = ClockName(desk_.host.clock) + ".alg";
  lastText_.clear();
  desk_.Tell("Default Algorithm Values",
             "                     Algorithm data set to default values.\r\n\r\n"
             "Algorithm file given the date-time based name: " +
                 a.AlgName,
             style::Information);
}

bool AlgorithmCommands::LoadFile() {
  AlgorithmData& a = state_.algorithm;
  const auto path = desk_.AskFile({.kind = FileRequest::Kind::Open,
                                   .title = "Open algorithm data file",
                                   .filter = "All files (*.*)|*.*|Algorithm files (*.alg)|*.alg",
                                   .startName = a.AlgName});
  if (!path) return false;
  const AlgorithmData before = a;
  std::string text = ReadWholeFile(*path);
  const AlgorithmReading reading = ReadAlgorithm(text, a);
  const bool failed = reading.failure != AlgorithmReading::Failure::None;
  if (reading.failure != AlgorithmReading::Failure::ParameterCount) TakeBackNotes(a, before, descriptions());
  if (failed) TellFailure(reading, *path);
  const bool toleranceWasBelow = RaiseTolerance(a);
  // After a failure the tolerance decides: the command goes on with what has been read so far, unless it was below its
  // minimum, as it is in a run that holds nothing yet. Data that are not in the run do not name it either.
  if (failed && toleranceWasBelow) return false;
  TellOfSilentLog(main_, before, a);
  if (reading.failure != AlgorithmReading::Failure::ParameterCount) TakeFile(*path, std::move(text));
  return true;
}

void AlgorithmCommands::TellFailure(const AlgorithmReading& reading, const std::string& path) {
  const std::int16_t NPAR = state_.algorithm.NPAR;
  const std::string fault = reading.details.empty() ? "" : ", " + reading.details;
  desk_.Tell("Algorithm file - information input failed", FailureText(reading, path, NPAR), style::Information,
             path + fault + "; " + TakenInWords(reading, NPAR));
}

void AlgorithmCommands::ShowLoaded() {
  ShowName();
  desk_.Turn();
}

void AlgorithmCommands::ShowName() {
  const AlgorithmData& a = state_.algorithm;
  // A name of four characters or fewer has nothing left without its extension, which it has not: it is shown whole.
  main_.ShowAlgorithmFile(a.AlgShortName.empty() ? std::string(FileName(a.AlgName)) : a.AlgShortName);
}

bool AlgorithmCommands::Save(AlgorithmForm form) {
  AlgorithmData& a = state_.algorithm;
  // Proposed and no more: what is not in the run is not named.
  const std::string proposed = a.AlgName.empty() ? ClockName(desk_.host.clock) : a.AlgName;
  const std::string named = dataBaseName_();
  const auto path =
      desk_.AskFile({.kind = FileRequest::Kind::Save,
                     .title = "Save algorithm data in...",
                     .filter = fmt::format(
                         "All files (*.*)|*.*|Algorithm files (*.alg)|*.alg|Named for data file ({0}.*)|{0}.*|", named),
                     .startName = proposed.ends_with(".alg") ? proposed : proposed + ".alg"});
  if (!path) return false;
  // The names are taken when the file stands: after a failure the run keeps those that the windows show.
  std::string text = AlgorithmText(a, form);
  desk_.Write(*path, text);
  a.LogName = ShortLogName(a.LogName);
  TakeFile(*path, std::move(text));
  ShowName();
  if (!KeepsGroups(a, form))
    desk_.Tell("Fuses of two letters",
               fmt::format("{} keeps only the last letter of a fuse: when it is loaded, or its model is bootstrapped, "
                           "other parameters will move together than now. A file that is saved from the ranking of "
                           "models keeps both letters.",
                           FileName(*path)),
               style::Exclamation);
  return true;
}

void AlgorithmCommands::TakeFile(const std::string& path, std::string text) {
  AlgorithmData& a = state_.algorithm;
  a.AlgName = path;
  a.AlgShortName = AlgorithmShortName(path, a.AlgShortName);
  lastText_ = std::move(text);
}

std::string AlgorithmCommands::TextOfFile() const {
  const std::string& file = state_.algorithm.AlgName;
  std::error_code unknown;
  if (!std::filesystem::is_regular_file(file, unknown)) return "";
  try {
    return ReadWholeFile(file);
  } catch (const RuntimeFailure&) {
    return lastText_;
  }
}

}  // namespace merlane
