#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace merlane {

/// A text field of that width with the value flush right; a longer value keeps only its leftmost characters.
std::string RightSet(std::string_view value, int width);

/// The text without blanks (the space character alone) at both ends.
std::string_view Trim(std::string_view text);

/// The text with the 26 letters made capitals or small ones; all other bytes stay.
std::string UpperCase(std::string_view text);
std::string LowerCase(std::string_view text);

/// Columns `first` to `last` of a line, counted from 1, as far as the line has them.
std::string_view Columns(std::string_view line, int first, int last);

/// The last `count` characters, or all when there are fewer.
std::string_view Rightmost(std::string_view text, int count);

/// The lines of a text whose lines end with CR LF, LF or CR; a last line without an end counts.
std::vector<std::string> Lines(std::string_view text);

/// The text with each line end, whether CR LF, LF or CR, made a CR LF: how every file that the program writes ends its
/// lines.
std::string WithCrLf(std::string_view text);

/// The bytes of the UTF-8 character that begins the text, by RFC 3629; 0 when none does. The text is not empty.
std::size_t Utf8Length(std::string_view text);

/// A text of unknown make as UTF-8: texts of the program, paths and what people type are UTF-8 and come back as they
/// are; one that is not, because a data file put single bytes into it, is taken as Latin-1.
std::string Utf8(std::string_view text);

/// The part of a path behind the last slash or backslash; the whole when there is none.
std::string_view FileName(std::string_view path);

}  // namespace merlane
