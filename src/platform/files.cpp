#include "platform/files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "base/runtime_failure.h"

namespace merlane {
namespace {

/// An open file that closes itself.
class Descriptor {
 public:
  explicit Descriptor(int fd) : fd_(fd) {}
  ~Descriptor() {
    if (fd_ >= 0) ::close(fd_);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  int Get() const { return fd_; }

 private:
  int fd_;
};

[[noreturn]] void Fail(const char* verb, const std::string& path) {
  throw RuntimeFailure(fmt::format("cannot {} the file {}: {}", verb, path, std::strerror(errno)));
}

/// Permissions of the file to be replaced, or those a new file gets.
mode_t ModeFor(const std::string& path) {
  struct stat old {};
  if (::stat(path.c_str(), &old) == 0) return old.st_mode & 07777;
  const mode_t mask = ::umask(0);
  ::umask(mask);
  return 0666 & ~mask;
}

}  // namespace

std::string ReadWholeFile(const std::string& path) {
  const Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
  if (file.Get() < 0) Fail("open", path);
  struct stat info {};
  if (::fstat(file.Get(), &info) != 0) Fail("read", path);
  std::string bytes;
  if (S_ISREG(info.st_mode)) bytes.reserve(static_cast<std::size_t>(info.st_size));
  char buffer[1 << 16];
  for (;;) {
    const ssize_t got = ::read(file.Get(), buffer, sizeof buffer);
    if (got == 0) return bytes;
    if (got > 0)
      bytes.append(buffer, static_cast<std::size_t>(got));
    else if (errno != EINTR)
      Fail("read", path);
  }
}

void WriteWholeFile(const std::string& path, std::string_view bytes, bool lasting) {
  std::string temporary = path + ".XXXXXX";
  const Descriptor file(::mkstemp(temporary.data()));
  if (file.Get() < 0) Fail("write", path);
  const auto fail = [&] {
    const int reason = errno;
    ::unlink(temporary.c_str());
    errno = reason;
    Fail("write", path);
  };
  while (!bytes.empty()) {
    const ssize_t put = ::write(file.Get(), bytes.data(), bytes.size());
    if (put >= 0)
      bytes.remove_prefix(static_cast<std::size_t>(put));
    else if (errno != EINTR)
      fail();
  }
  if (::fchmod(file.Get(), ModeFor(path)) != 0 || (lasting && ::fsync(file.Get()) != 0)) fail();
  if (::rename(temporary.c_str(), path.c_str()) != 0) fail();
}

}  // namespace merlane
