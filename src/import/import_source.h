#pragma once

#include <memory>
#include <string>
#include <vector>

#include "import/import_choices.h"
#include "import/sheet_text.h"
#include "platform/reading_progress.h"

namespace merlane {

/// The rows of a file as a text in UTF-8, and what somebody should know of how they were found, in sentences: letters
/// that may be others, and what a spreadsheet does not show of a sheet.
struct SourceText {
  std::string rows;
  std::vector<std::string> toLookAt;
};

/// A file that is to be imported: a delimited text, or a workbook (.xlsx or .xls) with its sheets.
class ImportSource {
 public:
  ImportSource() = default;
  /// Looks at a file. RuntimeFailure, naming it and what it is, when it cannot be read or is neither.
  explicit ImportSource(const std::string& path, const ReadingProgress& progress = {});

  bool IsWorkbook() const { return book_ != nullptr; }
  /// The names of a workbook's sheets in their order; none for a text.
  const std::vector<std::string>& Sheets() const { return sheets_; }

  /// Whether a sheet is hidden.
  bool IsHidden(const std::string& sheet) const;

  /// With the year that the sheet, or else the file, bears in its name.
  ImportChoices WithYear(ImportChoices choices) const;

  /// What the file seems to be; of a workbook, the first of its sheets that looks like data, or else the first that
  /// holds something. Hidden ones come last.
  ImportChoices Proposed(const ReadingProgress& progress = {}) const;
  /// What was chosen for another file, as far as it fits this one: columns are what those with the same headings were,
  /// and a workbook's sheet is the one of that name, or the one that is proposed. How a file is written is proposed
  /// anew where the choices are those of a workbook and this is a text or the reverse, where its letters cannot be
  /// meant as they were, and where another delimiter finds more of the columns.
  ImportChoices ForThis(const ImportChoices& kept, const ReadingProgress& progress = {}) const;
  /// Other sheets of a workbook that could be imported as well: those that have all columns that are used of the one
  /// chosen, and those that look like data by themselves. `choices` have the names of their columns.
  std::vector<std::string> SheetsAlike(const ImportChoices& choices, const ReadingProgress& progress = {}) const;

  /// The rows, whose text ImportRows and all that looks at columns take: a text file in the encoding that
  /// was chosen, or the sheet that was chosen with a line for each of its rows. The rows of a sheet are divided as
  /// `SheetDelimiter` tells, have a decimal point in their numbers, and dates as year-month-day. RuntimeFailure when
  /// the bytes are not of that encoding, or there is no such sheet, or it cannot be read.
  SourceText Text(const ImportChoices& choices, const ReadingProgress& progress = {}) const;

  /// A workbook that is open.
  class Book;

 private:
  /// The sheets, hidden ones last.
  std::vector<std::string> SheetsToTry() const;
  /// Choices for a text, with what they say of the way in which this one is written.
  ImportChoices AsWritten(ImportChoices kept, const ReadingProgress& progress) const;

  std::string path_;
  std::string bytes_;  // of a text
  std::shared_ptr<Book> book_;
  std::vector<std::string> sheets_;
};

}  // namespace merlane
