#include "platform/descriptor.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace merlane {

Descriptor::~Descriptor() {
  if (fd_ >= 0) ::close(fd_);
}

bool ReadAll(int fd, std::string& bytes, std::size_t most) {
  char buffer[1 << 16];
  struct stat about {};
  if (::fstat(fd, &about) == 0 && S_ISREG(about.st_mode))  // lest it be copied each time it has grown
    bytes.reserve(bytes.size() + std::min(static_cast<std::size_t>(about.st_size), most - bytes.size()));
  for (;;) {
    const ssize_t got = ::read(fd, buffer, sizeof buffer);
    if (got == 0) return true;
    if (got < 0) {
      if (errno == EINTR) continue;
      return false;
    }
    if (static_cast<std::size_t>(got) > most - bytes.size()) {
      errno = EFBIG;
      return false;
    }
    bytes.append(buffer, static_cast<std::size_t>(got));
  }
}

bool WriteAll(int fd, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t put = ::write(fd, bytes.data(), bytes.size());
    if (put >= 0)
      bytes.remove_prefix(static_cast<std::size_t>(put));
    else if (errno != EINTR)
      return false;
  }
  return true;
}

std::string KindInWords(mode_t mode) {
  if (S_ISDIR(mode)) return std::strerror(EISDIR);
  if (S_ISFIFO(mode)) return "it is a pipe between programs and no file";
  if (S_ISSOCK(mode)) return "it is a socket and no file";
  return "it is a device and no file";
}

}  // namespace merlane
