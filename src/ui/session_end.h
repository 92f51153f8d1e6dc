#pragma once

#include <QtWidgets>
#include <functional>

namespace merlane {

/// Hears while it lives that the session ends, and lets nothing but what it is given follow: no window asks. There is
/// one in a process.
class SessionEnd : public QObject {
 public:
  /// `save` is called, between two events, when the desktop's session ends; it will go on to end the program. `leave`
  /// is called where a signal asks the program to end (SIGTERM), or its terminal has gone (SIGHUP).
  SessionEnd(std::function<void()> save, std::function<void()> leave);
  ~SessionEnd() override;

 private:
  int heard_ = -1;  // where the handler of the signals tells that one came
};

}  // namespace merlane
