#pragma once

#include <map>
#include <set>
#include <string>
#include <string_view>
#include <utility>

#include "platform/workbooks.h"

namespace merlane {

/// Row and column of a cell, from 0.
using CellPlace = std::pair<unsigned, unsigned>;

/// What a worksheet of a workbook of the old kind (.xls) has that FreeXL does not tell. Rows and columns from 0.
struct FreexlOmissions {
  /// The cells whose values come from formulas, truth values and errors, and numbers with the format of a date, not all
  /// of which the library knows. A formula has the value that was kept with it; a date is the text that `DateText`
  /// makes of its number, a truth value "TRUE" or "FALSE", an error its text, such as "#N/A".
  std::map<CellPlace, WorkbookCell> cells;
  /// What formats show of numbers where that is more than the number, by row.
  std::map<unsigned, ShownNumbers> shown;
  bool isHidden = false;
  std::set<unsigned> hiddenRows, hiddenColumns;
  std::set<unsigned> struckRows;  // with a cell that is struck out
};

/// That of each worksheet, by its name. RuntimeFailure when the file is damaged.
std::map<std::string, FreexlOmissions> FreexlOmissionsOf(std::string_view file);

}  // namespace merlane
