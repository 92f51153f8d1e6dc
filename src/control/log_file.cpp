#include "control/log_file.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <utility>

#include "base/runtime_failure.h"
#include "base/text.h"
#include "platform/descriptor.h"

namespace merlane {

void LogFile::Open(const std::string& path) {
  Close();
  // O_NONBLOCK: a pipe that nobody reads from shall not hold the program up.
  file_ = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_APPEND | O_NONBLOCK | O_CLOEXEC, 0666);
  if (file_ < 0) throw RuntimeFailure(fmt::format("cannot write the file {}: {}", path, std::strerror(errno)));
  path_ = path;
}

void LogFile::Write(std::string_view text) {
  if (!IsOpen() || lost_) return;
  const std::string reason = Append(WithCrLf(text));
  if (reason.empty()) return;
  lost_ = true;
  if (onLost)
    onLost(fmt::format("The log file {} can no longer be written: {}.\r\nThe minimization goes on without it.", path_,
                       reason));
}

void LogFile::Close() {
  if (file_ >= 0) ::close(std::exchange(file_, -1));
  path_.clear();
  lost_ = false;
}

std::string LogFile::Append(std::string_view bytes) const {
  // A file that has been removed can still be written to, but nobody will ever read it.
  struct stat info {};
  if (::fstat(file_, &info) == 0 && info.st_nlink == 0) return "it has been removed";
  if (!WriteAll(file_, bytes)) return std::strerror(errno);
  return {};
}

}  // namespace merlane
