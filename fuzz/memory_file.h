#pragma once

#include <string>
#include <string_view>

namespace merlane::fuzz {

/// A file in memory alone, for readers that want a path.
class MemoryFile {
 public:
  MemoryFile();
  ~MemoryFile();
  MemoryFile(const MemoryFile&) = delete;
  MemoryFile& operator=(const MemoryFile&) = delete;

  /// Puts these bytes in place of what it holds.
  void Hold(std::string_view bytes);
  const std::string& Path() const { return path_; }

 private:
  int descriptor_;
  std::string path_;
};

}  // namespace merlane::fuzz
