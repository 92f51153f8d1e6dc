#pragma once

#include <cstddef>

namespace merlane {

/// Asks the system to hold a block that is about to be filled in few large pages, where it has such: to touch many
/// small ones for the first time takes longer than to fill them. Changes nothing else, and nothing of a small block.
void PreferLargePages(const void* begin, std::size_t size);

}  // namespace merlane
