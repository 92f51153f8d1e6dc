#pragma once

#include <string>
#include <variant>
#include <vector>

namespace merlane {

/// What a cell of a worksheet holds: nothing, a number or a text.
using WorkbookCell = std::variant<std::monostate, double, std::string>;

/// One worksheet: its name and its used range, row by row; all rows are equally long. A sheet without contents has no
/// rows.
struct Worksheet {
  std::string name;
  std::vector<std::vector<WorkbookCell>> rows;
  unsigned firstRow = 1;  // of the sheet: that with which the used range begins
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
