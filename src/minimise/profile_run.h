#pragma once

#include <cstdint>

namespace merlane {

/// What a likelihood profile tells the minimiser that works on one of its points, and how it is told to end.
struct ProfileRun {
  std::int16_t ProfilePoint = 0;
  std::int16_t ProfilePoints = 0;
  bool QuitAsked = false;  // set when the user quits the procedure: the profile ends with its last completed point
};

}  // namespace merlane
