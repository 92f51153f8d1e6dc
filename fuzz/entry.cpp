// The entry of one target, of the name that the build gives.
#include <cstddef>
#include <cstdint>

#include "targets.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  merlane::fuzz::MERLANE_FUZZ_TARGET({reinterpret_cast<const char*>(bytes), size});
  return 0;
}
