#include "bootstrap/growing_file.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <utility>

#include "base/runtime_failure.h"
#include "platform/descriptor.h"

namespace merlane {
namespace {

[[noreturn]] void Fail(const std::string& path) {
  throw RuntimeFailure(fmt::format("cannot write the file {}: {}", path, std::strerror(errno)));
}

}  // namespace

GrowingFile::GrowingFile(std::string folder, std::string name) : folder_(std::move(folder)), name_(std::move(name)) {}

GrowingFile::~GrowingFile() {
  if (file_ >= 0) ::close(file_);
}

void GrowingFile::Append(std::string_view text) {
  if (file_ < 0) Make();
  if (!WriteAll(file_, text)) Fail(path_);
}

void GrowingFile::Make() {
  const std::filesystem::path name(name_);
  std::string path = folder_ + "/" + name_;
  for (int number = 2;; ++number) {
    file_ = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_APPEND | O_CLOEXEC, 0666);
    if (file_ >= 0) break;
    if (errno != EEXIST) Fail(path);
    path = fmt::format("{}/{}_{}{}", folder_, name.stem().string(), number, name.extension().string());
  }
  path_ = std::move(path);  // which needs no memory: a file that stands is known
}

void GrowingFile::Remove() {
  if (file_ >= 0) ::close(std::exchange(file_, -1));
  if (!path_.empty()) ::unlink(std::exchange(path_, {}).c_str());
}

}  // namespace merlane
