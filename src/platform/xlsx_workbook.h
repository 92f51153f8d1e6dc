#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/cell_dates.h"
#include "platform/reading_progress.h"
#include "platform/workbooks.h"
#include "platform/zip_archive.h"

namespace merlane {

/// A number format of cells.
struct CellFormat {
  Shows shows = Shows::Number;
  std::string code;  // of a number, as far as it is known
  bool isStruckOut = false;
};

/// A row of a worksheet, counted from 1.
struct WorkbookRow {
  int number = 0;
  std::vector<WorkbookCell> cells;
  ShownNumbers shown;
};

/// An Excel workbook of the new kind (.xlsx), whose sheets are read one at a time and a row at a time: a sheet is never
/// in memory as a whole. Bears whatever the file holds; what it unpacks to is bounded.
class XlsxWorkbook {
 public:
  /// RuntimeFailure, naming the file, when it is no such workbook, is encrypted, cut short or damaged.
  explicit XlsxWorkbook(const std::string& path);

  /// The names of the worksheets in their order.
  std::vector<std::string> Sheets() const;
  /// Whether a sheet of that name is hidden.
  bool IsHidden(const std::string& sheet) const;

  /// Takes a row that has a cell with something in it; cells behind the last such one are left away.
  using RowTaker = std::function<void(const WorkbookRow& row)>;
  /// Reads a sheet, its rows in their order; returns what a spreadsheet does not show of it. A number with the format
  /// of a date is the text that `DateText` makes of it; a formula is the value that was kept with it, or, where none
  /// was, its own text behind a "="; a truth value is "TRUE" or "FALSE", an error its text, such as "#N/A".
  /// RuntimeFailure, naming the file, when the sheet cannot be read or there is none of that name.
  HiddenParts Read(const std::string& sheet, const RowTaker& take, const ReadingProgress& progress = {});

 private:
  struct Part {
    std::string name, file;
    bool isHidden = false;
  };
  void Open();
  /// What the sheets share: texts, and what formats show.
  void ReadShared(const ReadingProgress& progress);

  std::string path_;
  std::optional<ZipArchive> archive_;
  std::vector<Part> sheets_;
  std::string stylesFile_, stringsFile_;
  bool from1904_ = false;
  std::vector<CellFormat> formats_;
  std::vector<std::string> strings_;
  bool sharedRead_ = false;
};

}  // namespace merlane
