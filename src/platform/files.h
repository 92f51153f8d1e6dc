#pragma once

#include <string>
#include <string_view>

namespace merlane {

/// All bytes of a file. RuntimeFailure, naming the file and the reason, when it is not there, is a folder or cannot be
/// read.
std::string ReadWholeFile(const std::string& path);

/// Writes a file whole: to a temporary name in the same folder, then renamed into place, so that a full disk or a
/// missing folder leaves an old file as it was. A `lasting` file survives a power cut right behind the call; one that
/// can be made again need not, and is written many times faster. RuntimeFailure, naming the file and the reason.
void WriteWholeFile(const std::string& path, std::string_view bytes, bool lasting = true);

}  // namespace merlane
