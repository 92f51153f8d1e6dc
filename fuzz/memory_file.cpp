#include "memory_file.h"

#include <sys/mman.h>
#include <unistd.h>

#include "targets.h"

namespace merlane::fuzz {

MemoryFile::MemoryFile()
    : descriptor_(memfd_create("fuzzed", MFD_CLOEXEC)), path_("/proc/self/fd/" + std::to_string(descriptor_)) {
  Require(descriptor_ >= 0, "there is a file in memory");
}

MemoryFile::~MemoryFile() { close(descriptor_); }

void MemoryFile::Hold(std::string_view bytes) {
  Require(ftruncate(descriptor_, 0) == 0, "the file in memory is emptied");
  Require(pwrite(descriptor_, bytes.data(), bytes.size(), 0) == static_cast<ssize_t>(bytes.size()),
          "the file in memory takes all bytes");
}

}  // namespace merlane::fuzz
