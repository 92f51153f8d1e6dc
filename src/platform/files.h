#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace merlane {

/// The largest file that is read: beyond any data that the program could hold.
inline constexpr std::int64_t MostBytesRead = std::int64_t{2} << 30;

/// RuntimeFailure, naming the file and the reason, unless `path` leads to a regular file of `most` bytes or fewer. To
/// open anything else may block for ever, or never come to an end.
void RefuseAllButFiles(const std::string& path, std::int64_t most = MostBytesRead);

/// All bytes of a regular file. RuntimeFailure, naming the file and the reason, when it is not there, is something
/// else, is larger than `most` bytes or cannot be read.
std::string ReadWholeFile(const std::string& path, std::int64_t most = MostBytesRead);

/// Writes a regular file whole; symbolic links are followed, anything but a file is refused. It goes to a temporary
/// name in the same folder and is renamed into place, so that a full disk or a missing folder leaves an old file as it
/// was. Where that cannot be had (a folder in which nothing can be made, a file system that gives no permissions), a
/// file that is there already is written over behind a copy in the system's temporary folder, from which it is put back
/// when that fails. A `lasting` file survives a power cut right behind the call; one that can be made again need not,
/// and is written many times faster. RuntimeFailure, naming the file and the reason.
void WriteWholeFile(const std::string& path, std::string_view bytes, bool lasting = true);

}  // namespace merlane
