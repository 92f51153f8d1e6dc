#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "platform/reading_progress.h"

namespace merlane {

/// What a process of its own may take.
struct ApartLimits {
  std::uint64_t bytes = std::uint64_t{512} << 20;  // of memory, beside what this process holds already
  unsigned processorSeconds = 60;
  unsigned seconds = 120;  // by the clock on the wall
};

/// Runs `work` in a process of its own and returns the bytes that it made. For libraries that read files which may be
/// damaged: what they do to memory stays there. RuntimeFailure with the text of an exception that `work` ended in, or
/// when its process died, took more memory than `most` or more time than a reading can take. Whoever waits has turns by
/// `progress`, which is told 0; when it throws, the other process ends.
std::string RunApart(const std::function<std::string()>& work, const ApartLimits& most = {},
                     const ReadingProgress& progress = {});

}  // namespace merlane
