#pragma once

#include <cstddef>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace merlane {

/// What a cell of a worksheet holds: nothing, a number or a text.
using WorkbookCell = std::variant<std::monostate, double, std::string>;

/// What formats show of the numbers of a row where that is more than the number, such as "007" or "N03", each with its
/// place among the cells, from 0, in their order.
using ShownNumbers = std::vector<std::pair<std::size_t, std::string>>;

/// What a spreadsheet does not show of a worksheet, or shows as struck out. Rows and columns are counted from 1.
struct HiddenParts {
  bool sheet = false;                      // nothing of it
  int rows = 0, firstRow = 0;              // of those that hold something
  std::vector<int> columns;                // of those that can hold something
  int struckRows = 0, firstStruckRow = 0;  // of those with a cell whose contents are struck out

  bool operator==(const HiddenParts&) const = default;
};

/// One worksheet: its name and its used range, row by row; all rows are equally long. A sheet without contents has no
/// rows.
struct Worksheet {
  std::string name;
  std::vector<std::vector<WorkbookCell>> rows;
  unsigned firstRow = 1;                 // of the sheet: that with which the used range begins
  std::vector<ShownNumbers> shown = {};  // of the rows
  HiddenParts hidden = {};
};

/// Reads workbooks for the program.
class Workbooks {
 public:
  virtual ~Workbooks() = default;
  /// All worksheets of a workbook in their order. RuntimeFailure when the file is no workbook, is cut short or is
  /// encrypted.
  virtual std::vector<Worksheet> Read(const std::string& path) = 0;
};

}  // namespace merlane
