#include "platform/passing_folder.h"

#include <fmt/format.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>

#include "base/runtime_failure.h"

namespace merlane {

PassingFolder::PassingFolder() {
  std::error_code none;
  const std::filesystem::path place = std::filesystem::temp_directory_path(none);
  if (none) throw RuntimeFailure("there is no folder for temporary files: set TMPDIR to one that can be written");
  path_ = (place / "merlane-XXXXXX").string();
  if (::mkdtemp(path_.data()) == nullptr)
    throw RuntimeFailure(fmt::format("cannot make a folder {}: {}", path_, std::strerror(errno)));
}

PassingFolder::~PassingFolder() {
  std::error_code left;
  std::filesystem::remove_all(path_, left);
}

}  // namespace merlane
