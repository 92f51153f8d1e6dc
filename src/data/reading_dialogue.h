#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "control/run_state.h"
#include "data/brood_data.h"
#include "data/frm_xls_worksheets.h"
#include "data/reading_report.h"
#include "forms/desk.h"

namespace merlane {

/// Reads the data file of a run and tells how it went.
class ReadingDialogue {
 public:
  /// Keeps references to both.
  ReadingDialogue(Desk& desk, const RunFlags& flags) : desk_(desk), flags_(flags) {}

  /// Reads the file that `data` and the run's flags name into `data` or, in a bootstrap, the simulated data set that
  /// they hold beside those it was simulated from, whose visits' places it takes. False when nothing was read: then the
  /// data are without visits and the user knows. Raises EndProgram behind a fatal data error, unless the user would
  /// rather have the file imported.
  bool Read(BroodData& data);
  /// Whether the file that was read last seemed to be of another kind, and its import was asked for.
  bool ImportAsked() const { return importAsked_; }

  /// Turns a workbook into a text data file; none when the user cancelled.
  std::function<std::optional<FrmXlsWorksheets::Converted>(const std::string& path)> convertWorkbook;
  /// Says in passing why a workbook has left no data, which no message tells, and what is odd in data that were read.
  std::function<void(const std::string& text)> showStatus = [](const std::string&) {};

 private:
  void ReadText(std::string_view text, BroodData& data);
  /// The text file to be read; none when the user cancelled the choice of a worksheet.
  std::optional<std::string> FileToRead(BroodData& data);
  void TellSuccess(const BroodData& data);
  void TellFailure(const BroodData& data, const std::string& reason);
  void Tell(const Message& message);
  /// Tells what a reading came to, and offers the import where the file may be of another kind; true when that was
  /// asked for.
  bool TellOutcome(Message message);
  /// What is odd in the file, and in what a workbook was turned into; empty when nothing is.
  std::string Warnings() const;

  Desk& desk_;
  const RunFlags& flags_;
  ReadingReport report_;  // of the present reading
  bool isTable_ = false;  // the file is a workbook, or a text in UTF-16
  bool importAsked_ = false;
  std::optional<FrmXlsWorksheets::Converted> fromWorkbook_;  // the text file of the present reading, if it was made
};

}  // namespace merlane
