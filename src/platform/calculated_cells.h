#pragma once

#include <map>
#include <string>
#include <string_view>
#include <utility>

#include "platform/workbooks.h"

namespace merlane {

/// Cells of a worksheet by row and column, from 0.
using CellsByPlace = std::map<std::pair<unsigned, unsigned>, WorkbookCell>;

/// The cells of a workbook of the old kind (.xls) whose values come from formulas, and its truth values and errors, by
/// the names of their sheets: FreeXL passes over all of these. A formula has the value that was kept with it; a number
/// with the format of a date is the text that `DateText` makes of it, a truth value "TRUE" or "FALSE", an error its
/// text, such as "#N/A". RuntimeFailure when the file is damaged.
std::map<std::string, CellsByPlace> CalculatedCells(std::string_view file);

}  // namespace merlane
