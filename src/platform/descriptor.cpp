#include "platform/descriptor.h"

#include <unistd.h>

#include <cerrno>

namespace merlane {

Descriptor::~Descriptor() {
  if (fd_ >= 0) ::close(fd_);
}

bool ReadAll(int fd, std::string& bytes) {
  char buffer[1 << 16];
  for (;;) {
    const ssize_t got = ::read(fd, buffer, sizeof buffer);
    if (got == 0) return true;
    if (got > 0)
      bytes.append(buffer, static_cast<std::size_t>(got));
    else if (errno != EINTR)
      return false;
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

}  // namespace merlane
