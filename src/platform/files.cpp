#include "platform/files.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstring>

#include "base/runtime_failure.h"
#include "platform/descriptor.h"
#include "platform/large_pages.h"

namespace merlane {
namespace {

[[noreturn]] void Fail(const char* verb, const std::string& path, const std::string& reason) {
  throw RuntimeFailure(fmt::format("cannot {} the file {}: {}", verb, path, reason));
}

void Refuse(const std::string& path, const struct stat& info, std::int64_t most) {
  if (!S_ISREG(info.st_mode)) Fail("read", path, KindInWords(info.st_mode));
  if (info.st_size > most)
    Fail("read", path, fmt::format("it has {} bytes, and no such file has more than {}", info.st_size, most));
}

}  // namespace

void RefuseAllButFiles(const std::string& path, std::int64_t most) {
  struct stat info {};
  if (::stat(path.c_str(), &info) != 0) Fail("open", path, std::strerror(errno));
  Refuse(path, info, most);
}

std::string ReadWholeFile(const std::string& path, std::int64_t most) {
  RefuseAllButFiles(path, most);
  const Descriptor file(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));  // it may be another one by now
  if (file.Get() < 0) Fail("open", path, std::strerror(errno));
  struct stat info {};
  if (::fstat(file.Get(), &info) != 0) Fail("read", path, std::strerror(errno));
  Refuse(path, info, most);
  std::string bytes;
  bytes.reserve(static_cast<std::size_t>(info.st_size));
  PreferLargePages(bytes.data(), bytes.capacity());
  if (!ReadAll(file.Get(), bytes, static_cast<std::size_t>(most))) Fail("read", path, std::strerror(errno));
  return bytes;
}

}  // namespace merlane
