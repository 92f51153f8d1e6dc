#pragma once

#include <functional>
#include <optional>
#include <string>

#include "control/run_state.h"
#include "data/brood_data.h"
#include "data/frm_xls_worksheets.h"
#include "forms/desk.h"

namespace merlane {

/// Reads the data file of a run and tells how it went.
class ReadingDialogue {
 public:
  /// Keeps references to both.
  ReadingDialogue(Desk& desk, const RunFlags& flags) : desk_(desk), flags_(flags) {}

  /// Reads the file that `data` and the run's flags name into `data`, which hold the data that a simulated file was
  /// written from: its visits take their places. False when nothing was read: then the data are
  /// without visits and the user knows, a workbook's in passing. Raises EndProgram behind a fatal data error.
  bool Read(BroodData& data);

  /// Turns a workbook into a text data file; none when the user cancelled.
  std::function<std::optional<FrmXlsWorksheets::Converted>(const std::string& path)> convertWorkbook;
  /// Says in passing why a workbook has left no data, which no message tells.
  std::function<void(const std::string& text)> showStatus = [](const std::string&) {};

 private:
  /// The text file to be read; none when the user cancelled the choice of a worksheet.
  std::optional<std::string> FileToRead(BroodData& data);
  void TellFailure(const BroodData& data, const std::string& reason);
  void Tell(const Message& message);

  Desk& desk_;
  const RunFlags& flags_;
};

}  // namespace merlane
