#pragma once

#include "platform/workbooks.h"

namespace merlane {

/// Workbooks of the .xls format, read with the FreeXL library.
class FreexlWorkbooks : public Workbooks {
 public:
  std::vector<Worksheet> Read(const std::string& path) override;
};

}  // namespace merlane
