#pragma once

#include <QString>
#include <string>

namespace merlane {

/// Texts are UTF-8. One that is not, because a data file put single bytes into it, is taken as Latin-1.
QString ToQt(const std::string& text);
std::string FromQt(const QString& text);
/// The edited form of a text that was shown before, in the make of that text as far as it has the characters.
std::string FromQt(const QString& edited, const std::string& shown);

/// A caption as a person reads it on a button: runs of blanks, which once did the layout, become one blank or, where
/// they are long, the end of a line.
QString Caption(const std::string& caption);

}  // namespace merlane
