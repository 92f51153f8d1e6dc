#pragma once

#include <string>
#include <vector>

#include "import/delimited_text.h"
#include "platform/workbooks.h"

namespace merlane {

/// What stands between the cells of a row where a worksheet is a text.
inline constexpr Delimiter SheetDelimiter = Delimiter::Comma;

/// A worksheet as a delimited text: each row is the line of its number, so that what is told of a line is told of the
/// row. Numbers have a decimal point and the 15 digits that a spreadsheet keeps; what a format shows of one where that
/// is more stands behind it and a zero byte, which no text holds.
class SheetText {
 public:
  /// Adds a row that is behind all others. RuntimeFailure when the text becomes too large to be handled.
  void Add(int row, const std::vector<WorkbookCell>& cells, const ShownNumbers& shown);
  const std::string& Text() const { return text_; }

 private:
  void AddCell(const WorkbookCell& cell, const std::string* shown);

  std::string text_;
  int lines_ = 0;
};

}  // namespace merlane
