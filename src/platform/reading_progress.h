#pragma once

#include <functional>

namespace merlane {

/// Told at times how much of a long work is done, from 0 to 1; empty where nobody wants to know. Whoever wants the work
/// to end throws out of it, `Cancelled` for instance: that comes through, and nothing of the work is left behind.
using ReadingProgress = std::function<void(double done)>;

/// Thrown out of a `ReadingProgress` when the user cancels.
struct Cancelled {};

}  // namespace merlane
