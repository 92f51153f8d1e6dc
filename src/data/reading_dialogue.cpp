#include "data/reading_dialogue.h"

#include "base/failure_text.h"
#include "base/text.h"
#include "data/brood_reader.h"
#include "data/record_places.h"
#include "platform/files.h"

namespace merlane {
namespace {

bool IsWorkbook(const BroodData& data) { return LowerCase(data.DataExt) == "xls"; }

}  // namespace

bool ReadingDialogue::Read(BroodData& data) {
  data.ReadOK = false;
  std::string reason;
  try {
    if (flags_.ReadSimulatedFile) {
      const RecordPlaces original(data);
      ReadText(data.SimulatedText, data);
      original.GiveTo(data);
      data.ReadOK = true;
    } else if (const std::optional<std::string> file = FileToRead(data)) {
      ReadText(ReadWholeFile(*file), data);
      data.ReadOK = true;
    }
  } catch (const FatalDataError& fatal) {
    Tell(fatal.message);
    throw EndProgram{2};
  } catch (const std::exception& failure) {
    reason = FailureText(failure);
  }
  if (!data.ReadOK) {
    ForgetVisits(data);
    TellFailure(data, reason);
  } else if (!flags_.BootstrapMode) {
    Tell({"Analysis update", "Data read successfully - analysis can continue", style::Information});
  }
  return data.ReadOK;
}

void ReadingDialogue::ReadText(std::string_view text, BroodData& data) {
  ReadTextData(text, flags_.BootstrapMode, data, [this](const Message& m) { Tell(m); });
}

std::optional<std::string> ReadingDialogue::FileToRead(BroodData& data) {
  if (flags_.ReadOriginalFile && !flags_.BootstrapMode) {
    data.TextFileName = data.DataFileName;
    if (IsWorkbook(data)) {
      const auto converted = convertWorkbook(data.DataFileName);
      if (!converted) return std::nullopt;
      data.TextFileName = converted->TextFileName;
      data.SheetName = converted->SheetName;
    }
  }
  return data.TextFileName;
}

void ReadingDialogue::TellFailure(const BroodData& data, const std::string& reason) {
  if (IsWorkbook(data)) {
    showStatus("No data: " + (reason.empty() ? "no worksheet was chosen" : reason));
    if (!reason.empty()) desk_.host.windows.OnToldFailure();
  } else {
    desk_.TellFailure("Problem finding data file or reading data",
                      "Most likely the file doesn't exist or is incorrectly formatted", style::Critical, reason);
  }
}

void ReadingDialogue::Tell(const Message& message) {
  desk_.Tell(message.title, message.text, message.style, message.details);
}

}  // namespace merlane
