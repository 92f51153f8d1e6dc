#pragma once

#include <functional>
#include <optional>
#include <string>

#include "base/runtime_failure.h"
#include "platform/window_system.h"

namespace merlane {

/// A step of a calculation that cannot be made for one visit, or for a whole brood: its numbers have run out of range.
struct ImpossibleStep {
  std::string step;
  int brood;                 // index in the data
  std::optional<int> visit;  // index in the data; none: the whole brood
  std::string reason;
};

/// What a long calculation tells and asks while it works. What is not given does nothing.
struct CalculationWatch {
  std::function<void(const Message&)> tell = [](const Message&) {};  // the calculation goes on behind it
  std::function<void()> turn = [] {};                                // a turn for the window system
  /// Of so many turns in a row, how many may be left out from the first on; see WindowSystem::QuietTurns.
  std::function<long(long)> quietTurns = [](long) { return 0L; };
  std::function<void(const std::string&)> progress = [](const std::string&) {};  // where it is; empty when it is done
  std::function<bool()> aborted = [] { return false; };                          // asked behind each turn
  /// The calculation goes on without the step. Where nobody takes it, it is the failure that it was.
  std::function<void(const ImpossibleStep&)> impossible = [](const ImpossibleStep& s) {
    throw RuntimeFailure(s.reason);
  };

  /// Gives so many turns; false when it was aborted behind one of them, which is the last then.
  bool Turns(long count) const {
    while (count > 0) {
      count -= quietTurns(count);
      if (count-- <= 0) break;
      turn();
      if (aborted()) return false;
    }
    return true;
  }
};

}  // namespace merlane
