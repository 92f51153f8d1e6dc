#pragma once

#include <memory>
#include <string>
#include <vector>

namespace merlane {

/// One worksheet: its name and the cells of its used range as rows of text and numbers, turned into text as the cell
/// holds them.
struct Worksheet {
  std::string name;
  std::vector<std::vector<std::string>> rows;
};

/// Reads workbooks for the program. RuntimeFailure when the file is no workbook, is cut short or is encrypted.
class Workbooks {
 public:
  virtual ~Workbooks() = default;
  virtual std::vector<Worksheet> Read(const std::string& path) = 0;
};

}  // namespace merlane
