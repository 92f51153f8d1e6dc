#pragma once

#include <QString>
#include <string>

namespace merlane {

/// The program's texts are UTF-8; one that is not, such as a tag code from an old data file, is taken as Latin-1.
QString ToQt(const std::string& text);
std::string FromQt(const QString& text);

/// A caption as a person reads it on a button: runs of blanks, which once did the layout, become one blank or, where
/// they are long, the end of a line.
QString Caption(const std::string& caption);

}  // namespace merlane
