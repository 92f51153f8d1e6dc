#pragma once

#include <string>

namespace merlane {

/// Whether a file seems to be a table that has to be imported: a delimited text, a workbook of the new kind, or one of
/// the old kind whose columns are not those of a data file in their order. False for a data file in fixed columns, and
/// for what cannot be read.
bool NeedsImport(const std::string& path);

}  // namespace merlane
