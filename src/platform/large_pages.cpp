#include "platform/large_pages.h"

#ifdef __linux__
#include <sys/mman.h>
#endif

#include <cstdint>

namespace merlane {

void PreferLargePages([[maybe_unused]] const void* begin, [[maybe_unused]] std::size_t size) {
#ifdef MADV_HUGEPAGE
  constexpr std::uintptr_t LargePage = 2 << 20;
  const auto address = reinterpret_cast<std::uintptr_t>(begin);
  const std::uintptr_t first = (address + LargePage - 1) / LargePage * LargePage;
  const std::uintptr_t end = (address + size) / LargePage * LargePage;
  if (first < end) ::madvise(reinterpret_cast<void*>(first), end - first, MADV_HUGEPAGE);
#endif
}

}  // namespace merlane
