#pragma once

#include <functional>

#include "platform/window_system.h"

namespace merlane {

/// How and for whom the objective is evaluated.
struct EvaluationSetting {
  bool OneCallRun = false;                   // the run of "1 Function call", which checks hypothesis and data
  bool SimulationMode = false;               // expected numbers only, there are no counts to judge
  bool BootstrapMode = false;                // an expected number of 0 stays 0
  std::function<void(const Message&)> tell;  // a message for the user; the evaluation goes on behind it
  std::function<void(long)> turn;            // so many turns for the user interface, one per visit; may be empty
};

}  // namespace merlane
