#pragma once

#include <cstdint>
#include <string>

namespace merlane {

/// The objective that was reached last, and how the last minimisation ended.
struct Fit {
  std::string minimiser;  // "simplex" or "marquardt"; empty when there was none
  std::string ending;
  double objective = 0;            // of the last function call or minimisation from the menu, priors included
  std::int32_t functionCalls = 0;  // all evaluations
  std::int32_t iterations = 0;
  std::int32_t restarts = 0;  // of the simplex
};

}  // namespace merlane
