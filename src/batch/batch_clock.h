#pragma once

#include <optional>

#include "platform/clock.h"

namespace merlane {

/// The machine's clock until it is made to stand at a time.
class BatchClock : public Clock {
 public:
  DateTime Now() const override { return standing_ ? *standing_ : running_.Now(); }
  bool Stands() const override { return standing_.has_value(); }
  void StandAt(const DateTime& time) { standing_ = time; }

 private:
  SystemClock running_;
  std::optional<DateTime> standing_;
};

}  // namespace merlane
