#pragma once

#include <functional>
#include <string>

#include "platform/window_system.h"

namespace merlane {

/// What a long calculation tells and asks while it works. What is not given does nothing.
struct CalculationWatch {
  std::function<void(const Message&)> tell = [](const Message&) {};              // the calculation goes on behind it
  std::function<void()> turn = [] {};                                            // a turn for the window system
  std::function<void(const std::string&)> progress = [](const std::string&) {};  // where it is; empty when it is done
  std::function<bool()> aborted = [] { return false; };                          // asked behind each turn
};

}  // namespace merlane
