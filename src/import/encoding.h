#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace merlane {

/// How the letters of a text file are written.
enum class Encoding { Utf8, Utf16, Latin1, MacRoman, Windows1250, Windows1251 };

/// What each is called, in that order.
const std::vector<std::string>& EncodingNames();

/// The encoding that a file seems to have.
Encoding ProposedEncoding(std::string_view bytes);

/// What somebody should know of the letters of a file in that encoding, in sentences: that they may be those of an old
/// Mac, or of Windows in another part of Europe, with a word that would be another.
std::vector<std::string> DoubtfulLetters(std::string_view bytes, Encoding encoding);

/// The text of a file in UTF-8, without the mark that may stand before it. UTF-16 without a mark has the byte order in
/// which Latin letters make sense. RuntimeFailure when the bytes are not of that encoding.
std::string Decoded(std::string_view bytes, Encoding encoding);

}  // namespace merlane
