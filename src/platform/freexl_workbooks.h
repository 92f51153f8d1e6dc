#pragma once

#include "platform/reading_progress.h"
#include "platform/workbooks.h"

namespace merlane {

/// Workbooks of the .xls format, read with the FreeXL library.
class FreexlWorkbooks : public Workbooks {
 public:
  std::vector<Worksheet> Read(const std::string& path) override { return Read(path, {}); }
  /// The same, with turns for whoever waits; how much is done is not known, and told as 0.
  std::vector<Worksheet> Read(const std::string& path, const ReadingProgress& progress);
};

}  // namespace merlane
