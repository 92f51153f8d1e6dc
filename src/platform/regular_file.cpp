#include "platform/regular_file.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <utility>

#include "base/runtime_failure.h"
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

int Opened(const std::string& path, std::int64_t most) {
  RefuseAllButFiles(path, most);
  const int file = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);  // it may be another one by now
  if (file < 0) Fail("open", path, std::strerror(errno));
  return file;
}

}  // namespace

void RefuseAllButFiles(const std::string& path, std::int64_t most) {
  struct stat info {};
  if (::stat(path.c_str(), &info) != 0) Fail("open", path, std::strerror(errno));
  Refuse(path, info, most);
}

std::string ReadWholeFile(const std::string& path, std::int64_t most) { return RegularFile(path, most).Whole(); }

RegularFile::RegularFile(std::string path, std::int64_t most)
    : path_(std::move(path)), most_(most), file_(Opened(path_, most)) {
  struct stat info {};
  if (::fstat(file_.Get(), &info) != 0) Fail("read", path_, std::strerror(errno));
  Refuse(path_, info, most);
  size_ = static_cast<std::size_t>(info.st_size);
}

std::string RegularFile::Whole() const {
  std::string bytes;
  bytes.reserve(size_);
  PreferLargePages(bytes.data(), bytes.capacity());
  if (!ReadAll(file_.Get(), bytes, static_cast<std::size_t>(most_))) Fail("read", path_, std::strerror(errno));
  return bytes;
}

void RegularFile::Read(std::size_t begin, std::size_t size, std::string& bytes) const {
  bytes.resize(size);
  std::size_t filled = 0;
  while (filled < size) {
    const ssize_t got = ::pread(file_.Get(), bytes.data() + filled, size - filled, static_cast<off_t>(begin + filled));
    if (got == 0) break;
    if (got > 0)
      filled += static_cast<std::size_t>(got);
    else if (errno != EINTR)
      Fail("read", path_, std::strerror(errno));
  }
  bytes.resize(filled);
}

}  // namespace merlane
