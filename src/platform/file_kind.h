#pragma once

#include <string>
#include <string_view>

namespace merlane {

// What a file may be that is no text in fixed columns, and can be read all the same.
inline constexpr std::string_view Utf16Text = "a text in UTF-16";
inline constexpr std::string_view OldWorkbook = "an Excel workbook of the old kind (.xls)";
inline constexpr std::string_view NewWorkbook = "an Excel workbook of the new kind (.xlsx)";

/// What a file is, in words such as "an OpenDocument spreadsheet (.ods)", when its bytes show that it is no text in
/// single bytes or UTF-8, and whether it is cut short. Empty when it may be one.
std::string ForeignKind(std::string_view bytes);

/// Whether the file is a workbook of the old kind (.xls) or another document in the same wrapping.
bool IsCompoundDocument(std::string_view bytes);

}  // namespace merlane
