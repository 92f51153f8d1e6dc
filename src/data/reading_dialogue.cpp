#include "data/reading_dialogue.h"

#include <fmt/format.h>

#include <algorithm>

#include "base/failure_text.h"
#include "base/runtime_failure.h"
#include "base/text.h"
#include "data/brood_reader.h"
#include "data/record_places.h"
#include "platform/file_kind.h"
#include "platform/files.h"

namespace merlane {
namespace {

bool IsWorkbook(const BroodData& data) { return LowerCase(data.DataExt) == "xls"; }

/// What failed, and below it what else is known of the file.
std::string Joined(const std::string& reason, const std::string& warnings) {
  return warnings.empty() ? reason : reason + "\r\n" + warnings.substr(0, warnings.size() - 2);
}

}  // namespace

bool ReadingDialogue::Read(BroodData& data) {
  data.ReadOK = isTable_ = importAsked_ = false;
  report_ = {};
  std::string reason;
  try {
    if (flags_.ReadSimulatedFile) {
      const RecordPlaces original(data);
      ReadText(data.SimulatedText, data);
      original.GiveTo(data);
      data.ReadOK = true;
    } else if (const std::optional<std::string> file = FileToRead(data)) {
      const std::string bytes = ReadWholeFile(*file);
      if (const std::string kind = ForeignKind(bytes); !kind.empty()) {
        isTable_ = kind == Utf16Text || kind == NewWorkbook || kind == OldWorkbook;
        throw RuntimeFailure(fmt::format("{} is {}, not a text in fixed columns", *file, kind));
      }
      ReadText(bytes, data);
      data.ReadOK = true;
    }
  } catch (FatalDataError& fatal) {
    fatal.message.details = Joined(fatal.message.details, Warnings());
    if (!TellOutcome(fatal.message)) throw EndProgram{2};
    ForgetVisits(data);
    return false;
  } catch (const std::exception& failure) {
    reason = FailureText(failure);
  }
  if (!data.ReadOK) {
    ForgetVisits(data);
    TellFailure(data, reason);
  } else if (!flags_.BootstrapMode) {
    TellSuccess(data);
  }
  return data.ReadOK;
}

void ReadingDialogue::ReadText(std::string_view text, BroodData& data) {
  ReadTextData(
      text, flags_.BootstrapMode, data, [this](const Message& m) { Tell(m); }, report_);
}

std::optional<std::string> ReadingDialogue::FileToRead(BroodData& data) {
  if (!flags_.BootstrapMode) {
    fromWorkbook_.reset();
    data.TextFileName = data.DataFileName;
    if (IsWorkbook(data)) {
      fromWorkbook_ = convertWorkbook(data.DataFileName);
      if (!fromWorkbook_) return std::nullopt;
      data.TextFileName = fromWorkbook_->TextFileName;
      data.SheetName = fromWorkbook_->SheetName;
    }
  }
  return data.TextFileName;
}

std::string ReadingDialogue::Warnings() const {
  constexpr std::size_t MostShown = 5;
  std::string text = report_.oddities.Details(report_.Lines);
  if (!fromWorkbook_ || fromWorkbook_->changes.empty()) return text;
  const std::vector<std::string>& changes = fromWorkbook_->changes;
  text += changes.size() == 1
              ? "1 cell of the worksheet could not be written as it is:\r\n"
              : fmt::format("{} cells of the worksheet could not be written as they are:\r\n", changes.size());
  for (std::size_t i = 0; i < std::min(changes.size(), MostShown); ++i) text += "  " + changes[i] + "\r\n";
  if (changes.size() > MostShown) text += fmt::format("  and {} more\r\n", changes.size() - MostShown);
  return text;
}

void ReadingDialogue::TellSuccess(const BroodData& data) {
  std::string details = Warnings() + WhatWasRead(data, report_);
  if (fromWorkbook_)
    details += fmt::format("\r\nWorksheet \"{}\", written as text to {}, whose lines are those told here",
                           fromWorkbook_->SheetName, fromWorkbook_->TextFileName);
  showStatus(report_.oddities.InPassing());
  TellOutcome({"Analysis update", "Data read successfully - analysis can continue", style::Information, details});
}

void ReadingDialogue::TellFailure(const BroodData& data, const std::string& reason) {
  if (IsWorkbook(data)) {
    showStatus("No data: " + (reason.empty() ? "no worksheet was chosen" : reason));
    if (!reason.empty()) desk_.host.windows.OnToldFailure();
  } else if (!TellOutcome({"Problem finding data file or reading data",
                           "Most likely the file doesn't exist or is incorrectly formatted", style::Critical,
                           Joined(reason, Warnings())})) {
    desk_.host.windows.OnToldFailure();
  }
}

bool ReadingDialogue::TellOutcome(Message message) {
  const bool mayBeTable =
      isTable_ || report_.oddities.Misdivided() || (fromWorkbook_ && !fromWorkbook_->changes.empty());
  if (mayBeTable && !flags_.BootstrapMode) message.offer = "Import...";
  return importAsked_ = desk_.TellAndOffer(message);
}

void ReadingDialogue::Tell(const Message& message) {
  desk_.Tell(message.title, message.text, message.style, message.details);
}

}  // namespace merlane
