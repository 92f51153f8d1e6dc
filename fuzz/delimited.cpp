// Delimited texts that are imported.
#include "import_as_proposed.h"
#include "memory_file.h"
#include "targets.h"

namespace merlane::fuzz {

void Delimited(std::string_view bytes) {
  static MemoryFile file;
  file.Hold(bytes);
  ImportAsProposed(file.Path());
}

}  // namespace merlane::fuzz
