// Delimited texts that are imported.
#include "imported_file.h"
#include "memory_file.h"
#include "targets.h"

namespace merlane::fuzz {

void Delimited(std::string_view bytes) {
  static MemoryFile file;
  file.Hold(bytes);
  ImportAsProposed(file.Path());
}

}  // namespace merlane::fuzz
