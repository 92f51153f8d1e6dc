#pragma once

#include <string>

namespace merlane {

/// Whether a file seems to be a table that has to be imported: a delimited text or a workbook of the new kind, and no
/// data file in fixed columns. Workbooks of the old kind are read as they are. False for what cannot be read.
bool NeedsImport(const std::string& path);

}  // namespace merlane
