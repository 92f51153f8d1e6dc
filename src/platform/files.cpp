#include "platform/files.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "base/runtime_failure.h"
#include "platform/descriptor.h"

namespace merlane {
namespace {

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
  if (!ReadAll(file.Get(), bytes)) Fail("read", path);
  return bytes;
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
  if (!WriteAll(file.Get(), bytes)) fail();
  if (::fchmod(file.Get(), ModeFor(path)) != 0 || (lasting && ::fsync(file.Get()) != 0)) fail();
  if (::rename(temporary.c_str(), path.c_str()) != 0) fail();
}

}  // namespace merlane
