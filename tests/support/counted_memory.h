#pragma once

#include <atomic>

namespace merlane::test {

// A test program that is linked with this counts what it allocates, and can be without memory.

/// Requests for memory so far, of all threads.
extern std::atomic<long> allocations;
/// The request, in that count, for which there is no memory; none by default.
extern std::atomic<long> failing;

}  // namespace merlane::test
