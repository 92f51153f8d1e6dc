#include "support/counted_memory.h"

#include <cstdlib>
#include <new>

namespace merlane::test {

std::atomic<long> allocations = 0;
std::atomic<long> failing = -1;

}  // namespace merlane::test

// All other forms of new and delete end in these. Not inlined, lest the compiler take malloc and delete for a mismatch.
[[gnu::noinline]] void* operator new(std::size_t size) {
  if (++merlane::test::allocations == merlane::test::failing) throw std::bad_alloc();
  if (void* memory = std::malloc(size == 0 ? 1 : size)) return memory;
  throw std::bad_alloc();
}
[[gnu::noinline]] void operator delete(void* memory) noexcept { std::free(memory); }
[[gnu::noinline]] void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
