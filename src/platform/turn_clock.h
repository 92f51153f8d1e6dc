#pragma once

#include <chrono>

namespace merlane {

/// Tells the windows of a program at work when to let events run. A turn may be given millions of times a second, or
/// once in a second: while turns come fast the clock is read seldom; when a turn takes longer, at each.
class TurnClock {
 public:
  struct Pace {
    int fastTurns;                            // between two looks at the clock while turns come fast
    std::chrono::microseconds fastTurnsTake;  // at most, or they are not fast
    std::chrono::milliseconds eventsEvery;
    std::chrono::milliseconds newsEvery;  // what is shown follows what the program has said
  };
  explicit TurnClock(const Pace& pace) : pace_(pace) {}

  /// A turn is given; true when events are to run, which is told when they have.
  bool Turn() { return --turnsToLook_ <= 0 && IsTimeForEvents(); }
  void EventsHaveRun() {
    lastEvents_ = Clock::now();
    turnsToLook_ = 1;
  }
  /// How many of the next turns need not be given one by one: the last of many in a row looks at the clock.
  long QuietTurns(long atMost) {
    if (atMost < 2) return 0;
    turnsToLook_ = 0;
    return atMost - 1;
  }

  /// Whether, at the look at the clock that called for events, what is shown was old; it is not once it has been told.
  bool NewsAreDue() const { return lastLook_ - lastNews_ >= pace_.newsEvery; }
  void NewsAreTold() { lastNews_ = Clock::now(); }

 private:
  using Clock = std::chrono::steady_clock;

  bool IsTimeForEvents() {
    const Clock::time_point now = Clock::now();
    turnsToLook_ = now - lastLook_ < pace_.fastTurnsTake ? pace_.fastTurns : 1;
    lastLook_ = now;
    return now - lastEvents_ >= pace_.eventsEvery;
  }

  const Pace pace_;
  int turnsToLook_ = 0;
  Clock::time_point lastLook_, lastEvents_, lastNews_;
};

}  // namespace merlane
