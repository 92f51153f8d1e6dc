#pragma once

#include <functional>
#include <string>

namespace merlane {

/// Runs `work` in a process of its own and returns the bytes that it made. For libraries that read files which may be
/// damaged: what they do to memory stays there. RuntimeFailure with the text of an exception that `work` ended in, or
/// when its process died or used up a minute of processor time.
std::string RunApart(const std::function<std::string()>& work);

}  // namespace merlane
